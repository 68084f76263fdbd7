// SPDX-License-Identifier: Apache-2.0
//
// Paths without symbolic links and alias files. An alias is followed when its original is there. Any thread may
// call.
//
//     stringByResolvingLinkOfPath(u"/var/lock"_ns);  // "/run/lock"
//     stringByResolvingLinksInPath(u"/var/run/user/./1000"_ns);  // "/run/user/1000"
//     stringByResolvingLinksInPath(u"/no/such/path"_ns);  // Itself.
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboLinkExtensions {

/// Where the symbolic link or the alias file at the path leads to, one link only, as `resolveLink` and
/// `resolveAlias` have it; the path itself when there is none. Nil for nil.
NSString stringByResolvingLinkOfPath(const NSString &path);

/// The path with every symbolic link and alias file in it followed and without ".", ".." and empty components;
/// what does not exist stays as it is. A relative path stays relative unless a link leads elsewhere. The path
/// itself when that changes nothing, and when links lead in circles. Nil for nil.
NSString stringByResolvingLinksInPath(const NSString &path);

}  // namespace NSStringNimboLinkExtensions
}  // namespace nimbo
