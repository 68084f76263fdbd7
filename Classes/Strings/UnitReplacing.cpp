// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/UnitReplacing.hpp"

#include <string_view>

#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Characters/FastSearches.hpp"

namespace nimbo {

bool replaceOccurrences(std::u16string_view units, const NSString &replaced, const NSString &withString,
                        bool caseSensitive, NSMutableString &result) {
  if (!withString) return false;
  const auto search = caseSensitive ? fastContainsUnichars : fastCaseInsensitiveContainsUnichars;
  const unichar *position = units.data();
  const unichar *const end = position + units.size();
  const auto lengthUntil = [&](const unichar *to) { return static_cast<std::uint32_t>(to - position); };
  const auto next = [&](const unichar *from) {
    return search(from, static_cast<std::uint32_t>(end - from), replaced.characters(), replaced.length());
  };
  const unichar *found = next(position);
  // Where it is what it is replaced by, nothing changes.
  if (replaced.length() == withString.length())
    while (found && std::u16string_view(found, replaced.length()) == withString.view())
      found = next(found + replaced.length());
  if (!found) return false;
  if (withString.length() <= replaced.length()) result.reserve(lengthUntil(end));
  for (; found; found = next(position)) {
    result.appendCharacters(position, lengthUntil(found));
    result.appendString(withString);
    position = found + replaced.length();
  }
  result.appendCharacters(position, lengthUntil(end));
  return true;
}

IsReplaced::IsReplaced(unichar character, unichar withCharacter, bool caseSensitive)
    : character_(character), isSame_(character == withCharacter) {
  if (!caseSensitive && toUpper(character) == toLower(character)) {
    character_ = toUpper(character);
    table_ = initUpperCharsTable();
  }
}

}  // namespace nimbo
