// SPDX-License-Identifier: Apache-2.0
//
// Conversions between UTF-8 and UTF-16. Any thread may convert.
//
//     char16_t units[8];
//     convertUTF8ToUTF16("é", 2, units, 8).written;  // 1
//     decodeUTF8("a\xff", units, InvalidInput::refused).has_value();  // false
//     encodeUTF8(u"é", InvalidInput::replaced).value();  // "é"
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Why a conversion ended.
enum class ConversionEnd {
  complete,
  /// The next character has no room in the output.
  outputFull,
  /// The next bytes or units are none of the encoding.
  malformed,
  /// The input ends within a character that more input could complete.
  cut,
};

/// How far a conversion came: both counts end at a whole character.
struct ConversionProgress {
  /// Why it came no further.
  ConversionEnd end;
  /// How much of the input is converted.
  std::size_t consumed;
  /// How much of the output is filled.
  std::size_t written;
};

/// Converts UTF-8 to UTF-16 until the end, the first sequence that is not valid (no overlong forms, no
/// surrogates, nothing above U+10FFFF) or a full output; counts are bytes and units. Writes nothing beyond
/// `capacity` units, but may use all of it for scratch. The buffers must not overlap.
ConversionProgress convertUTF8ToUTF16(const char *bytes, std::size_t length, char16_t *out,
                                      std::size_t capacity);

/// Converts UTF-16 to UTF-8 until the end, the first lone surrogate (`cut` when it is a high one at the end)
/// or a full output; counts are units and bytes. The output is used as above.
ConversionProgress convertUTF16ToUTF8(const char16_t *units, std::size_t length, char *out,
                                      std::size_t capacity);

/// What becomes of input that is not valid, in a conversion of a whole text.
enum class InvalidInput {
  refused,
  /// U+FFFD stands for each lone surrogate, and for bytes that begin a sequence without its end or none at all.
  replaced,
  /// A lone surrogate U+DC00 + byte stands for each byte; no other lone surrogates are taken.
  escaped,
};

/// Converts a text from UTF-8 to UTF-16, into room for as many units as there are bytes, which is enough for
/// every one. Answers the number of units; nothing when the bytes are refused.
std::optional<std::size_t> decodeUTF8(std::string_view bytes, char16_t *out, InvalidInput invalid);

/// Converts a text from UTF-16 to UTF-8; nothing when the units are refused.
std::optional<std::string> encodeUTF8(std::u16string_view units, InvalidInput invalid);

}  // namespace nimbo
