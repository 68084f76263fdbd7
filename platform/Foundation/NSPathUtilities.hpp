// SPDX-License-Identifier: Apache-2.0
//
// Paths as strings, with "/" between their components. Those that change a path answer the path itself when
// they change nothing; nil for nil. Any thread may call them.
//
//     const NSString file = stringByAppendingPathComponent(NSTemporaryDirectory(), u"page.html"_ns);
//     lastPathComponent(file);  // "page.html"
//     pathExtension(file);  // "html"
#pragma once

#include <vector>

#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The user's home folder: `$HOME` when it is an absolute path, else that of the user database. Nil when there
/// is none.
NSString NSHomeDirectory();

/// The login name of the process's user; the user's number when the user database has none.
NSString NSUserName();

/// The folder for the user's temporary files, with a "/" at its end: `$TMPDIR` when that is an absolute path
/// other than "/", else "/tmp/".
NSString NSTemporaryDirectory();

/// The path in which a leading "~" that ends the path or stands before a "/" has become the home folder; any
/// other path, one that begins with "~user" among them, is answered itself.
NSString stringByExpandingTildeInPath(const NSString &path);

/// The path with "~" instead of the home folder, where that is the whole path or stands before a "/".
NSString stringByAbbreviatingWithTildeInPath(const NSString &path);

/// Joins `path` and `component` with exactly one "/" between them; `component` itself when `path` is nil or
/// empty.
NSString stringByAppendingPathComponent(const NSString &path, const NSString &component);
/// The same in place, for a path of many components.
void appendPathComponent(NSMutableString &path, const NSString &component);

/// What follows the last full stop of the last component, without it: "" when there is none, when nothing
/// precedes it in that component or when it ends the name.
NSString pathExtension(const NSString &path);

/// The last component, without the "/" that may follow it; "/" for the root.
NSString lastPathComponent(const NSString &path);

/// What stands before the last component, without the "/" between them: "/" for a name in the root and for the
/// root, "" for a single name.
NSString stringByDeletingLastPathComponent(const NSString &path);

/// The path without its extension and the full stop before it, and without "/" at the end.
NSString stringByDeletingPathExtension(const NSString &path);

/// The path with a full stop and `extension` at the end, in front of which "/" is dropped. An empty path, the
/// root, and an empty extension leave the path as it is.
NSString stringByAppendingPathExtension(const NSString &path, const NSString &extension);

/// The names between the "/", empty ones left out. An absolute path has "/" as its first component, one that
/// ends in "/" has it as its last one; the root has only one.
std::vector<NSString> pathComponents(const NSString &path);

/// The path with the tilde expanded; without empty components, "." and a "/" at the end. In an absolute path,
/// ".." and the component before it go, too; where that one is a symbolic link, what it points to counts. A
/// relative path that comes to nothing is ".".
NSString stringByStandardizingPath(const NSString &path);

}  // namespace nimbo
