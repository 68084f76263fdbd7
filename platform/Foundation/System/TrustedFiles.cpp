// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/TrustedFiles.hpp"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>

namespace nimbo {
namespace {

/// Where the descriptor's file is now; empty for AT_FDCWD.
std::filesystem::path placeOf(int descriptor) {
  std::error_code error;
  return std::filesystem::read_symlink(pathOfDescriptor(descriptor), error);
}

NSError because(ErrorCode code, const std::filesystem::path &place, std::string_view reason) {
  const NSString path = NSString::stringWithFileSystemRepresentation(place.native());
  return NSError::errorWithCode(code, path.UTF8String().append(" ").append(reason));
}

/// Why what was opened must not be trusted; nil when it may. Sticky folders may be open to all if
/// `allowsSticky`.
NSError errorForDistrust(int descriptor, mode_t kind, bool allowsSticky) {
  struct stat info = {};
  if (::fstat(descriptor, &info) != 0) return NSError::errorWithFileErrno(errno);
  const auto refuse = [&](std::string_view reason) {
    return because(ErrorCode::unreadable, placeOf(descriptor), reason);
  };
  if ((info.st_mode & S_IFMT) != kind)
    return refuse(S_ISLNK(info.st_mode) ? "is a symbolic link" : "is of the wrong kind");
  if (info.st_uid != 0 && info.st_uid != ::geteuid()) return refuse("belongs to another user");
  const bool isSticky = info.st_mode & S_ISVTX;
  if ((info.st_mode & (S_IWGRP | S_IWOTH)) && !(allowsSticky && isSticky))
    return refuse("is writable by others than its owner");
  return NSError();
}

FileDescriptor openChecked(int folder, const std::string &name, mode_t kind, bool allowsSticky,
                           NSError *error) {
  FileDescriptor file(::openat(folder, name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
  const int number = errno;
  NSError failure;
  if (file)
    failure = errorForDistrust(file.get(), kind, allowsSticky);
  else if (number == ENOENT || number == ENOTDIR)
    failure = because(ErrorCode::noSuchFile, placeOf(folder) / name, "is missing");
  else
    failure = NSError::errorWithFileErrno(number);
  if (!failure) return file;
  if (error) *error = std::move(failure);
  return FileDescriptor();
}

}  // namespace

FileDescriptor openTrusted(int folder, const std::string &name, mode_t kind, NSError *error) {
  return openChecked(folder, name, kind, false, error);
}

bool holderIsTrusted(int folder, NSError *error) {
  return static_cast<bool>(openChecked(folder, "..", S_IFDIR, true, error));
}

std::string pathOfDescriptor(int descriptor) {
  return "/proc/self/fd/" + std::to_string(descriptor);
}

}  // namespace nimbo
