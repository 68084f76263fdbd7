// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/System/PrivateFolder.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace nimbo {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPrefix = "quiverleaf-private-";

/// The lock of a folder that exists: whoever has it keeps the folder. Nothing when somebody else has it.
FileDescriptor lockOf(const fs::path &folder) {
  FileDescriptor file(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  struct stat info = {};
  if (!file || ::fstat(file.get(), &info) != 0 || info.st_uid != ::geteuid()) return FileDescriptor();
  return ::flock(file.get(), LOCK_EX | LOCK_NB) == 0 ? std::move(file) : FileDescriptor();
}

void removeLeftFolders(const fs::path &parent) {
  std::error_code error;
  for (const auto &entry : fs::directory_iterator(parent, error)) {
    if (!entry.path().filename().native().starts_with(kPrefix)) continue;
    std::error_code ignored;
    if (const FileDescriptor lock = lockOf(entry.path())) fs::remove_all(entry.path(), ignored);
  }
}

}  // namespace

std::unique_ptr<PrivateFolder> PrivateFolder::make(NSError *error) {
  std::error_code failure;
  fs::path parent = fs::temp_directory_path(failure);
  if (!failure) parent = fs::canonical(parent, failure);
  if (!failure) {
    removeLeftFolders(parent);
    std::string name = (parent / std::string(kPrefix).append("XXXXXX")).native();
    // Another process may take one that has no lock yet for one that is left.
    for (int tries = 0; tries < 10; ++tries) {
      std::string made = name;
      if (!::mkdtemp(made.data())) break;
      if (FileDescriptor lock = lockOf(made))
        return std::unique_ptr<PrivateFolder>(
            new PrivateFolder(NSString::stringWithFileSystemRepresentation(made), std::move(lock)));
    }
    failure = std::error_code(errno, std::generic_category());
  }
  setError(error, ErrorCode::other, "no temporary folder can be made: " + failure.message());
  return nullptr;
}

PrivateFolder::~PrivateFolder() {
  std::error_code ignored;
  if (const auto name = path_.fileSystemRepresentation()) fs::remove_all(*name, ignored);
}

NSString PrivateFolder::pathOf(std::string_view name) const {
  return NSString::stringWithFileSystemRepresentation(
      (fs::path(path_.fileSystemRepresentation().value_or("")) / name).native());
}

FileDescriptor PrivateFolder::openFile(std::string_view name, std::uint64_t *size, NSError *error) const {
  FileDescriptor file(::openat(lock_.get(), std::string(name).c_str(),
                               O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat info = {};
  if (file && ::fstat(file.get(), &info) == 0 && S_ISREG(info.st_mode)) {
    *size = static_cast<std::uint64_t>(info.st_size);
    return file;
  }
  if (!file && errno != ELOOP && error)
    *error = NSError::errorWithFileErrno(errno);
  else
    setError(error, ErrorCode::unreadable, "the file is no regular file");
  return FileDescriptor();
}

void PrivateFolder::clear() const {
  std::error_code error;
  for (const auto &entry : fs::directory_iterator(path_.fileSystemRepresentation().value_or(""), error)) {
    std::error_code ignored;
    fs::remove_all(entry.path(), ignored);
  }
}

}  // namespace nimbo
