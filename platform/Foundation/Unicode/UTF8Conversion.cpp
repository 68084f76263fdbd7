// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Unicode/UTF8Conversion.hpp"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "platform/Foundation/Unicode/UTF8.hpp"
#include "platform/Foundation/Vectors/UTF8Blocks.hpp"

namespace nimbo {
namespace {

/// How many bytes of ASCII are taken at a time, and between words of other scripts.
constexpr std::size_t kBlock = 16, kHalfBlock = 8;

/// Shorter texts are first tried as ASCII, as most names and keys are.
constexpr std::size_t kTriedLength = 64;

/// How many bytes of a block are parts of longer sequences where vectors pay, and how far apart it is looked.
constexpr std::uint64_t kFewestForeignBytes = 10;
constexpr std::ptrdiff_t kBytesBetweenLooks = 16;

constexpr std::uint64_t kHighBits = 0x8080808080808080;
constexpr std::uint64_t kFirstHighBit = std::uint64_t{0x80}
                                        << (std::endian::native == std::endian::little ? 0 : 56);

std::uint64_t highBitsAt(const char *place) {
  std::uint64_t word;
  std::memcpy(&word, place, sizeof word);
  return word & kHighBits;
}

/// The bytes before the first one, in memory, that `marks` marks; 8 when none is.
std::size_t bytesBefore(std::uint64_t marks) {
  return static_cast<std::size_t>(std::endian::native == std::endian::little ? std::countr_zero(marks)
                                                                             : std::countl_zero(marks)) /
         8;
}

template <class Element, std::size_t Count>
struct VectorOf;
template <std::size_t Count>
struct VectorOf<char, Count> {
  typedef std::uint8_t Type __attribute__((vector_size(Count)));
  static constexpr std::uint32_t kForeignBits = 0x80808080;
};
template <std::size_t Count>
struct VectorOf<char16_t, Count> {
  typedef std::uint16_t Type __attribute__((vector_size(2 * Count)));
  static constexpr std::uint32_t kForeignBits = 0xff80ff80;
};

/// Widens or narrows some characters, which must be ASCII.
template <std::size_t Count, class In, class Out>
void copyCharacters(const In *in, Out *out) {
  typename VectorOf<In, Count>::Type block;
  std::memcpy(&block, in, sizeof block);
  const auto converted = __builtin_convertvector(block, typename VectorOf<Out, Count>::Type);
  std::memcpy(out, &converted, sizeof converted);
}

/// The same; false, and nothing is done, when some are not ASCII.
template <std::size_t Count, class In, class Out>
bool copyASCIIGroup(const In *in, Out *out) {
  std::uint32_t words[Count * sizeof(In) / sizeof(std::uint32_t)], all = 0;
  std::memcpy(words, in, sizeof words);
  for (const std::uint32_t word : words) all |= word;
  if (all & VectorOf<In, Count>::kForeignBits) return false;
  copyCharacters<Count>(in, out);
  return true;
}

/// Converts ASCII between its two forms, up to the end or to a group that has other characters; how many.
template <class In, class Out>
std::size_t copyASCII(const In *in, std::size_t length, Out *out) {
  constexpr std::size_t kGroup = 8, kHalfGroup = 4;
  std::size_t done = 0;
  if (length < kHalfGroup) {
    for (; done < length && static_cast<std::make_unsigned_t<In>>(in[done]) < 0x80; ++done)
      out[done] = static_cast<Out>(in[done]);
  } else if (length < kGroup) {
    const std::size_t last = length - kHalfGroup;
    if (copyASCIIGroup<kHalfGroup>(in, out) && copyASCIIGroup<kHalfGroup>(in + last, out + last)) done = length;
  } else {
    while (done < length) {
      // The last group lies over the one before it.
      const std::size_t at = std::min(done, length - kGroup);
      if (!copyASCIIGroup<kGroup>(in + at, out + at)) break;
      done = at + kGroup;
    }
  }
  return done;
}

/// Whether a block is mostly parts of longer sequences.
bool isForeign(const char *block) {
  // The highest byte of the product is the sum of the bytes.
  const std::uint64_t counts = (highBitsAt(block) >> 7) + (highBitsAt(block + kHalfBlock) >> 7);
  return counts * 0x0101010101010101 >> 56 >= kFewestForeignBytes;
}

/// Where a decoder stands that has room for as many units as there are bytes, which no text exceeds.
struct Decoder {
  const char *in;
  char16_t *out;

