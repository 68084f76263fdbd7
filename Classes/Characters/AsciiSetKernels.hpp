// SPDX-License-Identifier: Apache-2.0
//
// Vector loops that look for the units of a set, in the best form that the processor has. Any thread may call
// them.
//
//     constexpr auto kMarks = detail::AsciiSet::of([](unichar c) { return c == u'/' || c == u'?'; });
//     const std::size_t first = detail::findOneOfAsciiSet(u"a/b?c", 5, kMarks);
//     const std::size_t marks = detail::countOneOfAsciiSet(u"a/b?c", 5, kMarks);
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSRange.hpp"

namespace NIMBO_PUBLIC nimbo {
namespace detail {

/// A set of units below 128, and whether it has all others too.
struct AsciiSet {
  /// The bit `c >> 4` of row `c & 15` says whether `c` is in the set.
  alignas(16) std::array<std::uint8_t, 16> rows{};
  /// Whether all units from 128 on are in the set.
  bool hasOthers = false;

  /// The set of the units below 128 for which `isMember(unichar)` holds, and of all others when `hasOthers` is
  /// set.
  template <class Predicate>
  static constexpr AsciiSet of(Predicate isMember, Flag hasOthers = false) {
    AsciiSet set;
    set.hasOthers = hasOthers;
    for (unsigned c = 0; c < 128; ++c)
      if (isMember(static_cast<unichar>(c))) set.rows[c & 15] |= static_cast<std::uint8_t>(1u << (c >> 4));
    return set;
  }

  /// Whether the unit is in the set.
  constexpr bool contains(unichar c) const { return c < 128 ? rows[c & 15] >> (c >> 4) & 1 : hasOthers; }
};

/// The index of the first unit of the set; `length` when there is none.
std::size_t findOneOfAsciiSet(const unichar *units, std::size_t length, const AsciiSet &set);
/// How many of the units are in the set.
std::size_t countOneOfAsciiSet(const unichar *units, std::size_t length, const AsciiSet &set);

}  // namespace detail
}  // namespace nimbo
