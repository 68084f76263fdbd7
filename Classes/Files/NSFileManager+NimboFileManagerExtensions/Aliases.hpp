// SPDX-License-Identifier: Apache-2.0
//
// Alias files: each stands for another file or folder, its original, as far as it names that by its path. An
// alias file is bookmark data or has an alias record in its resource fork; symbolic links are none. Any thread
// may read them.
//
//     bool isDirectory = false;
//     if (isAliasFileAtPath(path)) NSLog(resolveAlias(path, true, &isDirectory));
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboFileManagerExtensions {

/// Whether a regular file, or the one that a symbolic link leads to, is an alias file; `*isDirectory` gets
/// whether its original was a folder when it was made.
bool isAliasFileAtPath(const NSString &path, bool *isDirectory = nullptr);

/// The absolute path of an alias file's original, which need not be there: aliases come from other machines.
/// `*isDirectory` gets whether it is a folder or, when it is not there, was one. Nil when the file is no alias
/// or names no path. Nothing is ever asked or mounted, with or without `noUI`.
NSString resolveAlias(const NSString &path, Flag noUI = true, bool *isDirectory = nullptr);

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
