// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Removing.hpp"

#include "Classes/Characters/UnitPredicates.hpp"
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Replacing.hpp"
#include "Classes/Strings/UnitEditing.hpp"

namespace nimbo {
inline namespace NSMutableStringNimboExtensions {

void removeCharacters(NSMutableString &string, const CharacterSetRep *set) {
  if (set) removeUnits(string, IsPartOfSet{set});
}

void removeCharactersOfString(NSMutableString &string, const NSString &characters) {
  withUnitsOf(characters.view(), string.length(), [&](auto isRemoved) { removeUnits(string, isRemoved); });
}

void removeCharacterAtIndex(NSMutableString &string, std::uint32_t index) {
  if (index < string.length()) string.deleteCharactersInRange({index, 1});
}

void removeWhiteCharacters(NSMutableString &string) {
  removeUnits(string, isWhite());
}

void removeSpaces(NSMutableString &string) {
  removeUnits(string, isSpace(false));
}

void removeTabs(NSMutableString &string) {
  removeUnits(string, IsUnit{u'\t'});
}

void removeFeeds(NSMutableString &string) {
  removeUnits(string, isLineBreak);
}

void removeDigits(NSMutableString &string) {
  removeUnits(string, isDigit());
}

void removeMultipleFeeds(NSMutableString &string) {
  unichar *const units = string.mutableCharacters();
  std::uint32_t written = 0;
  for (std::uint32_t i = 0; i < string.length();) {
    const std::uint32_t lineBreak = lengthOfLineBreak(string.view(), i);
    const std::uint32_t kept = lineBreak ? lineBreak : 1;
    // Written never overtakes read, so that the units from i on are still those of the original.
    for (std::uint32_t k = 0; k < kept; ++k) units[written++] = units[i++];
    if (lineBreak)
      while (i < string.length() && isLineBreak(units[i])) ++i;
  }
  string.setLength(written);
}

void removeMultipleSpaces(NSMutableString &string) {
  removeMultipleSpacesAndFeeds(string, false);
}

void removeMultipleSpacesAndFeeds(NSMutableString &string, Flag andFeeds) {
  const IsPartOfSet isCollapsed = isSpace(andFeeds);
  unichar *const units = string.mutableCharacters();
  std::uint32_t written = 0;
  bool inRun = false;
  for (std::uint32_t i = 0; i < string.length(); ++i) {
    const bool collapsed = isCollapsed(units[i]);
    if (!collapsed)
      units[written++] = units[i];
    else if (!inRun)
      units[written++] = u' ';
    inRun = collapsed;
  }
  string.setLength(written);
}

void deleteString(NSMutableString &string, const NSString &deleted) {
  replaceString(string, deleted, NSString::string());
}

}  // namespace NSMutableStringNimboExtensions
}  // namespace nimbo
