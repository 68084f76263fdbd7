// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbo::detail {

/// A piece of a text that may be a date: digits, a word, or one other character.
struct DateToken {
  enum class Kind { kNumber, kWord, kSign };

  Kind kind = Kind::kSign;
  /// The piece as it stands in the text.
  std::u16string_view text;
  /// The word as `foldedDateWord` has it.
  std::u16string word;
  /// The value of the digits.
  std::int32_t number = 0;
  /// Whether the piece in front of it touches it.
  bool isGlued = false;
};

/// The pieces of a text without the white space; nothing when a number has more digits than one of a date.
std::optional<std::vector<DateToken>> dateTokens(std::u16string_view text);

}  // namespace nimbo::detail
