// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Vectors/UTF8Blocks.hpp"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "platform/Foundation/Unicode/UTF8.hpp"
#include "platform/Foundation/Vectors/UTF8Shuffles.hpp"

// This file is compiled once for each kind of vector; the best for the processor is chosen at run time.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/Foundation/Vectors/UTF8Blocks.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace nimbo::detail {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET == HWY_SCALAR

BlockProgress decode(const char *, std::size_t, char16_t *, std::size_t) {
  return {};
}

BlockProgress encode(const char16_t *, std::size_t, char *, std::size_t) {
  return {};
}

#else

using Bytes = hn::FixedTag<std::uint8_t, 16>;
using HalfBytes = hn::FixedTag<std::uint8_t, 8>;
using Units = hn::FixedTag<std::uint16_t, 8>;
using HalfUnits = hn::FixedTag<std::uint16_t, 4>;
using Wides = hn::FixedTag<std::uint32_t, 4>;
template <class D>
using Vector = hn::Vec<D>;

constexpr std::size_t kVectorBytes = 16;

/// So many bytes of a block must be part of longer sequences.
constexpr int kFewestForeignBytes = 24;

template <class D>
HWY_INLINE std::uint64_t bitsOf(D d, hn::Mask<D> mask) {
  std::uint8_t bytes[8] = {};
  hn::StoreMaskBits(d, mask, bytes);
  std::uint64_t bits;
  std::memcpy(&bits, bytes, sizeof bits);
  return bits;
}

HWY_INLINE Vector<Bytes> shuffled(Vector<Bytes> bytes, const Shuffle &shuffle) {
  return hn::TableLookupBytesOr0(bytes, hn::Load(Bytes(), shuffle.places.data()));
}

/// The bits of the bytes of a block that are below `limit` as signed numbers.
HWY_INLINE std::uint64_t bytesBelow(std::int8_t limit, const std::uint8_t *block) {
  // A vector as wide as the block, where there is one, needs no loop.
  const hn::CappedTag<std::int8_t, kForeignBlockBytes> d;
  const hn::Repartition<std::uint8_t, decltype(d)> bytes;
  std::uint64_t bits = 0;
  for (std::size_t i = 0; i < kForeignBlockBytes; i += hn::Lanes(d))
    bits |= bitsOf(d, hn::Lt(hn::BitCast(d, hn::LoadU(bytes, block + i)), hn::Set(d, limit))) << i;
  return bits;
}

/// Widens the bytes of a vector.
HWY_INLINE void widen(Vector<Bytes> bytes, std::uint16_t *out) {
  const Units d;
  hn::StoreU(hn::PromoteTo(d, hn::LowerHalf(bytes)), d, out);
  hn::StoreU(hn::PromoteTo(d, hn::UpperHalf(HalfBytes(), bytes)), d, out + hn::MaxLanes(d));
}

class GroupDecoder {
 public:
  HWY_INLINE GroupDecoder() {}

  /// Six characters; false when one is neither ASCII nor a valid sequence of two bytes.
  HWY_INLINE bool decodeSix(Vector<Bytes> spread, std::uint16_t *out) const {
    const Units d;
    const auto lanes = hn::BitCast(d, spread);
    hn::StoreU(hn::Or(hn::And(lanes, sixLow_), hn::ShiftRight<2>(hn::And(lanes, sixHigh_))), d, out);
    const auto isASCII = hn::Lt(lanes, sixASCIIEnd_);
    const auto isPair = hn::Lt(hn::Sub(lanes, sixPairBegin_), sixPairSpan_);
    return hn::AllTrue(d, hn::Or(isASCII, isPair));
  }

  /// Four characters; false when one is neither of these nor a valid sequence of three bytes.
  HWY_INLINE bool decodeFour(Vector<Bytes> spread, std::uint16_t *out) const {
    const Wides d;
    const auto lanes = hn::BitCast(d, spread);
    const auto characters = hn::Or(hn::Or(hn::And(lanes, low_), hn::ShiftRight<2>(hn::And(lanes, middle_))),
                                   hn::ShiftRight<4>(hn::And(lanes, high_)));
    hn::StoreU(hn::TruncateTo(HalfUnits(), characters), HalfUnits(), out);
    const auto isASCII = hn::Lt(lanes, asciiEnd_);
    const auto isPair = hn::Lt(hn::Sub(lanes, pairBegin_), pairSpan_);
    const auto isTriple =
        hn::And(hn::Lt(hn::Sub(lanes, tripleBegin_), tripleSpan_), hn::Gt(characters, lastOfPairs_));
    const auto isSurrogate = hn::Lt(hn::Sub(characters, surrogateBegin_), surrogateSpan_);
    return hn::AllTrue(d, hn::Or(hn::Or(isASCII, isPair), hn::AndNot(isSurrogate, isTriple)));
  }

