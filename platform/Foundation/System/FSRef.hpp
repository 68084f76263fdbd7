// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Names a file or folder that exists by what it is, and remembers where it was: it is found there or, when it
/// was renamed, in the same folder under another name. A default-made one names nothing. It is a plain value;
/// any thread may make one.
///
/// - A file that is deleted, replaced by another one of its name, or moved to another folder is gone; so are
///   those of a folder that is moved itself.
/// - Where the file system knows no time of birth, a new file with the inode of one that was deleted is taken
///   for it.
///
///     FSRef file;
///     if (FSPathMakeRef(path, &file)) rename("/tmp/a.txt", "/tmp/b.txt");
///     const NSString now = FSRefMakePath(file);
struct FSRef {
  /// The number of the file system.
  std::uint64_t device = 0;
  /// The number of the file there.
  std::uint64_t inode = 0;
  /// When the file was made, in seconds since 1970; 0 where the file system does not know it.
  std::int64_t birthSeconds = 0;
  /// The nanoseconds behind `birthSeconds`.
  std::uint32_t birthNanoseconds = 0;
  /// The bytes of an absolute path.
  std::string lastPath;

  /// Whether both name the same file, wherever they saw it.
  friend bool operator==(const FSRef &a, const FSRef &b) {
    return a.inode == b.inode && a.device == b.device && a.birthSeconds == b.birthSeconds &&
           a.birthNanoseconds == b.birthNanoseconds;
  }
};

/// Makes a reference to the file, or to what a symbolic link leads to. False, with nothing written, when it
/// cannot be reached or the path is nil. A null pointer is one that the caller does not need.
bool FSPathMakeRef(const NSString &path, FSRef *ref, bool *isDirectory = nullptr);

/// Where the file is now: an absolute path, one of them when it has several names. Nil when it is gone or
/// cannot be reached.
NSString FSRefMakePath(const FSRef &ref);

}  // namespace nimbo
