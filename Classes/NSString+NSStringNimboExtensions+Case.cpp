// SPDX-License-Identifier: Apache-2.0
#include "Classes/NSString+NSStringNimboExtensions+Case.hpp"

#include "Classes/CharacterSetRep.hpp"
#include "Classes/CharacterTables.hpp"
#include "Classes/UnitEditing.hpp"
#include "platform/Foundation/NSStringNormalization.hpp"

namespace nimbo {
inline namespace NSStringNimboExtensions {

namespace {

NSString stringByMappingThroughTable(const NSString &string, const unichar *table) {
  return stringByMappingUnits(string, [table](unichar c) { return table[c]; });
}

NSString normalizedStringByMappingThroughTable(const NSString &string, const unichar *table) {
  if (isQuicklyPrecomposed(string.view())) return stringByMappingThroughTable(string, table);
  return stringByEditing(string, [table](NSMutableString &copy) {
    precomposeStringWithCanonicalMapping(copy);
    mapUnits(copy, [table](unichar c) { return table[c]; });
  });
}

}  // namespace

NSString uppercaseAsciiString(const NSString &string) {
  return stringByMappingUnits(string, toUpperAscii);
}

NSString lowercaseAsciiString(const NSString &string) {
  return stringByMappingUnits(string, toLowerAscii);
}

NSString asciiString(const NSString &string) {
  return stringByMappingUnits(string, toAscii);
}

NSString nonUmlautedString(const NSString &string) {
  return stringByMappingThroughTable(string, initUmlautsCharsTable());
}

NSString uppercaseNonUmlautedString(const NSString &string) {
  return stringByMappingThroughTable(string, initUpperUmlautsCharsTable());
}

NSString lowercaseNonUmlautedString(const NSString &string) {
  return stringByMappingThroughTable(string, initLowerUmlautsCharsTable());
}

NSString nonUmlautedNormalizedString(const NSString &string) {
  return normalizedStringByMappingThroughTable(string, initUmlautsCharsTable());
}

NSString uppercaseNonUmlautedNormalizedString(const NSString &string) {
  return normalizedStringByMappingThroughTable(string, initUpperUmlautsCharsTable());
}

NSString lowercaseNonUmlautedNormalizedString(const NSString &string) {
  return normalizedStringByMappingThroughTable(string, initLowerUmlautsCharsTable());
}

NSString caseInsensitiveStringByRemovingNonAlphaNumericCharacters(const NSString &string) {
  const CharacterSetRep *const alphaNum = alphaNumCharacterSetRep();
  const unichar *const table = initLowerUmlautsCharsTable();
  return stringByEditing(string, [=](NSMutableString &copy) {
    removeUnits(copy, [=](unichar c) { return !alphaNum->contains(c); });
    mapUnits(copy, [=](unichar c) { return table[c]; });
  });
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
