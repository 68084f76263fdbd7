// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/id.hpp"

namespace nimbo {

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
