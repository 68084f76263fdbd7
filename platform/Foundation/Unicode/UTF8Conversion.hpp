// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

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
  ConversionEnd end;
  std::size_t consumed;
  std::size_t written;
};

/// UTF-8 to UTF-16 until the end, the first sequence that is not valid (no overlong forms, no surrogates,
/// nothing above U+10FFFF) or a full output; counts are bytes and units. Writes nothing beyond `capacity`
/// units, but may use all of it for scratch. The buffers must not overlap.
ConversionProgress convertUTF8ToUTF16(const char *bytes, std::size_t length, char16_t *out,
                                      std::size_t capacity);

/// UTF-16 to UTF-8 until the end, the first lone surrogate (`cut` when it is a high one at the end) or a full
/// output; counts are units and bytes. The output is used as above.
ConversionProgress convertUTF16ToUTF8(const char16_t *units, std::size_t length, char *out,
                                      std::size_t capacity);

}  // namespace nimbo
