// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/ItemRenaming.hpp"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/Foundation/System/FileDescriptor.hpp"
#include "platform/Foundation/System/ItemRemoval.hpp"
#include "platform/Foundation/System/TemporaryNames.hpp"

namespace nimbo {
namespace {

/// The same on file systems that cannot do it: an empty item claims the name, and is replaced.
bool claimAndReplace(const std::string &from, const std::string &to) {
  struct stat info = {};
  if (::lstat(from.c_str(), &info) != 0) return false;
  const bool isFolder = S_ISDIR(info.st_mode);
  if (isFolder
          ? ::mkdir(to.c_str(), S_IRWXU) != 0
          : !FileDescriptor(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR)))
    return false;
  if (::rename(from.c_str(), to.c_str()) == 0) return true;
  const int reason = errno;
  isFolder ? ::rmdir(to.c_str()) : ::unlink(to.c_str());
  errno = reason;
  return false;
}

/// Renaming leaves both names alone when they are those of one file: removes the old one.
bool removeOtherName(const std::string &from, const std::string &to) {
  struct stat left = {}, there = {};
  if (::lstat(from.c_str(), &left) != 0 || ::lstat(to.c_str(), &there) != 0) return true;
  if (left.st_nlink < 2 || S_ISDIR(left.st_mode) || left.st_dev != there.st_dev || left.st_ino != there.st_ino)
    return true;
  // Both may lead to the same name, which has to stay.
  const auto other =
      makeBeside(from, [&](const std::string &name) { return renameWithoutReplacing(from, name); });
  if (!other) return false;
  return ::lstat(to.c_str(), &there) == 0 ? ::unlink(other->c_str()) == 0 : renameWithoutReplacing(*other, to);
}

}  // namespace

bool renameWithoutReplacing(const std::string &from, const std::string &to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  return (errno == EINVAL || errno == ENOSYS) && claimAndReplace(from, to);
}

bool renameReplacing(const std::string &from, const std::string &to) {
  if (::rename(from.c_str(), to.c_str()) == 0) return removeOtherName(from, to);
  if (errno != EISDIR && errno != ENOTDIR && errno != ENOTEMPTY && errno != EEXIST) return false;
  const auto old = makeBeside(to, [&](const std::string &name) { return renameWithoutReplacing(to, name); });
  if (!old) return false;
  if (renameWithoutReplacing(from, to)) {
    removeItem(*old);
    return true;
  }
  const int reason = errno;
  renameWithoutReplacing(*old, to);
  errno = reason;
  return false;
}

}  // namespace nimbo
