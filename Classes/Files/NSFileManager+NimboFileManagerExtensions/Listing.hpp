// SPDX-License-Identifier: Apache-2.0
//
// Listings of folders: of one level or, deep, of the whole tree; of files, folders or both. Any thread may
// list.
//
//     for (const NSString &name : directoryContentsAtPath(u"/tmp"_ns, u"html"_ns)) NSLog(name);
//     const auto files = directoryContentsAtPath(path, u""_ns);  // Those without an extension.
//     const auto pages = directoryContentsAtPathMatchingWildcard(path, u"page-??.htm*"_ns, true);
//     const auto all = deepDirectoryFilesAtPath(path, false);  // "a.txt", "notes/b.txt" ...
//
// - Entries come in the order in which the file system lists them, which stays the same while the folder is not
//   changed. In deep listings a folder is followed by what is in it.
// - A listing has names, or with `fullPath` the folder's path as it is given with the name behind it; deep
//   listings have paths relative to the folder. Names that are not UTF-8 come as
//   `NSString::stringWithFileSystemRepresentation` makes them. Hidden entries are listed, "." and ".." are not.
// - What is no folder is a file, links and devices too. With `resolveLinks` a link to a folder is a folder, and
//   deep listings go into it, but into each folder once only: links that lead in circles end, and so does what
//   lies behind more than 40 links inside each other. With `fullPath` as well, a link is listed as the absolute
//   path that it leads to, without links, unless it leads nowhere.
// - A folder that cannot be read, or is gone meanwhile, has no entries.
#pragma once

#include <vector>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboFileManagerExtensions {

/// The entries of the folder.
std::vector<NSString> directoryContentsAtPath(const NSString &path, Flag fullPath, Flag resolveLinks);
/// The files in the folder.
std::vector<NSString> directoryFilesAtPath(const NSString &path, Flag fullPath, Flag resolveLinks);
/// The folders in the folder.
std::vector<NSString> directoryFoldersAtPath(const NSString &path, Flag fullPath, Flag resolveLinks);

/// What is in the folder and in the folders below it. Depth has no limit, but of paths that are longer than the
/// system opens any (`PATH_MAX`) only the first 2^27 code units are listed, with one line in the log.
std::vector<NSString> deepDirectoryContentsAtPath(const NSString &path, Flag resolveLinks);
/// The files among `deepDirectoryContentsAtPath`.
std::vector<NSString> deepDirectoryFilesAtPath(const NSString &path, Flag resolveLinks);
/// The folders among `deepDirectoryContentsAtPath`.
std::vector<NSString> deepDirectoryFoldersAtPath(const NSString &path, Flag resolveLinks);

/// The folder's entries whose path extension equals `matchingExtension` without regard to case.
std::vector<NSString> directoryContentsAtPath(const NSString &path, const NSString &matchingExtension,
                                              Flag fullPath = false);

/// The folder's entries whose whole names match the wildcard without regard to case, in which
///
/// - "*" stands for any number of characters and "?" for one, also for a full stop at the beginning;
/// - "[a-z_]" stands for one of these characters, "[!a-z_]" and "[^a-z_]" for one that is none of them; "]"
/// right
///   behind the opening is one of them, and without an end "[" stands for itself;
/// - "\" takes any special meaning from the character behind it.
///
/// A character is a code point. A nil wildcard matches nothing.
std::vector<NSString> directoryContentsAtPathMatchingWildcard(const NSString &path, const NSString &wildcard,
                                                              Flag fullPath = false);

/// Whether one of `directoryFilesAtPath` is there. With `onlyVisible` those do not count which desktops hide:
/// names that begin with a full stop, and "Icon\r", which holds the folder's icon.
bool directoryContainsFilesAtPath(const NSString &path, Flag resolveLinks, Flag onlyVisible);

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
