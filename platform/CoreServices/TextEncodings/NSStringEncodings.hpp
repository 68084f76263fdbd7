// SPDX-License-Identifier: Apache-2.0
//
// Strings as bytes of an encoding. Any thread may convert.
//
//     const NSData bytes = dataUsingEncoding(u"café"_ns, NSISOLatin1StringEncoding);
//     bytes.length();  // 4
//     initWithData(bytes, NSISOLatin1StringEncoding);  // "café"
//     canBeConvertedToEncoding(u"€"_ns, NSISOLatin1StringEncoding);  // false
#pragma once

#include "platform/CoreServices/TextEncodings/CFStringEncoding.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The text that the bytes are. A byte order mark is dropped in UTF-8 and where it decides the order, in
/// `NSUnicodeStringEncoding` and `NSUTF32StringEncoding`. Nil when the data is nil, the encoding is not
/// available, or the bytes do not have a meaning in it to the last one.
NSString initWithData(const NSData &data, NSStringEncoding encoding);

/// The string's bytes in the encoding; a byte order mark stands before those of `NSUnicodeStringEncoding` and
/// `NSUTF32StringEncoding`. Nil when the string is nil, the encoding is not available, or any character would
/// be lost: the bytes always give the same string again. (Only a U+FEFF that the string itself begins with is
/// taken for a mark in UTF-8.)
NSData dataUsingEncoding(const NSString &string, NSStringEncoding encoding);

/// Whether `dataUsingEncoding` has an answer.
bool canBeConvertedToEncoding(const NSString &string, NSStringEncoding encoding);

/// The encoding of the fewest bytes: ASCII, else the first of ISO Latin 1, Windows Latin 1, Mac Roman, ISO
/// Latin 2 and the other Windows pages of the short list that has all characters, else the shorter of UTF-8 and
/// UTF-16.
NSStringEncoding smallestEncoding(const NSString &string);

/// The encoding that needs no conversion: `NSUnicodeStringEncoding`, as strings are kept.
NSStringEncoding fastestEncoding(const NSString &string);

}  // namespace nimbo
