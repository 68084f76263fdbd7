// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// The value of an attribute of the tag that has `length` units from `offset` on; `name` is ASCII, in any case.
/// The name must stand behind a unit that is neither letter nor digit, in front of "=", and outside quotes.
/// A value is quoted, or ends at white space or ">"; the ">" ends a quoted value too. Its white space at the
/// end is trimmed; entities stay. Nil when the tag has no such attribute, or an empty one.
///
/// `isTolerant` is for the contents of meta tags, which may hold tags: in quotes a ">" then ends the value only
/// when no "<" in the value stands for it, or a "<meta" follows.
NSString _attributeOfTagCharactersWithName(const unichar *characters, std::uint32_t offset,
                                           std::uint32_t length, const char *name, bool isTolerant);

/// As above, never tolerant, in the part of a string: `slack` is how many units more than the name the part
/// must have, `separator` stands between name and value, and `terminator` ends a value, as ">" does above. Nil
/// also when the range does not lie in the string.
NSString _attributeOfStringWithName(const NSString &string, std::uint32_t location, std::uint32_t length,
                                    const NSString &name, std::uint32_t slack, unichar separator,
                                    unichar terminator);

/// The value of a field as headers have it, "name=value;", in upper case as far as the name goes: `name` must
/// be given so. It may follow any unit. A value that begins with `quote` ends at the next one; any other ends
/// at
/// ";", and with `isLenient` at white space, which may then also stand in front of it. Nil when there is none.
NSString _copyOfAttributeOfString(const NSString &string, const unichar *name, std::uint32_t nameLength,
                                  unichar quote, bool isLenient);

}  // namespace nimbo
