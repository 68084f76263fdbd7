// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Unicode/UTF8Conversion.hpp"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "platform/Foundation/Unicode/UTF8.hpp"

namespace nimbo {
namespace {

/// Characters that the loops for ASCII take at a time.
constexpr std::size_t kBlock = 16;

using Bytes = std::uint8_t __attribute__((vector_size(kBlock)));
using Units = std::uint16_t __attribute__((vector_size(2 * kBlock)));

constexpr std::uint64_t kHighBits = 0x8080808080808080;
constexpr std::uint64_t kAboveASCII = 0xff80ff80ff80ff80;

std::uint64_t wordAt(const void *place) {
  std::uint64_t word;
  std::memcpy(&word, place, sizeof word);
  return word;
}

/// The bytes before the first one, in memory, that `marks` marks; 8 when none is.
std::size_t bytesBefore(std::uint64_t marks) {
  return static_cast<std::size_t>(std::endian::native == std::endian::little ? std::countr_zero(marks)
                                                                             : std::countl_zero(marks)) /
         8;
}

void widen(const char *bytes, char16_t *out) {
  Bytes block;
  std::memcpy(&block, bytes, sizeof block);
  const Units units = __builtin_convertvector(block, Units);
  std::memcpy(out, &units, sizeof units);
}

void narrow(const char16_t *units, char *out) {
  Units block;
  std::memcpy(&block, units, sizeof block);
  const Bytes bytes = __builtin_convertvector(block, Bytes);
  std::memcpy(out, &bytes, sizeof bytes);
}

/// Whether the bytes, fewer than a whole sequence, begin one.
bool beginsSequence(const unsigned char *bytes, std::size_t length) {
  const unsigned char lead = bytes[0];
  const std::size_t whole = lead < 0xc2 ? 0 : lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : lead < 0xf5 ? 4 : 0;
  if (length >= whole) return false;
  if (length == 1) return true;
  const unsigned char low = lead == 0xe0 ? 0xa0 : lead == 0xf0 ? 0x90 : 0x80;
  const unsigned char high = lead == 0xed ? 0x9f : lead == 0xf4 ? 0x8f : 0xbf;
  return bytes[1] >= low && bytes[1] <= high && (length == 2 || (bytes[2] & 0xc0) == 0x80);
}

}  // namespace

ConversionProgress convertUTF8ToUTF16(const char *bytes, std::size_t length, char16_t *out,
                                      std::size_t capacity) {
  const char *in = bytes;
  const char *const end = bytes + length;
  char16_t *to = out;
  char16_t *const toEnd = out + capacity;
  const auto stop = [&](ConversionEnd why) {
    return ConversionProgress{why, static_cast<std::size_t>(in - bytes), static_cast<std::size_t>(to - out)};
  };

  while (in < end) {
    // Whole blocks are written even where only their beginning is ASCII; what follows overwrites the rest.
    while (static_cast<std::size_t>(end - in) >= kBlock && static_cast<std::size_t>(toEnd - to) >= kBlock) {
      const std::uint64_t first = wordAt(in) & kHighBits;
      const std::uint64_t second = wordAt(in + 8) & kHighBits;
      if (first & std::uint64_t{0x80} << (std::endian::native == std::endian::little ? 0 : 56)) break;
      widen(in, to);
      const std::size_t count = first ? bytesBefore(first) : 8 + bytesBefore(second);
      in += count;
      to += count;
      if (count < kBlock) break;
    }
    // Then characters one by one, until a run of ASCII pays for another block.
    while (in < end) {
      const auto *const s = reinterpret_cast<const unsigned char *>(in);
      const auto left = static_cast<std::size_t>(end - in);
      const auto room = static_cast<std::size_t>(toEnd - to);
      if (room == 0) return stop(ConversionEnd::outputFull);
      const unsigned lead = s[0];
      if (lead < 0x80) {
        *to++ = static_cast<char16_t>(lead);
        ++in;
        if (left > kBlock && room > kBlock && !(wordAt(in) & kHighBits)) break;
        continue;
      }
      if (lead >= 0xe0 && lead < 0xf0 && left >= 3) {
        const unsigned a = s[1] ^ 0x80u;
        const unsigned b = s[2] ^ 0x80u;
        const unsigned unit = (lead & 0xf) << 12 | a << 6 | b;
        if ((a | b) < 0x40 && unit >= 0x800 && (unit & 0xf800) != 0xd800) {
          *to++ = static_cast<char16_t>(unit);
          in += 3;
          continue;
        }
        return stop(ConversionEnd::malformed);
      }
      if (lead >= 0xc2 && lead < 0xe0 && left >= 2) {
        const unsigned a = s[1] ^ 0x80u;
        if (a >= 0x40) return stop(ConversionEnd::malformed);
        *to++ = static_cast<char16_t>((lead & 0x1f) << 6 | a);
        in += 2;
        continue;
      }
      if (lead >= 0xf0 && lead < 0xf5 && left >= 4) {
        const unsigned a = s[1] ^ 0x80u;
        const unsigned b = s[2] ^ 0x80u;
        const unsigned c = s[3] ^ 0x80u;
        const unsigned character = (lead & 7) << 18 | a << 12 | b << 6 | c;
        if ((a | b | c) >= 0x40 || character < 0x10000 || character > 0x10ffff)
          return stop(ConversionEnd::malformed);
        if (room < 2) return stop(ConversionEnd::outputFull);
        *to++ = static_cast<char16_t>(0xd7c0 + (character >> 10));
        *to++ = static_cast<char16_t>(0xdc00 + (character & 0x3ff));
        in += 4;
        continue;
      }
      return stop(beginsSequence(s, left) ? ConversionEnd::cut : ConversionEnd::malformed);
    }
  }
  return stop(ConversionEnd::complete);
}

ConversionProgress convertUTF16ToUTF8(const char16_t *units, std::size_t length, char *out,
                                      std::size_t capacity) {
  const char16_t *in = units;
  const char16_t *const end = units + length;
  char *to = out;
  char *const toEnd = out + capacity;
  const auto stop = [&](ConversionEnd why) {
    return ConversionProgress{why, static_cast<std::size_t>(in - units), static_cast<std::size_t>(to - out)};
  };

  while (in < end) {
    while (static_cast<std::size_t>(end - in) >= kBlock && static_cast<std::size_t>(toEnd - to) >= kBlock) {
      const std::uint64_t all = wordAt(in) | wordAt(in + 4) | wordAt(in + 8) | wordAt(in + 12);
      if (all & kAboveASCII) break;
      narrow(in, to);
      in += kBlock;
      to += kBlock;
    }
    while (in < end) {
      char32_t character = *in;
      std::size_t count = 1;
      if (isSurrogate(*in)) {
        if (isLowSurrogate(*in)) return stop(ConversionEnd::malformed);
        if (end - in == 1) return stop(ConversionEnd::cut);
        if (!isLowSurrogate(in[1])) return stop(ConversionEnd::malformed);
        character = 0x10000 + ((character - 0xd800) << 10) + (in[1] - 0xdc00u);
        count = 2;
      }
      const std::size_t size = character < 0x80 ? 1 : character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
      if (static_cast<std::size_t>(toEnd - to) < size) return stop(ConversionEnd::outputFull);
      putUTF8(character, to);
      in += count;
      to += size;
      if (size == 1 && static_cast<std::size_t>(end - in) >= kBlock && !(wordAt(in) & kAboveASCII)) break;
    }
  }
  return stop(ConversionEnd::complete);
}

}  // namespace nimbo
