// SPDX-License-Identifier: Apache-2.0
#include "helper/LocalRequestFilter.hpp"

#include <algorithm>

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
  return isNear(host.UTF8String(), webView.deadline) ? willSendRequest : NSURLRequest();
}

bool LocalRequestFilter::isNear(const std::string &host, const Deadline &deadline) {
  if (unknownHosts_.contains(host)) return false;
  const Deadline end = Deadline::after(std::max(lookupSeconds_, kLeastLookupSeconds));
  SCNetworkConnectionFlags flags = 0;
  const bool isKnown = SCNetworkCheckReachabilityByName(host.c_str(), &flags, earliest(deadline, end));
  lookupSeconds_ = std::min(lookupSeconds_, end.remaining());
  if (!isKnown) unknownHosts_.insert(host);
  return isKnown && (flags & kNear) != 0;
}

bool LocalRequestFilter::mayConnectToAddress(const sockaddr &address) {
  return (SCNetworkFlagsOfAddress(address) & kNear) != 0;
}

}  // namespace nimbo
