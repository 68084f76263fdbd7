// SPDX-License-Identifier: Apache-2.0
//
// What strings are made of. Any thread may ask.
//
//     isUmlautedString(u"Zoë"_ns);  // true
//     countNumbers(u"page 3 of 10"_ns);  // 2
//     isMashedWordString(u"HelloWorld"_ns);  // true
#pragma once

#include <cstdint>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

/// Whether all units are below 128. True of an empty string, false of nil.
bool isAsciiString(const NSString &string);
/// Whether a unit has a form without diacritics (`umlautsCharsTable`). False when nil or empty.
bool isUmlautedString(const NSString &string);
/// Whether there is an uppercase letter and no lowercase one. False when nil or empty.
bool isUpperCaseString(const NSString &string);
/// Whether there is a lowercase letter and no uppercase one. False when nil or empty.
bool isLowerCaseString(const NSString &string);

/// Whether one of the numbers, which are the longest runs of ASCII digits, has this value: "a007" contains 7,
/// not 0.
bool containsNumber(const NSString &string, std::uint64_t number);
/// How many numbers there are, as `containsNumber` reads them.
std::uint32_t countNumbers(const NSString &string);
/// Whether `n` ASCII digits stand one after the other. False when `n` is below 1.
bool containsNumberWithNDigits(const NSString &string, std::int32_t n);

/// Whether one of the units of `characters` stands in the string; false when either is nil or empty.
bool containsCharacters(const NSString &string, const NSString &characters);

/// Whether all units of the run are in the white set; true for none.
bool onlyWhiteCharacters(const unichar *characters, std::uint32_t length);

/// Counts the "<" and the ">", stores the counts where the pointers are not null, and answers whether there is
/// a "<" and the counts are equal.
bool countLTGT(const NSString &string, std::uint32_t *lt, std::uint32_t *gt);

/// Whether the string begins as two words written as one: a capital, small letters, a capital, a small letter.
/// "HelloWorld" does, "HeLLo" does not.
bool isMashedWordString(const NSString &string);
/// As `isMashedWordString`.
bool isMashedWord(const NSString &string);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
