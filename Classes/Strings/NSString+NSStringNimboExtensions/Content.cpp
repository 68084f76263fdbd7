// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSString+NSStringNimboExtensions/Content.hpp"

#include <algorithm>

#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Characters/UnicharSearches.hpp"
#include "Classes/Characters/UnitPredicates.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
inline namespace NSStringNimboExtensions {

namespace {

/// Calls `visit(std::u16string_view)` with each longest run of ASCII digits until it answers true; whether it
/// did.
template <class Visitor>
bool visitNumbers(std::u16string_view units, Visitor visit) {
  for (auto end = units.begin();;) {
    const auto start = std::find_if(end, units.end(), isASCIIDigit<unichar>);
    if (start == units.end()) return false;
    end = std::find_if_not(start, units.end(), isASCIIDigit<unichar>);
    if (visit(std::u16string_view(start, end))) return true;
  }
}

bool hasValue(std::u16string_view digits, std::uint64_t value) {
  // From the last digit backward, so that nothing overflows.
  for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, value /= 10)
    if (*digit != u'0' + value % 10) return false;
  return value == 0;
}

bool containsOnlyOneCase(const NSString &string, const CharacterSetRep *set, const CharacterSetRep *otherCase) {
  return characterPartOfSet(string, set) && !characterPartOfSet(string, otherCase);
}

}  // namespace

bool isAsciiString(const NSString &string) {
  return string && isAsciiUnichars(string.characters(), string.length());
}

bool isUmlautedString(const NSString &string) {
  const unichar *const table = initUmlautsCharsTable();
  const std::u16string_view units = string.view();
  return std::any_of(units.begin(), units.end(), [=](unichar c) { return table[c] != c; });
}

bool isUpperCaseString(const NSString &string) {
  return containsOnlyOneCase(string, upperCharacterSetRep(), lowerCharacterSetRep());
}

bool isLowerCaseString(const NSString &string) {
  return containsOnlyOneCase(string, lowerCharacterSetRep(), upperCharacterSetRep());
}

bool containsNumber(const NSString &string, std::uint64_t number) {
  return visitNumbers(string.view(), [=](std::u16string_view digits) { return hasValue(digits, number); });
}

std::uint32_t countNumbers(const NSString &string) {
  std::uint32_t count = 0;
  visitNumbers(string.view(), [&](std::u16string_view) {
    ++count;
    return false;
  });
  return count;
}

bool containsNumberWithNDigits(const NSString &string, std::int32_t n) {
  return n >= 1 && visitNumbers(string.view(), [=](std::u16string_view digits) {
           return digits.size() >= static_cast<std::uint32_t>(n);
         });
}

bool containsCharacters(const NSString &string, const NSString &characters) {
  const std::u16string_view units = string.view();
  return withUnitsOf(characters.view(), string.length(),
                     [=](auto isWanted) { return std::any_of(units.begin(), units.end(), isWanted); });
}

bool onlyWhiteCharacters(const unichar *characters, std::uint32_t length) {
  return std::all_of(characters, characters + length, isWhite());
}

bool countLTGT(const NSString &string, std::uint32_t *lt, std::uint32_t *gt) {
  const UnicharCounts counts = countUnichars(string.characters(), string.length(), u'<', u'>');
  if (lt) *lt = counts.first;
  if (gt) *gt = counts.second;
  return counts.first > 0 && counts.first == counts.second;
}

bool isMashedWordString(const NSString &string) {
  const std::u16string_view units = string.view();
  const IsPartOfSet isUpper{upperCharacterSetRep()}, isLower{lowerCharacterSetRep()};
  if (units.size() < 3 || !isUpper(units[0]) || !isLower(units[1])) return false;
  const auto hump = std::find_if_not(units.begin() + 1, units.end(), isLower);
  return hump != units.end() && isUpper(*hump) && hump + 1 != units.end() && isLower(hump[1]);
}

bool isMashedWord(const NSString &string) {
  return isMashedWordString(string);
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
