// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/WebKit/WebResourceLoadDelegate.hpp"

namespace nimbo {

/// Lets a page load what stays on this machine and its local network: files, URLs without a host, and hosts all
/// of whose addresses are this machine's own or on a network that it is attached to. A host is looked up for
/// every request, redirects too, and its address once more when it is connected to.
class LocalRequestFilter final : public WebResourceLoadDelegate {
 public:
  /// How long one host may be looked up for.
  static constexpr double kLookupSeconds = 5;

  NSURLRequest webViewWillSendRequest(const WebView &webView, std::uint32_t resource,
                                      const NSURLRequest &willSendRequest,
                                      const NSURLResponse &redirectResponse,
                                      const WebDataSource &fromDataSource) override;
  bool mayConnectToAddress(const sockaddr &address) override;
};

}  // namespace nimbo
