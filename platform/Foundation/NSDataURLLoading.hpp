// SPDX-License-Identifier: Apache-2.0
//
// What a server has under a URL, waited for. Any thread may load.
//
//     NSError error;
//     const NSURL url = NSURL::URLWithString(u"https://example.org/list"_ns);
//     const NSData data = dataWithContentsOfURL(url, {.deadline = Deadline::after(10)}, &error);
//     if (!data) NSLog(error.localizedFailureReason);
#pragma once

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NSURL.hpp"
#include "platform/Foundation/System/Deadline.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What loading one URL may take. It is a plain value.
struct URLLoadingLimits {
  /// When the whole answer has to be there.
  Deadline deadline = {};
  /// How large the answer may be, decompressed.
  std::uint32_t maximumBytes = 1 << 20;
  /// How many redirects are followed.
  int redirects = 5;
};

/// The whole content of a successful answer over HTTP or HTTPS; what began with HTTPS is not redirected to
/// HTTP. Proxies that the environment names are used. Nil when there is no such answer within the limits;
/// `*error` says why: `unsupportedType` for another scheme, `timeLimit`, else `other`.
NSData dataWithContentsOfURL(const NSURL &url, const URLLoadingLimits &limits, NSError *error = nullptr);

}  // namespace nimbo
