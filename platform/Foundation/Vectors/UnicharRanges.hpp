// SPDX-License-Identifier: Apache-2.0
//
// Vector loops that look for units of a few ranges. Any thread may search.
//
//     detail::UnicharRange digits[] = {{u'0', u'9'}};
//     detail::findUnicharInRanges(u"abc1", 4, digits);  // 3
//     detail::findUnicharOutsideRanges(u"12a", 3, digits);  // 2
#pragma once

#include <cstddef>
#include <span>

#include "platform/Foundation/NSRange.hpp"

namespace NIMBO_PUBLIC nimbo {
namespace detail {

/// The units from `first` to `last`, both included; not all there are.
struct UnicharRange {
  unichar first, last;

  /// Whether the unit is in the range.
  constexpr bool contains(unichar c) const { return c >= first && c <= last; }
};

/// The index of the first unit that is in one of the ranges; `length` when there is none.
std::size_t findUnicharInRanges(const unichar *units, std::size_t length, std::span<const UnicharRange> ranges);
/// The index of the first unit that is in none of the ranges; `length` when there is none. The range that most
/// blanks are in is best put first; the others come to stand in the order that serves the text best.
std::size_t findUnicharOutsideRanges(const unichar *units, std::size_t length, std::span<UnicharRange> ranges);

}  // namespace detail
}  // namespace nimbo
