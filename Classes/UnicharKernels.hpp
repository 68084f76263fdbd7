// SPDX-License-Identifier: Apache-2.0
//
// The vector loops behind FastSearches and UnicharSearches, in the best form that the processor has. They know
// nothing of tables: "equal after folding" comes here as a choice of units.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/Foundation/NSRange.hpp"

namespace nimbo::detail {

/// The units that a search takes for equal. Each of `units` is set; those from `count` on repeat the first.
struct UnicharChoice {
  static constexpr std::uint32_t kMaxCount = 4;

  std::uint32_t count = 0;
  std::array<unichar, kMaxCount> units{};

  static UnicharChoice only(unichar c) { return {1, {c, c, c, c}}; }
};

/// The index of the first and of the last unit of the choice, which is not empty; `length` when there is none.
std::size_t findOneOfChoice(const unichar *units, std::size_t length, const UnicharChoice &choice);
std::size_t findLastOneOfChoice(const unichar *units, std::size_t length, const UnicharChoice &choice);
std::size_t countOneOfChoice(const unichar *units, std::size_t length, const UnicharChoice &choice);
void countTwoUnichars(const unichar *units, std::size_t length, unichar first, unichar second,
                      std::size_t *firstCount, std::size_t *secondCount);
bool areAllUnicharsAscii(const unichar *units, std::size_t length);

/// The ends of a run that is searched for: the first unit, and the one `distance` units behind it.
struct UnicharEnds {
  UnicharChoice first, last;
  std::size_t distance = 0;
};

/// Decides about a place where both ends fit.
struct UnicharVerifier {
  bool (*matches)(const void *context, const unichar *place);
  const void *context;
};

/// The first of the `places` positions from `units` on where both ends fit and the verifier agrees; `places`
/// when there is none. `places + ends.distance` units are read.
std::size_t findEnds(const unichar *units, std::size_t places, const UnicharEnds &ends,
                     const UnicharVerifier &verifier);

}  // namespace nimbo::detail
