// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace nimbo::detail {

/// How far a conversion came; both counts end at a whole character.
struct BlockProgress {
  std::size_t consumed, written;
};

/// What `decodeForeignBlocks` looks at together, and the room that it needs for that in units.
inline constexpr std::size_t kForeignBlockBytes = 64;

/// Converts UTF-8 in whole blocks of text that is mostly not ASCII. It stops where less than a block is left of
/// the input or of the output, where a block is mostly ASCII, before a character above U+FFFF and before bytes
/// that are not valid. Nothing is written beyond `capacity`, but scratch behind what is counted.
BlockProgress decodeForeignBlocks(const char *bytes, std::size_t length, char16_t *out, std::size_t capacity);

/// The room that `encodeBlocks` needs to go on.
inline constexpr std::size_t kEncodingRoomBytes = 32;

/// Converts UTF-16 to UTF-8 up to the end, to the eight units that the first surrogate is among, or to where
/// less room than `kEncodingRoomBytes` is left. The output is used as above.
BlockProgress encodeBlocks(const char16_t *units, std::size_t length, char *out, std::size_t capacity);

/// How many bytes the units take in UTF-8; a lone surrogate counts as three.
std::size_t lengthInUTF8(const char16_t *units, std::size_t length);

}  // namespace nimbo::detail
