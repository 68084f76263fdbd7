// SPDX-License-Identifier: Apache-2.0
#include "helper/LocalRequestFilter.hpp"

#include "platform/SystemConfiguration/SCNetworkReachability.hpp"

namespace nimbo {
namespace {

constexpr SCNetworkConnectionFlags kNear = kSCNetworkFlagsIsLocalAddress | kSCNetworkFlagsIsDirect;

}  // namespace

NSURLRequest LocalRequestFilter::webViewWillSendRequest(const WebView &webView, std::uint32_t,
                                                        const NSURLRequest &willSendRequest,
                                                        const NSURLResponse &, const WebDataSource &) {
  const NSURL &url = willSendRequest.URL;
  if (url.isFileURL()) return willSendRequest;
  const NSString host = url.host();
  if (host.length() == 0) return willSendRequest;
  SCNetworkConnectionFlags flags = 0;
  const Deadline deadline = earliest(webView.deadline, Deadline::after(kLookupSeconds));
  const bool isKnown = SCNetworkCheckReachabilityByName(host.UTF8String().c_str(), &flags, deadline);
  return isKnown && (flags & kNear) != 0 ? willSendRequest : NSURLRequest();
}

bool LocalRequestFilter::mayConnectToAddress(const sockaddr &address) {
  return (SCNetworkFlagsOfAddress(address) & kNear) != 0;
}

}  // namespace nimbo
