// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

// The user's standard folders. None is created. Those marked as kept are found out on the first call, from any
// thread, and stay the same as long as the process lives. All but `temporaryDirectory` are nil when the user
// has no home folder.

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

// `name` as a component behind the folder; the folder itself when it is nil or empty.

NSString pathInHomeDirectory(const NSString &name);
NSString pathInLibraryDirectory(const NSString &name);
NSString pathInApplicationSupportDirectory(const NSString &name);
NSString pathInCachesDirectory(const NSString &name);
NSString pathInPreferencesDirectory(const NSString &name);

/// Whether the path begins with "/tmp" (as "/tmpfiles" does), with "/var/tmp/" or with the user's own temporary
/// folder (`NSTemporaryDirectory`), or is that of an attachment that a mail program opened: below
/// "~/Library/Mail/", with ".mimeattach" in it. False for nil and "".
bool isTemporaryPath(const NSString &path);

}  // namespace nimbo
