// SPDX-License-Identifier: Apache-2.0
#include "Classes/Markup/MarkupMarks.hpp"

#include <algorithm>

#include "Classes/Characters/UnicharKernels.hpp"

// This file is compiled once for each kind of vector; the best for the processor is chosen at run time.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "Classes/Markup/MarkupMarks.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace nimbo::detail {
namespace HWY_NAMESPACE {

constexpr std::size_t kBlockUnits = 64;

#if HWY_TARGET == HWY_SCALAR

void markBlock(const unichar *units, MarkupBlock *block) {
  *block = {};
  for (std::size_t i = 0; i < kBlockUnits; ++i) {
    const std::uint64_t bit = std::uint64_t{1} << i;
    if (units[i] == u'<') block->less |= bit;
    if (units[i] == u'>') block->greater |= bit;
    if (units[i] == u'"') block->quotes |= bit;
    if (units[i] == u'\'') block->apostrophes |= bit;
    if (units[i] == u'=') block->equals |= bit;
  }
}

#else

namespace hn = hwy::HWY_NAMESPACE;
/// Vectors of at most 64 bytes, which stand for as many units.
using Bytes = hn::CappedTag<std::uint8_t, 64>;
using HalfBytes = hn::Half<Bytes>;
using Units = hn::Rebind<std::int16_t, HalfBytes>;

/// The units as bytes; those above 255 become 255, or 0, which are no marks.
HWY_INLINE hn::Vec<HalfBytes> narrowed(const unichar *units) {
  return hn::DemoteTo(HalfBytes(), hn::LoadU(Units(), reinterpret_cast<const std::int16_t *>(units)));
}

/// A bit for each lane; every processor that this runs on has the lowest byte first.
HWY_INLINE std::uint64_t bitsOf(hn::Mask<Bytes> mask) {
  std::uint64_t bits = 0;
  hn::StoreMaskBits(Bytes(), mask, reinterpret_cast<std::uint8_t *>(&bits));
  return bits;
}

HWY_ATTR void markBlock(const unichar *units, MarkupBlock *block) {
  const Bytes d;
  const std::size_t lanes = hn::Lanes(d);
  *block = {};
  for (std::size_t i = 0; i < kBlockUnits; i += lanes) {
    const auto v = hn::Combine(d, narrowed(units + i + lanes / 2), narrowed(units + i));
    block->less |= bitsOf(hn::Eq(v, hn::Set(d, '<'))) << i;
    block->greater |= bitsOf(hn::Eq(v, hn::Set(d, '>'))) << i;
    block->quotes |= bitsOf(hn::Eq(v, hn::Set(d, '"'))) << i;
    block->apostrophes |= bitsOf(hn::Eq(v, hn::Set(d, '\''))) << i;
    block->equals |= bitsOf(hn::Eq(v, hn::Set(d, '='))) << i;
  }
}

#endif

HWY_ATTR void markBlocks(const unichar *units, std::size_t length, MarkupBlock *blocks) {
  for (; length >= kBlockUnits; units += kBlockUnits, length -= kBlockUnits) markBlock(units, blocks++);
  if (length == 0) return;
  std::array<unichar, kBlockUnits> rest{};
  std::copy_n(units, length, rest.data());
  markBlock(rest.data(), blocks);
}

}  // namespace HWY_NAMESPACE
}  // namespace nimbo::detail
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace nimbo::detail {

HWY_EXPORT(markBlocks);

void markUnits(const unichar *units, std::size_t length, MarkupBlock *blocks) {
  HWY_DYNAMIC_DISPATCH(markBlocks)(units, length, blocks);
}

std::size_t findLessThan(const unichar *units, std::size_t length) {
  return findOneOfChoice(units, length, UnicharChoice::only(u'<'));
}

}  // namespace nimbo::detail

#endif
