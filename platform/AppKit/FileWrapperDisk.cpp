// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/FileWrapperDisk.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <system_error>

#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/System/DataWriting.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "platform/Foundation/System/RegularFile.hpp"

namespace nimbo {

namespace {

constexpr int kTemporaryNames = 100;
constexpr mode_t kNewFileMode = 0666;
constexpr mode_t kNewFolderMode = 0777;

struct CloseListing {
  void operator()(DIR *listing) const { ::closedir(listing); }
};

/// Reads, counting what there is of all.
class DiskReader {
 public:
  explicit DiskReader(NSError *error) : error_(error) {}

  /// What has the name in the open folder. Nil without an error when it is no file, folder or link.
  NSFileWrapper readEntry(int folder, const char *name, const NSString &preferredName, bool follows,
                          std::uint32_t depth) {
    if (++files_ > NSFileWrapper::kMaximumFiles || depth > NSFileWrapper::kMaximumDepth) return tooLarge();
    const FileDescriptor entry(
        ::openat(folder, name, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | (follows ? 0 : O_NOFOLLOW)));
    // A socket is left out, too.
    if (!entry && errno == ENXIO) return {};
    if (!entry) return errno == ELOOP && !follows ? readLink(folder, name, preferredName) : failed(errno);
    struct stat info = {};
    if (::fstat(entry.get(), &info) != 0) return failed(errno);
    if (S_ISDIR(info.st_mode)) return readFolder(entry.get(), preferredName, depth);
    if (!S_ISREG(info.st_mode)) return {};
    if (static_cast<std::uint64_t>(info.st_size) > bytesLeft_) return tooLarge();
    const NSData contents = readData(entry.get(), static_cast<std::uint64_t>(info.st_size), bytesLeft_, error_);
    hasFailed_ = !contents;
    bytesLeft_ -= contents.length();
    return NSFileWrapper::regularFileWithContents(contents, preferredName);
  }

 private:
  NSFileWrapper readFolder(int folder, const NSString &preferredName, std::uint32_t depth) {
    const int copy = ::fcntl(folder, F_DUPFD_CLOEXEC, 0);
    const std::unique_ptr<DIR, CloseListing> listing(copy < 0 ? nullptr : ::fdopendir(copy));
    if (!listing) return failed(errno);
    std::vector<std::string> names;
    while (const dirent *const entry = ::readdir(listing.get()))
      if (const std::string name = entry->d_name; name != "." && name != "..") names.push_back(name);
    std::sort(names.begin(), names.end());
    std::vector<NSFileWrapper> files;
    for (const std::string &name : names) {
      files.push_back(readEntry(folder, name.c_str(), NSString::stringWithFileSystemRepresentation(name), false,
                                depth + 1));
      if (hasFailed_) return {};
    }
    return NSFileWrapper::directoryWithFileWrappers(std::move(files), preferredName);
  }

  NSFileWrapper readLink(int folder, const char *name, const NSString &preferredName) {
    char destination[4096];
    const ssize_t length = ::readlinkat(folder, name, destination, sizeof destination);
    if (length < 0) return failed(errno);
    return NSFileWrapper::symbolicLinkWithDestination(
        NSString::stringWithFileSystemRepresentation({destination, static_cast<std::size_t>(length)}),
        preferredName);
  }

  NSFileWrapper failed(int number) {
    hasFailed_ = true;
    if (error_) *error_ = NSError::errorWithFileErrno(number);
    return {};
  }

  NSFileWrapper tooLarge() {
    hasFailed_ = true;
    setError(error_, ErrorCode::tooLarge, "the folder has too many or too large files");
    return {};
  }

