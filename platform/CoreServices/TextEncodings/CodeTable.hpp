// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace nimbo {

/// A code of one byte, or of two with the first in the upper half.
using TableCode = std::uint16_t;

/// What the codes of an encoding mean. A byte may both mean something and begin a code of two bytes: then the
/// longer code goes first.
class CodeTable {
 public:
  /// Codes that are possible, but mean nothing.
  static constexpr char16_t kNoCharacter = 0xfffd;

  /// Gives a code a character, which is written as this code.
  void set(TableCode code, char32_t character) { cell(code) = character; }
  /// Gives a code a text that is only read. The text must live as long as the table.
  void setReadOnly(TableCode code, std::u16string_view text);
  /// Makes the way from characters to codes. Of several codes with one character, ASCII is written, else the
  /// highest single byte (shapes of letters stand below the plain ones), else the lowest of two bytes.
  void index();

  /// Whether the byte begins codes of two bytes.
  bool isLead(std::uint8_t byte) const { return !pairs_[byte].empty(); }
  /// Whether the code stands in the table.
  bool isPossible(TableCode code) const { return meaning(code) != kImpossible; }
  /// The meaning of a code that is a single unit; `kNoCharacter` for any other code.
  char16_t unitOf(TableCode code) const {
    const char32_t character = meaning(code);
    return character > 0xffff ? kNoCharacter : static_cast<char16_t>(character);
  }
  /// Appends the meaning of a possible code.
  void appendMeaning(TableCode code, std::u16string *text) const;
  /// The code that a character is written as; nothing when the encoding lacks it.
  std::optional<TableCode> codeOf(char32_t character) const;

 private:
  static constexpr std::size_t kBytes = 256;
  static constexpr char32_t kImpossible = 0xffffffff;
  /// Cells from here on are places in `texts_`.
  static constexpr char32_t kFirstText = 0x110000;

  static std::array<char32_t, kBytes> impossibleCells();
  char32_t &cell(TableCode code);
  char32_t meaning(TableCode code) const {
    if (code < kBytes) return singles_[code];
    const std::vector<char32_t> &row = pairs_[code >> 8];
    return row.empty() ? kImpossible : row[code & 0xff];
  }
  void indexCode(TableCode code);

  std::array<char32_t, kBytes> singles_ = impossibleCells();
  /// Rows of codes of two bytes, by the first one; empty where a byte is no first one.
  std::array<std::vector<char32_t>, kBytes> pairs_;
  std::vector<std::u16string_view> texts_;
  /// The way back, ascending by character.
  std::vector<std::pair<char32_t, TableCode>> codes_;
};

/// The project's own table of a name, made when it is first asked for; null when there is none. Safe from any
/// thread; lives as long as the process.
const CodeTable *codeTable(std::string_view name);

}  // namespace nimbo
