// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Unicode/NormalQuickCheck.hpp"

#include <algorithm>
#include <array>

#include "platform/Foundation/Unicode/ComposingRanks.hpp"
#include "platform/Foundation/Vectors/ComposingPairs.hpp"
#include "platform/Foundation/Vectors/UnicharRanges.hpp"

namespace nimbo::detail {

namespace {

/// Units of widespread scripts; the runs of steady units around them are looked for many at a time. Most text
/// is in the first alone, and most of the rest in the first two.
constexpr std::array kWidespread = {
    u'a',       // Latin
    u'\u2019',  // punctuation
    u'\u4e00',  // katakana and ideographs
    u'\uac00',  // Hangul syllables
    u'\u0430',  // Greek and Cyrillic
    u'\u3042',  // hiragana
    u'\u3001',  // ideographic punctuation
    u'\uff0c',  // fullwidth forms
    u'\u1ea1',  // Latin with two marks
    u'\u0627',  // Arabic
};

using SteadyRanges = std::array<UnicharRange, kWidespread.size()>;

/// Behind a unit of another script, this many are looked at pair by pair, then many at a time of the same page,
/// if they are; where they are not, so many more before the widespread ones are looked for again.
constexpr std::size_t kFewUnits = 16, kUnitsOfOtherScripts = 256;

/// So many units are in a part with a doubtful one, whatever they are; it grows until as many follow that are
/// not doubtful. A part by itself costs more than they do.
constexpr std::size_t kUnitsAround = 64, kUnitsBetweenParts = 256;

UnicharRange steadyRunAround(unichar c, const ComposingRanks &ranks) {
  UnicharRange run{c, c};
  while (run.first > 0 && ranks.isSteady(static_cast<unichar>(run.first - 1))) --run.first;
  while (run.last < 0xffff && ranks.isSteady(static_cast<unichar>(run.last + 1))) ++run.last;
  return run;
}

const SteadyRanges &widespreadRanges(const ComposingRanks &ranks) {
  static const SteadyRanges ranges = [&ranks] {
    SteadyRanges made{};
    std::ranges::transform(kWidespread, made.begin(), [&](unichar c) { return steadyRunAround(c, ranks); });
    return made;
  }();
  return ranges;
}

/// The first unit from `i` on, but before `end`, that may not stand behind the one before it; else `end`.
std::size_t findDoubtfulOneByOne(std::u16string_view units, std::size_t i, std::size_t end,
                                 const ComposingRanks &ranks) {
  if (i == 0 && end > 0) {
    if (!ranks.mayBegin(units[0])) return 0;
    i = 1;
  }
  // Several together, so that one branch is enough for them.
  constexpr std::size_t kTogether = 8;
  for (; i + kTogether <= end; i += kTogether) {
    bool isDoubtful = false;
    for (std::size_t k = i; k < i + kTogether; ++k) isDoubtful |= !ranks.isOrdered(units[k - 1], units[k]);
    if (isDoubtful) break;
  }
  while (i < end && ranks.mayFollow(units[i - 1], units[i])) ++i;
  return i;
}

/// The same, fast over widespread scripts and over one script at a time.
std::size_t findDoubtful(std::u16string_view units, std::size_t i, const ComposingRanks &ranks) {
  // The order is the search's own to change.
  SteadyRanges ranges = widespreadRanges(ranks);
  while (i < units.size()) {
    i += findUnicharOutsideRanges(units.data() + i, units.size() - i, ranges);
    std::size_t end = std::min(units.size(), i + kFewUnits);
    i = findDoubtfulOneByOne(units, i, end, ranks);
    if (i < end || i == units.size()) break;
    const std::size_t paired = lengthOfPairedPrefix(ranks, units.data() + i, units.size() - i);
    i += paired;
    if (paired > kUnitsOfOtherScripts) continue;
    end = std::min(units.size(), i + kUnitsOfOtherScripts);
    i = findDoubtfulOneByOne(units, i, end, ranks);
    if (i < end) break;
  }
  return i;
}

/// The end of the part with the doubtful unit: before a steady one, with no other doubtful one near behind it.
std::size_t endOfPart(std::u16string_view units, std::size_t doubtful, const ComposingRanks &ranks) {
  for (;;) {
    std::size_t end = std::min(units.size(), doubtful + kUnitsAround);
    while (end < units.size() && !ranks.isSteady(units[end])) ++end;
    const std::size_t limit = std::min(units.size(), end + kUnitsBetweenParts);
    doubtful = findDoubtfulOneByOne(units, end, limit, ranks);
    if (doubtful == limit) return end;
  }
}

}  // namespace

NSRange nextDoubtfulPart(std::u16string_view units, std::uint32_t from) {
  const ComposingRanks &ranks = ComposingRanks::shared();
  const std::size_t doubtful = findDoubtful(units, from, ranks);
  if (doubtful == units.size()) return {static_cast<std::uint32_t>(doubtful), 0};
  std::size_t start = doubtful;
  while (start > from && (start == doubtful || !ranks.isSteady(units[start]))) --start;
  const std::size_t end = endOfPart(units, doubtful, ranks);
  return {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end - start)};
}

}  // namespace nimbo::detail
