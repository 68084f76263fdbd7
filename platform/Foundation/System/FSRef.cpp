// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/FSRef.hpp"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstring>
#include <deque>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <tuple>
#include <type_traits>
#include <utility>

#include "platform/Foundation/System/FileDescriptor.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;

/// No two files have the same, but for one after the other where there is no time of birth.
struct Identity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t birthSeconds = 0;
  std::uint64_t birthNanoseconds = 0;

  friend bool operator==(const Identity &, const Identity &) = default;
  friend bool operator<(const Identity &a, const Identity &b) { return a.inOrder() < b.inOrder(); }

 private:
  std::tuple<std::uint64_t, std::uint64_t, std::int64_t, std::uint64_t> inOrder() const {
    return {device, inode, birthSeconds, birthNanoseconds};
  }
};
static_assert(sizeof(Identity) <= sizeof(FSRef) && std::has_unique_object_representations_v<Identity>);

struct Found {
  Identity identity;
  bool isDirectory = false;
};

/// What the descriptor is of when the path is empty.
std::optional<Found> foundAt(int descriptor, const char *path) {
  struct statx status {};
  const int flags = *path == '\0' ? AT_EMPTY_PATH : AT_SYMLINK_NOFOLLOW;
  if (::statx(descriptor, path, flags, STATX_TYPE | STATX_INO | STATX_BTIME, &status) != 0) return std::nullopt;
  Found found;
  found.identity.device = std::uint64_t{status.stx_dev_major} << 32 | status.stx_dev_minor;
  found.identity.inode = status.stx_ino;
  if ((status.stx_mask & STATX_BTIME) != 0) {
    found.identity.birthSeconds = status.stx_btime.tv_sec;
    found.identity.birthNanoseconds = status.stx_btime.tv_nsec;
  }
  found.isDirectory = S_ISDIR(status.stx_mode);
  return found;
}

bool isAt(const Identity &identity, const fs::path &path) {
  const std::optional<Found> found = path.empty() ? std::nullopt : foundAt(AT_FDCWD, path.c_str());
  return found && found->identity == identity;
}

/// The files that references were made of.
class KnownFiles {
 public:
  static KnownFiles &shared() {
    static KnownFiles files;
    return files;
  }

  void add(const Identity &identity, fs::path path) {
    const std::lock_guard lock(mutex_);
    const auto [place, isNew] = files_.try_emplace(identity);
    File &file = place->second;
    file.path = std::move(path);
    if (!file.descriptor) follow(identity, file);
    if (!isNew) return;
    order_.push_back(identity);
    if (order_.size() <= kMaxKnownFiles) return;
    std::erase(followed_, order_.front());
    files_.erase(order_.front());
    order_.pop_front();
  }

  std::optional<fs::path> find(const Identity &identity) {
    const std::lock_guard lock(mutex_);
    const auto place = files_.find(identity);
    if (place == files_.end()) return std::nullopt;
    File &file = place->second;
    update(identity, file);
    if (isAt(identity, file.path)) return file.path;
    file.descriptor.close();
    std::erase(followed_, identity);
    std::error_code error;
    for (fs::directory_iterator entry(file.path.parent_path(), error), end; !error && entry != end;
         entry.increment(error))
      if (isAt(identity, entry->path())) return file.path = entry->path();
    return std::nullopt;
  }

 private:
  struct File {
    fs::path path;
    /// None when the file is not followed.
    FileDescriptor descriptor;
  };

  /// Takes the path from the descriptor. That of a file which is gone leads nowhere.
  static void update(const Identity &identity, File &file) {
    if (!file.descriptor) return;
    std::error_code error;
    fs::path path = fs::read_symlink("/proc/self/fd/" + std::to_string(file.descriptor.get()), error);
    if (!error && isAt(identity, path)) file.path = std::move(path);
  }

  void follow(const Identity &identity, File &file) {
    FileDescriptor descriptor(::open(file.path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    const std::optional<Found> opened = descriptor ? foundAt(descriptor.get(), "") : std::nullopt;
    if (!opened || opened->identity != identity) return;
    file.descriptor = std::move(descriptor);
    followed_.push_back(identity);
    if (followed_.size() <= kMaxFollowedFiles) return;
    File &oldest = files_.at(followed_.front());
    update(followed_.front(), oldest);
    oldest.descriptor.close();
    followed_.pop_front();
  }

  std::mutex mutex_;
  std::map<Identity, File> files_;
  /// The oldest first; those with a descriptor are followed.
  std::deque<Identity> order_, followed_;
};

}  // namespace

bool FSPathMakeRef(const NSString &path, FSRef *ref, bool *isDirectory) {
  const std::optional<std::string> bytes = path.fileSystemRepresentation();
  if (!bytes) return false;
  std::error_code error;
  fs::path canonical = fs::canonical(*bytes, error);
  const std::optional<Found> found = error ? std::nullopt : foundAt(AT_FDCWD, canonical.c_str());
  if (!found) return false;
  KnownFiles::shared().add(found->identity, std::move(canonical));
  if (ref) {
    *ref = {};
    std::memcpy(ref->hidden.data(), &found->identity, sizeof(Identity));
  }
  if (isDirectory) *isDirectory = found->isDirectory;
  return true;
}

NSString FSRefMakePath(const FSRef &ref) {
  Identity identity;
  std::memcpy(&identity, ref.hidden.data(), sizeof(Identity));
  const std::optional<fs::path> path = KnownFiles::shared().find(identity);
  return path ? NSString::stringWithFileSystemRepresentation(path->native()) : NSString();
}

}  // namespace nimbo
