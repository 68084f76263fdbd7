// SPDX-License-Identifier: Apache-2.0
//
// The vector loops behind FastSearches and UnicharSearches, in the best form that the processor has. They know
// nothing of tables: "equal after folding" comes here as a choice of units. Any thread may call them.
//
//     const detail::UnicharChoice slash = detail::UnicharChoice::only(u'/');
//     const std::size_t first = detail::findOneOfChoice(u"a/b/c", 5, slash);
//     const std::size_t last = detail::findLastOneOfChoice(u"a/b/c", 5, slash);
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "platform/Foundation/NSRange.hpp"

namespace NIMBO_PUBLIC nimbo {
namespace detail {

/// The units that a search takes for equal. Each of `units` is set; those from `count` on repeat the first.
struct UnicharChoice {
  static constexpr std::uint32_t kMaxCount = 4;

  std::uint32_t count = 0;
  std::array<unichar, kMaxCount> units{};

  /// The choice of one unit.
  static UnicharChoice only(unichar c) { return {1, {c, c, c, c}}; }

  /// The bits in which the first two differ.
  unichar difference() const { return units[0] ^ units[1]; }
  /// Whether one comparison finds them all: a single unit, or two that differ in one bit, as "A" and "a" do.
  bool isSimple() const { return count == 1 || (count == 2 && std::has_single_bit(unsigned{difference()})); }
};

/// The index of the first unit of the choice, which is not empty; `length` when there is none.
std::size_t findOneOfChoice(const unichar *units, std::size_t length, const UnicharChoice &choice);
/// The index of the last unit of the choice, which is not empty; `length` when there is none.
std::size_t findLastOneOfChoice(const unichar *units, std::size_t length, const UnicharChoice &choice);
/// How many units are of the choice, which is not empty.
std::size_t countOneOfChoice(const unichar *units, std::size_t length, const UnicharChoice &choice);
/// Counts two units in one pass.
void countTwoUnichars(const unichar *units, std::size_t length, unichar first, unichar second,
                      std::size_t *firstCount, std::size_t *secondCount);
/// Whether all units are below 128; true for none.
bool areAllUnicharsAscii(const unichar *units, std::size_t length);

/// Two units of a run that is searched for: the second stands `distance` units behind the first.
struct UnicharAnchors {
  UnicharChoice first, second;
  std::size_t distance = 0;
};

/// Decides about a place where both anchors fit.
struct UnicharVerifier {
  bool (*matches)(void *context, const unichar *place);
  void *context;
};

/// The first of the `places` positions from `units` on where both anchors fit and the verifier agrees; `places`
/// when there is none. `places + anchors.distance` units are read.
std::size_t findAnchors(const unichar *units, std::size_t places, const UnicharAnchors &anchors,
                        const UnicharVerifier &verifier);

}  // namespace detail
}  // namespace nimbo