 private:
  Vector<Units> sixLow_ = hn::Set(Units(), 0x7f);
  Vector<Units> sixHigh_ = hn::Set(Units(), 0x1f00);
  Vector<Units> sixASCIIEnd_ = hn::Set(Units(), 0x80);
  Vector<Units> sixPairBegin_ = hn::Set(Units(), 0xc200);
  Vector<Units> sixPairSpan_ = hn::Set(Units(), 0x1e00);
  Vector<Wides> low_ = hn::Set(Wides(), 0x7f);
  Vector<Wides> middle_ = hn::Set(Wides(), 0x3f00);
  Vector<Wides> high_ = hn::Set(Wides(), 0x0f0000);
  Vector<Wides> asciiEnd_ = hn::Set(Wides(), 0x80);
  Vector<Wides> pairBegin_ = hn::Set(Wides(), 0xc200);
  Vector<Wides> pairSpan_ = hn::Set(Wides(), 0x1e00);
  Vector<Wides> tripleBegin_ = hn::Set(Wides(), 0xe00000);
  Vector<Wides> tripleSpan_ = hn::Set(Wides(), 0x100000);
  Vector<Wides> lastOfPairs_ = hn::Set(Wides(), 0x7ff);
  Vector<Wides> surrogateBegin_ = hn::Set(Wides(), 0xd800);
  Vector<Wides> surrogateSpan_ = hn::Set(Wides(), 0x800);
};

BlockProgress decode(const char *bytes, std::size_t length, char16_t *units, std::size_t capacity) {
  const auto *const begin = reinterpret_cast<const std::uint8_t *>(bytes), *in = begin;
  auto *const outBegin = reinterpret_cast<std::uint16_t *>(units), *out = outBegin;
  const auto progress = [&] {
    return BlockProgress{static_cast<std::size_t>(in - begin), static_cast<std::size_t>(out - outBegin)};
  };
  const GroupDecoder decoder;
  while (begin + length - in >= static_cast<std::ptrdiff_t>(kForeignBlockBytes) &&
         outBegin + capacity - out >= static_cast<std::ptrdiff_t>(kForeignBlockBytes)) {
    const std::uint64_t foreign = bytesBelow(0, in);
    if (std::popcount(foreign) < kFewestForeignBytes) break;
    // A byte ends a character unless a continuation byte follows.
    std::uint64_t ends = ~(bytesBelow(-0x40, in) >> 1);
    const std::uint8_t *const block = in, *const lastVector = in + kForeignBlockBytes - kVectorBytes;
    do {
      const auto vector = hn::LoadU(Bytes(), in);
      const std::uint64_t endsOfGroup = ends & (kSpreading.groups.size() - 1);
      if (endsOfGroup == kEndsOfFourTriples) {
        // A branch that is foreseen lets the next group begin before this one is done.
        if (!decoder.decodeFour(shuffled(vector, kSpreading.shuffles.back()), out)) return progress();
        in += 12;
        out += 4;
        ends >>= 12;
        continue;
      }
      if (const std::uint64_t rest = foreign >> (in - block); (rest & 0xf) == 0) {
        widen(vector, out);
        const int run = std::countr_zero(rest | std::uint64_t{1} << kVectorBytes);
        in += run;
        out += run;
        ends >>= run;
        continue;
      }
      const CharacterGroup &group = kSpreading.groups[endsOfGroup];
      if (group.bytes == 0) return progress();
      const auto spread = shuffled(vector, kSpreading.shuffles[group.shuffle]);
      const bool isSix = group.shuffle < kGroupsOfSix;
      if (!(isSix ? decoder.decodeSix(spread, out) : decoder.decodeFour(spread, out))) return progress();
      in += group.bytes;
      out += isSix ? 6 : 4;
      ends >>= group.bytes;
    } while (in <= lastVector);
  }
  return progress();
}

