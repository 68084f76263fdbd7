// SPDX-License-Identifier: Apache-2.0
//
// Removing units and texts. One thread changes a string at a time.
//
//     NSMutableString number(u"No. 1 234\n"_ns);
//     removeWhiteCharacters(number);
//     deleteString(number, u"No."_ns);
//     number.view();  // "1234"
#pragma once

#include "Classes/Characters/CharacterSetRep.hpp"
#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSMutableStringNimboExtensions {

/// Removes the units in the set; none when it is null.
void removeCharacters(NSMutableString &string, const CharacterSetRep *set);
/// Removes the units that stand in `characters`; none when it is nil.
void removeCharactersOfString(NSMutableString &string, const NSString &characters);
/// Removes one unit; changes nothing when the index is not below the length.
void removeCharacterAtIndex(NSMutableString &string, std::uint32_t index);

/// Removes the units of the white set.
void removeWhiteCharacters(NSMutableString &string);
/// Removes the units of the space set.
void removeSpaces(NSMutableString &string);
/// Removes the tabs (U+0009).
void removeTabs(NSMutableString &string);
/// Removes the line breaks.
void removeFeeds(NSMutableString &string);
/// Removes the units of the digit set.
void removeDigits(NSMutableString &string);

/// Keeps only the first of line breaks that follow each other. CR LF is one line break.
void removeMultipleFeeds(NSMutableString &string);
/// Replaces each run of units of the space set, also of a single one, by one space.
void removeMultipleSpaces(NSMutableString &string);
/// Replaces each run of units of the space set (`andFeeds`: of the white set), also of a single one, by one
/// space.
void removeMultipleSpacesAndFeeds(NSMutableString &string, Flag andFeeds);

/// Removes every occurrence of `deleted`, from left to right; none when it is nil or empty.
void deleteString(NSMutableString &string, const NSString &deleted);

}  // namespace NSMutableStringNimboExtensions
}  // namespace nimbo
