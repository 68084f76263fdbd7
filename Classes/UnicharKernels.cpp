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

/// How the units of a choice are looked for. Each kind can do what those before it do.
enum class Kind { kOne, kOneBit, kAny };

Kind kindOf(const UnicharChoice &choice) {
  if (choice.count == 1) return Kind::kOne;
  return choice.isSimple() ? Kind::kOneBit : Kind::kAny;
}

/// What `isOneOf` takes: the units; for two that differ in one bit, the one that has it and the bit.
template <Kind K>
std::array<unichar, 4> comparands(const UnicharChoice &choice) {
  if constexpr (K != Kind::kOneBit) return choice.units;
  const unichar bit = choice.difference();
  return {static_cast<unichar>(choice.units[0] | bit), bit};
}

/// Which lanes are a unit of the choice with these comparands.
template <Kind K>
HWY_INLINE Mask isOneOf(Vector v, Vector c0, Vector c1, Vector c2, Vector c3) {
  if constexpr (K == Kind::kOneBit) return hn::Eq(hn::Or(v, c1), c0);
  const Mask m0 = hn::Eq(v, c0);
  if constexpr (K == Kind::kOne) return m0;
  return hn::Or(hn::Or(m0, hn::Eq(v, c1)), hn::Or(hn::Eq(v, c2), hn::Eq(v, c3)));
}

HWY_INLINE bool isOneOf(unichar c, const UnicharChoice &choice) {
  return (c == choice.units[0]) | (c == choice.units[1]) | (c == choice.units[2]) | (c == choice.units[3]);
}

template <Kind K>
HWY_ATTR std::size_t find(const unichar *units, std::size_t length, const UnicharChoice &choice) {
  const Tag d;
  const std::size_t n = hn::Lanes(d);
  const std::array<unichar, 4> c = comparands<K>(choice);
  const Vector c0 = broadcast(c[0]), c1 = broadcast(c[1]), c2 = broadcast(c[2]), c3 = broadcast(c[3]);
  std::size_t i = 0;
  for (; i + kUnrolled * n <= length; i += kUnrolled * n) {
    const Mask m0 = isOneOf<K>(load(units + i), c0, c1, c2, c3);
    const Mask m1 = isOneOf<K>(load(units + i + n), c0, c1, c2, c3);
    const Mask m2 = isOneOf<K>(load(units + i + 2 * n), c0, c1, c2, c3);
    const Mask m3 = isOneOf<K>(load(units + i + 3 * n), c0, c1, c2, c3);
    if (!hn::AllFalse(d, hn::Or(hn::Or(m0, m1), hn::Or(m2, m3)))) break;
  }
  for (; i + n <= length; i += n) {
    const std::intptr_t at = hn::FindFirstTrue(d, isOneOf<K>(load(units + i), c0, c1, c2, c3));
    if (at >= 0) return i + static_cast<std::size_t>(at);
  }
  if (i < length && length >= n) {
    i = length - n;
    const std::intptr_t at = hn::FindFirstTrue(d, isOneOf<K>(load(units + i), c0, c1, c2, c3));
    return at >= 0 ? i + static_cast<std::size_t>(at) : length;
  }
  while (i < length && !isOneOf(units[i], choice)) ++i;
  return i;
}

