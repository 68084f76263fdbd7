// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSFileManager.hpp"

#include <dirent.h>
#include <sys/stat.h>

#include <cerrno>
#include <memory>
#include <string_view>

namespace nimbo {

bool NSFileManager::fileExistsAtPath(const NSString &path, bool *isDirectory) {
  const auto name = path.fileSystemRepresentation();
  struct stat info = {};
  const bool exists = name && ::stat(name->c_str(), &info) == 0;
  if (isDirectory) *isDirectory = exists && S_ISDIR(info.st_mode);
  return exists;
}

std::optional<std::vector<NSString>> NSFileManager::contentsOfDirectoryAtPath(const NSString &path,
                                                                              NSError *error) {
  struct Close {
    void operator()(DIR *folder) const { ::closedir(folder); }
  };
  const auto fail = [error](int number) {
    if (error) *error = NSError::errorWithFileErrno(number);
    return std::nullopt;
  };
  const auto name = path.fileSystemRepresentation();
  if (!name) return fail(ENOENT);
  const std::unique_ptr<DIR, Close> folder(::opendir(name->c_str()));
  if (!folder) {
    if (errno != ENOTDIR || !fileExistsAtPath(path)) return fail(errno);
    setError(error, ErrorCode::unreadable, "the file is no folder");
    return std::nullopt;
  }
  std::vector<NSString> names;
  for (;;) {
    errno = 0;
    const struct dirent *entry = ::readdir(folder.get());
    if (!entry) break;
    const std::string_view entryName = entry->d_name;
    if (entryName != "." && entryName != "..")
      names.push_back(NSString::stringWithFileSystemRepresentation(entryName));
  }
  if (errno != 0) return fail(errno);
  return names;
}

}  // namespace nimbo
