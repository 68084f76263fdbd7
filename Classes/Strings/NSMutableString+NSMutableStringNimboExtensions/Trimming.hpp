// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSMutableStringNimboExtensions {

// In place, what the functions of `NSString+NSStringNimboExtensions+Trimming.hpp` answer.

void trimWhiteSpaces(NSMutableString &string);
void trimFeeds(NSMutableString &string);
void trimCharacter(NSMutableString &string, unichar character);
void trimPrefixCharacter(NSMutableString &string, unichar character);
void trimSuffixCharacter(NSMutableString &string, unichar character);

/// Appends `appended` without the white characters at its ends.
void appendTrimmedString(NSMutableString &string, const NSString &appended);

}  // namespace NSMutableStringNimboExtensions
}  // namespace nimbo
