// SPDX-License-Identifier: Apache-2.0
//
// Symbolic links, and references to files. Any thread may call.
//
//     createLinkWithPath(u"../shared/notes"_ns, u"/home/user/Documents/Notes"_ns);
//     resolveLink(u"/home/user/Documents/Notes"_ns);  // "/home/user/Documents/../shared/notes"
//     FSSpec file;
//     if (getFSSpec(&file, path)) NSLog(file.name);
#pragma once

#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/System/FSRef.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Names a file by its folder and its name there. It is a plain value; any thread may make one.
///
///     const NSString path = stringByAppendingPathComponent(FSRefMakePath(file.folder), file.name);
struct FSSpec {
  /// The folder.
  FSRef folder;
  /// The last component of the path.
  NSString name;
};

inline namespace NimboFileManagerExtensions {

/// Makes a symbolic link at `atPath` that leads to `path`, which is written into it as it is, so that a
/// relative one counts from the link's folder. Missing folders above `atPath` are made. False when the link
/// cannot be made, because something is there already, for one.
bool createLinkWithPath(const NSString &path, const NSString &atPath);

/// Where the symbolic link at `path` leads to, one link only and whether or not something is there. A relative
/// destination is joined to the path of the link's folder and not changed otherwise: a ".." in it may follow a
/// link. Nil when no link is at `path`.
NSString resolveLink(const NSString &path);

/// Makes a reference to the file, or to what a link leads to. False, with nothing written, when it cannot be
/// reached; the pointer may be null.
bool getFSRef(FSRef *ref, const NSString &path);
/// As `getFSRef`. The root, which is in no folder, has none.
bool getFSSpec(FSSpec *spec, const NSString &path);

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
