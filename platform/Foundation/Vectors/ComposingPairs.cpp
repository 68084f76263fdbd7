// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Vectors/ComposingPairs.hpp"

#include <algorithm>
#include <cstdint>

// This file is compiled once for each kind of vector; the best for the processor is chosen at run time.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/Foundation/Vectors/ComposingPairs.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace nimbo::detail {
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

/// Without vectors nothing is gained here.
std::size_t pairedPrefix(const ComposingRank *, const unichar *, std::size_t) {
  return 0;
}

#else

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<std::uint8_t>;
using ByteVector = hn::Vec<Bytes>;
using HalfBytes = hn::Half<Bytes>;
using Units = hn::Rebind<std::uint16_t, HalfBytes>;
using UnitVector = hn::Vec<Units>;

constexpr std::uint16_t kPageMask = 0xff80;

/// Common to text of all scripts, and steady: Latin before its marks, and punctuation.
constexpr std::uint16_t kEndOfLatin = 0x300, kPunctuation = 0x2010, kPunctuationSpan = 0x50;

/// The highest of them.
constexpr ComposingRank kRanksOfCommon = 0x2f;

/// What no index into a page is.
constexpr std::uint16_t kNotOfPage = 0x80;

/// How many ranks are looked up before they are compared.
constexpr std::size_t kUnitsAtOnce = 256;

HWY_INLINE UnitVector load(const unichar *units) {
  return hn::LoadU(Units(), reinterpret_cast<const std::uint16_t *>(units));
}

/// The indices of the units into their page, `kNotOfPage` for common ones; false when some are neither.
HWY_INLINE bool indicesInPage(UnitVector units, UnitVector page, UnitVector &indices) {
  const Units d;
  const UnitVector mask = hn::Set(d, kPageMask);
  const auto isOfPage = hn::Eq(hn::And(units, mask), page);
  const auto isCommon = hn::Or(hn::Lt(units, hn::Set(d, kEndOfLatin)),
                               hn::Lt(hn::Sub(units, hn::Set(d, kPunctuation)), hn::Set(d, kPunctuationSpan)));
  indices = hn::IfThenElse(isOfPage, hn::AndNot(mask, units), hn::Set(d, kNotOfPage));
  return hn::AllTrue(d, hn::Or(isOfPage, isCommon));
}

HWY_INLINE ByteVector narrow(UnitVector low, UnitVector high) {
  const HalfBytes half;
  const hn::RebindToSigned<Units> d;
  return hn::Combine(Bytes(), hn::DemoteTo(half, hn::BitCast(d, high)),
                     hn::DemoteTo(half, hn::BitCast(d, low)));
}

/// A table of the ranks of a page.
class PageRanks {
 public:
  HWY_INLINE explicit PageRanks(const ComposingRank *page) : page_(page) {}

  HWY_INLINE ByteVector at(ByteVector indices) const {
    const Bytes d;
    const ByteVector place = hn::And(indices, hn::Set(d, 15));
    const auto bit4 = hn::TestBit(indices, hn::Set(d, 16)), bit5 = hn::TestBit(indices, hn::Set(d, 32)),
               bit6 = hn::TestBit(indices, hn::Set(d, 64));
    const auto ofPair = [&](std::size_t first) HWY_ATTR {
      return hn::IfThenElse(bit4, ofRow(first + 1, place), ofRow(first, place));
    };
    const ByteVector low = hn::IfThenElse(bit5, ofPair(2), ofPair(0));
    const ByteVector high = hn::IfThenElse(bit5, ofPair(6), ofPair(4));
    return hn::IfThenElse(hn::TestBit(indices, hn::Set(d, kNotOfPage)), hn::Set(d, kRanksOfCommon),
                          hn::IfThenElse(bit6, high, low));
  }

 private:
  HWY_INLINE ByteVector ofRow(std::size_t row, ByteVector place) const {
    return hn::TableLookupBytes(hn::LoadDup128(Bytes(), page_ + row * 16), place);
  }

  const ComposingRank *page_;
};

/// The ranks of units at the beginning that are common or of the page, in whole vectors; how many.
HWY_INLINE std::size_t lookUp(const ComposingRank *allRanks, unichar page, const unichar *units,
                              std::size_t length, ComposingRank *ranks) {
  const Bytes d;
  const std::size_t n = hn::Lanes(d);
  const PageRanks ofPage(allRanks + page);
  const UnitVector pages = hn::Set(Units(), static_cast<std::uint16_t>(page));
  std::size_t i = 0;
  for (; i + n <= length; i += n) {
    UnitVector low, high;
    if (!indicesInPage(load(units + i), pages, low) || !indicesInPage(load(units + i + n / 2), pages, high))
      break;
    hn::StoreU(ofPage.at(narrow(low, high)), d, ranks + i);
  }
  return i;
}

/// How many of the ranks are not below that of the one before, `ranks[-1]` for the first; whole vectors.
HWY_INLINE std::size_t lengthOfOrderedPrefix(const ComposingRank *ranks, std::size_t length) {
  const Bytes d;
  for (std::size_t i = 0; i < length; i += hn::Lanes(d)) {
    const ByteVector formers = hn::ShiftRight<ComposingRanks::kFormerShift>(hn::LoadU(d, ranks + i - 1));
    const ByteVector latters = hn::And(hn::LoadU(d, ranks + i), hn::Set(d, ComposingRanks::kLatterMask));
    const std::intptr_t lane = hn::FindFirstTrue(d, hn::Gt(formers, latters));
    if (lane >= 0) return i + static_cast<std::size_t>(lane);
  }
  return length;
}

std::size_t pairedPrefix(const ComposingRank *allRanks, const unichar *units, std::size_t length) {
  if (length < hn::Lanes(Bytes())) return 0;
  const auto page = static_cast<unichar>(units[0] & kPageMask);
  std::array<ComposingRank, 1 + kUnitsAtOnce> buffer;
  ComposingRank *const ranks = buffer.data() + 1;
  ranks[-1] = allRanks[units[-1]];
  std::size_t done = 0;
  for (;;) {
    const std::size_t found =
        lookUp(allRanks, page, units + done, std::min(length - done, kUnitsAtOnce), ranks);
    const std::size_t ordered = lengthOfOrderedPrefix(ranks, found);
    done += ordered;
    if (ordered < kUnitsAtOnce) return done;
    ranks[-1] = ranks[kUnitsAtOnce - 1];
  }
}

#endif

}  // namespace HWY_NAMESPACE
}  // namespace nimbo::detail
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace nimbo::detail {

HWY_EXPORT(pairedPrefix);

std::size_t lengthOfPairedPrefix(const ComposingRanks &ranks, const unichar *units, std::size_t length) {
  return HWY_DYNAMIC_DISPATCH(pairedPrefix)(ranks.data(), units, length);
}

}  // namespace nimbo::detail

#endif
