// SPDX-License-Identifier: Apache-2.0
#include "Classes/UnicharKernels.hpp"

#include <algorithm>

// This file is compiled once for each kind of vector; the best for the processor is chosen at run time.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "Classes/UnicharKernels.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace nimbo::detail {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;
using Tag = hn::ScalableTag<std::uint16_t>;
using Vector = hn::Vec<Tag>;
using Mask = hn::Mask<Tag>;

/// How many vectors a loop looks at before it branches.
constexpr std::size_t kUnrolled = 4;

HWY_INLINE Vector load(const unichar *units) {
  return hn::LoadU(Tag(), reinterpret_cast<const std::uint16_t *>(units));
}

HWY_INLINE Vector broadcast(unichar c) {
  return hn::Set(Tag(), static_cast<std::uint16_t>(c));
}

/// Which lanes are one of the first `Count` of four units.
template <int Count>
HWY_INLINE Mask isOneOf(Vector v, Vector c0, Vector c1, Vector c2, Vector c3) {
  const Mask m0 = hn::Eq(v, c0);
  if constexpr (Count == 1) return m0;
  const Mask m01 = hn::Or(m0, hn::Eq(v, c1));
  if constexpr (Count == 2) return m01;
  return hn::Or(m01, hn::Or(hn::Eq(v, c2), hn::Eq(v, c3)));
}

HWY_INLINE bool isOneOf(unichar c, const UnicharChoice &choice) {
  return (c == choice.units[0]) | (c == choice.units[1]) | (c == choice.units[2]) | (c == choice.units[3]);
}

template <int Count>
HWY_ATTR std::size_t find(const unichar *units, std::size_t length, const UnicharChoice &choice) {
  const Tag d;
  const std::size_t n = hn::Lanes(d);
  const Vector c0 = broadcast(choice.units[0]), c1 = broadcast(choice.units[1]);
  const Vector c2 = broadcast(choice.units[2]), c3 = broadcast(choice.units[3]);
  std::size_t i = 0;
  for (; i + kUnrolled * n <= length; i += kUnrolled * n) {
    const Mask m0 = isOneOf<Count>(load(units + i), c0, c1, c2, c3);
    const Mask m1 = isOneOf<Count>(load(units + i + n), c0, c1, c2, c3);
    const Mask m2 = isOneOf<Count>(load(units + i + 2 * n), c0, c1, c2, c3);
    const Mask m3 = isOneOf<Count>(load(units + i + 3 * n), c0, c1, c2, c3);
    if (!hn::AllFalse(d, hn::Or(hn::Or(m0, m1), hn::Or(m2, m3)))) break;
  }
  for (; i + n <= length; i += n) {
    const std::intptr_t at = hn::FindFirstTrue(d, isOneOf<Count>(load(units + i), c0, c1, c2, c3));
    if (at >= 0) return i + static_cast<std::size_t>(at);
  }
  if (i < length && length >= n) {
    i = length - n;
    const std::intptr_t at = hn::FindFirstTrue(d, isOneOf<Count>(load(units + i), c0, c1, c2, c3));
    return at >= 0 ? i + static_cast<std::size_t>(at) : length;
  }
  while (i < length && !isOneOf(units[i], choice)) ++i;
  return i;
}

template <int Count>
HWY_ATTR std::size_t findLast(const unichar *units, std::size_t length, const UnicharChoice &choice) {
  const Tag d;
  const std::size_t n = hn::Lanes(d);
  const Vector c0 = broadcast(choice.units[0]), c1 = broadcast(choice.units[1]);
  const Vector c2 = broadcast(choice.units[2]), c3 = broadcast(choice.units[3]);
  std::size_t end = length;
  for (; end >= kUnrolled * n; end -= kUnrolled * n) {
    const Mask m0 = isOneOf<Count>(load(units + end - n), c0, c1, c2, c3);
    const Mask m1 = isOneOf<Count>(load(units + end - 2 * n), c0, c1, c2, c3);
    const Mask m2 = isOneOf<Count>(load(units + end - 3 * n), c0, c1, c2, c3);
    const Mask m3 = isOneOf<Count>(load(units + end - 4 * n), c0, c1, c2, c3);
    if (!hn::AllFalse(d, hn::Or(hn::Or(m0, m1), hn::Or(m2, m3)))) break;
  }
  while (end >= n) {
    if (!hn::AllFalse(d, isOneOf<Count>(load(units + end - n), c0, c1, c2, c3))) break;
    end -= n;
  }
  while (end > 0 && !isOneOf(units[end - 1], choice)) --end;
  return end > 0 ? end - 1 : length;
}

