// SPDX-License-Identifier: Apache-2.0
//
// Paths taken apart, standardised and written relatively. All answer nil for nil. Those that standardise follow
// symbolic links; no other looks at the file system. Any thread may call them.
//
// The form of paths in which ":" separates the components. Names that hold ":" have "/" in its place there, and
// the other way round. An absolute path begins with the name of a volume; there is one, `kRootVolumeName`,
// which is "/". A relative one begins with ":". An empty component leads up, as ".."; ":" at the end says that
// this is a folder, as "/" does.
//
//     stringByDeletingFileComponent(u"/a/b/"_ns);  // "/a/b"
//     relativePathToDirectory(u"/a/b/c"_ns, u"/a/d"_ns);  // "../b/c"
//     POSIXPath(u"Root:etc:hosts"_ns);  // "/etc/hosts"
#pragma once

#include <vector>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What the file system's root is called in paths with ":".
inline constexpr std::u16string_view kRootVolumeName = u"Root";

inline namespace NSStringNimboPathExtensions {

/// The path, when it ends in "/", without that; any other one without its last component and the "/" before
/// it, which stays when it is the root: "/a" becomes "/", "/" becomes "".
NSString stringByDeletingFileComponent(const NSString &path);

/// As `stringByStandardizingPath`.
NSString standardizedPath(const NSString &path);
/// The components of `standardizedPath`.
std::vector<NSString> standardizedPathComponents(const NSString &path);

/// The way from `directory` to `path`, both standardised: "../b/c"; "." when they are the same. Where there is
/// none to be told, the path itself: when only one of them is absolute, when `directory` is nil or empty or
/// leads up by ".." to a folder whose name it does not say.
NSString relativePathToDirectory(const NSString &path, const NSString &directory);

/// The path with "/" for one with ":". A path that begins with "/" or has no ":" is answered itself. Nil on
/// another volume, which is nowhere here.
NSString POSIXPath(const NSString &path);
/// The path with ":" for one with "/"; "." and empty components are left out. "" for "".
NSString HFSPath(const NSString &path);

}  // namespace NSStringNimboPathExtensions
}  // namespace nimbo
