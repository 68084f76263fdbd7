// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSString+NSStringNimboExtensions/Characters.hpp"

#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Characters/FastComparisons.hpp"
#include "Classes/Characters/FastSearches.hpp"

namespace nimbo {
inline namespace NSStringNimboExtensions {

const unichar *umlautsCharsTable() {
  return initUmlautsCharsTable();
}

const unichar *upperCharsTable() {
  return initUpperCharsTable();
}

const unichar *lowerCharsTable() {
  return initLowerCharsTable();
}

const unichar *upperUmlautsCharsTable() {
  return initUpperUmlautsCharsTable();
}

const unichar *lowerUmlautsCharsTable() {
  return initLowerUmlautsCharsTable();
}

std::int32_t compareCharacters(const unichar *characters, std::uint32_t length, const unichar *withCharacters,
                               std::uint32_t withLength) {
  return fastCompareUnichars(characters, length, withCharacters, withLength);
}

std::int32_t compareCharacters(const unichar *characters, std::uint32_t length, const char *withChars,
                               std::uint32_t withLength) {
  return fastCompareUnicharsWithChars(characters, length, withChars, withLength);
}

std::int32_t caseInsensitiveCompareCharacters(const unichar *characters, std::uint32_t length,
                                              const unichar *withCharacters, std::uint32_t withLength) {
  return fastCaseInsensitiveCompareUnichars(characters, length, withCharacters, withLength);
}

std::int32_t caseInsensitiveCompareCharacters(const unichar *characters, std::uint32_t length,
                                              const char *withChars, std::uint32_t withLength) {
  return fastCaseInsensitiveCompareUnicharsWithChars(characters, length, withChars, withLength);
}

const unichar *positionOfCharacters(const char *chars, std::uint32_t length, const unichar *inCharacters,
                                    std::uint32_t inLength, Flag caseSensitive) {
  return caseSensitive ? fastUnicharsContainChars(inCharacters, inLength, chars, length)
                       : fastCaseInsensitiveUnicharsContainChars(inCharacters, inLength, chars, length);
}

bool containsDigitCharacter(const NSString &string) {
  return characterPartOfSet(string, digitCharacterSetRep());
}

bool containsWhiteCharacter(const NSString &string) {
  return characterPartOfSet(string, whiteCharacterSetRep());
}

bool containsAlphaCharacter(const NSString &string) {
  return characterPartOfSet(string, alphaCharacterSetRep());
}

bool containsAlphaNumCharacter(const NSString &string) {
  return characterPartOfSet(string, alphaNumCharacterSetRep());
}

bool containsCharacterPartOfCharacterSetRep(const NSString &string, const CharacterSetRep *set) {
  return characterPartOfSet(string, set);
}

bool isAlphaNumString(const NSString &string) {
  return charactersPartOfSet(string, alphaNumCharacterSetRep(), false);
}

bool isAlphaString(const NSString &string) {
  return charactersPartOfSet(string, alphaCharacterSetRep(), false);
}

bool isDigitString(const NSString &string) {
  return charactersPartOfSet(string, digitCharacterSetRep(), false);
}

bool isWhiteString(const NSString &string) {
  return charactersPartOfSet(string, whiteCharacterSetRep(), true);
}

bool isSpaceString(const NSString &string) {
  return charactersPartOfSet(string, spaceCharacterSetRep(), true);
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
