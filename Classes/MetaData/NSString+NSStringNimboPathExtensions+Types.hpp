// SPDX-License-Identifier: Apache-2.0
//
// Paths by the content types of files. One thread calls this at a time.
//
//     const NSString types[] = {u"public.plain-text"_ns, u"html"_ns};
//     const NSString found = pathMatchingExtensionsOrTypes(path, types);
//     if (!found) NSLog(u"%@ is no text", path);
#pragma once

#include <span>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboPathExtensions {

/// As `pathMatchingExtensions`, where the list may hold uniform type identifiers, too, which are known by their
/// full stop: the path itself also matches when what stands there has exactly one of these types.
/// Four-character codes in apostrophes match nothing, as files have none here.
NSString pathMatchingExtensionsOrTypes(const NSString &path, std::span<const NSString> extensionsOrTypes);

}  // namespace NSStringNimboPathExtensions
}  // namespace nimbo
