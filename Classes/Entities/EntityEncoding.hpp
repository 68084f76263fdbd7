// SPDX-License-Identifier: Apache-2.0
//
// Encoding of characters as entities. Any thread may encode.
//
//     stringByConvertingCharactersToEntities(u"a < b"_ns, false);  // "a &lt; b"
//     stringByConvertingCharactersToEntities(u"café"_ns, true);  // "caf&#233;"
//     stringByConvertingCharactersToNamedEntities(u"café"_ns);  // "caf&eacute;"
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Writes, with `high`, every unit above 127 as "&#%d;"; without, "&", the double quote, "<" and ">" as their
/// entities. Answers the string itself when nothing changes or the result would be too long; nil for nil.
/// Raises `std::bad_alloc`.
NSString stringByConvertingCharactersToEntities(const NSString &string, Flag high);

/// The longest string that the table encoder takes.
inline constexpr std::uint32_t kMaxNamedEntitiesLength = 0x3fffffff;

/// Writes every unit that has a name in `entityStrings` as that entity, every other one above 127 as "&#%d;";
/// ASCII stays, markup too. Answers the string itself when that changes nothing or takes too much room: 10
/// units for each with a name, 8 for each number, 1 for the others, in all less than `NSNotFound`. Nil for
/// nil. Raises `std::bad_alloc`.
NSString stringByConvertingCharactersToNamedEntities(const NSString &string);

}  // namespace nimbo
