// SPDX-License-Identifier: Apache-2.0
//
// Work on files and folders by their paths. Any thread may call.
//
//     for (const NSString &name : directoryContentsAtPath(u"/tmp"_ns, u"html"_ns)) NSLog(name);
#pragma once

#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Listing.hpp"
