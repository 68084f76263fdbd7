// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The value of an attribute of the tag that has `length` units from `offset` on; `name` is ASCII that ends
/// with a zero byte, in any case. The name must not follow a letter or a digit nor stand in quotes, and "="
/// comes behind it. A quoted value ends at the same quote or at ">", any other at white space or ">". White
/// space at its end is trimmed; entities stay as they are. Nil when the tag has no such attribute or the value
/// is empty, and when the tag is not at least 6 units longer than the name.
///
/// `isTolerant` is for the contents of meta tags, which may hold tags: a ">" ends a quoted value only when
/// there is no "<" in the value that it belongs to. The value then also ends at "<meta".
NSString _attributeOfTagCharactersWithName(const unichar *characters, std::uint32_t offset,
                                           std::uint32_t length, const char *name, bool isTolerant);

/// As above, never tolerant, in a range of a string, which is cut to its bounds. `separator` stands for the
/// "=", `terminator` for the ">", and the range must have more than `slack` units besides the name. Nil, too,
/// when the string or the name is nil or empty, or the range begins behind the string.
NSString _attributeOfStringWithName(const NSString &string, std::uint32_t location, std::uint32_t length,
                                    const NSString &name, std::uint32_t slack, unichar separator,
                                    unichar terminator);

/// The value of a field in a header's text, "name=value; ...". The text is compared in upper case with the
/// name, which is not folded and may follow any unit. A value that begins with `quote` ends at the next one or
/// with the text, and is passed over when it is empty; any other has at least one unit and ends at ";". With
/// `isLenient` white space in front of the value is skipped, and ends one without quotes. Nil when there is no
/// such field, and when the text is nil or not longer than the name.
NSString _copyOfAttributeOfString(const NSString &string, const unichar *name, std::uint32_t nameLength,
                                  unichar quote, bool isLenient);

}  // namespace nimbo
