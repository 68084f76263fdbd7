// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "Classes/Characters/CharacterSetRep.hpp"
#include "platform/Foundation/Flag.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Comparisons that look only at the units in a set and pass over all others: whether the members of `a` and
/// `b` are the same in the same order, or those of `b` the beginning of those of `a`. "NoCase" compares entries
/// in `upperCharsTable`; membership is always that of the unit itself. A run of length 0 may be null, and a nil
/// string counts as empty. With a null set the answer is false, but true when both sides are empty.

bool equalCharsOfCharacterSetRep(const unichar *a, std::uint32_t lenA, const unichar *b, std::uint32_t lenB,
                                 const CharacterSetRep *set);
bool equalCharsNoCaseOfCharacterSetRep(const unichar *a, std::uint32_t lenA, const unichar *b,
                                       std::uint32_t lenB, const CharacterSetRep *set);
bool hasPrefixCharsOfCharacterSetRep(const unichar *a, std::uint32_t lenA, const unichar *b, std::uint32_t lenB,
                                     const CharacterSetRep *set);
bool hasPrefixCharsNoCaseOfCharacterSetRep(const unichar *a, std::uint32_t lenA, const unichar *b,
                                           std::uint32_t lenB, const CharacterSetRep *set);

bool equalStringsUsingCharacterSetRep(const NSString &s1, const NSString &s2, const CharacterSetRep *set);
bool equalStringsNoCaseUsingCharacterSetRep(const NSString &s1, const NSString &s2, const CharacterSetRep *set);
bool hasPrefixUsingCharacterSetRep(const NSString &s1, const NSString &s2, const CharacterSetRep *set);
bool hasPrefixNoCaseUsingCharacterSetRep(const NSString &s1, const NSString &s2, const CharacterSetRep *set);

/// What the four above share. `resultWhenSecondRunsOut` answers when `s1` has a member for which `s2` has none
/// left: false for equality, true for a prefix.
bool _equalStringsUsingCharacterSetRep(const NSString &s1, const NSString &s2, const CharacterSetRep *set,
                                       Flag noCase, Flag resultWhenSecondRunsOut);

}  // namespace nimbo
