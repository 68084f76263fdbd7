// SPDX-License-Identifier: Apache-2.0
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <string>
#include <string_view>

#include "platform/Foundation/NSFileAttributes.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSLog.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "platform/Foundation/System/ItemCopying.hpp"
#include "platform/Foundation/System/ItemRemoval.hpp"
#include "platform/Foundation/System/ItemRenaming.hpp"
#include "platform/Foundation/System/TemporaryNames.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {
namespace {

constexpr mode_t kNewFolderMode = 0777;
constexpr mode_t kPermissions = 07777;

/// Sets the error to what errno says unless all went well.
bool done(bool isDone, NSError *error) {
  if (!isDone && error) *error = NSError::errorWithFileWritingErrno(errno);
  return isDone;
}

/// The path for the system, without "/" at the end, which would follow a link. Empty, with errno, when there is
/// none.
std::string itemPath(const NSString &path) {
  std::string bytes = path.fileSystemRepresentation().value_or("");
  while (bytes.size() > 1 && bytes.back() == '/') bytes.pop_back();
  if (bytes.empty()) errno = ENOENT;
  return bytes;
}

/// The path of something that may be moved or removed.
std::string ownPath(const NSString &path) {
  std::string bytes = itemPath(path);
  const std::string_view name = std::string_view(bytes).substr(bytes.rfind('/') + 1);
  if (bytes != "/" && name != "." && name != "..") return bytes;
  errno = EINVAL;
  return {};
}

/// How much of the path is that of the folder above; 0 when there is none in it.
std::size_t lengthOfParent(std::string_view path, std::size_t length) {
  const std::size_t slash = path.substr(0, length).rfind('/');
  if (slash == path.npos || length <= 1) return 0;
  const std::size_t last = path.find_last_not_of('/', slash);
  return last == path.npos ? 1 : last + 1;
}

/// Makes the folder and those above it that are missing. `*isNew` gets whether this made the folder.
bool makeFolders(const std::string &path, bool *isNew) {
  const auto make = [&](std::size_t length) {
    *isNew = ::mkdir(path.substr(0, length).c_str(), kNewFolderMode) == 0;
    return *isNew || errno == EEXIST;
  };
  std::size_t length = path.size();
  while (!make(length)) {
    if (errno != ENOENT) return false;
    length = lengthOfParent(path, length);
    if (length == 0) return false;
  }
  while (length < path.size()) {
    length = std::min(path.find('/', path.find_first_not_of('/', length)), path.size());
    if (!make(length)) return false;
  }
  return true;
}

FileDescriptor openForReading(const std::string &path, int flags) {
  return FileDescriptor(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | flags));
}

/// Waits until the content of an item is on the disk; for a folder, all that its file system has in memory.
bool synchronizeItem(const std::string &path) {
  struct stat info = {};
  if (::lstat(path.c_str(), &info) != 0) return false;
  if (!S_ISREG(info.st_mode) && !S_ISDIR(info.st_mode)) return true;
  const FileDescriptor item = openForReading(path, O_NOFOLLOW);
  return item && (S_ISDIR(info.st_mode) ? ::syncfs(item.get()) : ::fsync(item.get())) == 0;
}

/// Waits until the name of an item is on the disk.
bool synchronizeName(const std::string &path) {
  const std::size_t parent = lengthOfParent(path, path.size());
  const FileDescriptor folder = openForReading(parent == 0 ? "." : path.substr(0, parent), O_DIRECTORY);
  return folder && ::fsync(folder.get()) == 0;
}

/// Whether nothing is there, which is better known before the work than behind it.
bool isFree(const std::string &path) {
  struct stat info = {};
  if (path.empty() || ::lstat(path.c_str(), &info) != 0) return true;
  errno = EEXIST;
  return false;
}

/// Copies the item and puts the copy where it belongs with `place`.
template <class Place>
bool copyInto(const std::string &from, const std::string &to, AttributeLoss loss, Place &&place) {
  const auto copy = makeBeside(to, [&](const std::string &name) { return copyItem(from, name, loss); });
  if (!copy) return false;
  if ((loss == AttributeLoss::allowed || synchronizeItem(*copy)) && place(*copy, to)) return true;
  const int reason = errno;
  removeItem(*copy);
  errno = reason;
  return false;
}

/// Removes what has been copied. A folder first gets a hidden name: nobody takes what is left of it, after this
/// process was killed, for the folder.
bool removeOriginal(const std::string &path) {
  struct stat info = {};
  if (::lstat(path.c_str(), &info) != 0) return false;
  if (!S_ISDIR(info.st_mode)) return removeItem(path);
  const auto hidden =
      makeBeside(path, [&](const std::string &name) { return renameWithoutReplacing(path, name); });
  if (!hidden) return false;
  if (!removeItem(*hidden))
    NSLog(u"Couldn't remove path %@", NSString::stringWithFileSystemRepresentation(*hidden));
  return true;
}

template <class Place>
bool move(const std::string &from, const std::string &to, Place &&place) {
  if (from.empty() || to.empty()) return false;
  if (place(from, to)) return true;
  // Its bytes may go only when the name of the copy is on the disk, too.
  return errno == EXDEV && copyInto(from, to, AttributeLoss::refused, place) && synchronizeName(to) &&
         removeOriginal(from);
}

}  // namespace

bool NSFileManager::createDirectoryAtPath(const NSString &path, Flag withIntermediateDirectories,
                                          const NSDictionary &attributes, NSError *error) {
  const std::string folder = itemPath(path);
  if (folder.empty()) return done(false, error);
  bool isNew = true;
  if (!(withIntermediateDirectories ? makeFolders(folder, &isNew)
                                    : ::mkdir(folder.c_str(), kNewFolderMode) == 0))
    return done(false, error);
  struct stat info = {};
  if (!isNew && (::stat(folder.c_str(), &info) != 0 || !S_ISDIR(info.st_mode))) {
    errno = EEXIST;
    return done(false, error);
  }
  const auto mode = attributes.objectForKey(NSFilePosixPermissions()).integer();
  return !isNew || !mode ||
         done(::chmod(folder.c_str(), static_cast<mode_t>(*mode) & kPermissions) == 0, error);
}

bool NSFileManager::removeItemAtPath(const NSString &path, NSError *error) {
  const std::string item = ownPath(path);
  return done(!item.empty() && removeItem(item), error);
}

bool NSFileManager::moveItemAtPath(const NSString &path, const NSString &toPath, NSError *error) {
  const std::string to = itemPath(toPath);
  return done(isFree(to) && move(ownPath(path), to, renameWithoutReplacing), error);
}

bool NSFileManager::replaceItemAtPath(const NSString &path, const NSString &withItemAtPath, NSError *error) {
  return done(move(ownPath(withItemAtPath), ownPath(path), renameReplacing), error);
}

bool NSFileManager::copyItemAtPath(const NSString &path, const NSString &toPath, NSError *error) {
  const std::string from = itemPath(path), to = itemPath(toPath);
  return done(!from.empty() && !to.empty() && isFree(to) &&
                  copyInto(from, to, AttributeLoss::allowed, renameWithoutReplacing),
              error);
}

}  // namespace nimbo
