// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// All characters in lower case, by Unicode's rules without those of any language; the string itself when that
/// changes nothing. Nil for nil.
NSString lowercaseString(const NSString &string);

/// The string in lower case, in upper case, or with a capital at the beginning of each word and lower case in
/// the rest of it; in place, by Unicode's rules without those of any language. The length may change.
void CFStringLowercase(NSMutableString &string);
void CFStringUppercase(NSMutableString &string);
void CFStringCapitalize(NSMutableString &string);

}  // namespace nimbo
