// SPDX-License-Identifier: Apache-2.0
//
// Lines as they are seen, from left to right, back in the order in which they are read: Hebrew and Arabic from
// right to left, numbers and other scripts within them from left to right. Any thread may ask.
//
//     // "abc" in front of two Hebrew letters, which are seen the last one first.
//     logicalOrderOfVisualLine(U"abc \u05d1\u05d0", false);  // 0, 1, 2, 3, 5, 4
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Whether a character lies in a block of scripts that run from right to left; quick.
constexpr bool isInRightToLeftBlock(char32_t character) {
  return character >= 0x590 &&
         (character < 0x900 || (character >= 0xfb1d && character <= 0xfdff) ||
          (character >= 0xfe70 && character <= 0xfeff) || (character >= 0x10800 && character < 0x11000) ||
          (character >= 0x1e800 && character < 0x1f000));
}

/// What a character does to the order of a line.
enum class BidiRole : std::uint8_t { leftToRight, rightToLeft, neutral, mark };
/// Digits are neutral. A mark stands with the character that it follows.
BidiRole bidiRole(char32_t character);

/// The character that is seen in place of this one from right to left, ")" for "(", say; itself without one.
char32_t mirroredCharacter(char32_t character);

/// Whether a line, given as it is seen, is one of a text that runs from right to left, as far as it shows;
/// nothing when it may be either.
std::optional<bool> isVisualLineRightToLeft(std::u32string_view line);

/// A character of a line.
struct BidiPlace {
  /// Where it is seen, from 0 at the left.
  std::uint32_t index;
  /// Whether it is part of what runs from right to left.
  bool isRightToLeft;
};

/// The characters of a line that is given as it is seen, in the order in which they are read.
std::vector<BidiPlace> logicalOrderOfVisualLine(std::u32string_view line, bool isRightToLeft);

}  // namespace nimbo
