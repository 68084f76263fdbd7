// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Links.hpp"

#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "platform/Foundation/NSPathUtilities.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {

bool createLinkWithPath(const NSString &path, const NSString &atPath) {
  const auto target = path.fileSystemRepresentation(), name = atPath.fileSystemRepresentation();
  if (!target || !name) return false;
  const std::filesystem::path link = *name;
  std::error_code error;
  std::filesystem::create_directories(link.parent_path(), error);
  std::filesystem::create_symlink(*target, link, error);
  return !error;
}

NSString resolveLink(const NSString &path) {
  const auto name = path.fileSystemRepresentation();
  std::error_code error;
  const std::filesystem::path target = std::filesystem::read_symlink(name.value_or(""), error);
  if (error) return NSString();
  return NSString::stringWithFileSystemRepresentation(
      (std::filesystem::path(*name).parent_path() / target).native());
}

bool getFSRef(FSRef *ref, const NSString &path) {
  return FSPathMakeRef(path, ref);
}

bool getFSSpec(FSSpec *spec, const NSString &path) {
  FSRef file, folder;
  if (!FSPathMakeRef(path, &file) || file.lastPath == "/") return false;
  const NSString found = NSString::stringWithFileSystemRepresentation(file.lastPath);
  if (!FSPathMakeRef(stringByDeletingLastPathComponent(found), &folder)) return false;
  if (spec) *spec = {std::move(folder), lastPathComponent(found)};
  return true;
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
