// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <vector>

#include "platform/Foundation/NSError.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The file system. Symbolic links are followed; no path is ever opened for more than a listing. Any
/// thread may ask.
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
};

}  // namespace nimbo
