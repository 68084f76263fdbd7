// SPDX-License-Identifier: Apache-2.0
//
// Folded copies. Each unit is mapped by itself, with the tables of Classes/Characters/CharacterTables.hpp. The
// answer is the string itself when that changes nothing; nil for nil. Any thread may call these.
//
//     nonUmlautedString(u"Zürich"_ns);  // "Zurich"
//     uppercaseAsciiString(u"naïve…"_ns);  // "NAIVE "
//     caseInsensitiveStringByRemovingNonAlphaNumericCharacters(u"Blu-ray Über"_ns);  // "blurayuber"
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

/// Maps by `toUpperAscii`: what has no ASCII form becomes a space.
NSString uppercaseAsciiString(const NSString &string);
/// Maps by `toLowerAscii`: what has no ASCII form becomes a space.
NSString lowercaseAsciiString(const NSString &string);
/// Maps by `toAscii`: what has no ASCII form becomes a space.
NSString asciiString(const NSString &string);

/// Takes the diacritics away (`umlautsToAscii`).
NSString nonUmlautedString(const NSString &string);
/// Takes the diacritics away, in upper case (`umlautsToUpperAscii`).
NSString uppercaseNonUmlautedString(const NSString &string);
/// Takes the diacritics away, in lower case (`umlautsToLowerAscii`).
NSString lowercaseNonUmlautedString(const NSString &string);

/// Folds the string in NFC as `nonUmlautedString`, so that diacritics that stand as marks of their own go too.
NSString nonUmlautedNormalizedString(const NSString &string);
/// Folds the string in NFC as `uppercaseNonUmlautedString`.
NSString uppercaseNonUmlautedNormalizedString(const NSString &string);
/// Folds the string in NFC as `lowercaseNonUmlautedString`.
NSString lowercaseNonUmlautedNormalizedString(const NSString &string);

/// Keeps the letters and digits only, in lower case without diacritics (`umlautsToLowerAscii`): a key under
/// which different spellings meet.
NSString caseInsensitiveStringByRemovingNonAlphaNumericCharacters(const NSString &string);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
