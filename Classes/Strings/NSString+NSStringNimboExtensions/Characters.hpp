// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "Classes/Characters/CharacterSetRep.hpp"
#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

/// The tables of `CharacterTables.hpp`, made when needed.
const unichar *umlautsCharsTable();
const unichar *upperCharsTable();
const unichar *lowerCharsTable();
const unichar *upperUmlautsCharsTable();
const unichar *lowerUmlautsCharsTable();

/// Comparisons of runs as `fastCompareUnichars` and its kin.
std::int32_t compareCharacters(const unichar *characters, std::uint32_t length, const unichar *withCharacters,
                               std::uint32_t withLength);
std::int32_t compareCharacters(const unichar *characters, std::uint32_t length, const char *withChars,
                               std::uint32_t withLength);
std::int32_t caseInsensitiveCompareCharacters(const unichar *characters, std::uint32_t length,
                                              const unichar *withCharacters, std::uint32_t withLength);
std::int32_t caseInsensitiveCompareCharacters(const unichar *characters, std::uint32_t length,
                                              const char *withChars, std::uint32_t withLength);

/// Where in `inCharacters` the bytes `chars` first stand, or null when nowhere or when `chars` is empty. Bytes
/// count as signed.
const unichar *positionOfCharacters(const char *chars, std::uint32_t length, const unichar *inCharacters,
                                    std::uint32_t inLength, Flag caseSensitive);

/// Whether a unit of the string is in the set of that name; false when the string is nil or empty.
bool containsDigitCharacter(const NSString &string);
bool containsWhiteCharacter(const NSString &string);
bool containsAlphaCharacter(const NSString &string);
bool containsAlphaNumCharacter(const NSString &string);
/// As above; false too when the set is null.
bool containsCharacterPartOfCharacterSetRep(const NSString &string, const CharacterSetRep *set);

/// Whether all units of the string are in the set of that name. Of a nil or an empty string, the first three
/// say false, the last two true.
bool isAlphaNumString(const NSString &string);
bool isAlphaString(const NSString &string);
bool isDigitString(const NSString &string);
bool isWhiteString(const NSString &string);
bool isSpaceString(const NSString &string);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
