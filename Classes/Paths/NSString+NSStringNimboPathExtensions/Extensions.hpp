// SPDX-License-Identifier: Apache-2.0
//
// Extensions of paths. The functions look at no file but for `pathMatchingExtensions`. Any thread may call
// them.
//
//     validPathExtension(u"/index.php?id=1"_ns);  // "php"
//     stringByAppendingPathExtensionIfNecessary(u"a.TXT"_ns, u"txt"_ns);  // "a.TXT"
//     const NSString page = pathMatchingExtensions(path, std::array{u"html"_ns, u"htm"_ns});
#pragma once

#include <span>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringNimboPathExtensions {

/// Whether the string has 1 to 15 units, all of the alphanumeric set.
bool isValidPathExtension(const NSString &string);

/// The path's extension up to the first of "?&;=#", when it has then at most 14 units (one fewer than above),
/// all of the alphanumeric set. Else "".
NSString validPathExtension(const NSString &path);

/// The path with `extension` instead of its own; an empty one takes that away. The path itself when it has
/// exactly this extension already, and for a nil one.
NSString stringByReplacingPathExtensionWith(const NSString &path, const NSString &extension);

/// The path with `extension` behind all of it. The path itself when it has this extension already, without
/// regard to case (`isEqualToStringNoCase`), and for a nil or empty one.
NSString stringByAppendingPathExtensionIfNecessary(const NSString &path, const NSString &extension);

/// The path itself when its extension is one of these, without regard to case. Else the first path, in the
/// order of the extensions, that comes of appending one and at which something exists. Nil when there is none.
NSString pathMatchingExtensions(const NSString &path, std::span<const NSString> extensions);

}  // namespace NSStringNimboPathExtensions
}  // namespace nimbo
