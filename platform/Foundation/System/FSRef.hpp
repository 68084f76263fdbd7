// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Names a file or folder that exists, wherever it is moved on its volume. A plain value: it may be copied
/// bytewise, and those of the same file are the same bytes. One of zeros names nothing.
///
/// Inside are the device, the inode and the time of birth; no system call makes a path of these for everyone.
/// So the process remembers where each file was seen, and a reference means something only in the process that
/// made it, and not to be written to disk.
///
/// - The newest `kMaxFollowedFiles` files are followed through every rename and move, their own and that of the
///   folders above them. For that the process holds them open, though not for reading: the space of one that
///   is deleted is free again only when it is asked for or others have come, and its volume stays busy.
/// - Those before are found where they were last seen, or under another name in the same folder.
/// - Beyond `kMaxKnownFiles` the oldest are forgotten.
/// - A file that is deleted, replaced by another one of its name, or moved to another volume is gone.
/// - Where the file system knows no time of birth, a new file with the inode of one that was deleted is taken
///   for it.
struct FSRef {
  std::array<std::byte, 80> hidden{};

  friend bool operator==(const FSRef &, const FSRef &) = default;
};

constexpr std::size_t kMaxFollowedFiles = 64;
constexpr std::size_t kMaxKnownFiles = 1 << 12;

/// Makes a reference to the file, or to what a symbolic link leads to. False, with nothing written, when it
/// cannot be reached or the path is nil. A null pointer is one that the caller does not need.
bool FSPathMakeRef(const NSString &path, FSRef *ref, bool *isDirectory = nullptr);

/// Where the file is now: an absolute path without symbolic links. One of them when it has several. Nil when it
/// is gone, forgotten or cannot be reached, and for a reference of another process.
NSString FSRefMakePath(const FSRef &ref);

}  // namespace nimbo
