// SPDX-License-Identifier: Apache-2.0
//
// What is at a path. All answer false for nil where nothing else is said. Any thread may ask.
//
//     if (isSymbolicLinkAtPath(path)) NSLog(u"%@ is a link", path);
//     const bool isDangling = fileExistsAtPath(path, false) && !fileExistsAtPath(path, true);
//     if (!isVolumeMountedAtPath(u"/Volumes/Backup/Notes"_ns)) return;
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboFileManagerExtensions {

/// Whether a folder is there, or a link that leads to one.
bool isDirectoryAtPath(const NSString &path);
/// Whether a symbolic link is there, wherever it leads.
bool isSymbolicLinkAtPath(const NSString &path);
/// Whether something is there: with `traverseLink` behind a link, else the link itself is enough.
bool fileExistsAtPath(const NSString &path, Flag traverseLink);

/// Whether the volume of a path below "/Volumes/" is there: "/Volumes/Backup" for "/Volumes/Backup/Notes". True
/// for all other paths, nil too; they are taken as they are written.
bool isVolumeMountedAtPath(const NSString &path);

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
