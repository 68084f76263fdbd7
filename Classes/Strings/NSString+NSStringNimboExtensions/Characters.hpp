// SPDX-License-Identifier: Apache-2.0
//
// Tables and sets of characters, asked of runs and strings. Any thread may ask.
//
//     isDigitString(u"2026"_ns);  // true
//     containsWhiteCharacter(u"a b"_ns);  // true
//     const unichar upper = upperCharsTable()[u'a'];  // u'A'
#pragma once

#include <cstdint>

#include "Classes/Characters/CharacterSetRep.hpp"
#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

/// The table of `initUmlautsCharsTable`.
const unichar *umlautsCharsTable();
/// The table of `initUpperCharsTable`.
const unichar *upperCharsTable();
/// The table of `initLowerCharsTable`.
const unichar *lowerCharsTable();
/// The table of `initUpperUmlautsCharsTable`.
const unichar *upperUmlautsCharsTable();
/// The table of `initLowerUmlautsCharsTable`.
const unichar *lowerUmlautsCharsTable();

/// Compares as `fastCompareUnichars`.
std::int32_t compareCharacters(const unichar *characters, std::uint32_t length, const unichar *withCharacters,
                               std::uint32_t withLength);
/// Compares as `fastCompareUnicharsWithChars`.
std::int32_t compareCharacters(const unichar *characters, std::uint32_t length, const char *withChars,
                               std::uint32_t withLength);
/// Compares as `fastCaseInsensitiveCompareUnichars`.
std::int32_t caseInsensitiveCompareCharacters(const unichar *characters, std::uint32_t length,
                                              const unichar *withCharacters, std::uint32_t withLength);
/// Compares as `fastCaseInsensitiveCompareUnicharsWithChars`.
std::int32_t caseInsensitiveCompareCharacters(const unichar *characters, std::uint32_t length,
                                              const char *withChars, std::uint32_t withLength);

/// Where in `inCharacters` the bytes `chars` first stand, or null when nowhere or when `chars` is empty. Bytes
/// count as signed.
const unichar *positionOfCharacters(const char *chars, std::uint32_t length, const unichar *inCharacters,
                                    std::uint32_t inLength, Flag caseSensitive);

/// Whether a unit is in the digit set; false when the string is nil or empty.
bool containsDigitCharacter(const NSString &string);
/// Whether a unit is in the white set; false when the string is nil or empty.
bool containsWhiteCharacter(const NSString &string);
/// Whether a unit is in the alpha set; false when the string is nil or empty.
bool containsAlphaCharacter(const NSString &string);
/// Whether a unit is in the alphaNum set; false when the string is nil or empty.
bool containsAlphaNumCharacter(const NSString &string);
/// Whether a unit is in the set; false when the string is nil or empty or the set null.
bool containsCharacterPartOfCharacterSetRep(const NSString &string, const CharacterSetRep *set);

/// Whether all units are in the alphaNum set; false when the string is nil or empty.
bool isAlphaNumString(const NSString &string);
/// Whether all units are in the alpha set; false when the string is nil or empty.
bool isAlphaString(const NSString &string);
/// Whether all units are in the digit set; false when the string is nil or empty.
bool isDigitString(const NSString &string);
/// Whether all units are in the white set; true when the string is nil or empty.
bool isWhiteString(const NSString &string);
/// Whether all units are in the space set; true when the string is nil or empty.
bool isSpaceString(const NSString &string);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
