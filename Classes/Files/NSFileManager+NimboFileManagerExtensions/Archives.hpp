// SPDX-License-Identifier: Apache-2.0
//
// Copies of a file from before, which rotate: "notes.txt.0" is the newest one, then "notes.txt.1" and so on. A
// folder may have them as well. One process at a time rotates those of a file. Any thread may call.
//
//     if (!archivePath(path, 5)) return false;  // The content is at path + ".0" now.
//     writeString(text, path, false);
//     for (const NSString &each : archivedPaths(path)) NSLog(each);
#pragma once

#include <cstdint>
#include <vector>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboFileManagerExtensions {

/// The path and those of its archives, from ".0" up to the first that is missing. Empty when nothing is at the
/// path.
std::vector<NSString> archivedPaths(const NSString &path);

/// Moves what is at `path` to `path` + ".0". When there is an archive of that name, the others first move up by
/// one, and those from the number `numberOfArchives` - 1 on go. True without doing anything when nothing is at
/// the path or the number is 0. False when it cannot be moved: it is then where it was. Nothing is ever
/// overwritten: whoever is killed at any moment leaves the content at `path` or at `path` + ".0", and all
/// archives but the oldest one under some number.
bool archivePath(const NSString &path, std::uint32_t numberOfArchives);

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
