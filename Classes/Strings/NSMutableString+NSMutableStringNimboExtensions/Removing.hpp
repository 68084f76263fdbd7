// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/Characters/CharacterSetRep.hpp"
#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSMutableStringNimboExtensions {

/// Removes the units in the set, or those of the string; none when the argument is null or nil.
void removeCharacters(NSMutableString &string, const CharacterSetRep *set);
void removeCharactersOfString(NSMutableString &string, const NSString &characters);
/// Changes nothing when the index is not below the length.
void removeCharacterAtIndex(NSMutableString &string, std::uint32_t index);

/// Remove the white set, the space set, U+0009, the line breaks, the digit set.
void removeWhiteCharacters(NSMutableString &string);
void removeSpaces(NSMutableString &string);
void removeTabs(NSMutableString &string);
void removeFeeds(NSMutableString &string);
void removeDigits(NSMutableString &string);

/// Of line breaks that follow each other, only the first stays. CR LF is one line break.
void removeMultipleFeeds(NSMutableString &string);
/// Each run of units of the space set (with line breaks: of the white set), of a single one too, becomes one
/// space.
void removeMultipleSpaces(NSMutableString &string);
void removeMultipleSpacesAndFeeds(NSMutableString &string, Flag andFeeds);

/// Removes every occurrence, from left to right; none when it is nil or empty.
void deleteString(NSMutableString &string, const NSString &deleted);

}  // namespace NSMutableStringNimboExtensions
}  // namespace nimbo
