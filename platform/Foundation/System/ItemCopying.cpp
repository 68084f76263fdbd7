// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/ItemCopying.hpp"

#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Foundation/System/DataWriting.hpp"
#include "platform/Foundation/System/ExtendedAttributes.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "platform/Foundation/System/FolderListing.hpp"
#include "platform/Foundation/System/ItemRemoval.hpp"

namespace nimbo {
namespace {

constexpr mode_t kPermissions = 07777;
constexpr mode_t kSpecialBits = S_ISUID | S_ISGID;

/// A place in two folders at once. The names are the same but at the top.
struct Place {
  int fromFolder, toFolder;
  const char *fromName, *toName;
};

/// A folder on the way down. The last of the folders in it is the one that is gone through.
struct Level {
  FolderIdentity from, to;
  struct stat info;
  std::vector<std::string> folders;
};

struct OpenPair {
  FolderListing from, to;
};

bool copyBytes(int from, int to) {
  while (::copy_file_range(from, nullptr, to, nullptr, std::size_t{1} << 30, 0) > 0) continue;
  // What that does not copy, between two kinds of file systems, say, or because of an error, is read.
  std::array<char, 1 << 16> buffer;
  for (;;) {
    const ssize_t count = ::read(from, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return count == 0;
    if (!writeAll(to, std::string_view(buffer.data(), static_cast<std::size_t>(count)))) return false;
  }
}

class Copier {
 public:
  explicit Copier(AttributeLoss loss) : loss_(loss) {}

  bool copy(const std::string &from, const std::string &to) {
    const Place place{AT_FDCWD, AT_FDCWD, from.c_str(), to.c_str()};
    struct stat info = {};
    if (::lstat(from.c_str(), &info) != 0) return false;
    return S_ISDIR(info.st_mode) ? copyFolders(place) : copyFile(place, info);
  }

  /// Whether anything was made, which has to go when the rest fails.
  bool hasMade() const { return hasMade_; }

 private:
  /// Copies all but a folder.
  bool copyFile(const Place &place, const struct stat &info) {
    if (S_ISREG(info.st_mode)) return copyRegularFile(place);
    if (S_ISLNK(info.st_mode) ? !copyLink(place)
                              : ::mknodat(place.toFolder, place.toName,
                                          (info.st_mode & S_IFMT) | S_IRUSR | S_IWUSR, info.st_rdev) != 0)
      return false;
    hasMade_ = true;
    const bool isOwned =
        ::fchownat(place.toFolder, place.toName, info.st_uid, info.st_gid, AT_SYMLINK_NOFOLLOW) == 0;
    const timespec times[] = {info.st_atim, info.st_mtim};
    return (S_ISLNK(info.st_mode) ||
            ::fchmodat(place.toFolder, place.toName, permissions(info, isOwned), 0) == 0) &&
           ::utimensat(place.toFolder, place.toName, times, AT_SYMLINK_NOFOLLOW) == 0;
  }

  bool copyLink(const Place &place) {
    std::array<char, 4097> target;
    const ssize_t length = ::readlinkat(place.fromFolder, place.fromName, target.data(), target.size() - 1);
    if (length < 0) return false;
    target[static_cast<std::size_t>(length)] = '\0';
    return ::symlinkat(target.data(), place.toFolder, place.toName) == 0;
  }

  bool copyRegularFile(const Place &place) {
    const FileDescriptor from(
        ::openat(place.fromFolder, place.fromName, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat info = {};
    if (!from || ::fstat(from.get(), &info) != 0) return false;
    if (!S_ISREG(info.st_mode)) {
      errno = ESTALE;  // Somebody has just replaced it.
      return false;
    }
    const FileDescriptor to(
        ::openat(place.toFolder, place.toName, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!to) return false;
    hasMade_ = true;
    return copyBytes(from.get(), to.get()) && finish(from.get(), to.get(), info);
  }

  bool copyFolders(const Place &top) {
    OpenPair current;
    std::vector<Level> levels;
    if (!enter(top, &current, &levels)) return false;
    while (!levels.empty()) {
      std::vector<std::string> &folders = levels.back().folders;
      if (!folders.empty()) {
        const std::string name = std::move(folders.back());
        folders.pop_back();
        const Place place{::dirfd(current.from.get()), ::dirfd(current.to.get()), name.c_str(), name.c_str()};
        if (!enter(place, &current, &levels)) return false;
        continue;
      }
      if (!finish(::dirfd(current.from.get()), ::dirfd(current.to.get()), levels.back().info)) return false;
      levels.pop_back();
      if (levels.empty()) break;
      current.from = openParent(current.from.get(), levels.back().from);
      if (!current.from) return false;
      current.to = openParent(current.to.get(), levels.back().to);
      if (!current.to) return false;
    }
    return true;
  }

  /// Makes a folder and copies into it all but the folders that are in it, which go into a new level.
  bool enter(const Place &place, OpenPair *current, std::vector<Level> *levels) {
    OpenPair pair{openFolderAt(place.fromFolder, place.fromName), nullptr};
    Level level = {};
    if (!pair.from || ::fstat(::dirfd(pair.from.get()), &level.info) != 0) return false;
    level.from = {level.info.st_dev, level.info.st_ino};
    if (::mkdirat(place.toFolder, place.toName, S_IRWXU) != 0) return false;
    hasMade_ = true;
    pair.to = openFolderAt(place.toFolder, place.toName);
    const auto made = pair.to ? identityOf(pair.to.get()) : std::nullopt;
    if (!made) return false;
    level.to = *made;
    if (levels->empty()) top_ = *made;
    if (!copyEntries(pair, &level.folders)) return false;
    *current = std::move(pair);
    levels->push_back(std::move(level));
    return true;
  }

  bool copyEntries(const OpenPair &pair, std::vector<std::string> *folders) {
    const int from = ::dirfd(pair.from.get()), to = ::dirfd(pair.to.get());
    while (const dirent *const entry = nextEntry(pair.from.get())) {
      struct stat info = {};
      if (::fstatat(from, entry->d_name, &info, AT_SYMLINK_NOFOLLOW) != 0) return false;
      if (!S_ISDIR(info.st_mode)) {
        if (!copyFile({from, to, entry->d_name, entry->d_name}, info)) return false;
      } else if (FolderIdentity{info.st_dev, info.st_ino} == top_) {
        errno = EINVAL;
        return false;
      } else {
        folders->emplace_back(entry->d_name);
      }
    }
    return errno == 0;
  }

  /// Gives the copy all but the content.
  bool finish(int from, int to, const struct stat &info) {
    if (!copyExtendedAttributes("/proc/self/fd/" + std::to_string(from), to) &&
        (errno != EOPNOTSUPP || loss_ == AttributeLoss::refused))
      return false;
    const bool isOwned = ::fchown(to, info.st_uid, info.st_gid) == 0;
    const timespec times[] = {info.st_atim, info.st_mtim};
    return ::fchmod(to, permissions(info, isOwned)) == 0 && ::futimens(to, times) == 0;
  }

  /// A program must not run as another owner than the one who allowed that.
  static mode_t permissions(const struct stat &info, bool isOwned) {
    return info.st_mode & kPermissions & ~(isOwned ? 0 : kSpecialBits);
  }

  const AttributeLoss loss_;
  FolderIdentity top_ = {};
  bool hasMade_ = false;
};

}  // namespace

bool copyItem(const std::string &from, const std::string &to, AttributeLoss loss) {
  Copier copier(loss);
  if (copier.copy(from, to)) return true;
  const int reason = errno;
  if (copier.hasMade()) removeItem(to);
  errno = reason == EEXIST && copier.hasMade() ? EIO : reason;
  return false;
}

}  // namespace nimbo
