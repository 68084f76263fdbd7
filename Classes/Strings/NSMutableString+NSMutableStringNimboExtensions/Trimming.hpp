// SPDX-License-Identifier: Apache-2.0
//
// Trimming in place, as the functions of NSString+NSStringNimboExtensions/Trimming.hpp do for immutable
// strings:
//
//     NSMutableString text(u"--a-"_ns);
//     trimCharacter(text, u'-');
//     appendTrimmedString(text, u" b\n"_ns);
//     text.view();  // "ab"
#pragma once

#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSMutableStringNimboExtensions {

/// Removes the units of the white set at both ends.
void trimWhiteSpaces(NSMutableString &string);
/// Removes the line breaks at both ends.
void trimFeeds(NSMutableString &string);
/// Removes all units `character` at both ends.
void trimCharacter(NSMutableString &string, unichar character);
/// Removes all units `character` at the beginning.
void trimPrefixCharacter(NSMutableString &string, unichar character);
/// Removes all units `character` at the end.
void trimSuffixCharacter(NSMutableString &string, unichar character);

/// Appends `appended` without the white characters at its ends.
void appendTrimmedString(NSMutableString &string, const NSString &appended);

}  // namespace NSMutableStringNimboExtensions
}  // namespace nimbo
