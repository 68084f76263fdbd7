// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The domain of errors of loading a URL.
inline NSString NSURLErrorDomain() {
  return u"NSURLErrorDomain"_ns;
}

/// What went wrong: a number and the domain that gives it its meaning. A default-made one is nil.
struct NSError {
  NSString domain;
  std::int64_t code = 0;

  explicit operator bool() const noexcept { return static_cast<bool>(domain); }
  friend bool operator==(const NSError &, const NSError &) = default;
};

/// Codes of `NSURLErrorDomain`.
enum : std::int64_t {
  NSURLErrorTimedOut = -1001,
  NSURLErrorNetworkConnectionLost = -1005,
  NSURLErrorHTTPTooManyRedirects = -1007,
  NSURLErrorNotConnectedToInternet = -1009,
  NSURLErrorRedirectToNonExistentLocation = -1010,
  NSURLErrorBadServerResponse = -1011,
  NSURLErrorUserCancelledAuthentication = -1012,
  NSURLErrorUserAuthenticationRequired = -1013,
  NSURLErrorZeroByteResource = -1014,
  NSURLErrorFileDoesNotExist = -1100,
  NSURLErrorNoPermissionsToReadFile = -1102,
};

}  // namespace nimbo