/// How many units are ASCII and have been narrowed, in steps of two vectors, of at most `length`.
HWY_INLINE std::size_t narrowASCII(const std::uint16_t *units, std::size_t length, std::uint8_t *out) {
  const Units d;
  constexpr std::size_t kStep = 2 * hn::MaxLanes(d);
  std::size_t done = 0;
  for (; length - done >= kStep; done += kStep) {
    const auto low = hn::LoadU(d, units + done), high = hn::LoadU(d, units + done + hn::MaxLanes(d));
    if (!hn::AllTrue(d, hn::Lt(hn::Or(low, high), hn::Set(d, 0x80)))) break;
    hn::StoreU(hn::ConcatEven(Bytes(), hn::BitCast(Bytes(), high), hn::BitCast(Bytes(), low)), Bytes(),
               out + done);
  }
  return done;
}

/// Units below U+0800; how many bytes they take.
HWY_INLINE std::size_t encodeEight(Vector<Units> units, std::uint8_t *out) {
  const Units d;
  const auto isASCII = hn::Lt(units, hn::Set(d, 0x80));
  const auto lead = hn::ShiftRight<6>(units);
  const auto continuation = hn::ShiftLeft<8>(hn::And(units, hn::Set(d, 0x3f)));
  const auto pairs = hn::Or(hn::Or(lead, continuation), hn::Set(d, 0x80c0));
  const auto lanes = hn::BitCast(Bytes(), hn::IfThenElse(isASCII, units, pairs));
  const std::uint64_t bits = bitsOf(d, isASCII);
  hn::StoreU(shuffled(lanes, kGatheringOfEight.shuffles[bits]), Bytes(), out);
  return 16 - static_cast<std::size_t>(std::popcount(bits));
}

/// Units that are no surrogates; how many bytes they take.
HWY_INLINE std::size_t encodeFour(Vector<HalfUnits> units, std::uint8_t *out) {
  const Wides d;
  const auto characters = hn::PromoteTo(d, units);
  const auto isASCII = hn::Lt(characters, hn::Set(d, 0x80));
  const auto isShort = hn::Lt(characters, hn::Set(d, 0x800));
  const auto last = hn::Or(hn::And(characters, hn::Set(d, 0x3f)), hn::Set(d, 0x80));
  const auto middle = hn::And(hn::ShiftRight<6>(characters), hn::Set(d, 0x3f));
  const auto pairs = hn::Or(hn::Or(middle, hn::Set(d, 0xc0)), hn::ShiftLeft<8>(last));
  const auto triples = hn::Or(hn::Or(hn::ShiftRight<12>(characters), hn::ShiftLeft<8>(middle)),
                              hn::Or(hn::ShiftLeft<16>(last), hn::Set(d, 0x80e0)));
  const auto lanes = hn::IfThenElse(isASCII, characters, hn::IfThenElse(isShort, pairs, triples));
  const std::uint64_t bits = bitsOf(d, isASCII) | bitsOf(d, isShort) << 4;
  hn::StoreU(shuffled(hn::BitCast(Bytes(), lanes), kGatheringOfFour.shuffles[bits]), Bytes(), out);
  return 12 - static_cast<std::size_t>(std::popcount(bits));
}

/// Four characters in two halves each; 0 when the units are anything else.
HWY_INLINE std::size_t encodePairs(Vector<Units> units, std::uint8_t *out) {
  const Wides d;
  const auto halves = hn::BitCast(d, units);
  if (!hn::AllTrue(d, hn::Eq(hn::And(halves, hn::Set(d, 0xfc00fc00)), hn::Set(d, 0xdc00d800)))) return 0;
  const auto above = hn::Or(hn::ShiftLeft<10>(hn::And(halves, hn::Set(d, 0x3ff))),
                            hn::And(hn::ShiftRight<16>(halves), hn::Set(d, 0x3ff)));
  const auto characters = hn::Add(above, hn::Set(d, 0x10000));
  const auto first =
      hn::Or(hn::ShiftRight<18>(characters), hn::ShiftRight<4>(hn::And(characters, hn::Set(d, 0x3f000))));
  const auto last = hn::Or(hn::ShiftLeft<10>(hn::And(characters, hn::Set(d, 0xfc0))),
                           hn::ShiftLeft<24>(hn::And(characters, hn::Set(d, 0x3f))));
  const auto sequences = hn::Or(hn::Or(first, last), hn::Set(d, 0x808080f0));
  hn::StoreU(hn::BitCast(Bytes(), sequences), Bytes(), out);
  return 16;
}

