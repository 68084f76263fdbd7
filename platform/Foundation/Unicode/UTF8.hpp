// SPDX-License-Identifier: Apache-2.0
//
// UTF-8 and UTF-16 of single characters. Any thread may call these, and they work at compile time.
//
//     characterOfSurrogates(u'\xd83d', u'\xde00') == U'😀';  // true
//     utf8SequenceLength("é");  // 2
//     char bytes[4];
//     const std::size_t count = putUTF8(U'€', bytes);  // 3
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Whether the unit is half of a character above U+FFFF.
constexpr bool isSurrogate(char16_t unit) {
  return (unit & 0xf800) == 0xd800;
}
/// Whether the unit is the first half of a character.
constexpr bool isHighSurrogate(char16_t unit) {
  return (unit & 0xfc00) == 0xd800;
}
/// Whether the unit is the second half of a character.
constexpr bool isLowSurrogate(char16_t unit) {
  return (unit & 0xfc00) == 0xdc00;
}
/// The first half of a character above U+FFFF.
constexpr char16_t highSurrogate(char32_t character) {
  return static_cast<char16_t>(0xd7c0 + (character >> 10));
}
/// The second half of a character above U+FFFF.
constexpr char16_t lowSurrogate(char32_t character) {
  return static_cast<char16_t>(0xdc00 | (character & 0x3ff));
}
/// The character that two halves make.
constexpr char32_t characterOfSurrogates(char16_t high, char16_t low) {
  return 0x10000 + ((high & 0x3ffu) << 10) + (low & 0x3ffu);
}

/// Writes a scalar value as UTF-16 and returns the number of units, 1 or 2; `out` must have room for them.
constexpr std::size_t putUTF16(char32_t character, char16_t *out) {
  if (character < 0x10000) {
    out[0] = static_cast<char16_t>(character);
    return 1;
  }
  out[0] = highSurrogate(character);
  out[1] = lowSurrogate(character);
  return 2;
}

/// The number of bytes, 1 to 4, that a character takes in UTF-8.
constexpr std::size_t utf8Length(char32_t character) {
  return character < 0x80 ? 1 : character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
}

/// Writes a scalar value as UTF-8 and returns the number of bytes; `out` must have room for them.
constexpr std::size_t putUTF8(char32_t character, char *out) {
  if (character < 0x80) {
    out[0] = static_cast<char>(character);
    return 1;
  }
  const std::size_t count = utf8Length(character);
  constexpr unsigned char kLead[] = {0, 0, 0xc0, 0xe0, 0xf0};
  for (std::size_t i = count - 1; i > 0; --i, character >>= 6)
    out[i] = static_cast<char>(0x80 | (character & 0x3f));
  out[0] = static_cast<char>(kLead[count] | character);
  return count;
}

/// What some bytes begin with, as UTF-8 (Unicode 15, table 3-7: no overlong forms, no surrogates, nothing above
/// U+10FFFF).
struct UTF8Sequence {
  /// How many bytes the sequence has that the first byte leads, 2 to 4, or 1 for ASCII; 0 when it leads none.
  std::size_t length = 0;
  /// How many of them there are, all of them right so far. Fewer than `length`, they are what one U+FFFD stands
  /// for.
  std::size_t present = 0;
};

/// What the bytes begin with.
constexpr UTF8Sequence utf8SequenceAt(std::string_view bytes) {
  if (bytes.empty()) return {};
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return {1, 1};
  const std::size_t length = lead < 0xc2 ? 0 : lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : lead < 0xf5 ? 4 : 0;
  if (length == 0) return {};
  unsigned char low = lead == 0xe0 ? 0xa0 : lead == 0xf0 ? 0x90 : 0x80;
  unsigned char high = lead == 0xed ? 0x9f : lead == 0xf4 ? 0x8f : 0xbf;
  std::size_t present = 1;
  for (; present < length && present < bytes.size(); ++present) {
    if (byte(present) < low || byte(present) > high) break;
    low = 0x80, high = 0xbf;
  }
  return {length, present};
}

/// The length, 1 to 4, of the valid UTF-8 sequence that `bytes` begins with; 0 when it begins with none.
constexpr std::size_t utf8SequenceLength(std::string_view bytes) {
  const UTF8Sequence sequence = utf8SequenceAt(bytes);
  return sequence.present == sequence.length ? sequence.length : 0;
}

/// Whether the bytes begin a sequence that they are too few for.
constexpr bool isCutUTF8(std::string_view bytes) {
  const UTF8Sequence sequence = utf8SequenceAt(bytes);
  return sequence.present < sequence.length && sequence.present == bytes.size();
}

}  // namespace nimbo
