// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSString+NSStringNimboExtensions/Case.hpp"

#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Characters/UnitPredicates.hpp"
#include "Classes/Strings/UnitEditing.hpp"
#include "platform/Foundation/NSStringNormalization.hpp"

namespace nimbo {
inline namespace NSStringNimboExtensions {

namespace {

NSString normalizedStringByMappingThroughTable(const NSString &string, const unichar *table) {
  if (isQuicklyPrecomposed(string.view())) return stringByMappingUnits(string, EntryOf{table});
  return stringByEditing(string, [table](NSMutableString &copy) {
    precomposeStringWithCanonicalMapping(copy);
    mapUnits(copy, EntryOf{table});
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
  return stringByMappingUnits(string, EntryOf{initUmlautsCharsTable()});
}

NSString uppercaseNonUmlautedString(const NSString &string) {
  return stringByMappingUnits(string, EntryOf{initUpperUmlautsCharsTable()});
}

NSString lowercaseNonUmlautedString(const NSString &string) {
  return stringByMappingUnits(string, EntryOf{initLowerUmlautsCharsTable()});
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
  const EntryOf lowered{initLowerUmlautsCharsTable()};
  return stringByRemovingAndMappingUnits(
      string, [=](unichar c) { return !alphaNum->contains(c); }, lowered);
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
