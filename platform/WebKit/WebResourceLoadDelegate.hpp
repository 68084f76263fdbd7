// SPDX-License-Identifier: Apache-2.0
//
// What is asked before a page's parts are loaded.
//
//     class NoRequests final : public WebResourceLoadDelegate {
//       NSURLRequest webViewWillSendRequest(const WebView &, std::uint32_t, const NSURLRequest &,
//                                           const NSURLResponse &, const WebDataSource &) override { return {};
//                                           }
//     };
#pragma once

#include <cstdint>

#include "platform/Foundation/NSObject.hpp"
#include "platform/Foundation/NSURL.hpp"
#include "platform/Foundation/System/Deadline.hpp"

struct sockaddr;

namespace NIMBO_PUBLIC nimbo {

/// A request for what a URL stands for. A default-made one is nil.
struct NSURLRequest {
  /// What is asked for.
  NSURL URL;

  /// Whether this is not nil.
  explicit operator bool() const noexcept { return static_cast<bool>(URL); }
};

/// What a server answered, without the content. A default-made one is nil.
struct NSURLResponse {
  /// What was asked for.
  NSURL URL;
  /// The status of HTTP, as 301.
  int statusCode = 0;

  /// Whether this is not nil.
  explicit operator bool() const noexcept { return static_cast<bool>(URL); }
};

/// What shows a page, or would.
struct WebView {
  /// When the page has to be there with what has come by then.
  Deadline deadline;
};

/// Where a page comes from.
struct WebDataSource {
  /// The base of the page's references; nil when it has none.
  NSURL URL;
};

/// An object that is asked about the requests that a page makes. It is called by the thread that loads the
/// page.
class WebResourceLoadDelegate : public NSObject {
 public:
  ~WebResourceLoadDelegate() override;

  /// The request to send, which may be another one; nil cancels it. `resource` tells requests for one part of
  /// the page, which redirects lead to, from those for others. `redirectResponse` is nil but for a redirect.
  virtual NSURLRequest webViewWillSendRequest(const WebView &webView, std::uint32_t resource,
                                              const NSURLRequest &willSendRequest,
                                              const NSURLResponse &redirectResponse,
                                              const WebDataSource &fromDataSource) = 0;

  /// Whether a connection may be made to an address, which the host of an allowed request has at this moment.
  /// Unless a class says otherwise, it may.
  virtual bool mayConnectToAddress(const sockaddr &address);
};

}  // namespace nimbo
