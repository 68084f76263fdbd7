// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Vectors/UnicharRanges.hpp"

#include <algorithm>
#include <cstdint>
#include <type_traits>
#include <utility>

// This file is compiled once for each kind of vector; the best for the processor is chosen at run time.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/Foundation/Vectors/UnicharRanges.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace nimbo::detail {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;
template <class D>
using Vector = hn::Vec<D>;
template <class D>
using Mask = hn::Mask<D>;

/// How many vectors a loop looks at before it branches.
constexpr std::size_t kUnrolled = 4;

enum class Side { kInside, kOutside };

/// Outside, their order may change.
template <Side S>
using Ranges = std::span<std::conditional_t<S == Side::kOutside, UnicharRange, const UnicharRange>>;

template <class D>
HWY_INLINE Vector<D> load(D d, const unichar *units) {
  return hn::LoadU(d, reinterpret_cast<const std::uint16_t *>(units));
}

template <class D>
HWY_INLINE Mask<D> none(D d) {
  return hn::MaskFromVec(hn::Zero(d));
}

/// Which lanes are in the range from `first` to `first + span`.
template <class D>
HWY_INLINE Mask<D> isIn(D, Vector<D> v, Vector<D> first, Vector<D> span) {
  const Vector<D> distance = hn::Sub(v, first);
  return hn::Eq(hn::Min(distance, span), distance);
}

template <class D>
HWY_INLINE Vector<D> firstOf(D d, const UnicharRange &range) {
  return hn::Set(d, static_cast<std::uint16_t>(range.first));
}

template <class D>
HWY_INLINE Vector<D> spanOf(D d, const UnicharRange &range) {
  return hn::Set(d, static_cast<std::uint16_t>(range.last - range.first));
}

/// The first lane that is on the side wanted; negative for none.
template <Side S, class D>
HWY_INLINE std::intptr_t findLane(D d, Vector<D> v, std::span<const UnicharRange> ranges) {
  Mask<D> in = none(d);
  for (const UnicharRange &range : ranges) in = hn::Or(in, isIn(d, v, firstOf(d, range), spanOf(d, range)));
  return hn::FindFirstTrue(d, S == Side::kInside ? in : hn::Not(in));
}

/// How many of the ranges it takes to find that none of the units of `kUnrolled` vectors is on the side wanted;
/// 0 when one is.
template <Side S, class D>
HWY_INLINE std::size_t rangesToSkip(D d, const unichar *units, std::span<const UnicharRange> ranges) {
  const std::size_t n = hn::Lanes(d);
  const Vector<D> v0 = load(d, units), v1 = load(d, units + n), v2 = load(d, units + 2 * n),
                  v3 = load(d, units + 3 * n);
  Mask<D> m0 = none(d), m1 = m0, m2 = m0, m3 = m0;
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    const Vector<D> first = firstOf(d, ranges[i]), span = spanOf(d, ranges[i]);
    m0 = hn::Or(m0, isIn(d, v0, first, span));
    m1 = hn::Or(m1, isIn(d, v1, first, span));
    m2 = hn::Or(m2, isIn(d, v2, first, span));
    m3 = hn::Or(m3, isIn(d, v3, first, span));
    if (S == Side::kOutside && hn::AllTrue(d, hn::And(hn::And(m0, m1), hn::And(m2, m3)))) return i + 1;
  }
  return S == Side::kInside && hn::AllFalse(d, hn::Or(hn::Or(m0, m1), hn::Or(m2, m3))) ? ranges.size() : 0;
}

template <Side S, class D>
HWY_ATTR std::size_t find(D d, const unichar *units, std::size_t length, Ranges<S> ranges) {
  const std::size_t n = hn::Lanes(d);
  std::size_t i = 0;
  for (; i + kUnrolled * n <= length; i += kUnrolled * n) {
    const std::size_t used = rangesToSkip<S>(d, units + i, ranges);
    if (used == 0) break;
    // What some units of a text are in most others are in, besides the first: blanks and punctuation.
    if constexpr (S == Side::kOutside)
      if (used > 2) std::swap(ranges[1], ranges[used - 1]);
  }
  while (i < length && length >= n) {
    // The last vector lies over the one before it, so that it ends with the run.
    const std::size_t start = std::min(i, length - n);
    const std::intptr_t lane = findLane<S>(d, load(d, units + start), ranges);
    if (lane >= 0) return start + static_cast<std::size_t>(lane);
    i = start + n;
  }
  for (; i < length; ++i) {
    const bool in = std::ranges::any_of(ranges, [&](const UnicharRange &r) { return r.contains(units[i]); });
    if (in == (S == Side::kInside)) return i;
  }
  return length;
}

template <Side S>
std::size_t findWithVectors(const unichar *units, std::size_t length, Ranges<S> ranges) {
  const hn::ScalableTag<std::uint16_t> wide;
  if (length >= hn::Lanes(wide)) return find<S>(wide, units, length, ranges);
  return find<S>(hn::CappedTag<std::uint16_t, 8>(), units, length, ranges);
}

std::size_t findInside(const unichar *units, std::size_t length, std::span<const UnicharRange> ranges) {
  return findWithVectors<Side::kInside>(units, length, ranges);
}

std::size_t findOutside(const unichar *units, std::size_t length, std::span<UnicharRange> ranges) {
  return findWithVectors<Side::kOutside>(units, length, ranges);
}

}  // namespace HWY_NAMESPACE
}  // namespace nimbo::detail
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace nimbo::detail {

HWY_EXPORT(findInside);
HWY_EXPORT(findOutside);

std::size_t findUnicharInRanges(const unichar *units, std::size_t length,
                                std::span<const UnicharRange> ranges) {
  return HWY_DYNAMIC_DISPATCH(findInside)(units, length, ranges);
}

std::size_t findUnicharOutsideRanges(const unichar *units, std::size_t length, std::span<UnicharRange> ranges) {
  return HWY_DYNAMIC_DISPATCH(findOutside)(units, length, ranges);
}

}  // namespace nimbo::detail

#endif
