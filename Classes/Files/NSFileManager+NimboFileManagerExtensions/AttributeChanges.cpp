// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/AttributeChanges.hpp"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <optional>
#include <system_error>

#include "Classes/Files/AttributeFailures.hpp"
#include "platform/Foundation/NSFileAttributes.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "platform/Foundation/System/FinderInfo.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {

namespace {

/// 2000-01-01, where file servers begin to count.
constexpr double kServerEpochSeconds = 946684800.0;

bool setField(const NSString &operation, const NSString &attribute, const NSString &path,
              const FinderField &field, std::uint64_t value) {
  NSError error;
  return setFinderField(path, field, value, &error) || logAttributeFailure(operation, attribute, path, error);
}

bool logErrno(const NSString &operation, const NSString &attribute, const NSString &path, int number) {
  return logAttributeFailure(operation, attribute, path,
                             NSError::errorWithCode(ErrorCode::other, std::generic_category().message(number)));
}

/// Folders keep something else in the place of the codes.
bool setCodes(const NSString &operation, const NSString &path, const FinderField &field, std::uint64_t codes) {
  const NSString type = fileAttributeAtPath(path, NSFileType(), true).string();
  if (type != NSFileTypeRegular()) {
    const int reason = type == NSFileTypeDirectory() ? EISDIR : type ? EINVAL : ENOENT;
    return logErrno(operation, u"codes"_ns, path, reason);
  }
  return setField(operation, u"codes"_ns, path, field, codes);
}

bool setModificationTime(const NSString &operation, const timespec &time, const NSString &path) {
  const auto name = path.fileSystemRepresentation();
  const timespec times[] = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, time};
  if (name && ::utimensat(AT_FDCWD, name->c_str(), times, 0) == 0) return true;
  return logErrno(operation, u"date"_ns, path, name ? errno : ENOENT);
}

bool isAccessible(const NSString &path, int mode, int flags) {
  const auto name = path.fileSystemRepresentation();
  return name && ::faccessat(AT_FDCWD, name->c_str(), mode, AT_EACCESS | flags) == 0;
}

}  // namespace

bool setFileCreationDate(NSDate date, const NSString &path) {
  const NSString operation = u"setFileCreationDate:atPath:"_ns;
  const double seconds = std::floor(date.timeIntervalSince1970() - kServerEpochSeconds);
  // The earliest one is no date.
  if (!(seconds > INT32_MIN && seconds <= INT32_MAX)) return logErrno(operation, u"date"_ns, path, ERANGE);
  return setField(operation, u"date"_ns, path, kServerCreationDate,
                  static_cast<std::uint32_t>(static_cast<std::int32_t>(seconds)));
}

bool setFileModificationDate(NSDate date, const NSString &path) {
  const NSString operation = u"setFileModificationDate:atPath:"_ns;
  const double seconds = date.timeIntervalSince1970(), whole = std::floor(seconds);
  // What no 64-bit number of seconds holds.
  if (!(std::abs(seconds) < 9e18)) return logErrno(operation, u"date"_ns, path, ERANGE);
  const auto nanoseconds = static_cast<long>((seconds - whole) * 1e9);
  return setModificationTime(operation, {.tv_sec = static_cast<time_t>(whole), .tv_nsec = nanoseconds}, path);
}

bool setFileCreationDate(NSDate date, NSDate modificationDate, const NSString &path) {
  const bool isCreationSet = setFileCreationDate(date, path);
  return setFileModificationDate(modificationDate, path) && isCreationSet;
}

bool touchFile(const NSString &path) {
  return setModificationTime(u"touchFile:"_ns, {.tv_sec = 0, .tv_nsec = UTIME_NOW}, path);
}

bool setFileHFSTypeCode(OSType code, const NSString &path) {
  return setCodes(u"setFileHFSTypeCode:atPath:"_ns, path, kFinderType, code);
}

bool setFileHFSCreatorCode(OSType code, const NSString &path) {
  return setCodes(u"setFileHFSCreatorCode:atPath:"_ns, path, kFinderCreator, code);
}

bool setFileHFSCreatorCode(OSType code, OSType typeCode, const NSString &path) {
  return setCodes(u"setFileHFSCreatorCode:typeCode:atPath:"_ns, path, kFinderTypeAndCreator,
                  std::uint64_t{typeCode} << 32 | code);
}

bool setFileExtensionHidden(Flag hidden, const NSString &path) {
  return setField(u"setFileExtensionHidden:atPath:"_ns, u"hidden extension"_ns, path, kFinderHidesExtension,
                  hidden ? kFinderHidesExtension.mask : 0);
}

bool setFileImmutable(Flag immutable, const NSString &path) {
  const auto name = path.fileSystemRepresentation();
  const FileDescriptor file(name ? ::open(name->c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC) : -1);
  if (file) {
    int flags = 0;
    if (::ioctl(file.get(), FS_IOC_GETFLAGS, &flags) == 0) {
      const int wanted = immutable ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
      if (wanted == flags || ::ioctl(file.get(), FS_IOC_SETFLAGS, &wanted) == 0) return true;
    }
  }
  return logErrno(u"setFileImmutable:atPath:"_ns, u"immutable"_ns, path, name ? errno : ENOENT);
}

bool isFileImmutableAtPath(const NSString &path) {
  const auto name = path.fileSystemRepresentation();
  struct statx status = {};
  return name && ::statx(AT_FDCWD, name->c_str(), 0, STATX_TYPE, &status) == 0 &&
         (status.stx_attributes & STATX_ATTR_IMMUTABLE) != 0;
}

bool setFileLocked(Flag locked, const NSString &path) {
  return setField(u"setFileLocked:atPath:"_ns, u"locked"_ns, path, kServerLock, locked ? kServerLock.mask : 0);
}

bool isFileLockedAtPath(const NSString &path) {
  return finderField(path, kServerLock) != 0 || isFileImmutableAtPath(path);
}

bool permissionsAtPath(const NSString &path, Flag executable, Flag traverseLink) {
  return isAccessible(path, R_OK | W_OK | (executable ? X_OK : 0), traverseLink ? 0 : AT_SYMLINK_NOFOLLOW);
}

bool permissionsAtPathByDeletingLastPathComponent(const NSString &path, Flag executable) {
  const NSString folder = stringByDeletingLastPathComponent(path);
  return permissionsAtPath(path && folder.length() == 0 ? u"."_ns : folder, executable, true);
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
