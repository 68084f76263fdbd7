// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Editing.hpp"

#include <algorithm>
#include <utility>

#include "Classes/Characters/UnitPredicates.hpp"

namespace nimbo {
inline namespace NSMutableStringNimboExtensions {

namespace {

constexpr bool isTabWidth(std::uint32_t width) {
  return width > 0 && width <= kMaximumTabWidth;
}

void appendRepeated(NSMutableString &string, unichar character, std::uint32_t count) {
  const std::uint32_t start = string.length();
  string.setLength(start + count);
  std::fill_n(string.mutableCharacters() + start, count, character);
}

}  // namespace

void appendCharacter(NSMutableString &string, unichar character) {
  string.appendCharacter(character);
}

void appendCharacters(NSMutableString &string, const unichar *characters, std::uint32_t length) {
  string.appendCharacters(characters, length);
}

void appendSubstring(NSMutableString &string, const NSString &appended, NSRange range) {
  if (range.location >= appended.length()) return;
  string.appendCharacters(appended.characters() + range.location,
                          std::min(range.length, appended.length() - range.location));
}

void insertCharacter(NSMutableString &string, unichar character, std::uint32_t atIndex) {
  if (atIndex <= string.length()) string.replaceCharactersInRange({atIndex, 0}, {&character, 1});
}

void encodeTabs(NSMutableString &string, std::uint32_t width) {
  if (!isTabWidth(width)) return;
  unichar *const units = string.mutableCharacters();
  std::uint32_t written = 0, column = 0, spaces = 0;
  for (std::uint32_t i = 0; i < string.length(); ++i) {
    const unichar unit = units[i];
    units[written++] = unit;
    spaces = unit == u' ' ? spaces + 1 : 0;
    column = isLineBreak(unit) || unit == u'\t' ? 0 : (column + 1) % width;
    if (column != 0) continue;
    if (spaces >= 2) {
      written -= spaces;
      units[written++] = u'\t';
    }
    spaces = 0;
  }
  string.setLength(written);
}

void decodeTabs(NSMutableString &string, std::uint32_t width) {
  if (!isTabWidth(width) || string.view().find(u'\t') == std::u16string_view::npos) return;
  NSMutableString result;
  std::uint32_t column = 0;
  for (const unichar unit : string.view()) {
    if (unit == u'\t') {
      appendRepeated(result, u' ', width - column);
      column = 0;
    } else {
      result.appendCharacter(unit);
      column = isLineBreak(unit) ? 0 : (column + 1) % width;
    }
  }
  string = std::move(result);
}

void removeAttachments(NSMutableString &) {}

void removeLinks(NSMutableString &) {}

void removeAttribute(NSMutableString &, const NSString &) {}

}  // namespace NSMutableStringNimboExtensions
}  // namespace nimbo
