// SPDX-License-Identifier: Apache-2.0
//
// Parameters of a query, which begins at an index of a string. A name begins at a letter or digit
// (`alphaNumCharacterSetRep`) and ends before the next "="; the value ends before the next "&" or ";". What
// stands before a name is skipped; a name without "=" takes what follows it, up to the next "=", as part of
// itself. Nothing is unescaped.
//
//     p?a=1&=2;flag&b=
//       | |  |  |     |
//       | |  |  |     an empty value
//       | |  |  the name "flag&b"
//       | |  the name begins at "2", and is "2;flag&b"
//       a "1"
//
// Any thread may ask.
//
//     queryParamNamed(u"p?a=1&b=2"_ns, u"b"_ns, 2);  // "2"
//     numberOfQueryParams(u"p?a=1&b="_ns, 2);  // 2
//     const NSDictionary values = queryParams(u"p?a=1&b=2"_ns, 2);
#pragma once

#include <cstdint>

#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The parameters that have a value; the last one of a name counts. Nil when the string is nil or empty or
/// `startIndex` is not inside it.
NSDictionary queryParams(const NSString &string, std::uint32_t startIndex);

/// How many parameters there are, those without a value and those of the same name too.
std::uint32_t numberOfQueryParams(const NSString &string, std::uint32_t startIndex);

/// The value of the first parameter of this name that has one. Case matters. Nil when there is none, when the
/// name is nil or empty or is as long as the string.
NSString queryParamNamed(const NSString &string, const NSString &name, std::uint32_t startIndex);

/// Whether there is a parameter of this name, with a value or without.
bool containsQueryParamNamed(const NSString &string, const NSString &name, std::uint32_t startIndex);

}  // namespace nimbo
