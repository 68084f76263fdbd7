// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// One UTF-16 code unit. Surrogates are units like any other.
using unichar = char16_t;

/// "No such index": what searches answer, and the greatest length a string or data object may have.
inline constexpr std::uint32_t NSNotFound = 0x7fffffff;

/// A run of elements: `location` is the index of the first, `length` counts them. It is a plain value.
///
///     const NSRange range{2, 3};
///     u"abcdef"_ns.substringWithRange(range);  // "cde"
///     rangeOfString(u"ab", u"c", 0).location == NSNotFound;  // true
struct NSRange {
  /// The index of the first element.
  std::uint32_t location = 0;
  /// How many elements there are.
  std::uint32_t length = 0;

  /// Whether both are the same run.
  friend bool operator==(const NSRange &, const NSRange &) = default;
};

}  // namespace nimbo
