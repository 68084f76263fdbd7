// SPDX-License-Identifier: Apache-2.0
#include "Classes/Characters/AsciiSetKernels.hpp"

// This file is compiled once for each kind of vector; the best for the processor is chosen at run time.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "Classes/Characters/AsciiSetKernels.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace nimbo::detail {
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

std::size_t findInSet(const unichar *units, std::size_t length, const AsciiSet &set) {
  std::size_t i = 0;
  while (i < length && !set.contains(units[i])) ++i;
  return i;
}

std::size_t countInSet(const unichar *units, std::size_t length, const AsciiSet &set) {
  std::size_t total = 0;
  for (std::size_t i = 0; i < length; ++i) total += set.contains(units[i]);
  return total;
}

#else

namespace hn = hwy::HWY_NAMESPACE;
/// The vectors of the processor, and short ones for runs that do not fill one of them.
using Wide = hn::ScalableTag<std::uint16_t>;
using Narrow = hn::CappedTag<std::uint16_t, 8>;

/// How many vectors a loop looks at before it branches.
constexpr std::size_t kUnrolled = 4;

/// The bit of each row of a set; none from 128 on.
alignas(16) constexpr std::uint8_t kBits[16] = {1, 2, 4, 8, 16, 32, 64, 128};

/// What tells the members of a set: the row of a unit is looked up by its low four bits, the bit in the row by
/// the others.
template <class D>
class Members {
 public:
  using Vector = hn::Vec<D>;
  using Bytes = hn::Repartition<std::uint8_t, D>;

  HWY_INLINE explicit Members(const AsciiSet &set)
      : rows_(hn::LoadDup128(Bytes(), set.rows.data())),
        bits_(hn::LoadDup128(Bytes(), kBits)),
        firstOther_(hn::Set(D(), set.hasOthers ? 127 : 0xffff)) {}

  HWY_INLINE hn::Mask<D> of(const unichar *units) const {
    const D d;
    const Vector v = hn::LoadU(d, reinterpret_cast<const std::uint16_t *>(units));
    const Vector low = hn::And(v, hn::Set(d, 15)), high = hn::Min(hn::ShiftRight<4>(v), hn::Set(d, 15));
    const Vector row = hn::BitCast(d, hn::TableLookupBytes(rows_, hn::BitCast(Bytes(), low)));
    const Vector bit = hn::BitCast(d, hn::TableLookupBytes(bits_, hn::BitCast(Bytes(), high)));
    const hn::Mask<D> isAscii = hn::Ne(hn::And(hn::And(row, bit), hn::Set(d, 0xff)), hn::Zero(d));
    return hn::Or(isAscii, hn::Gt(v, firstOther_));
  }

 private:
  hn::Vec<Bytes> rows_, bits_;
  Vector firstOther_;
};

template <class D>
HWY_ATTR std::size_t find(D d, const unichar *units, std::size_t length, const AsciiSet &set) {
  const std::size_t n = hn::Lanes(d);
  std::size_t i = 0;
  if (length >= n) {
    const Members<D> members(set);
    for (; i + kUnrolled * n <= length; i += kUnrolled * n) {
      const hn::Mask<D> m01 = hn::Or(members.of(units + i), members.of(units + i + n));
      const hn::Mask<D> m23 = hn::Or(members.of(units + i + 2 * n), members.of(units + i + 3 * n));
      if (!hn::AllFalse(d, hn::Or(m01, m23))) break;
    }
    while (i < length) {
      // The last vector lies over the one before it, so that it ends with the run.
      const std::size_t start = i + n <= length ? i : length - n;
      const std::intptr_t at = hn::FindFirstTrue(d, members.of(units + start));
      if (at >= 0) return start + static_cast<std::size_t>(at);
      i = start + n;
    }
    return length;
  }
  while (i < length && !set.contains(units[i])) ++i;
  return i;
}

template <class D>
HWY_ATTR std::size_t count(D d, const unichar *units, std::size_t length, const AsciiSet &set) {
  const std::size_t n = hn::Lanes(d);
  std::size_t total = 0, i = 0;
  if (length >= n) {
    const Members<D> members(set);
    for (; i + n <= length; i += n) total += hn::CountTrue(d, members.of(units + i));
  }
  for (; i < length; ++i) total += set.contains(units[i]);
  return total;
}

std::size_t findInSet(const unichar *units, std::size_t length, const AsciiSet &set) {
  if (length >= hn::Lanes(Wide())) return find(Wide(), units, length, set);
  return find(Narrow(), units, length, set);
}

std::size_t countInSet(const unichar *units, std::size_t length, const AsciiSet &set) {
  if (length >= hn::Lanes(Wide())) return count(Wide(), units, length, set);
  return count(Narrow(), units, length, set);
}

#endif

}  // namespace HWY_NAMESPACE
}  // namespace nimbo::detail
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace nimbo::detail {

HWY_EXPORT(findInSet);
HWY_EXPORT(countInSet);

std::size_t findOneOfAsciiSet(const unichar *units, std::size_t length, const AsciiSet &set) {
  return HWY_DYNAMIC_DISPATCH(findInSet)(units, length, set);
}

std::size_t countOneOfAsciiSet(const unichar *units, std::size_t length, const AsciiSet &set) {
  return HWY_DYNAMIC_DISPATCH(countInSet)(units, length, set);
}

}  // namespace nimbo::detail

#endif
