// SPDX-License-Identifier: Apache-2.0
//
// A string's units as bytes, and for a person to read. Any thread may ask.
//
//     char chars[8];
//     getChars(u"café"_ns, chars);  // 4
//     dumpAsArray(u"AB"_ns);  // "{0x0041, 0x0042}"
#pragma once

#include <cstdint>
#include <span>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

/// Copies the units to `chars`, as many as fit, and answers how many. A unit above U+00FF becomes "?".
std::uint32_t getChars(const NSString &string, std::span<char> chars);

/// The string itself.
NSString string(const NSString &string);

/// The units for a person to read: a line for each with its index, its value in hexadecimal digits and, when it
/// is printable ASCII, itself, as "3: 0041 A". Nil for nil.
NSString dump(const NSString &string);
/// The units in one line as an array of C: "{0x0041, 0x0042}". Nil for nil.
NSString dumpAsArray(const NSString &string);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
