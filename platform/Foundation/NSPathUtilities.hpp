// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// The user's home folder: `$HOME` when it is an absolute path, else that of the user database. Nil when there
/// is none.
NSString NSHomeDirectory();

/// A leading "~" that ends the path or stands before a "/" becomes the home folder; any other path, one that
/// begins with
/// "~user" among them, is answered itself.
NSString stringByExpandingTildeInPath(const NSString &path);

/// `path` and `component` with exactly one "/" between them; `component` itself when `path` is nil or empty.
NSString stringByAppendingPathComponent(const NSString &path, const NSString &component);

/// What follows the last full stop of the last component, without it: "" when there is none, when nothing
/// precedes it in that component or when it ends the name.
NSString pathExtension(const NSString &path);

}  // namespace nimbo