  /// Goes on up to `end`, or to where the bytes are not valid.
  ConversionEnd decode(const char *end);
};

ConversionEnd Decoder::decode(const char *const end) {
  // Local positions stay in registers; a step of constant length in each branch lets the next one begin early.
  const char *from = in;
  char16_t *to = out;
  const char *nextLook = from;
  const auto stop = [&](ConversionEnd why) {
    in = from;
    out = to;
    return why;
  };
  const auto left = [&] { return static_cast<std::size_t>(end - from); };

  if (left() < kTriedLength) {
    const std::size_t run = copyASCII(from, left(), to);
    from += run;
    to += run;
  }
  while (from < end) {
    // Whole blocks are written even where only their beginning is ASCII; what follows overwrites the rest.
    while (left() >= kBlock) {
      const std::uint64_t first = highBitsAt(from);
      if (first & kFirstHighBit) break;
      copyCharacters<kBlock>(from, to);
      const std::size_t count =
          first ? bytesBefore(first) : kHalfBlock + bytesBefore(highBitsAt(from + kHalfBlock));
      from += count;
      to += count;
      if (count < kBlock) break;
    }
    // Then short runs and characters one by one, until a run of ASCII pays for another block.
    while (from < end) {
      const auto *const s = reinterpret_cast<const unsigned char *>(from);
      const unsigned lead = s[0];
      if (lead < 0x80) {
        if (left() < kHalfBlock) {
          *to++ = static_cast<char16_t>(lead);
          ++from;
          continue;
        }
        const std::uint64_t foreign = highBitsAt(from);
        if (!foreign && left() >= kBlock) break;
        copyCharacters<kHalfBlock>(from, to);
        const std::size_t count = bytesBefore(foreign);
        from += count;
        to += count;
        continue;
      }
      if (lead < 0xf0 && from >= nextLook && left() >= detail::kForeignBlockBytes) {
        nextLook = from + kBytesBetweenLooks;
        if (isForeign(from)) {
          const detail::BlockProgress done = detail::decodeForeignBlocks(from, left(), to, left());
          from += done.consumed;
          to += done.written;
          nextLook += done.consumed;
          if (done.consumed > 0) continue;
        }
      }
      if (lead >= 0xe0 && lead < 0xf0 && left() >= 3) {
        const unsigned a = s[1] ^ 0x80u, b = s[2] ^ 0x80u;
        const unsigned unit = (lead & 0xf) << 12 | a << 6 | b;
        if ((a | b) >= 0x40 || unit < 0x800 || isSurrogate(static_cast<char16_t>(unit)))
          return stop(ConversionEnd::malformed);
        *to++ = static_cast<char16_t>(unit);
        from += 3;
      } else if (lead >= 0xc2 && lead < 0xe0 && left() >= 2) {
        const unsigned a = s[1] ^ 0x80u;
        if (a >= 0x40) return stop(ConversionEnd::malformed);
        *to++ = static_cast<char16_t>((lead & 0x1f) << 6 | a);
        from += 2;
      } else if (lead >= 0xf0 && lead < 0xf5 && left() >= 4) {
        const unsigned a = s[1] ^ 0x80u, b = s[2] ^ 0x80u, c = s[3] ^ 0x80u;
        const unsigned character = (lead & 7) << 18 | a << 12 | b << 6 | c;
        if ((a | b | c) >= 0x40 || character < 0x10000 || character > 0x10ffff)
          return stop(ConversionEnd::malformed);
        *to++ = highSurrogate(character);
        *to++ = lowSurrogate(character);
        from += 4;
      } else {
        return stop(isCutUTF8({from, left()}) ? ConversionEnd::cut : ConversionEnd::malformed);
      }
    }
  }
  return stop(ConversionEnd::complete);
}

constexpr char16_t kReplacement = 0xfffd;
constexpr std::string_view kReplacementBytes = "\xef\xbf\xbd";

/// What the byte of a lone surrogate is added to.
constexpr char16_t kEscape = 0xdc00;

/// Texts of so many units are encoded on the stack, without a look at how many bytes they take.
constexpr std::size_t kShortLength = 256;

/// The number of bytes written; nothing when the units are refused.
std::optional<std::size_t> encode(std::u16string_view units, char *out, std::size_t capacity,
                                  InvalidInput invalid) {
  std::size_t consumed = 0, written = 0;
  for (;;) {
    const ConversionProgress done =
        convertUTF16ToUTF8(units.data() + consumed, units.size() - consumed, out + written, capacity - written);
    consumed += done.consumed;
    written += done.written;
    if (done.end == ConversionEnd::complete) return written;
    const char16_t lone = units[consumed++];
    if (invalid == InvalidInput::replaced) {
      written += kReplacementBytes.copy(out + written, kReplacementBytes.size());
    } else if (invalid == InvalidInput::escaped && lone >= kEscape + 0x80 && lone <= kEscape + 0xff) {
      out[written++] = static_cast<char>(lone - kEscape);
    } else {
      return std::nullopt;
    }
  }
}

}  // namespace

ConversionProgress convertUTF8ToUTF16(const char *bytes, std::size_t length, char16_t *out,
                                      std::size_t capacity) {
  Decoder decoder{bytes, out};
  const char *const end = bytes + length;
  char16_t *const outEnd = out + capacity;
  const auto stop = [&](ConversionEnd why) {
    return ConversionProgress{why, static_cast<std::size_t>(decoder.in - bytes),
                              static_cast<std::size_t>(decoder.out - out)};
  };
  for (;;) {
    const char *const start = decoder.in;
    const auto left = static_cast<std::size_t>(end - start),
               room = static_cast<std::size_t>(outEnd - decoder.out);
    // So many bytes have room whatever they are.
    const ConversionEnd part = decoder.decode(start + std::min(left, room));
    if (left <= room || part == ConversionEnd::malformed) return stop(part);
    if (decoder.in > start) continue;
    // The next character has more bytes than there is room for units.
    if (room == 0) return stop(ConversionEnd::outputFull);
    const UTF8Sequence next = utf8SequenceAt({start, left});
    if (next.present < next.length)
      return stop(next.present == left ? ConversionEnd::cut : ConversionEnd::malformed);
    if (next.length == 4 && room == 1) return stop(ConversionEnd::outputFull);
    decoder.decode(start + next.length);
  }
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

  if (length < kTriedLength && length <= capacity) {
    const std::size_t run = copyASCII(in, length, to);
    in += run;
    to += run;
  }
  while (in < end) {
    const detail::BlockProgress done =
        detail::encodeBlocks(in, static_cast<std::size_t>(end - in), to, static_cast<std::size_t>(toEnd - to));
    in += done.consumed;
    to += done.written;
    // Then characters one by one, past the surrogates that stopped the blocks or up to the end.
    while (in < end) {
      if (!isSurrogate(*in)) {
        if (static_cast<std::size_t>(toEnd - to) < utf8Length(*in)) return stop(ConversionEnd::outputFull);
        to += putUTF8(*in++, to);
        continue;
      }
      if (isLowSurrogate(*in)) return stop(ConversionEnd::malformed);
      if (end - in == 1) return stop(ConversionEnd::cut);
      if (!isLowSurrogate(in[1])) return stop(ConversionEnd::malformed);
      if (toEnd - to < 4) return stop(ConversionEnd::outputFull);
      const char32_t character = characterOfSurrogates(in[0], in[1]);
      to[0] = static_cast<char>(0xf0 | character >> 18);
      to[1] = static_cast<char>(0x80 | (character >> 12 & 0x3f));
      to[2] = static_cast<char>(0x80 | (character >> 6 & 0x3f));
      to[3] = static_cast<char>(0x80 | (character & 0x3f));
      to += 4;
      in += 2;
      if (in < end && !isSurrogate(*in)) break;
    }
  }
  return stop(ConversionEnd::complete);
}

std::optional<std::size_t> decodeUTF8(std::string_view bytes, char16_t *out, InvalidInput invalid) {
  std::size_t written = 0;
  for (;;) {
    const ConversionProgress done = convertUTF8ToUTF16(bytes.data(), bytes.size(), out + written, bytes.size());
    bytes.remove_prefix(done.consumed);
    written += done.written;
    if (done.end == ConversionEnd::complete) return written;
    if (invalid == InvalidInput::refused) return std::nullopt;
    const std::size_t wrong = std::max<std::size_t>(utf8SequenceAt(bytes).present, 1);
    if (invalid == InvalidInput::replaced)
      out[written++] = kReplacement;
    else
      for (const char byte : bytes.substr(0, wrong))
        out[written++] = static_cast<char16_t>(kEscape + static_cast<unsigned char>(byte));
    bytes.remove_prefix(wrong);
  }
}

std::optional<std::string> encodeUTF8(std::u16string_view units, InvalidInput invalid) {
  if (units.size() <= kShortLength) {
    char bytes[3 * kShortLength + detail::kEncodingRoomBytes];
    const auto length = encode(units, bytes, sizeof bytes, invalid);
    return length ? std::optional(std::string(bytes, *length)) : std::nullopt;
  }
  std::string bytes(detail::lengthInUTF8(units.data(), units.size()) + detail::kEncodingRoomBytes, '\0');
  const auto length = encode(units, bytes.data(), bytes.size(), invalid);
  if (!length) return std::nullopt;
  bytes.resize(*length);
  return bytes;
}

}  // namespace nimbo
