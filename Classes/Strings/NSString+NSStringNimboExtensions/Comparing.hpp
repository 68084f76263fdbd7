// SPDX-License-Identifier: Apache-2.0
//
// Comparisons of strings and of their ends. Any thread may compare.
//
//     hasSuffixNoCase(u"photo.JPG"_ns, u".jpg"_ns);  // true
//     isNonUmlautedEqualToStringNoCase(u"Zoë"_ns, u"ZOE"_ns);  // true
//     rangeIsEqualTo(u"a page"_ns, {2, 4}, u"page"_ns);  // true
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

/// Whether the string is nil or has no unit.
bool isStringEmpty(const NSString &string);
/// Whether the string has a unit.
bool isStringNotEmpty(const NSString &string);

/// The first unit; 0 when the string is nil or empty.
unichar firstCharacter(const NSString &string);
/// The last unit; 0 when the string is nil or empty.
unichar lastCharacter(const NSString &string);

/// Whether the string begins with the prefix, as `isEqualToStringNoCase` compares. False when either is nil or
/// the prefix empty.
bool hasPrefixNoCase(const NSString &string, const NSString &prefix);
/// Whether the string ends with the suffix, as `isEqualToStringNoCase` compares. False when either is nil or
/// the suffix empty.
bool hasSuffixNoCase(const NSString &string, const NSString &suffix);
/// Whether both are equal for the platform's comparison, which folds whole characters: "Straße" equals
/// "STRASSE". False when either is nil.
bool isEqualToStringNoCase(const NSString &string, const NSString &other);

/// Whether the units of `range` are as many as those of `other` and equal to them one by one. False when the
/// range is not inside the string or either string is nil.
bool rangeIsEqualTo(const NSString &string, NSRange range, const NSString &other);
/// As `rangeIsEqualTo`, comparing entries in `upperCharsTable`.
bool rangeIsEqualToNoCase(const NSString &string, NSRange range, const NSString &other);
/// As `rangeIsEqualTo`, comparing by `toUpperAscii`, which makes all letters without an ASCII form equal.
bool rangeIsAsciiEqualToNoCase(const NSString &string, NSRange range, const NSString &other);
/// As `rangeIsEqualTo`, comparing entries in `upperUmlautsCharsTable`.
bool rangeIsNonUmlautedEqualToNoCase(const NSString &string, NSRange range, const NSString &other);

/// As `rangeIsAsciiEqualToNoCase` for the whole string.
bool isAsciiEqualToStringNoCase(const NSString &string, const NSString &other);
/// As `rangeIsNonUmlautedEqualToNoCase` for the whole string.
bool isNonUmlautedEqualToStringNoCase(const NSString &string, const NSString &other);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
