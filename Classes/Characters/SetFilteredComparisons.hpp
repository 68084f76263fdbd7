// SPDX-License-Identifier: Apache-2.0
//
// Comparisons that look only at the units in a set, in their order, and pass over all others. Membership is
// always that of the unit itself. A run of length 0 may be null, and a nil string counts as empty. With a null
// set the answer is false, but true when both sides are empty. Any thread may call them.
//
//     const CharacterSetRep *const words = alphaNumCharacterSetRep();
//     equalStringsUsingCharacterSetRep(u"e-mail"_ns, u"email"_ns, words);  // true
//     hasPrefixNoCaseUsingCharacterSetRep(u"E-Mail us"_ns, u"email"_ns, words);  // true
#pragma once

#include <cstdint>

#include "Classes/Characters/CharacterSetRep.hpp"
#include "platform/Foundation/Flag.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Whether the members of `a` and `b` are the same.
bool equalCharsOfCharacterSetRep(const unichar *a, std::uint32_t lenA, const unichar *b, std::uint32_t lenB,
                                 const CharacterSetRep *set);
/// Whether the members of `a` and `b` have the same entries in `initUpperCharsTable`.
bool equalCharsNoCaseOfCharacterSetRep(const unichar *a, std::uint32_t lenA, const unichar *b,
                                       std::uint32_t lenB, const CharacterSetRep *set);
/// Whether the members of `b` are the beginning of those of `a`.
bool hasPrefixCharsOfCharacterSetRep(const unichar *a, std::uint32_t lenA, const unichar *b, std::uint32_t lenB,
                                     const CharacterSetRep *set);
/// Whether the entries in `initUpperCharsTable` of `b`'s members are the beginning of those of `a`'s.
bool hasPrefixCharsNoCaseOfCharacterSetRep(const unichar *a, std::uint32_t lenA, const unichar *b,
                                           std::uint32_t lenB, const CharacterSetRep *set);

/// Whether the members of two strings are the same.
bool equalStringsUsingCharacterSetRep(const NSString &s1, const NSString &s2, const CharacterSetRep *set);
/// Whether the members of two strings have the same entries in `initUpperCharsTable`.
bool equalStringsNoCaseUsingCharacterSetRep(const NSString &s1, const NSString &s2, const CharacterSetRep *set);
/// Whether the members of `s2` are the beginning of those of `s1`.
bool hasPrefixUsingCharacterSetRep(const NSString &s1, const NSString &s2, const CharacterSetRep *set);
/// Whether the entries in `initUpperCharsTable` of `s2`'s members are the beginning of those of `s1`'s.
bool hasPrefixNoCaseUsingCharacterSetRep(const NSString &s1, const NSString &s2, const CharacterSetRep *set);

/// Compares strings in one of the four ways above. `resultWhenSecondRunsOut` answers when `s1` has a member
/// for which `s2` has none left: false for equality, true for a prefix.
bool _equalStringsUsingCharacterSetRep(const NSString &s1, const NSString &s2, const CharacterSetRep *set,
                                       Flag noCase, Flag resultWhenSecondRunsOut);

}  // namespace nimbo
