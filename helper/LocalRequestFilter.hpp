// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <set>
#include <string>

#include "platform/WebKit/WebResourceLoadDelegate.hpp"

namespace nimbo {

/// Lets a page load what stays on this machine and its local network: files, URLs without a host, and hosts all
/// of whose addresses are this machine's own or on a network that it is attached to. A host is looked up for
/// every request, redirects too, and its address once more when it is connected to; one that is not found is
/// not looked up again. Of use for one page.
class LocalRequestFilter final : public WebResourceLoadDelegate {
 public:
  /// How long all hosts together may be looked up for, and how long each may be at least: names that nobody
  /// answers for leave time to load what is near.
  static constexpr double kLookupSeconds = 5;
  static constexpr double kLeastLookupSeconds = 0.25;

  explicit LocalRequestFilter(double lookupSeconds = kLookupSeconds) : lookupSeconds_(lookupSeconds) {}

  NSURLRequest webViewWillSendRequest(const WebView &webView, std::uint32_t resource,
                                      const NSURLRequest &willSendRequest,
                                      const NSURLResponse &redirectResponse,
                                      const WebDataSource &fromDataSource) override;
  bool mayConnectToAddress(const sockaddr &address) override;

 private:
  bool isNear(const std::string &host, const Deadline &deadline);

  double lookupSeconds_;
  std::set<std::string> unknownHosts_;
};

}  // namespace nimbo
