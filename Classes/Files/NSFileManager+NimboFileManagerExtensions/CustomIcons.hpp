// SPDX-License-Identifier: Apache-2.0
//
// Files and folders that show an icon of their own. Any thread may ask.
//
//     if (existsCustomIconForPath(path)) NSLog(u"%@ keeps its icon", path);
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboFileManagerExtensions {

/// Whether there is an icon of its own. A folder has one when a file "Icon\r" is in it or, because such folders
/// show icons of the system, when it stands in the home folder or in "/". A file has one when its Finder flags
/// say so.
bool existsCustomIconForPath(const NSString &path, Flag isDirectory);
/// The same, for whatever is at the path; false when that is nothing.
bool existsCustomIconForPath(const NSString &path);

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
