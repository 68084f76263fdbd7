// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/FSRef.hpp"

#include <fcntl.h>
#include <sys/stat.h>

#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

namespace nimbo {
namespace {

namespace fs = std::filesystem;

/// The reference to what is at the path, a symbolic link itself included.
std::optional<FSRef> referenceTo(const fs::path &path, bool *isDirectory = nullptr) {
  struct statx status {};
  if (path.empty() ||
      ::statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, STATX_TYPE | STATX_INO | STATX_BTIME, &status) != 0)
    return std::nullopt;
  FSRef ref;
  ref.device = std::uint64_t{status.stx_dev_major} << 32 | status.stx_dev_minor;
  ref.inode = status.stx_ino;
  if ((status.stx_mask & STATX_BTIME) != 0) {
    ref.birthSeconds = status.stx_btime.tv_sec;
    ref.birthNanoseconds = status.stx_btime.tv_nsec;
  }
  ref.lastPath = path.native();
  if (isDirectory) *isDirectory = S_ISDIR(status.stx_mode);
  return ref;
}

}  // namespace

bool FSPathMakeRef(const NSString &path, FSRef *ref, bool *isDirectory) {
  const std::optional<std::string> bytes = path.fileSystemRepresentation();
  if (!bytes) return false;
  std::error_code error;
  const fs::path canonical = fs::canonical(*bytes, error);
  std::optional<FSRef> found = error ? std::nullopt : referenceTo(canonical, isDirectory);
  if (!found) return false;
  if (ref) *ref = *std::move(found);
  return true;
}

NSString FSRefMakePath(const FSRef &ref) {
  const auto isAt = [&](const fs::path &path) { return referenceTo(path) == ref; };
  const fs::path last = ref.lastPath;
  if (isAt(last)) return NSString::stringWithFileSystemRepresentation(ref.lastPath);
  std::error_code error;
  for (fs::directory_iterator entry(last.parent_path(), error), end; !error && entry != end;
       entry.increment(error))
    if (isAt(entry->path())) return NSString::stringWithFileSystemRepresentation(entry->path().native());
  return NSString();
}

}  // namespace nimbo
