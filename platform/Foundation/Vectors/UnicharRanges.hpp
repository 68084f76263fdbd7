// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <span>

#include "platform/Foundation/NSRange.hpp"

namespace NIMBO_PUBLIC nimbo {
namespace detail {

/// The units from `first` to `last`, both included; not all there are.
struct UnicharRange {
  unichar first, last;

  constexpr bool contains(unichar c) const { return c >= first && c <= last; }
};

/// The index of the first unit that is in one of the ranges, or in none of them; `length` when there is none.
/// Many units are looked at together. Outside, the range that most blanks are in is best put first; the others
/// come to stand in the order that serves the text best.
std::size_t findUnicharInRanges(const unichar *units, std::size_t length, std::span<const UnicharRange> ranges);
std::size_t findUnicharOutsideRanges(const unichar *units, std::size_t length, std::span<UnicharRange> ranges);

}  // namespace detail
}  // namespace nimbo
