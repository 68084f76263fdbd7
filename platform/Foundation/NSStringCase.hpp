// SPDX-License-Identifier: Apache-2.0
//
// Case of whole strings, by Unicode's rules, and those of a language where one is given, as "tr" or "el-GR".
// Any thread may map its own strings.
//
//     lowercaseString(u"ÉCOLE"_ns);  // "école"
//     NSMutableString title(u"the old town"_ns);
//     CFStringCapitalize(title);
//     title.view();  // "The Old Town"
#pragma once

#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The string in lower case; the string itself when that changes nothing. Nil for nil.
NSString lowercaseString(const NSString &string);

/// Writes the string in lower case, in place. The length may change.
void CFStringLowercase(NSMutableString &string, const char *language = "");
/// Writes the string in upper case, in place. The length may change.
void CFStringUppercase(NSMutableString &string, const char *language = "");
/// Writes a capital at the beginning of each word and lower case in the rest of it, in place. The length may
/// change.
void CFStringCapitalize(NSMutableString &string, const char *language = "");

}  // namespace nimbo
