// SPDX-License-Identifier: Apache-2.0
//
// Listings of folders. Any thread may list.
//
//     for (const NSString &name : directoryContentsAtPath(u"/tmp"_ns, u"html"_ns)) NSLog(name);
//     const auto pages = directoryContentsAtPath(path, u"html"_ns);
//     const auto files = directoryContentsAtPath(path, u""_ns);  // Those without an extension.
#pragma once

#include <vector>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboFileManagerExtensions {

/// The names of the folder's entries whose path extension equals `matchingExtension` without regard to case, in
/// listing order. Empty when the folder cannot be read.
std::vector<NSString> directoryContentsAtPath(const NSString &path, const NSString &matchingExtension);

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
