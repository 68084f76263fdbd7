// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/AppKit/NSAttributedString.hpp"

namespace nimbo {

/// Appends a control word with its number.
void appendWord(std::string *output, std::string_view word, std::int64_t number);
/// Appends text: what is special to RTF is escaped, what is not ASCII a number. The line feeds, which end
/// paragraphs, are the caller's.
void appendText(std::string *output, std::u16string_view text);

/// The control words that attributes are, and the tables that they refer to.
class RTFTokens {
 public:
  /// How many levels a list has.
  static constexpr std::size_t kMaximumLevels = 9;

  /// Takes what attributes refer to into the tables.
  void collect(const TextAttributes &attributes);
  /// Appends the tables of all that was collected.
  void appendTables(std::string *output);

  /// The words that set characters that had been set to nothing; they end in a blank.
  const std::string &characterWords(const Interned<TextAttributes> &attributes);
  /// The words that set a paragraph that had been set to nothing; they end in a blank.
  const std::string &paragraphWords(const Interned<NSParagraphStyle> &style);

  std::size_t fontNumber(const NSString &family) const;
  std::size_t colorNumber(const std::optional<NSColor> &color) const;

 private:
  struct List {
    std::vector<NSTextList> levels;
  };

  void collectParagraph(const NSParagraphStyle &style);
  void collectColor(const std::optional<NSColor> &color);
  void collectList(const std::vector<NSTextList> &chain);
  static std::string keyOf(const std::vector<NSTextList> &chain, std::size_t count);
  void appendLists(std::string *output) const;

  std::vector<NSString> fonts_;
  std::unordered_map<NSString, std::size_t, NSStringHash> fontNumbers_;
  std::vector<NSColor> colors_;
  std::unordered_map<std::uint32_t, std::size_t> colorNumbers_;
  std::vector<List> lists_;
  /// The lists by the beginnings of their levels.
  std::unordered_map<std::string, std::size_t> listsByLevels_;
  /// The records whose attributes are collected, or whose words are known, by the hashes of their handles.
  std::unordered_set<std::size_t> collectedStyles_;
  std::unordered_map<std::size_t, std::string> characterWords_, paragraphWords_;

  friend struct ParagraphTokens;
};

}  // namespace nimbo
