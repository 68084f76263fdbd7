// SPDX-License-Identifier: Apache-2.0
//
// Strings as values, and texts written anew. Any thread may call these.
//
//     boolValue(u"Yes"_ns);  // true
//     typedValueForKeys(u"GET"_ns, {u"head"_ns, u"get"_ns});  // 1
//     stringByRotating13(u"Hello"_ns);  // "Uryyb"
#pragma once

#include <initializer_list>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboExtensions {

/// Whether the string begins as a whole number other than 0 (behind white characters, with or without a sign)
/// or is "on", "yes" or "true", without regard to case.
bool boolValue(const NSString &string);

/// The position of the first key that equals the string without regard to case (`upperCharsTable`), or
/// NSNotFound. A nil key ends the list.
std::uint32_t typedValueForKeys(const NSString &string, std::initializer_list<NSString> keys);

/// Moves each ASCII letter `n` places forward in its alphabet, from its end on to its beginning; backward when
/// `n` is negative. The string itself when that changes nothing.
NSString stringByRotating(const NSString &string, std::int32_t n);
/// As `stringByRotating` by 13 places, which undoes itself.
NSString stringByRotating13(const NSString &string);

/// Joins the lines of a mailing to paragraphs. A line goes on in the next one, with one space, unless one of
/// them is blank or quoted (">") or the next begins with a white character, "-" or "*". Lines lose the white
/// characters at their ends; line feeds stand between what remains, at most two together. The string itself
/// when that changes nothing.
NSString reformattedMailing(const NSString &string);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
