// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSString+NSStringNimboExtensions/Finding.hpp"

#include <algorithm>

#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Characters/UnicharSearches.hpp"
#include "Classes/Characters/UnitPredicates.hpp"

namespace nimbo {
inline namespace NSStringNimboExtensions {

namespace {

using Search = std::uint32_t (*)(const unichar *units, std::uint32_t length, unichar c);

/// Calls the search that the character needs with the units from `startAt` on, of which there must be some.
std::uint32_t searchFrom(const NSString &string, std::uint32_t startAt, unichar character, bool caseInsensitive,
                         Search exact, Search noCase) {
  const unichar upper = toUpper(character);
  const bool hasCase = upper != toLower(character);
  const Search search = hasCase && caseInsensitive ? noCase : exact;
  return search(string.characters() + startAt, string.length() - startAt, hasCase ? upper : character);
}

std::uint32_t indexFrom(std::uint32_t startAt, std::uint32_t found) {
  return found == NSNotFound ? NSNotFound : startAt + found;
}

}  // namespace

std::uint32_t findCharacter(const NSString &string, unichar character, Flag caseInsensitive) {
  return findCharacter(string, character, 0, caseInsensitive);
}

std::uint32_t findCharacter(const NSString &string, unichar character, std::uint32_t startAt,
                            Flag caseInsensitive) {
  if (startAt >= string.length()) return NSNotFound;
  return indexFrom(startAt,
                   searchFrom(string, startAt, character, caseInsensitive, findUnichar, findUnicharNoCase));
}

bool containsCharacter(const NSString &string, unichar character, Flag caseInsensitive) {
  return containsCharacter(string, character, 0, caseInsensitive);
}

bool containsCharacter(const NSString &string, unichar character, std::uint32_t startAt, Flag caseInsensitive) {
  return findCharacter(string, character, startAt, caseInsensitive) != NSNotFound;
}

std::uint32_t countCharacter(const NSString &string, unichar character, Flag caseInsensitive) {
  return countCharacter(string, character, 0, caseInsensitive);
}

std::uint32_t countCharacter(const NSString &string, unichar character, std::uint32_t startAt,
                             Flag caseInsensitive) {
  if (startAt >= string.length()) return 0;
  return searchFrom(string, startAt, character, caseInsensitive, countUnichar, countUnicharNoCase);
}

std::uint32_t findLastCharacter(const NSString &string, unichar character, Flag caseInsensitive) {
  return findLastCharacter(string, character, 0, caseInsensitive);
}

std::uint32_t findLastCharacter(const NSString &string, unichar character, std::int32_t startAt,
                                Flag caseInsensitive) {
  const auto start = static_cast<std::uint32_t>(std::max(startAt, 0));
  if (start >= string.length()) return NSNotFound;
  return indexFrom(
      start, searchFrom(string, start, character, caseInsensitive, findLastUnichar, findLastUnicharNoCase));
}

std::uint32_t findOneOf(const NSString &string, const NSString &characters, Flag caseInsensitive) {
  return findOneOf(string, characters, 0, caseInsensitive);
}

std::uint32_t findOneOf(const NSString &string, const NSString &characters, std::uint32_t startAt,
                        Flag caseInsensitive) {
  if (startAt >= string.length() || characters.length() == 0) return NSNotFound;
  const std::u16string_view units = string.view().substr(startAt);
  const auto find = [=](auto isWanted) {
    const auto found = std::find_if(units.begin(), units.end(), isWanted);
    return found == units.end() ? NSNotFound : startAt + static_cast<std::uint32_t>(found - units.begin());
  };
  const auto length = static_cast<std::uint32_t>(units.size());
  if (!caseInsensitive) return withUnitsOf(characters.view(), length, find);
  const EntryOf upper{initUpperCharsTable()};
  return withMappedUnitsOf(characters.view(), length, upper,
                           [=](auto isWanted) { return find([=](unichar c) { return isWanted(upper(c)); }); });
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
