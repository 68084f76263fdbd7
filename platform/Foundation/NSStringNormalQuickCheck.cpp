// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSStringNormalQuickCheck.hpp"

#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <array>

#include "platform/Foundation/UnicharRanges.hpp"

namespace nimbo::detail {

namespace {

constexpr std::size_t kUnits = 0x10000;

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

/// After a steady unit of another script, this many are looked at by themselves before the widespread ones are
/// looked for again.
constexpr std::size_t kUnitsOfOtherScripts = 256;

/// A doubtful part grows by this many units until as many steady ones follow.
constexpr std::size_t kBlockUnits = 64;

bool isSteadyByUnicode(UChar32 c) {
  return !U16_IS_SURROGATE(c) && u_getCombiningClass(c) == 0 &&
         u_getIntPropertyValue(c, UCHAR_NFC_QUICK_CHECK) == UNORM_YES;
}

class SteadyUnits {
 public:
  /// Made from Unicode's data on first use.
  static const SteadyUnits &shared() {
    static const SteadyUnits units;
    return units;
  }

  /// How many units at the beginning are steady.
  std::size_t lengthOfPrefix(std::u16string_view units) const {
    auto ranges = widespread_;
    std::size_t i = 0;
    while (i < units.size()) {
      i += findUnicharOutsideRanges(units.data() + i, units.size() - i, ranges);
      const std::u16string_view others = units.substr(i, kUnitsOfOtherScripts);
      const std::size_t steady = lengthOfPrefixOneByOne(others);
      i += steady;
      if (steady < others.size()) break;
    }
    return i;
  }

  std::size_t lengthOfPrefixOneByOne(std::u16string_view units) const {
    // A few together, so that one branch is enough for them.
    constexpr std::size_t kTogether = 8;
    std::size_t i = 0;
    for (; i + kTogether <= units.size(); i += kTogether) {
      bool areSteady = true;
      for (std::size_t k = 0; k < kTogether; ++k) areSteady &= isSteady_[units[i + k]];
      if (!areSteady) break;
    }
    while (i < units.size() && isSteady_[units[i]]) ++i;
    return i;
  }

 private:
  SteadyUnits() {
    for (std::size_t c = 0; c < kUnits; ++c) isSteady_[c] = isSteadyByUnicode(static_cast<UChar32>(c));
    std::ranges::transform(kWidespread, widespread_.begin(), [this](unichar c) { return runAround(c); });
  }

  UnicharRange runAround(unichar c) const {
    std::size_t first = c, last = c;
    while (first > 0 && isSteady_[first - 1]) --first;
    while (last + 1 < kUnits && isSteady_[last + 1]) ++last;
    return {static_cast<unichar>(first), static_cast<unichar>(last)};
  }

  std::array<bool, kUnits> isSteady_;
  std::array<UnicharRange, kWidespread.size()> widespread_;
};

}  // namespace

NSRange nextDoubtfulPart(std::u16string_view units, std::uint32_t from) {
  const SteadyUnits &steadyUnits = SteadyUnits::shared();
  std::size_t start = from + steadyUnits.lengthOfPrefix(units.substr(from));
  if (start == units.size()) return {static_cast<std::uint32_t>(start), 0};
  std::size_t end = start;
  for (;;) {
    end = std::min(units.size(), end + kBlockUnits);
    const std::u16string_view next = units.substr(end, kBlockUnits);
    if (steadyUnits.lengthOfPrefixOneByOne(next) == next.size()) break;
  }
  // What is not steady may join the unit before.
  if (start > from) --start;
  return {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end - start)};
}

}  // namespace nimbo::detail