template <Kind K>
HWY_ATTR std::size_t findLast(const unichar *units, std::size_t length, const UnicharChoice &choice) {
  const Tag d;
  const std::size_t n = hn::Lanes(d);
  const std::array<unichar, 4> c = comparands<K>(choice);
  const Vector c0 = broadcast(c[0]), c1 = broadcast(c[1]), c2 = broadcast(c[2]), c3 = broadcast(c[3]);
  std::size_t end = length;
  for (; end >= kUnrolled * n; end -= kUnrolled * n) {
    const Mask m0 = isOneOf<K>(load(units + end - n), c0, c1, c2, c3);
    const Mask m1 = isOneOf<K>(load(units + end - 2 * n), c0, c1, c2, c3);
    const Mask m2 = isOneOf<K>(load(units + end - 3 * n), c0, c1, c2, c3);
    const Mask m3 = isOneOf<K>(load(units + end - 4 * n), c0, c1, c2, c3);
    if (!hn::AllFalse(d, hn::Or(hn::Or(m0, m1), hn::Or(m2, m3)))) break;
  }
  while (end >= n) {
    if (!hn::AllFalse(d, isOneOf<K>(load(units + end - n), c0, c1, c2, c3))) break;
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

template <Kind K>
HWY_ATTR std::size_t count(const unichar *units, std::size_t length, const UnicharChoice &choice) {
  const Tag d;
  const std::size_t n = hn::Lanes(d);
  const std::array<unichar, 4> c = comparands<K>(choice);
  const Vector c0 = broadcast(c[0]), c1 = broadcast(c[1]), c2 = broadcast(c[2]), c3 = broadcast(c[3]);
  std::size_t total = 0;
  std::size_t i = 0;
  while (i + n <= length) {
    Vector even = hn::Zero(d), odd = hn::Zero(d);
    const std::size_t blockEnd = i + std::min(length - i, kMaxLaneCount * n);
    for (; i + 2 * n <= blockEnd; i += 2 * n) {
      even = countUp(even, isOneOf<K>(load(units + i), c0, c1, c2, c3));
      odd = countUp(odd, isOneOf<K>(load(units + i + n), c0, c1, c2, c3));
    }
    if (i + n <= blockEnd) {
      even = countUp(even, isOneOf<K>(load(units + i), c0, c1, c2, c3));
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

/// Which of the positions from `place` on both anchors fit.
template <Kind K>
HWY_INLINE Mask anchorsFit(const unichar *place, std::size_t distance, Vector f0, Vector f1, Vector f2,
                           Vector f3, Vector s0, Vector s1, Vector s2, Vector s3) {
  return hn::And(isOneOf<K>(load(place), f0, f1, f2, f3), isOneOf<K>(load(place + distance), s0, s1, s2, s3));
}

template <Kind K>
HWY_ATTR std::size_t findPlace(const unichar *units, std::size_t places, const UnicharAnchors &anchors,
                               const UnicharVerifier &verifier) {
  const Tag d;
  const std::size_t n = hn::Lanes(d);
  const std::size_t distance = anchors.distance;
  const std::array<unichar, 4> f = comparands<K>(anchors.first), s = comparands<K>(anchors.second);
  const Vector f0 = broadcast(f[0]), f1 = broadcast(f[1]), f2 = broadcast(f[2]), f3 = broadcast(f[3]);
  const Vector s0 = broadcast(s[0]), s1 = broadcast(s[1]), s2 = broadcast(s[2]), s3 = broadcast(s[3]);
  std::size_t i = 0;
  while (i < places && places >= n) {
    for (; i + kUnrolled * n <= places; i += kUnrolled * n) {
      const unichar *const place = units + i;
      const Mask m0 = anchorsFit<K>(place, distance, f0, f1, f2, f3, s0, s1, s2, s3);
      const Mask m1 = anchorsFit<K>(place + n, distance, f0, f1, f2, f3, s0, s1, s2, s3);
      const Mask m2 = anchorsFit<K>(place + 2 * n, distance, f0, f1, f2, f3, s0, s1, s2, s3);
      const Mask m3 = anchorsFit<K>(place + 3 * n, distance, f0, f1, f2, f3, s0, s1, s2, s3);
      if (!hn::AllFalse(d, hn::Or(hn::Or(m0, m1), hn::Or(m2, m3)))) break;
    }
    const std::size_t blockEnd = std::min(places, i + kUnrolled * n);
    while (i < blockEnd) {
      // The last vector lies over the one before it, so that it ends with the run.
      const std::size_t start = std::min(i, places - n);
      Mask fits = anchorsFit<K>(units + start, distance, f0, f1, f2, f3, s0, s1, s2, s3);
      fits = hn::AndNot(hn::FirstN(d, i - start), fits);
      for (;;) {
        const std::intptr_t lane = hn::FindFirstTrue(d, fits);
        if (lane < 0) break;
        const std::size_t place = start + static_cast<std::size_t>(lane);
        if (verifier.matches(verifier.context, units + place)) return place;
        fits = hn::AndNot(hn::FirstN(d, static_cast<std::size_t>(lane) + 1), fits);
      }
      i = start + n;
    }
  }
  for (; i < places; ++i) {
    if (isOneOf(units[i], anchors.first) && isOneOf(units[i + distance], anchors.second) &&
        verifier.matches(verifier.context, units + i)) {
      return i;
    }
  }
  return places;
}

std::size_t findInChoice(const unichar *units, std::size_t length, const UnicharChoice &choice) {
  switch (kindOf(choice)) {
    case Kind::kOne:
      return find<Kind::kOne>(units, length, choice);
    case Kind::kOneBit:
      return find<Kind::kOneBit>(units, length, choice);
    case Kind::kAny:
      break;
  }
  return find<Kind::kAny>(units, length, choice);
}

std::size_t findLastInChoice(const unichar *units, std::size_t length, const UnicharChoice &choice) {
  switch (kindOf(choice)) {
    case Kind::kOne:
      return findLast<Kind::kOne>(units, length, choice);
    case Kind::kOneBit:
      return findLast<Kind::kOneBit>(units, length, choice);
    case Kind::kAny:
      break;
  }
  return findLast<Kind::kAny>(units, length, choice);
}

std::size_t countInChoice(const unichar *units, std::size_t length, const UnicharChoice &choice) {
  switch (kindOf(choice)) {
    case Kind::kOne:
      return count<Kind::kOne>(units, length, choice);
    case Kind::kOneBit:
      return count<Kind::kOneBit>(units, length, choice);
    case Kind::kAny:
      break;
  }
  return count<Kind::kAny>(units, length, choice);
}

std::size_t findPlaceOfAnchors(const unichar *units, std::size_t places, const UnicharAnchors &anchors,
                               const UnicharVerifier &verifier) {
  switch (std::max(kindOf(anchors.first), kindOf(anchors.second))) {
    case Kind::kOne:
      return findPlace<Kind::kOne>(units, places, anchors, verifier);
    case Kind::kOneBit:
      return findPlace<Kind::kOneBit>(units, places, anchors, verifier);
    case Kind::kAny:
      break;
  }
  return findPlace<Kind::kAny>(units, places, anchors, verifier);
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
HWY_EXPORT(findPlaceOfAnchors);

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

std::size_t findAnchors(const unichar *units, std::size_t places, const UnicharAnchors &anchors,
                        const UnicharVerifier &verifier) {
  return HWY_DYNAMIC_DISPATCH(findPlaceOfAnchors)(units, places, anchors, verifier);
}

}  // namespace nimbo::detail

#endif
