// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/DataWriting.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include "platform/Foundation/System/ExtendedAttributes.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "platform/Foundation/System/ItemRenaming.hpp"
#include "platform/Foundation/System/TemporaryNames.hpp"

namespace nimbo {
namespace {

constexpr mode_t kNewFileMode = 0666;
/// What a new file takes over from an old one; not the bits that run it as its owner, who may be another one.
constexpr mode_t kPermissions = 0777;

/// The file that `path` leads to through symbolic links, be it there or not. Nothing when the links go in a
/// circle or through a folder that is closed to us.
std::optional<std::string> resolved(const std::string &path) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
  if (real) return std::string(real.get());
  if (errno != ENOENT) return std::nullopt;
  std::error_code error;
  const std::filesystem::path link = path, target = std::filesystem::read_symlink(link, error);
  return error ? path : resolved((link.parent_path() / target).string());
}

bool overwriteFile(const NSData &data, const std::string &path) {
  const FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kNewFileMode));
  return file && writeAll(file.get(), data.view());
}

/// Whether there is something at `path` that is no regular file: a device, say, which nothing may replace.
bool isSpecialFile(const std::string &path) {
  struct stat info = {};
  return ::stat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode);
}

/// Writes a new file beside `path`, which `place` then moves there. It takes over what the old file, if any,
/// has beside its content.
template <class Place>
bool writeBeside(const NSData &data, const std::string &path, Place &&place) {
  FileDescriptor file;
  const auto temporary = makeBeside(path, [&](const std::string &name) {
    file = FileDescriptor(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode));
    return static_cast<bool>(file);
  });
  if (!temporary) return false;
  struct stat old = {};
  const bool keepsMode = ::stat(path.c_str(), &old) == 0;
  const bool isDone = copyExtendedAttributes(path, file.get()) &&
                      (!keepsMode || ::fchmod(file.get(), old.st_mode & kPermissions) == 0) &&
                      writeAll(file.get(), data.view()) && ::fsync(file.get()) == 0 && place(*temporary, path);
  if (isDone) return true;
  const int reason = errno;
  ::unlink(temporary->c_str());
  errno = reason;
  return false;
}

}  // namespace

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

bool writeDataToFile(const NSData &data, const NSString &path, Flag atomically) {
  const auto name = path.fileSystemRepresentation();
  errno = EINVAL;
  if (!data || !name) return false;
  if (!atomically || isSpecialFile(*name)) return overwriteFile(data, *name);
  const auto target = resolved(*name);
  return target && writeBeside(data, *target, [](const std::string &from, const std::string &to) {
           return ::rename(from.c_str(), to.c_str()) == 0;
         });
}

bool writeDataToNewFile(const NSData &data, const NSString &path) {
  const auto name = path.fileSystemRepresentation();
  errno = EINVAL;
  return data && name && writeBeside(data, *name, renameWithoutReplacing);
}

}  // namespace nimbo
