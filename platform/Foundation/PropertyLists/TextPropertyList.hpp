// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platform/Foundation/id.hpp"

namespace nimbo {

/// Whether the data is text in UTF-16, which has a byte order mark or begins with a character of ASCII.
bool isUTF16Text(std::string_view bytes);

/// The text of UTF-16 data, without its byte order mark. Half a unit at the end does not count.
std::u16string unitsOfUTF16Text(std::string_view bytes);

/// Reads a property list in the old-style text form, UTF-8 or UTF-16, never nil:
///
///   ( bare, "quoted\n", 'quoted' )     an array
///   { key = value; "other key" = (); } a dictionary
///   key = value; "other key" = ();     the same, as a table of strings is written
///   < 0fbd 77 >                        data
///
/// with `//` and `/* */` comments. There are no numbers: everything else is a string. Raises
/// `PropertyListError`, which names the line.
id propertyListFromTextData(const NSData &data);

}  // namespace nimbo