/// How often a lane may be counted up before it overflows.
constexpr std::size_t kMaxLaneCount = 0xffff;

HWY_INLINE std::size_t sumOfLanes(Vector counts) {
  const Tag d;
  std::array<std::uint16_t, hn::MaxLanes(Tag())> lanes;
  hn::StoreU(counts, d, lanes.data());
  std::size_t sum = 0;
  for (std::size_t i = 0; i < hn::Lanes(d); ++i) sum += lanes[i];
  return sum;
}

/// A lane of `counts` goes up where the mask is set, which as a number is -1.
HWY_INLINE Vector countUp(Vector counts, Mask mask) {
  return hn::Sub(counts, hn::VecFromMask(Tag(), mask));
}

template <int Count>
HWY_ATTR std::size_t count(const unichar *units, std::size_t length, const UnicharChoice &choice) {
  const Tag d;
  const std::size_t n = hn::Lanes(d);
  const Vector c0 = broadcast(choice.units[0]), c1 = broadcast(choice.units[1]);
  const Vector c2 = broadcast(choice.units[2]), c3 = broadcast(choice.units[3]);
  std::size_t total = 0;
  std::size_t i = 0;
  while (i + n <= length) {
    Vector even = hn::Zero(d), odd = hn::Zero(d);
    const std::size_t blockEnd = i + std::min(length - i, kMaxLaneCount * n);
    for (; i + 2 * n <= blockEnd; i += 2 * n) {
      even = countUp(even, isOneOf<Count>(load(units + i), c0, c1, c2, c3));
      odd = countUp(odd, isOneOf<Count>(load(units + i + n), c0, c1, c2, c3));
    }
    if (i + n <= blockEnd) {
      even = countUp(even, isOneOf<Count>(load(units + i), c0, c1, c2, c3));
      i += n;
    }
    total += sumOfLanes(even) + sumOfLanes(odd);
  }
  for (; i < length; ++i) total += isOneOf(units[i], choice);
  return total;
}

HWY_ATTR void countTwo(const unichar *units, std::size_t length, unichar first, unichar second,
                       std::size_t *firstCount, std::size_t *secondCount) {
  const Tag d;
  const std::size_t n = hn::Lanes(d);
  const Vector c1 = broadcast(first), c2 = broadcast(second);
  std::size_t total1 = 0, total2 = 0;
  std::size_t i = 0;
  while (i + n <= length) {
    Vector counts1 = hn::Zero(d), counts2 = hn::Zero(d);
    const std::size_t blockEnd = i + std::min(length - i, kMaxLaneCount * n);
    for (; i + n <= blockEnd; i += n) {
      const Vector v = load(units + i);
      counts1 = countUp(counts1, hn::Eq(v, c1));
      counts2 = countUp(counts2, hn::Eq(v, c2));
    }
    total1 += sumOfLanes(counts1);
    total2 += sumOfLanes(counts2);
  }
  for (; i < length; ++i) {
    total1 += units[i] == first;
    total2 += units[i] == second;
  }
  *firstCount = total1;
  *secondCount = total2;
}

HWY_ATTR bool areAllAscii(const unichar *units, std::size_t length) {
  const Tag d;
  const std::size_t n = hn::Lanes(d);
  const Vector highBits = broadcast(0xff80), zero = hn::Zero(d);
  std::size_t i = 0;
  for (; i + kUnrolled * n <= length; i += kUnrolled * n) {
    const Vector v01 = hn::Or(load(units + i), load(units + i + n));
    const Vector v23 = hn::Or(load(units + i + 2 * n), load(units + i + 3 * n));
    if (!hn::AllTrue(d, hn::Eq(hn::And(hn::Or(v01, v23), highBits), zero))) return false;
  }
  for (; i + n <= length; i += n) {
    if (!hn::AllTrue(d, hn::Eq(hn::And(load(units + i), highBits), zero))) return false;
  }
  unsigned rest = 0;
  for (; i < length; ++i) rest |= units[i];
  return rest < 0x80;
}

