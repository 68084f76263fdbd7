// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What the file system's root is called in paths with ":".
inline constexpr std::u16string_view kRootVolumeName = u"Root";

inline namespace NSStringNimboPathExtensions {

// Nil for nil.

/// A path that ends in "/" without that; any other one without its last component and the "/" before it, which
/// stays when it is the root: "/a" becomes "/", "/" becomes "".
NSString stringByDeletingFileComponent(const NSString &path);

/// As `stringByStandardizingPath`, and the components of that.
NSString standardizedPath(const NSString &path);
std::vector<NSString> standardizedPathComponents(const NSString &path);

/// The way from `directory` to `path`, both standardised: "../b/c"; "." when they are the same. Where there is
/// none to be told, the path itself: when only one of them is absolute, when `directory` is nil or empty or
/// leads up by ".." to a folder whose name it does not say.
NSString relativePathToDirectory(const NSString &path, const NSString &directory);

// The form of paths in which ":" separates the components. Names that hold ":" have "/" in its place there, and
// the other way round. An absolute path begins with the name of a volume; there is one, `kRootVolumeName`,
// which is "/". A relative one begins with ":". An empty component leads up, as ".."; ":" at the end says that
// this is a folder, as "/" does.

/// From that form. A path that begins with "/" or has no ":" is answered itself. Nil on another volume, which
/// is nowhere here.
NSString POSIXPath(const NSString &path);
/// Into that form; "." and empty components are left out. "" for "".
NSString HFSPath(const NSString &path);

}  // namespace NSStringNimboPathExtensions
}  // namespace nimbo
