// SPDX-License-Identifier: Apache-2.0
//
// URLs and the file system: references, paths, and names for copies of pages. Any thread may ask.
//
//     const NSURL page = NSURL::URLWithString(u"http://www.example.org/a/b?c=d"_ns);
//     invertedPathRelativeToDirectory(page, u"/copies"_ns);  // "/copies/org/example/www/a/b?c=d"
//     pathRelativeToDirectory(page, u"/a"_ns, false, u"index.html"_ns);  // "b"
#pragma once

#include <cstdint>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSDate.hpp"
#include "platform/Foundation/NSURL.hpp"
#include "platform/Foundation/System/FSRef.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSURLNimboExtensions {

/// Makes a reference to the file or folder of a file's URL (`FSPathMakeRef`). False, with nothing written, when
/// the URL is no file's or there is no such file. A null pointer asks only whether it can be made.
bool getFSRef(const NSURL &url, FSRef *ref);
/// The URL of the file where it is now; that of a folder ends with "/". Nil when it is gone, and in the other
/// cases of `FSRefMakePath`.
NSURL URLWithFSRef(const FSRef &ref);

/// The path of a file's URL with "/" between the components. Nil when it is no file's.
NSString fileSystemPathPOSIXStyle(const NSURL &url);
/// The path with ":" between the components, as `HFSPath` gives it.
NSString fileSystemPathHFSStyle(const NSURL &url);

/// The path of the URL, with `defaultPathComponent` behind it where it ends with "/" or is empty, as the way to
/// it from `directory` (`relativePathToDirectory`). `simplified` takes it from `simplifiedStringURL`. Nil when
/// the URL has no path.
NSString pathRelativeToDirectory(const NSURL &url, const NSString &directory, Flag simplified,
                                 const NSString &defaultPathComponent);

/// A path inside `directory` for a copy of what the URL names: the host's components in reverse order and small
/// letters, then those of the path, then the query behind a "?" in the last one; "index" where the path ends
/// with "/". Each component is made a safe file name (`stringByCreatingFilename`), so that the path never
/// leaves `directory`. `removeSessionIDs` takes these out first; a `pathExtension` that is not nil or empty is
/// appended unless it is there. Beyond `maxComponents`, components become part of the last one, with "-"
/// between them, and each is cut to `maxComponentUnits`; 0 is no limit. `caseInsensitive` makes all letters
/// small, so that URLs that differ in case share a path. Nil when the URL is nil, opaque, or has no host and is
/// no file's.
NSString invertedPathRelativeToDirectory(const NSURL &url, const NSString &directory,
                                         Flag removeSessionIDs = false, const NSString &pathExtension = {},
                                         std::uint32_t maxComponents = 0, std::uint32_t maxComponentUnits = 0,
                                         Flag caseInsensitive = false);

/// A folder inside `path` for copies of what the URL's host has at a time, in UTC: "org.example.www" and in it
/// "2006-12-31 23-59-59", with `milliseconds` "2006-12-31 23-59-59-123". Nil when the URL has no host, `path`
/// is nil or the date is outside the years 0 to 9999.
NSString directoryInPath(const NSURL &url, const NSString &path, NSDate forDate, Flag milliseconds);

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
