// SPDX-License-Identifier: Apache-2.0
//
// Files and folders moved, also from one file system to another: they are then copied with their permissions,
// times and extended attributes, and removed when the copy is whole and on the disk. Links are moved, never
// followed. Any thread may call.
//
//     renamePath(u"/tmp/a.txt"_ns, u"/tmp/b.txt"_ns);
//     updatePath(u"/tmp/new.txt"_ns, u"/tmp/store/b.txt"_ns, true);
//     updatePath(path, toPath, false, true, {.shouldProceedAfterError = [](const auto &...) { return askUser();
//     }});
#pragma once

#include <functional>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSError.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboFileManagerExtensions {

/// Moves what is at `path` to the path `to`, where there must be nothing, in a folder that exists.
bool renamePath(const NSString &path, const NSString &to);

/// Who is asked while a path is updated. Both functions may be left out.
struct FileManagerHandler {
  /// Is told what is about to be moved.
  std::function<void(const NSString &path)> willProcessPath;
  /// Is asked what to do when `path` cannot be moved to `toPath`. True: once more, and over what is at `toPath`
  /// if that is what is wrong. False, as without it: no more.
  std::function<bool(const NSError &error, const NSString &path, const NSString &toPath)>
      shouldProceedAfterError;
};

/// Brings what is at `path` to `toPath`, with the folders above that: the file of a document whose path changes
/// from one to the other. True at once when both are the same path as they are written, and something is there.
/// With `overwrite` it takes the place of what is at `toPath`, as `NSFileManager::replaceItemAtPath` does it,
/// so that at any moment the old content or the new one is there; without, nothing is overwritten. When it is
/// false, both are where they were.
bool updatePath(const NSString &path, const NSString &toPath, Flag overwrite = false);
/// The same, with a handler. What has been moved is then marked as one whose path extension is hidden, or
/// shown, unless it is a link; where the file system cannot keep that it is moved all the same.
bool updatePath(const NSString &path, const NSString &toPath, Flag overwrite, Flag hideFileExtensions,
                const FileManagerHandler &handler);

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
