// SPDX-License-Identifier: Apache-2.0
//
// Searches for one unit, which any thread may make. A letter with two cases is looked for as its uppercase
// form: without regard to case in the units' `upperCharsTable` entries, else as it is, so that a
// case-sensitive search for "a" finds "A" and never "a". Other characters are compared exactly. A search
// begins at `startAt`; a start that is not below the length finds nothing.
//
//     findCharacter(u"a/b/c"_ns, u'/');  // 1
//     countCharacter(u"Banana"_ns, u'A', true);  // 3
//     findOneOf(u"path?a#b"_ns, u"#?"_ns);  // 4
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

/// The index of the first such unit; NSNotFound when there is none.
std::uint32_t findCharacter(const NSString &string, unichar character, Flag caseInsensitive = false);
/// As above, from `startAt` on.
std::uint32_t findCharacter(const NSString &string, unichar character, std::uint32_t startAt,
                            Flag caseInsensitive);
/// Whether there is such a unit.
bool containsCharacter(const NSString &string, unichar character, Flag caseInsensitive = false);
/// Whether there is such a unit from `startAt` on.
bool containsCharacter(const NSString &string, unichar character, std::uint32_t startAt, Flag caseInsensitive);
/// How many such units there are.
std::uint32_t countCharacter(const NSString &string, unichar character, Flag caseInsensitive = false);
/// How many such units there are from `startAt` on.
std::uint32_t countCharacter(const NSString &string, unichar character, std::uint32_t startAt,
                             Flag caseInsensitive);
/// The index of the last such unit; NSNotFound when there is none.
std::uint32_t findLastCharacter(const NSString &string, unichar character, Flag caseInsensitive = false);
/// As above, but not in front of `startAt`; a negative one is 0.
std::uint32_t findLastCharacter(const NSString &string, unichar character, std::int32_t startAt,
                                Flag caseInsensitive);

/// The index of the first unit that is one of `characters`; without regard to case by `upperCharsTable`.
/// NSNotFound when there is none or either string is nil or empty.
std::uint32_t findOneOf(const NSString &string, const NSString &characters, Flag caseInsensitive = false);
/// As above, from `startAt` on.
std::uint32_t findOneOf(const NSString &string, const NSString &characters, std::uint32_t startAt,
                        Flag caseInsensitive);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