/// How many bytes the units take, at most 24; 0 when some are surrogates and some not.
HWY_INLINE std::size_t encodeBlock(Vector<Units> units, std::uint8_t *out) {
  const Units d;
  if (hn::AllTrue(d, hn::Lt(units, hn::Set(d, 0x800)))) return encodeEight(units, out);
  if (!hn::AllFalse(d, hn::Lt(hn::Sub(units, hn::Set(d, 0xd800)), hn::Set(d, 0x800))))
    return encodePairs(units, out);
  const std::size_t first = encodeFour(hn::LowerHalf(units), out);
  return first + encodeFour(hn::UpperHalf(HalfUnits(), units), out + first);
}

BlockProgress encode(const char16_t *characters, std::size_t length, char *bytes, std::size_t capacity) {
  const Units d;
  constexpr std::size_t kUnits = hn::MaxLanes(d);
  const auto *const units = reinterpret_cast<const std::uint16_t *>(characters);
  auto *const out = reinterpret_cast<std::uint8_t *>(bytes);
  std::size_t consumed = 0, written = 0;
  while (length - consumed >= kUnits && capacity - written >= kEncodingRoomBytes) {
    const std::size_t room = capacity - written;
    if (const std::size_t run =
            narrowASCII(units + consumed, std::min(length - consumed, room), out + written)) {
      consumed += run;
      written += run;
      continue;
    }
    const std::size_t size = encodeBlock(hn::LoadU(d, units + consumed), out + written);
    if (size == 0) return {consumed, written};
    consumed += kUnits;
    written += size;
  }
  const std::size_t rest = length - consumed;
  if (rest > 0 && rest < kUnits && capacity - written >= kEncodingRoomBytes) {
    // Zeros make the block whole, and take a byte each at its end.
    alignas(16) std::uint16_t padded[kUnits] = {};
    std::memcpy(padded, units + consumed, rest * sizeof(char16_t));
    const std::size_t size = encodeBlock(hn::Load(d, padded), out + written);
    if (size > 0) return {length, written + size - (kUnits - rest)};
  }
  return {consumed, written};
}

#endif

std::size_t countBytes(const char16_t *characters, std::size_t length) {
  const hn::ScalableTag<std::uint16_t> d;
  const std::size_t lanes = hn::Lanes(d);
  // What a lane can count, two for each unit.
  constexpr std::size_t kMostSteps = 0x7fff;
  const auto *const units = reinterpret_cast<const std::uint16_t *>(characters);
  const auto one = hn::Set(d, 1), two = hn::Set(d, 2), kind = hn::Set(d, 0xfc00);
  std::size_t i = 0, more = 0;
  while (i + lanes < length) {
    auto counts = hn::Zero(d);
    for (std::size_t step = 0; step < kMostSteps && i + lanes < length; ++step, i += lanes) {
      const auto block = hn::LoadU(d, units + i), next = hn::LoadU(d, units + i + 1);
      counts = hn::Add(counts, hn::IfThenElseZero(hn::Gt(block, hn::Set(d, 0x7f)), one));
      counts = hn::Add(counts, hn::IfThenElseZero(hn::Gt(block, hn::Set(d, 0x7ff)), one));
      const auto isHigh = hn::Eq(hn::And(block, kind), hn::Set(d, 0xd800));
      const auto isLow = hn::Eq(hn::And(next, kind), hn::Set(d, 0xdc00));
      counts = hn::Sub(counts, hn::IfThenElseZero(hn::And(isHigh, isLow), two));
    }
    HWY_ALIGN std::uint16_t sums[hn::MaxLanes(d)];
    hn::Store(counts, d, sums);
    for (std::size_t lane = 0; lane < lanes; ++lane) more += sums[lane];
  }
  for (; i < length; ++i) {
    more += utf8Length(units[i]) - 1;
    if (i + 1 < length && isHighSurrogate(units[i]) && isLowSurrogate(units[i + 1])) more -= 2;
  }
  return length + more;
}

}  // namespace HWY_NAMESPACE
}  // namespace nimbo::detail
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace nimbo::detail {

HWY_EXPORT(decode);
HWY_EXPORT(encode);
HWY_EXPORT(countBytes);

BlockProgress decodeForeignBlocks(const char *bytes, std::size_t length, char16_t *out, std::size_t capacity) {
  return HWY_DYNAMIC_DISPATCH(decode)(bytes, length, out, capacity);
}

BlockProgress encodeBlocks(const char16_t *units, std::size_t length, char *out, std::size_t capacity) {
  return HWY_DYNAMIC_DISPATCH(encode)(units, length, out, capacity);
}

std::size_t lengthInUTF8(const char16_t *units, std::size_t length) {
  return HWY_DYNAMIC_DISPATCH(countBytes)(units, length);
}

}  // namespace nimbo::detail

#endif
