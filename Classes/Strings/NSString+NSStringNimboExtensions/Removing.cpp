// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSString+NSStringNimboExtensions/Removing.hpp"

#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Characters/UnitPredicates.hpp"
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Removing.hpp"
#include "Classes/Strings/UnitEditing.hpp"

namespace nimbo {
inline namespace NSStringNimboExtensions {

namespace {

NSString stringByRemovingDigitsAndMapping(const NSString &string, const unichar *table) {
  return stringByEditing(string, [table](NSMutableString &copy) {
    removeDigits(copy);
    mapUnits(copy, EntryOf{table});
  });
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
  return stringByEditing(string, removeMultipleFeeds);
}

NSString stringByRemovingMultipleSpacesAndFeeds(const NSString &string, Flag andFeeds) {
  return stringByEditing(string, [=](NSMutableString &copy) { removeMultipleSpacesAndFeeds(copy, andFeeds); });
}

NSString stringByRemovingDigits(const NSString &string) {
  return stringByRemovingUnits(string, isDigit());
}

NSString uppercaseStringByRemovingDigits(const NSString &string) {
  return stringByRemovingDigitsAndMapping(string, initUpperCharsTable());
}

NSString lowercaseStringByRemovingDigits(const NSString &string) {
  return stringByRemovingDigitsAndMapping(string, initLowerCharsTable());
}

NSString reformattedStringByRemovingCharactersOfString(const NSString &string, const NSString &characters) {
  return stringByEditing(string, [&](NSMutableString &copy) {
    removeCharactersOfString(copy, characters);
    trimUnits(copy, isWhite());
    removeMultipleSpacesAndFeeds(copy, true);
  });
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
