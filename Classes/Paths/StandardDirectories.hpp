// SPDX-License-Identifier: Apache-2.0
//
// The user's standard folders. None is created. Those marked as kept are found out on the first call, from any
// thread, and stay the same as long as the process lives. All but `temporaryDirectory` are nil when the user
// has no home folder.
//
//     const NSString caches = cachesDirectory();
//     const NSString settings = pathInPreferencesDirectory(u"org.example.plist"_ns);
//     isTemporaryPath(u"/tmp/a.txt"_ns);  // true
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// As `NSHomeDirectory`.
NSString homeDirectory();
/// "Library" in the home folder; kept.
NSString libraryDirectory();
/// "Application Support" in the library folder; kept.
NSString applicationSupportDirectory();
/// "Caches" in the library folder; kept.
NSString cachesDirectory();
/// "Preferences" in the library folder; kept.
NSString preferencesDirectory();
/// "Desktop" in the home folder; kept.
NSString desktopDirectory();
/// "/tmp", whatever the environment says.
NSString temporaryDirectory();

/// `name` as a component behind the home folder; that itself when `name` is nil or empty.
NSString pathInHomeDirectory(const NSString &name);
/// As `pathInHomeDirectory`, behind `libraryDirectory`.
NSString pathInLibraryDirectory(const NSString &name);
/// As `pathInHomeDirectory`, behind `applicationSupportDirectory`.
NSString pathInApplicationSupportDirectory(const NSString &name);
/// As `pathInHomeDirectory`, behind `cachesDirectory`.
NSString pathInCachesDirectory(const NSString &name);
/// As `pathInHomeDirectory`, behind `preferencesDirectory`.
NSString pathInPreferencesDirectory(const NSString &name);

/// Whether the path begins with "/tmp" (as "/tmpfiles" does), with "/var/tmp/" or with the user's own temporary
/// folder (`NSTemporaryDirectory`), or is that of an attachment that a mail program opened: below
/// "~/Library/Mail/", with ".mimeattach" in it. False for nil and "".
bool isTemporaryPath(const NSString &path);

}  // namespace nimbo
