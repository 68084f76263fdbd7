// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSString+NSStringNimboExtensions/Removing.hpp"

#include <algorithm>
#include <string_view>

#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Characters/UnitPredicates.hpp"
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Removing.hpp"
#include "Classes/Strings/UnitEditing.hpp"

namespace nimbo {
inline namespace NSStringNimboExtensions {

namespace {

/// Whether a line break follows another one.
bool hasMultipleFeeds(std::u16string_view units) {
  for (std::size_t i = 0; i < units.size(); ++i) {
    const std::uint32_t lineBreak = lengthOfLineBreak(units, i);
    if (lineBreak && i + lineBreak < units.size() && isLineBreak(units[i + lineBreak])) return true;
  }
  return false;
}

/// Whether there is a run that is not one U+0020 already.
bool hasMultipleSpaces(std::u16string_view units, IsPartOfSet isCollapsed) {
  bool isInRun = false;
  for (const unichar c : units) {
    const bool collapsed = isCollapsed(c);
    if (collapsed && (isInRun || c != u' ')) return true;
    isInRun = collapsed;
  }
  return false;
}

}  // namespace

NSString stringByRemovingCharacters(const NSString &string, const CharacterSetRep *set) {
  return set ? stringByRemovingUnits(string, IsPartOfSet{set}) : string;
}

NSString stringByRemovingCharactersOfString(const NSString &string, const NSString &characters) {
  return withUnitsOf(characters.view(), string.length(),
                     [&](auto isRemoved) { return stringByRemovingUnits(string, isRemoved); });
}

NSString stringByRemovingWhiteCharacters(const NSString &string) {
  return stringByRemovingUnits(string, isWhite());
}

NSString stringByRemovingSpaces(const NSString &string) {
  return stringByRemovingUnits(string, isSpace(false));
}

NSString stringByRemovingTabs(const NSString &string) {
  return stringByRemovingUnits(string, IsUnit{u'\t'});
}

NSString stringByRemovingFeeds(const NSString &string) {
  return stringByRemovingUnits(string, isLineBreak);
}

NSString stringByRemovingMultipleFeeds(const NSString &string) {
  return hasMultipleFeeds(string.view()) ? stringByEditing(string, removeMultipleFeeds) : string;
}

NSString stringByRemovingMultipleSpacesAndFeeds(const NSString &string, Flag andFeeds) {
  if (!hasMultipleSpaces(string.view(), isSpace(andFeeds))) return string;
  return stringByEditing(string, [=](NSMutableString &copy) { removeMultipleSpacesAndFeeds(copy, andFeeds); });
}

NSString stringByRemovingDigits(const NSString &string) {
  return stringByRemovingUnits(string, isDigit());
}

NSString uppercaseStringByRemovingDigits(const NSString &string) {
  return stringByRemovingAndMappingUnits(string, isDigit(), EntryOf{initUpperCharsTable()});
}

NSString lowercaseStringByRemovingDigits(const NSString &string) {
  return stringByRemovingAndMappingUnits(string, isDigit(), EntryOf{initLowerCharsTable()});
}

NSString reformattedStringByRemovingCharactersOfString(const NSString &string, const NSString &characters) {
  const std::u16string_view units = string.view();
  const IsPartOfSet white = isWhite();
  const auto hasOneOf = [&](auto isRemoved) { return std::ranges::any_of(units, isRemoved); };
  if (units.empty() || !(white(units.front()) || white(units.back()) || hasMultipleSpaces(units, white) ||
                         withUnitsOf(characters.view(), string.length(), hasOneOf)))
    return string;
  return stringByEditing(string, [&](NSMutableString &copy) {
    removeCharactersOfString(copy, characters);
    trimUnits(copy, white);
    removeMultipleSpacesAndFeeds(copy, true);
  });
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
