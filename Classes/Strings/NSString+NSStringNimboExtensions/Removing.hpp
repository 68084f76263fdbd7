// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/Characters/CharacterSetRep.hpp"
#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

// As the editing forms of `NSMutableString+NSMutableStringNimboExtensions+Removing.hpp`. Answers the string
// itself when nothing is removed; nil for nil.

NSString stringByRemovingCharacters(const NSString &string, const CharacterSetRep *set);
NSString stringByRemovingCharactersOfString(const NSString &string, const NSString &characters);
NSString stringByRemovingWhiteCharacters(const NSString &string);
NSString stringByRemovingSpaces(const NSString &string);
NSString stringByRemovingTabs(const NSString &string);
NSString stringByRemovingFeeds(const NSString &string);
NSString stringByRemovingMultipleFeeds(const NSString &string);
NSString stringByRemovingMultipleSpacesAndFeeds(const NSString &string, Flag andFeeds);

NSString stringByRemovingDigits(const NSString &string);
/// What is left is mapped through `upperCharsTable` or `lowerCharsTable`.
NSString uppercaseStringByRemovingDigits(const NSString &string);
NSString lowercaseStringByRemovingDigits(const NSString &string);

/// Without the units of `characters`, then with each run of white characters as one space and none at the ends.
NSString reformattedStringByRemovingCharactersOfString(const NSString &string, const NSString &characters);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
