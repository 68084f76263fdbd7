// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// How the first of two things stands to the second: a plain value.
///
///     const auto isBefore = [](const NSString &a, const NSString &b) {
///       return localizedCaseInsensitiveCompare(a, b) == NSOrderedAscending;
///     };
enum NSComparisonResult : std::int32_t {
  NSOrderedAscending = -1,
  NSOrderedSame = 0,
  NSOrderedDescending = 1,
};

/// The result of a comparison that a number tells by its sign.
constexpr NSComparisonResult comparisonResult(std::int64_t difference) {
  return difference < 0 ? NSOrderedAscending : difference > 0 ? NSOrderedDescending : NSOrderedSame;
}

}  // namespace nimbo
