// SPDX-License-Identifier: Apache-2.0
//
// Location files: each holds one URL, and opens it. Any thread may read and write them.
//
//     const NSURL url = NSURL::URLWithString(u"http://example.org/"_ns);
//     const NSString path = stringByAppendingPathExtension(u"/tmp/Page"_ns,
//     pathExtensionForInternetLocation(url)); if (createInternetLocation(url, path))
//     NSLog(resolveInternetLocation(path));
#pragma once

#include <vector>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboFileManagerExtensions {

/// What location files are known by: type codes, quoted, path extensions, and the type code of shortcuts.
std::vector<NSString> InternetLocationTypes();

/// Whether the extension, in any case, or the quoted type code is one of `InternetLocationTypes`; each may be
/// nil.
bool isInternetLocationExtension(const NSString &extension, const NSString &type);

/// Whether a regular file, or the one that a symbolic link leads to, is a location file by its extension or by
/// the type code that file servers keep. A "desktop" entry is looked into: it is one when
/// `resolveInternetLocation` has its URL.
bool isInternetLocationFile(const NSString &path);

/// The extension for a location file of this URL; "inetloc" for nil and for schemes that have none of their
/// own.
NSString pathExtensionForInternetLocation(const NSURL &url);
/// The same for a URL as a string, whose beginning tells (`isFileStringURL` and its like).
NSString pathExtensionForInternetLocation(const NSString &string);

/// Writes a shortcut as every system reads it, atomically and in UTF-8, and makes missing folders of the path.
/// False when the URL is nil or the file cannot be written; errno says why.
bool createURL(const NSURL &url, const NSString &atPath);

/// The forms of location files that are no shortcuts.
enum class InternetLocationForm {
  XML,           ///< A property list with the "URL", as text.
  binary,        ///< The same in the binary form.
  resourceFork,  ///< An empty file, whose URL stands in its resource fork, and its type code.
};

/// Writes the absolute URL in one of the forms, and makes missing folders of the path. False when the URL is
/// nil or the file cannot be written, which is then as it was; errno says why.
bool createInternetLocation(const NSURL &url, const NSString &atPath,
                            InternetLocationForm form = InternetLocationForm::XML);

/// Writes a desktop entry of type Link, whose name is that of the file, atomically, and makes missing folders
/// of the path. False when the URL is nil or the file cannot be written; errno says why.
bool createDesktopLink(const NSURL &url, const NSString &atPath);

/// The URL of a location file of any kind, whatever its extension, as it is written there: the "URL" of a
/// property list in any form, of a shortcut or of a desktop entry of type Link, else that of its resource fork.
/// It need not keep to the grammar of URLs, but has no control characters. Nil when there is none; `*error`
/// says why: `noSuchFile`, `unreadable`, `tooLarge`, else `damaged`.
NSString resolveInternetLocation(const NSString &path, NSError *error = nullptr);

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
