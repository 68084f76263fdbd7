// SPDX-License-Identifier: Apache-2.0
//
// Texts in the user's language. Any thread may ask.
//
//     const NSBundle program = NSBundle::mainBundle();
//     const NSString title = localizedStringForKey(program, u"title"_ns, u"Untitled"_ns);
//     localizedStringForKey(program, u"no such key"_ns, NSString());  // "no such key"
#pragma once

#include "platform/Foundation/NSBundle.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The text for `key` in the first of the user's languages whose table has one: TABLE.strings, "Localizable"
/// when the table is nil or empty, in the bundle's folder Contents/Resources/LANGUAGE.lproj: a property list,
/// or pairs without braces, in UTF-8 or UTF-16. The tables are read on each call.
/// Without one it is `value`, or `key` itself when that is nil or empty.
NSString localizedStringForKey(const NSBundle &bundle, const NSString &key, const NSString &value,
                               const NSString &table = NSString());

/// The value under the key of the bundle's information, as the table "InfoPlist" of the first of the user's
/// languages has it that has one, else as the information itself has it; nil when neither has.
id localizedObjectForInfoDictionaryKey(const NSBundle &bundle, const NSString &key);

}  // namespace nimbo
