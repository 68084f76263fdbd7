// SPDX-License-Identifier: Apache-2.0
//
// Removal of files and folders. Links are removed, never followed. Any thread may call.
//
//     removePath(u"/tmp/export"_ns);
//     removeEmptyDirectoryAtPath(u"/tmp/drafts"_ns);
//     removeEmptyDirectoriesInside(u"/tmp/store"_ns, u"/tmp/store/2001/02/03"_ns);
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboFileManagerExtensions {

/// Removes a file, a link, or a folder with all that is in it, however deep. Whether nothing is there then;
/// what cannot be removed is logged, and what could be is gone. False for nil and "".
bool removePath(const NSString &path);

/// Removes a folder that is empty but for a ".DS_Store". That file goes even when the folder then stays. False
/// when it is no folder, a link to one included, or not empty.
bool removeEmptyDirectoryAtPath(const NSString &path);

/// Removes the folder `startingAtPath` if it is empty but for a ".DS_Store", then those above it that have
/// become empty, up to but without `root`, unless `root` with "/" behind it is itself where to start. True
/// whatever could be removed; false when it does not start at a folder inside of `root`, by their paths as they
/// are written.
bool removeEmptyDirectoriesInside(const NSString &root, const NSString &startingAtPath);

/// Removes a name of a file, or a link; never a folder.
bool unlinkFileAtPath(const NSString &path);

/// Removes a folder that is empty.
bool _rmdir(const NSString &path);

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
