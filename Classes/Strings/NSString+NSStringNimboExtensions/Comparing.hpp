// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

/// Nil counts as empty.
bool isStringEmpty(const NSString &string);
bool isStringNotEmpty(const NSString &string);

/// 0 when the string is nil or empty.
unichar firstCharacter(const NSString &string);
unichar lastCharacter(const NSString &string);

/// By the platform's comparison, which folds whole characters: "Straße" equals "STRASSE". False when either is
/// nil; an empty prefix or suffix is none.
bool hasPrefixNoCase(const NSString &string, const NSString &prefix);
bool hasSuffixNoCase(const NSString &string, const NSString &suffix);
bool isEqualToStringNoCase(const NSString &string, const NSString &other);

/// Whether the units of `range` are as many as those of `other` and equal to them one by one: as they are,
/// without regard to case (`upperCharsTable`), as capitals of ASCII (`toUpperAscii`, which makes all letters
/// without an ASCII form equal), or as capitals without diacritics (`upperUmlautsCharsTable`). False when the
/// range is not inside the string or either string is nil.
bool rangeIsEqualTo(const NSString &string, NSRange range, const NSString &other);
bool rangeIsEqualToNoCase(const NSString &string, NSRange range, const NSString &other);
bool rangeIsAsciiEqualToNoCase(const NSString &string, NSRange range, const NSString &other);
bool rangeIsNonUmlautedEqualToNoCase(const NSString &string, NSRange range, const NSString &other);

/// The same for the whole string.
bool isAsciiEqualToStringNoCase(const NSString &string, const NSString &other);
bool isNonUmlautedEqualToStringNoCase(const NSString &string, const NSString &other);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
