// SPDX-License-Identifier: Apache-2.0
//
// Normal forms and case of whole strings. The length may change. One thread changes a string at a
// time.
//
//     NSMutableString name(u"E\u0301COLE"_ns);
//     normalizeString(name);
//     capitalize(name);
//     name.view();  // "École"
#pragma once

#include "platform/Foundation/NSStringNormalization.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSMutableStringNimboExtensions {

/// Brings the string into NFC, or the form given.
void normalizeString(NSMutableString &string, CFStringNormalizationForm form = kCFStringNormalizationFormC);
/// Brings the string into NFC, then into lower case, the name notwithstanding.
void normalizeUppercaseString(NSMutableString &string);
/// Brings the string into NFC, then into lower case.
void normalizeLowercaseString(NSMutableString &string);

/// Cleans text of unsure origin in place: each unit that is a surrogate (of a pair too) or in the private range
/// U+F400 to U+F8FF becomes a space; then the string is brought into NFC.
void fixAndNormalizeString(NSMutableString &string);
/// The same, but pairs of surrogates stay, which are the characters above U+FFFF.
void fixAndNormalizeStringKeepingPairs(NSMutableString &string);

/// Maps whole characters to lower case, as `CFStringLowercase`.
void lowercase(NSMutableString &string);
/// Maps whole characters to upper case, as `CFStringUppercase`.
void uppercase(NSMutableString &string);
/// Writes a capital at the beginning of each word, as `CFStringCapitalize`.
void capitalize(NSMutableString &string);

}  // namespace NSMutableStringNimboExtensions
}  // namespace nimbo
