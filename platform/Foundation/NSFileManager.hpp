// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <vector>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/NSError.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The file system. Functions that look follow symbolic links; those that remove, move or copy take a link for
/// what it is. "/" at the end of a path counts for nothing. Any thread may call.
///
///     bool isDirectory = false;
///     if (!NSFileManager::fileExistsAtPath(path, &isDirectory)) return;
///     NSError error;
///     const auto names = NSFileManager::contentsOfDirectoryAtPath(path, &error);
///     if (!names) NSLog(error.localizedFailureReason);
struct NSFileManager {
  /// Whether something stands at `path`; `*isDirectory` gets whether that is a folder.
  static bool fileExistsAtPath(const NSString &path, bool *isDirectory = nullptr);

  /// The names of a folder's entries, hidden ones included, "." and ".." not. They come in the order in which
  /// the file system lists them, which is no order that means anything but stays the same while the folder is
  /// not changed. Nothing when the folder cannot be read; `*error` says why.
  static std::optional<std::vector<NSString>> contentsOfDirectoryAtPath(const NSString &path,
                                                                        NSError *error = nullptr);

  /// Makes a folder; with intermediate directories those above it, too, and one that is there already will do.
  /// Of the attributes `NSFilePosixPermissions` counts, for the folder itself where this made it. False when
  /// there is no folder then; `*error` says why.
  static bool createDirectoryAtPath(const NSString &path, Flag withIntermediateDirectories,
                                    const NSDictionary &attributes = {}, NSError *error = nullptr);

  /// Removes a file, a link, or a folder with all that is in it, however deep. False at the first thing that
  /// cannot be removed, for the root and for "." and ".."; `*error` says why.
  static bool removeItemAtPath(const NSString &path, NSError *error = nullptr);

  /// Moves a file, a link or a folder to `toPath`, where there must be nothing. To another file system it is
  /// copied with its permissions, times and extended attributes, all of which is on the disk before the item is
  /// removed. False when it is not moved; `*error` says why. It is then where it was, alone, unless the
  /// original alone could not be removed. What is left of a folder that could be removed only in part has a
  /// hidden name (".quiverleaf-" and a number), and is logged.
  static bool moveItemAtPath(const NSString &path, const NSString &toPath, NSError *error = nullptr);

  /// As `moveItemAtPath`, in place of what is at `path`, if anything: a file is replaced at one stroke. A
  /// folder, and a file by a folder, is put aside under a hidden name (".quiverleaf-" and a number), so that
  /// whoever is killed in between leaves old and new. On failure the old item is where it was.
  static bool replaceItemAtPath(const NSString &path, const NSString &withItemAtPath, NSError *error = nullptr);

  /// Copies a file, a link or a folder with all that is in it to `toPath`, where there must be nothing; it
  /// shows there when it is whole. Permissions and times are kept; extended attributes where the file system
  /// there has any. False when it is not copied; `*error` says why.
  static bool copyItemAtPath(const NSString &path, const NSString &toPath, NSError *error = nullptr);
};

}  // namespace nimbo