  NSError *const error_;
  std::uint32_t files_ = 0;
  std::uint32_t bytesLeft_ = NSNotFound;
  bool hasFailed_ = false;
};

/// Writes something under a new name in the open folder and answers the name.
template <class Make>
std::optional<std::string> makeUnderNewName(Make &&make) {
  std::random_device random;
  for (int i = 0; i < kTemporaryNames; ++i) {
    std::string name = ".quiverleaf-" + std::to_string(random());
    if (make(name.c_str())) return name;
    if (errno != EEXIST) break;
  }
  return std::nullopt;
}

/// Keeps `errno`, which says why the tree is not needed.
void removeTree(int folder, const std::string &name) {
  const int reason = errno;
  std::error_code ignored;
  std::filesystem::remove_all("/proc/self/fd/" + std::to_string(folder) + "/" + name, ignored);
  errno = reason;
}

bool writeFolderInto(int folder, const NSFileWrapper &wrapper, std::uint32_t depth);

/// Makes what has no folder in it under a new name, then moves it to its own: no link there is ever written
/// through.
bool writeLeaf(int folder, const std::string &name, const NSFileWrapper &wrapper) {
  const auto temporary = makeUnderNewName([&](const char *newName) {
    if (wrapper.isSymbolicLink()) {
      const auto destination = wrapper.symbolicLinkDestination().fileSystemRepresentation();
      errno = EINVAL;
      return destination && ::symlinkat(destination->c_str(), folder, newName) == 0;
    }
    const FileDescriptor file(::openat(folder, newName, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode));
    if (!file) return false;
    if (writeAll(file.get(), wrapper.regularFileContents().view())) return true;
    const int reason = errno;
    ::unlinkat(folder, newName, 0);
    errno = reason == EEXIST ? EIO : reason;
    return false;
  });
  if (!temporary) return false;
  if (::renameat(folder, temporary->c_str(), folder, name.c_str()) == 0) return true;
  removeTree(folder, *temporary);
  return false;
}

bool writeEntry(int folder, const std::string &name, const NSFileWrapper &wrapper, std::uint32_t depth) {
  errno = ELOOP;
  if (depth > NSFileWrapper::kMaximumDepth) return false;
  if (!wrapper.isDirectory()) return writeLeaf(folder, name, wrapper);
  if (::mkdirat(folder, name.c_str(), kNewFolderMode) != 0 && errno != EEXIST) return false;
  const FileDescriptor inner(::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  return inner && writeFolderInto(inner.get(), wrapper, depth);
}

bool writeFolderInto(int folder, const NSFileWrapper &wrapper, std::uint32_t depth) {
  return std::all_of(wrapper.fileWrappers().begin(), wrapper.fileWrappers().end(), [&](const auto &entry) {
    const auto name = entry.first.fileSystemRepresentation();
    return name && writeEntry(folder, *name, entry.second, depth + 1);
  });
}

/// Writes it all under a new name, then lets it change places with what is there, which goes.
bool replace(int folder, const std::string &name, const NSFileWrapper &wrapper) {
  if (!wrapper.isDirectory()) return writeLeaf(folder, name, wrapper);
  const auto temporary =
      makeUnderNewName([&](const char *newName) { return ::mkdirat(folder, newName, kNewFolderMode) == 0; });
  if (!temporary) return false;
  const bool isDone = writeEntry(folder, *temporary, wrapper, 0) &&
                      (::renameat2(folder, temporary->c_str(), folder, name.c_str(), RENAME_EXCHANGE) == 0 ||
                       ::renameat(folder, temporary->c_str(), folder, name.c_str()) == 0);
  removeTree(folder, *temporary);
  return isDone;
}

}  // namespace

NSFileWrapper fileWrapperOfPath(const NSString &path, NSError *error) {
  const auto name = path.fileSystemRepresentation();
  if (!name) {
    setError(error, ErrorCode::noSuchFile, "there is no such file");
    return {};
  }
  NSError reason;
  NSFileWrapper wrapper =
      DiskReader(&reason).readEntry(AT_FDCWD, name->c_str(), lastPathComponent(path), true, 0);
  if (!wrapper && !reason) setError(&reason, ErrorCode::unreadable, "it is neither a file nor a folder");
  if (!wrapper && error) *error = reason;
  return wrapper;
}

bool writeFileWrapper(const NSFileWrapper &file, const NSString &path, Flag atomically) {
  const auto wanted = path.fileSystemRepresentation();
  errno = EINVAL;
  if (!wanted) return false;
  // What a link at the path itself leads to is meant.
  std::error_code error;
  std::filesystem::path whole = std::filesystem::canonical(*wanted, error);
  if (error) whole = std::filesystem::absolute(*wanted, error);
  if (!whole.has_filename()) whole = whole.parent_path();
  if (error || !whole.has_filename()) return false;
  const FileDescriptor folder(::open(whole.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder) return false;
  const std::string name = whole.filename().native();
  return atomically ? replace(folder.get(), name, file) : writeEntry(folder.get(), name, file, 0);
}

}  // namespace nimbo
