// SPDX-License-Identifier: Apache-2.0
#include "Classes/Characters/UnicharKernels.hpp"

#include <algorithm>
#include <type_traits>

// This file is compiled once for each kind of vector; the best for the processor is chosen at run time.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "Classes/Characters/UnicharKernels.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace nimbo::detail {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;
/// The vectors of the processor, and short ones for runs that do not fill one of them.
using Wide = hn::ScalableTag<std::uint16_t>;
using Narrow = hn::CappedTag<std::uint16_t, 8>;
template <class D>
using Vector = hn::Vec<D>;
template <class D>
using Mask = hn::Mask<D>;

bool fillsWide(std::size_t length) {
  return length >= hn::Lanes(Wide());
}

/// How many vectors a loop looks at before it branches.
constexpr std::size_t kUnrolled = 4;

template <class D>
HWY_INLINE Vector<D> load(D d, const unichar *units) {
  return hn::LoadU(d, reinterpret_cast<const std::uint16_t *>(units));
}

template <class D>
HWY_INLINE Vector<D> broadcast(D d, unichar c) {
  return hn::Set(d, static_cast<std::uint16_t>(c));
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
template <Kind K, class D>
HWY_INLINE Mask<D> isOneOf(D, Vector<D> v, Vector<D> c0, Vector<D> c1, Vector<D> c2, Vector<D> c3) {
  if constexpr (K == Kind::kOneBit) return hn::Eq(hn::Or(v, c1), c0);
  const Mask<D> m0 = hn::Eq(v, c0);
  if constexpr (K == Kind::kOne) return m0;
  return hn::Or(hn::Or(m0, hn::Eq(v, c1)), hn::Or(hn::Eq(v, c2), hn::Eq(v, c3)));
}

HWY_INLINE bool isOneOf(unichar c, const UnicharChoice &choice) {
  return (c == choice.units[0]) | (c == choice.units[1]) | (c == choice.units[2]) | (c == choice.units[3]);
}

template <Kind K, class D>
HWY_ATTR std::size_t find(D d, const unichar *units, std::size_t length, const UnicharChoice &choice) {
  const std::size_t n = hn::Lanes(d);
  const std::array<unichar, 4> c = comparands<K>(choice);
  const Vector<D> c0 = broadcast(d, c[0]), c1 = broadcast(d, c[1]), c2 = broadcast(d, c[2]),
                  c3 = broadcast(d, c[3]);
  std::size_t i = 0;
  for (; i + kUnrolled * n <= length; i += kUnrolled * n) {
    const Mask<D> m0 = isOneOf<K>(d, load(d, units + i), c0, c1, c2, c3);
    const Mask<D> m1 = isOneOf<K>(d, load(d, units + i + n), c0, c1, c2, c3);
    const Mask<D> m2 = isOneOf<K>(d, load(d, units + i + 2 * n), c0, c1, c2, c3);
    const Mask<D> m3 = isOneOf<K>(d, load(d, units + i + 3 * n), c0, c1, c2, c3);
    if (!hn::AllFalse(d, hn::Or(hn::Or(m0, m1), hn::Or(m2, m3)))) break;
  }
  for (; i + n <= length; i += n) {
    const std::intptr_t at = hn::FindFirstTrue(d, isOneOf<K>(d, load(d, units + i), c0, c1, c2, c3));
    if (at >= 0) return i + static_cast<std::size_t>(at);
  }
  if (i < length && length >= n) {
    i = length - n;
    const std::intptr_t at = hn::FindFirstTrue(d, isOneOf<K>(d, load(d, units + i), c0, c1, c2, c3));
    return at >= 0 ? i + static_cast<std::size_t>(at) : length;
  }
  while (i < length && !isOneOf(units[i], choice)) ++i;
  return i;
}

template <Kind K, class D>
HWY_ATTR std::size_t findLast(D d, const unichar *units, std::size_t length, const UnicharChoice &choice) {
  const std::size_t n = hn::Lanes(d);
  const std::array<unichar, 4> c = comparands<K>(choice);
  const Vector<D> c0 = broadcast(d, c[0]), c1 = broadcast(d, c[1]), c2 = broadcast(d, c[2]),
                  c3 = broadcast(d, c[3]);
  std::size_t end = length;
  for (; end >= kUnrolled * n; end -= kUnrolled * n) {
    const Mask<D> m0 = isOneOf<K>(d, load(d, units + end - n), c0, c1, c2, c3);
    const Mask<D> m1 = isOneOf<K>(d, load(d, units + end - 2 * n), c0, c1, c2, c3);
    const Mask<D> m2 = isOneOf<K>(d, load(d, units + end - 3 * n), c0, c1, c2, c3);
    const Mask<D> m3 = isOneOf<K>(d, load(d, units + end - 4 * n), c0, c1, c2, c3);
    if (!hn::AllFalse(d, hn::Or(hn::Or(m0, m1), hn::Or(m2, m3)))) break;
  }
  while (end >= n) {
    if (!hn::AllFalse(d, isOneOf<K>(d, load(d, units + end - n), c0, c1, c2, c3))) break;
    end -= n;
  }
  while (end > 0 && !isOneOf(units[end - 1], choice)) --end;
  return end > 0 ? end - 1 : length;
}

/// How often a lane may be counted up before it overflows.
constexpr std::size_t kMaxLaneCount = 0xffff;

template <class D>
HWY_INLINE std::size_t sumOfLanes(D d, Vector<D> counts) {
  std::array<std::uint16_t, hn::MaxLanes(D())> lanes;
  hn::StoreU(counts, d, lanes.data());
  std::size_t sum = 0;
  for (std::size_t i = 0; i < hn::Lanes(d); ++i) sum += lanes[i];
  return sum;
}

/// A lane of `counts` goes up where the mask is set, which as a number is -1.
template <class D>
HWY_INLINE Vector<D> countUp(D d, Vector<D> counts, Mask<D> mask) {
  return hn::Sub(counts, hn::VecFromMask(d, mask));
}

template <Kind K, class D>
HWY_ATTR std::size_t count(D d, const unichar *units, std::size_t length, const UnicharChoice &choice) {
  const std::size_t n = hn::Lanes(d);
  const std::array<unichar, 4> c = comparands<K>(choice);
  const Vector<D> c0 = broadcast(d, c[0]), c1 = broadcast(d, c[1]), c2 = broadcast(d, c[2]),
                  c3 = broadcast(d, c[3]);
  std::size_t total = 0;
  std::size_t i = 0;
  while (i + n <= length) {
    Vector<D> even = hn::Zero(d), odd = hn::Zero(d);
    const std::size_t blockEnd = i + std::min(length - i, kMaxLaneCount * n);
    for (; i + 2 * n <= blockEnd; i += 2 * n) {
      even = countUp(d, even, isOneOf<K>(d, load(d, units + i), c0, c1, c2, c3));
      odd = countUp(d, odd, isOneOf<K>(d, load(d, units + i + n), c0, c1, c2, c3));
    }
    if (i + n <= blockEnd) {
      even = countUp(d, even, isOneOf<K>(d, load(d, units + i), c0, c1, c2, c3));
      i += n;
    }
    total += sumOfLanes(d, even) + sumOfLanes(d, odd);
  }
  for (; i < length; ++i) total += isOneOf(units[i], choice);
  return total;
}

template <class D>
HWY_ATTR void countTwo(D d, const unichar *units, std::size_t length, unichar first, unichar second,
                       std::size_t *firstCount, std::size_t *secondCount) {
  const std::size_t n = hn::Lanes(d);
  const Vector<D> c1 = broadcast(d, first), c2 = broadcast(d, second);
  std::size_t total1 = 0, total2 = 0;
  std::size_t i = 0;
  while (i + n <= length) {
    Vector<D> counts1 = hn::Zero(d), counts2 = hn::Zero(d);
    const std::size_t blockEnd = i + std::min(length - i, kMaxLaneCount * n);
    for (; i + n <= blockEnd; i += n) {
      const Vector<D> v = load(d, units + i);
      counts1 = countUp(d, counts1, hn::Eq(v, c1));
      counts2 = countUp(d, counts2, hn::Eq(v, c2));
    }
    total1 += sumOfLanes(d, counts1);
    total2 += sumOfLanes(d, counts2);
  }
  for (; i < length; ++i) {
    total1 += units[i] == first;
    total2 += units[i] == second;
  }
  *firstCount = total1;
  *secondCount = total2;
}

template <class D>
HWY_ATTR bool areAllAscii(D d, const unichar *units, std::size_t length) {
  const std::size_t n = hn::Lanes(d);
  const Vector<D> highBits = broadcast(d, 0xff80), zero = hn::Zero(d);
  std::size_t i = 0;
  for (; i + kUnrolled * n <= length; i += kUnrolled * n) {
    const Vector<D> v01 = hn::Or(load(d, units + i), load(d, units + i + n));
    const Vector<D> v23 = hn::Or(load(d, units + i + 2 * n), load(d, units + i + 3 * n));
    if (!hn::AllTrue(d, hn::Eq(hn::And(hn::Or(v01, v23), highBits), zero))) return false;
  }
  for (; i + n <= length; i += n) {
    if (!hn::AllTrue(d, hn::Eq(hn::And(load(d, units + i), highBits), zero))) return false;
  }
  unsigned rest = 0;
  for (; i < length; ++i) rest |= units[i];
  return rest < 0x80;
}

/// Which of the positions from `place` on both anchors fit.
template <Kind K, class D>
HWY_INLINE Mask<D> anchorsFit(D d, const unichar *place, std::size_t distance, Vector<D> f0, Vector<D> f1,
                              Vector<D> f2, Vector<D> f3, Vector<D> s0, Vector<D> s1, Vector<D> s2,
                              Vector<D> s3) {
  return hn::And(isOneOf<K>(d, load(d, place), f0, f1, f2, f3),
                 isOneOf<K>(d, load(d, place + distance), s0, s1, s2, s3));
}

template <Kind K, class D>
HWY_ATTR std::size_t findPlace(D d, const unichar *units, std::size_t places, const UnicharAnchors &anchors,
                               const UnicharVerifier &verifier) {
  const std::size_t n = hn::Lanes(d);
  const std::size_t distance = anchors.distance;
  const std::array<unichar, 4> f = comparands<K>(anchors.first), s = comparands<K>(anchors.second);
  const Vector<D> f0 = broadcast(d, f[0]), f1 = broadcast(d, f[1]), f2 = broadcast(d, f[2]),
                  f3 = broadcast(d, f[3]);
  const Vector<D> s0 = broadcast(d, s[0]), s1 = broadcast(d, s[1]), s2 = broadcast(d, s[2]),
                  s3 = broadcast(d, s[3]);
  std::size_t i = 0;
  while (i < places && places >= n) {
    for (; i + kUnrolled * n <= places; i += kUnrolled * n) {
      const unichar *const place = units + i;
      const Mask<D> m0 = anchorsFit<K>(d, place, distance, f0, f1, f2, f3, s0, s1, s2, s3);
      const Mask<D> m1 = anchorsFit<K>(d, place + n, distance, f0, f1, f2, f3, s0, s1, s2, s3);
      const Mask<D> m2 = anchorsFit<K>(d, place + 2 * n, distance, f0, f1, f2, f3, s0, s1, s2, s3);
      const Mask<D> m3 = anchorsFit<K>(d, place + 3 * n, distance, f0, f1, f2, f3, s0, s1, s2, s3);
      if (!hn::AllFalse(d, hn::Or(hn::Or(m0, m1), hn::Or(m2, m3)))) break;
    }
    const std::size_t blockEnd = std::min(places, i + kUnrolled * n);
    while (i < blockEnd) {
      // The last vector lies over the one before it, so that it ends with the run. What did not match
      // there does not match again.
      const std::size_t start = std::min(i, places - n);
      Mask<D> fits = anchorsFit<K>(d, units + start, distance, f0, f1, f2, f3, s0, s1, s2, s3);
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

/// Calls `function` with the vectors that fit the length and with the kind, as types.
template <class Function>
std::size_t choose(std::size_t length, Kind kind, Function function) {
  const auto withVectors = [&](auto d) {
    if (kind == Kind::kOne) return function(d, std::integral_constant<Kind, Kind::kOne>());
    if (kind == Kind::kOneBit) return function(d, std::integral_constant<Kind, Kind::kOneBit>());
    return function(d, std::integral_constant<Kind, Kind::kAny>());
  };
  if (fillsWide(length)) return withVectors(Wide());
  return withVectors(Narrow());
}

std::size_t findInChoice(const unichar *units, std::size_t length, const UnicharChoice &choice) {
  return choose(length, kindOf(choice),
                [&](auto d, auto kind) { return find<kind()>(d, units, length, choice); });
}

std::size_t findLastInChoice(const unichar *units, std::size_t length, const UnicharChoice &choice) {
  return choose(length, kindOf(choice),
                [&](auto d, auto kind) { return findLast<kind()>(d, units, length, choice); });
}

std::size_t countInChoice(const unichar *units, std::size_t length, const UnicharChoice &choice) {
  return choose(length, kindOf(choice),
                [&](auto d, auto kind) { return count<kind()>(d, units, length, choice); });
}

std::size_t findPlaceOfAnchors(const unichar *units, std::size_t places, const UnicharAnchors &anchors,
                               const UnicharVerifier &verifier) {
  return choose(places, std::max(kindOf(anchors.first), kindOf(anchors.second)),
                [&](auto d, auto kind) { return findPlace<kind()>(d, units, places, anchors, verifier); });
}

void countBoth(const unichar *units, std::size_t length, unichar first, unichar second, std::size_t *firstCount,
               std::size_t *secondCount) {
  if (fillsWide(length)) return countTwo(Wide(), units, length, first, second, firstCount, secondCount);
  countTwo(Narrow(), units, length, first, second, firstCount, secondCount);
}

bool isAscii(const unichar *units, std::size_t length) {
  if (fillsWide(length)) return areAllAscii(Wide(), units, length);
  return areAllAscii(Narrow(), units, length);
}

}  // namespace HWY_NAMESPACE
}  // namespace nimbo::detail
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace nimbo::detail {

HWY_EXPORT(findInChoice);
HWY_EXPORT(findLastInChoice);
HWY_EXPORT(countInChoice);
HWY_EXPORT(countBoth);
HWY_EXPORT(isAscii);
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
  HWY_DYNAMIC_DISPATCH(countBoth)(units, length, first, second, firstCount, secondCount);
}

bool areAllUnicharsAscii(const unichar *units, std::size_t length) {
  return HWY_DYNAMIC_DISPATCH(isAscii)(units, length);
}

std::size_t findAnchors(const unichar *units, std::size_t places, const UnicharAnchors &anchors,
                        const UnicharVerifier &verifier) {
  return HWY_DYNAMIC_DISPATCH(findPlaceOfAnchors)(units, places, anchors, verifier);
}

}  // namespace nimbo::detail

#endif