template <int Count>
HWY_ATTR std::size_t findPlace(const unichar *units, std::size_t places, const UnicharEnds &ends,
                               const UnicharVerifier &verifier) {
  const Tag d;
  const std::size_t n = hn::Lanes(d);
  const auto &first = ends.first.units, &last = ends.last.units;
  const Vector f0 = broadcast(first[0]), f1 = broadcast(first[1]);
  const Vector f2 = broadcast(first[2]), f3 = broadcast(first[3]);
  const Vector l0 = broadcast(last[0]), l1 = broadcast(last[1]);
  const Vector l2 = broadcast(last[2]), l3 = broadcast(last[3]);
  std::size_t i = 0;
  // The last round lies over the one before it, so that its vectors end with the run.
  while (i < places && places >= n) {
    const std::size_t start = std::min(i, places - n);
    const unichar *const place = units + start;
    Mask fits = hn::And(isOneOf<Count>(load(place), f0, f1, f2, f3),
                        isOneOf<Count>(load(place + ends.distance), l0, l1, l2, l3));
    if (HWY_UNLIKELY(!hn::AllFalse(d, fits))) {
      fits = hn::AndNot(hn::FirstN(d, i - start), fits);
      for (;;) {
        const std::intptr_t lane = hn::FindFirstTrue(d, fits);
        if (lane < 0) break;
        if (verifier.matches(verifier.context, place + lane)) return start + static_cast<std::size_t>(lane);
        fits = hn::AndNot(hn::FirstN(d, static_cast<std::size_t>(lane) + 1), fits);
      }
    }
    i = start + n;
  }
  for (; i < places; ++i) {
    if (isOneOf(units[i], ends.first) && isOneOf(units[i + ends.distance], ends.last) &&
        verifier.matches(verifier.context, units + i)) {
      return i;
    }
  }
  return places;
}

std::size_t findInChoice(const unichar *units, std::size_t length, const UnicharChoice &choice) {
  if (choice.count == 1) return find<1>(units, length, choice);
  return choice.count == 2 ? find<2>(units, length, choice) : find<4>(units, length, choice);
}

std::size_t findLastInChoice(const unichar *units, std::size_t length, const UnicharChoice &choice) {
  if (choice.count == 1) return findLast<1>(units, length, choice);
  return choice.count == 2 ? findLast<2>(units, length, choice) : findLast<4>(units, length, choice);
}

std::size_t countInChoice(const unichar *units, std::size_t length, const UnicharChoice &choice) {
  if (choice.count == 1) return count<1>(units, length, choice);
  return choice.count == 2 ? count<2>(units, length, choice) : count<4>(units, length, choice);
}

std::size_t findPlaceOfEnds(const unichar *units, std::size_t places, const UnicharEnds &ends,
                            const UnicharVerifier &verifier) {
  const std::uint32_t count = std::max(ends.first.count, ends.last.count);
  if (count == 1) return findPlace<1>(units, places, ends, verifier);
  return count == 2 ? findPlace<2>(units, places, ends, verifier) : findPlace<4>(units, places, ends, verifier);
}

}  // namespace HWY_NAMESPACE
}  // namespace nimbo::detail
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace nimbo::detail {

HWY_EXPORT(findInChoice);
HWY_EXPORT(findLastInChoice);
HWY_EXPORT(countInChoice);
HWY_EXPORT(countTwo);
HWY_EXPORT(areAllAscii);
HWY_EXPORT(findPlaceOfEnds);

std::size_t findOneOfChoice(const unichar *units, std::size_t length, const UnicharChoice &choice) {
  return HWY_DYNAMIC_DISPATCH(findInChoice)(units, length, choice);
}

std::size_t findLastOneOfChoice(const unichar *units, std::size_t length, const UnicharChoice &choice) {
  return HWY_DYNAMIC_DISPATCH(findLastInChoice)(units, length, choice);
}

std::size_t countOneOfChoice(const unichar *units, std::size_t length, const UnicharChoice &choice) {
  return HWY_DYNAMIC_DISPATCH(countInChoice)(units, length, choice);
}

void countTwoUnichars(const unichar *units, std::size_t length, unichar first, unichar second,
                      std::size_t *firstCount, std::size_t *secondCount) {
  HWY_DYNAMIC_DISPATCH(countTwo)(units, length, first, second, firstCount, secondCount);
}

bool areAllUnicharsAscii(const unichar *units, std::size_t length) {
  return HWY_DYNAMIC_DISPATCH(areAllAscii)(units, length);
}

std::size_t findEnds(const unichar *units, std::size_t places, const UnicharEnds &ends,
                     const UnicharVerifier &verifier) {
  return HWY_DYNAMIC_DISPATCH(findPlaceOfEnds)(units, places, ends, verifier);
}

}  // namespace nimbo::detail

#endif
