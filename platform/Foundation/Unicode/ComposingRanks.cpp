// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Unicode/ComposingRanks.hpp"

#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <iterator>
#include <new>

namespace nimbo::detail {

namespace {

/// The combining classes up to `last` that share a rank, behind those of the row before.
struct Classes {
  std::uint8_t last;
  ComposingRank asFormer, asLatter;
};

// Viramas (9), dagesh (21), shadda (33), marks below (220) and above (230) have a rank alone, so that two of
// them may meet; Hebrew, Arabic, Thai and Lao marks that stand behind one another have different ones.
constexpr Classes kClasses[] = {{8, 4, 3},     {9, 4, 4},     {20, 6, 5},    {21, 6, 6},    {32, 8, 7},
                                {33, 8, 8},    {106, 10, 9},  {121, 11, 10}, {219, 12, 11}, {220, 12, 12},
                                {229, 14, 13}, {230, 14, 14}, {255, 15, 14}};

ComposingRank ranksOf(ComposingRank asFormer, ComposingRank asLatter) {
  return static_cast<ComposingRank>(asFormer << ComposingRanks::kFormerShift | asLatter);
}

const Classes &classesWith(std::uint8_t combiningClass) {
  return *std::ranges::find_if(kClasses, [=](const Classes &c) { return combiningClass <= c.last; });
}

}  // namespace

const ComposingRanks &ComposingRanks::shared() {
  static const ComposingRanks ranks;
  return ranks;
}

ComposingRanks::ComposingRanks() {
  for (std::size_t c = 0; c < kUnits; ++c) setRanks(static_cast<unichar>(c));
  for (std::size_t c = 0; c < kUnits; ++c) markJoined(static_cast<unichar>(c));
}

void ComposingRanks::setRanks(unichar c) {
  const std::uint8_t combiningClass = u_getCombiningClass(c);
  const auto composes = static_cast<UNormalizationCheckResult>(u_getIntPropertyValue(c, UCHAR_NFC_QUICK_CHECK));
  ComposingRank asFormer = kUnjoined, asLatter = kAlways;
  if (combiningClass > 0) {
    asFormer = classesWith(combiningClass).asFormer;
    asLatter = classesWith(combiningClass).asLatter;
  }
  if (composes == UNORM_MAYBE) asLatter = kBehindUnjoined;
  if (composes == UNORM_NO || U16_IS_SURROGATE(c)) asLatter = kNever;
  ranks_[c] = ranksOf(asFormer, asLatter);
}

void ComposingRanks::markJoined(unichar c) {
  // What is never in NFC is not composed again either.
  if (!mayBegin(c)) return;
  UErrorCode error = U_ZERO_ERROR;
  const UNormalizer2 *const normalizer = unorm2_getNFCInstance(&error);
  if (U_FAILURE(error)) throw std::bad_alloc();
  std::array<UChar, 32> decomposition;
  const std::int32_t length =
      unorm2_getRawDecomposition(normalizer, c, decomposition.data(), std::size(decomposition), &error);
  if (U_FAILURE(error) || length < 1) return;
  for (const unichar base : {c, decomposition[0]})
    ranks_[base] = std::max(ranks_[base], ranksOf(kJoined, static_cast<ComposingRank>(asLatter(base))));
}

}  // namespace nimbo::detail
