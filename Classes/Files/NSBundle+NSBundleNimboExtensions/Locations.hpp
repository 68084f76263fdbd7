// SPDX-License-Identifier: Apache-2.0
//
// Temporary folders and log files of programs. Any thread may ask.
//
//     const NSString folder = bundleTemporaryDirectory();
//     const NSString file = stringByAppendingPathComponent(folder, u"page.html"_ns);
//     if (folder) writeToFile(page, file, true, NSUTF8StringEncoding);
#pragma once

#include "platform/Foundation/NSBundle.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSBundleNimboExtensions {

/// A folder for the bundle's temporary files in `temporaryDirectory()`, of the user's own and closed to others
/// when it has to be made, which this does. It has the bundle's name: CFBundleName, else that of the bundle
/// without its extension. Where somebody else has that name, the user's number stands behind it, as in
/// "Name-1000". Nil when the folder cannot be made.
NSString temporaryDirectory(const NSBundle &bundle);
/// The folder of the main bundle.
NSString bundleTemporaryDirectory();

/// The path of the bundle's log file, "Logs/IDENTIFIER.log" in the library folder, where nothing is made. Nil
/// when the bundle has no identifier that can be a file's name, and when the user has no home folder.
NSString logFile(const NSBundle &bundle);

}  // namespace NSBundleNimboExtensions
}  // namespace nimbo
