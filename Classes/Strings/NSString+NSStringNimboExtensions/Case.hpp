// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

// Each unit is mapped by itself. Answers the string itself when that changes nothing; nil for nil.

/// By `toUpperAscii`, `toLowerAscii`, `toAscii`: what has no ASCII form becomes a space.
NSString uppercaseAsciiString(const NSString &string);
NSString lowercaseAsciiString(const NSString &string);
NSString asciiString(const NSString &string);

/// Without diacritics: by `umlautsToAscii`, `umlautsToUpperAscii`, `umlautsToLowerAscii`.
NSString nonUmlautedString(const NSString &string);
NSString uppercaseNonUmlautedString(const NSString &string);
NSString lowercaseNonUmlautedString(const NSString &string);

/// The same of the string in NFC, so that diacritics that stand as marks of their own go too.
NSString nonUmlautedNormalizedString(const NSString &string);
NSString uppercaseNonUmlautedNormalizedString(const NSString &string);
NSString lowercaseNonUmlautedNormalizedString(const NSString &string);

/// The letters and digits only, in lower case without diacritics (`umlautsToLowerAscii`): a key under which
/// different spellings meet.
NSString caseInsensitiveStringByRemovingNonAlphaNumericCharacters(const NSString &string);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
