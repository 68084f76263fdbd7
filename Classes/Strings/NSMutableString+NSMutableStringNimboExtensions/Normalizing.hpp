// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSStringNormalization.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSMutableStringNimboExtensions {

/// Into NFC, or the form given.
void normalizeString(NSMutableString &string, CFStringNormalizationForm form = kCFStringNormalizationFormC);
/// Into NFC, then into lower case: both, the name notwithstanding.
void normalizeUppercaseString(NSMutableString &string);
void normalizeLowercaseString(NSMutableString &string);

/// Cleans text of unsure origin in place: each unit that is a surrogate (of a pair too) or in the private range
/// U+F400 to U+F8FF becomes a space; then the string is brought into NFC.
void fixAndNormalizeString(NSMutableString &string);

/// The platform's mappings of whole characters; the length may change.
void lowercase(NSMutableString &string);
void uppercase(NSMutableString &string);
void capitalize(NSMutableString &string);

}  // namespace NSMutableStringNimboExtensions
}  // namespace nimbo
