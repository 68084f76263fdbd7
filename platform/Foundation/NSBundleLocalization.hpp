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

/// The text for `key` in the first of the user's languages whose table has one: Localizable.strings, a property
/// list of pairs with or without braces in UTF-8, in the bundle's folder Contents/Resources/LANGUAGE.lproj. The
/// tables are read on each call. Without one it is `value`, or `key` itself when that is nil or empty.
NSString localizedStringForKey(const NSBundle &bundle, const NSString &key, const NSString &value);

}  // namespace nimbo
