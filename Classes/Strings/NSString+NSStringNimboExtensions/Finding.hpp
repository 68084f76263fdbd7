// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

/// Searches for one unit. A letter with two cases is looked for as its uppercase form: without regard to case
/// in the units' `upperCharsTable` entries, else as it is, so that a case-sensitive search for "a" finds "A"
/// and never "a". Other characters are compared exactly. The answer is an index (NSNotFound when there is
/// none), or how many there are. The search begins at `startAt`; backward it ends there, and a negative one is
/// 0. A start that is not below the length finds nothing.
std::uint32_t findCharacter(const NSString &string, unichar character, Flag caseInsensitive = false);
std::uint32_t findCharacter(const NSString &string, unichar character, std::uint32_t startAt,
                            Flag caseInsensitive);
bool containsCharacter(const NSString &string, unichar character, Flag caseInsensitive = false);
bool containsCharacter(const NSString &string, unichar character, std::uint32_t startAt, Flag caseInsensitive);
std::uint32_t countCharacter(const NSString &string, unichar character, Flag caseInsensitive = false);
std::uint32_t countCharacter(const NSString &string, unichar character, std::uint32_t startAt,
                             Flag caseInsensitive);
std::uint32_t findLastCharacter(const NSString &string, unichar character, Flag caseInsensitive = false);
std::uint32_t findLastCharacter(const NSString &string, unichar character, std::int32_t startAt,
                                Flag caseInsensitive);

/// The index of the first unit, from `startAt` on, that is one of `characters`; without regard to case by
/// `upperCharsTable`. NSNotFound when there is none or either string is nil or empty.
std::uint32_t findOneOf(const NSString &string, const NSString &characters, Flag caseInsensitive = false);
std::uint32_t findOneOf(const NSString &string, const NSString &characters, std::uint32_t startAt,
                        Flag caseInsensitive);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
