// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <span>

#include "platform/Foundation/NSRange.hpp"

namespace nimbo::detail {

/// The units from `first` to `last`, both included; not all there are.
struct UnicharRange {
  unichar first, last;

  constexpr bool contains(unichar c) const { return c >= first && c <= last; }
};

/// The index of the first unit that is in one of the ranges, or in none of them; `length` when there is none.
/// Many units are looked at together. Outside, a range that most units are in is best put first.
std::size_t findUnicharInRanges(const unichar *units, std::size_t length, std::span<const UnicharRange> ranges);
std::size_t findUnicharOutsideRanges(const unichar *units, std::size_t length,
                                     std::span<const UnicharRange> ranges);

}  // namespace nimbo::detail
