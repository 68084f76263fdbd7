// SPDX-License-Identifier: Apache-2.0
#include "Classes/Characters/FastComparisons.hpp"

#include <algorithm>

#include "Classes/Characters/CharacterTables.hpp"

namespace nimbo {

namespace {

/// The first difference of the runs, each element as `value` makes a unit of it.
template <typename A, typename B, typename Value>
std::int32_t compareRuns(const A *a, std::uint32_t lenA, const B *b, std::uint32_t lenB, Value value) {
  const std::uint32_t common = std::min(lenA, lenB);
  for (std::uint32_t i = 0; i < common; ++i) {
    const std::int32_t difference = std::int32_t{value(a[i])} - std::int32_t{value(b[i])};
    if (difference != 0) return difference;
  }
  return static_cast<std::int32_t>(lenA - lenB);
}

struct Exact {
  unichar operator()(unichar c) const { return c; }
  unichar operator()(char c) const { return unicharOfChar(c); }
};

struct UpperCase {
  const unichar *table = initUpperCharsTable();
  unichar operator()(unichar c) const { return table[c]; }
  unichar operator()(char c) const { return table[unicharOfChar(c)]; }
};

}  // namespace

std::int32_t fastCompareUnichars(const unichar *a, std::uint32_t lenA, const unichar *b, std::uint32_t lenB) {
  return compareRuns(a, lenA, b, lenB, Exact());
}

std::int32_t fastCompareUnicharsWithChars(const unichar *a, std::uint32_t lenA, const char *b,
                                          std::uint32_t lenB) {
  return compareRuns(a, lenA, b, lenB, Exact());
}

std::int32_t fastCompareChars(const char *a, std::uint32_t lenA, const char *b, std::uint32_t lenB) {
  return compareRuns(a, lenA, b, lenB, Exact());
}

std::int32_t fastCaseInsensitiveCompareUnichars(const unichar *a, std::uint32_t lenA, const unichar *b,
                                                std::uint32_t lenB) {
  return compareRuns(a, lenA, b, lenB, UpperCase());
}

std::int32_t fastCaseInsensitiveCompareUnicharsWithChars(const unichar *a, std::uint32_t lenA, const char *b,
                                                         std::uint32_t lenB) {
  return compareRuns(a, lenA, b, lenB, UpperCase());
}

std::int32_t fastCaseInsensitiveCompareChars(const char *a, std::uint32_t lenA, const char *b,
                                             std::uint32_t lenB) {
  return compareRuns(a, lenA, b, lenB, UpperCase());
}

}  // namespace nimbo
