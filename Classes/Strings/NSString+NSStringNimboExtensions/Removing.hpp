// SPDX-License-Identifier: Apache-2.0
//
// Copies with units removed, as NSMutableString+NSMutableStringNimboExtensions/Removing.hpp does in place. The
// answer is the string itself when nothing is removed; nil for nil. Any thread may call these.
//
//     stringByRemovingSpaces(u"1 000"_ns);  // "1000"
//     stringByRemovingMultipleFeeds(u"a\n\n\nb"_ns);  // "a\nb"
//     reformattedStringByRemovingCharactersOfString(u" a,\n b"_ns, u","_ns);  // "a b"
#pragma once

#include "Classes/Characters/CharacterSetRep.hpp"
#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

/// Removes the units in the set; none when it is null.
NSString stringByRemovingCharacters(const NSString &string, const CharacterSetRep *set);
/// Removes the units that stand in `characters`; none when it is nil.
NSString stringByRemovingCharactersOfString(const NSString &string, const NSString &characters);
/// Removes the units of the white set.
NSString stringByRemovingWhiteCharacters(const NSString &string);
/// Removes the units of the space set.
NSString stringByRemovingSpaces(const NSString &string);
/// Removes the tabs (U+0009).
NSString stringByRemovingTabs(const NSString &string);
/// Removes the line breaks.
NSString stringByRemovingFeeds(const NSString &string);
/// Keeps only the first of line breaks that follow each other. CR LF is one line break.
NSString stringByRemovingMultipleFeeds(const NSString &string);
/// Replaces each run of units of the space set (`andFeeds`: of the white set), also of a single one, by one
/// space.
NSString stringByRemovingMultipleSpacesAndFeeds(const NSString &string, Flag andFeeds);

/// Removes the units of the digit set.
NSString stringByRemovingDigits(const NSString &string);
/// Removes the units of the digit set and maps the others by `upperCharsTable`.
NSString uppercaseStringByRemovingDigits(const NSString &string);
/// Removes the units of the digit set and maps the others by `lowerCharsTable`.
NSString lowercaseStringByRemovingDigits(const NSString &string);

/// Removes the units that stand in `characters`, then writes each run of white characters as one space and
/// none at the ends.
NSString reformattedStringByRemovingCharactersOfString(const NSString &string, const NSString &characters);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
