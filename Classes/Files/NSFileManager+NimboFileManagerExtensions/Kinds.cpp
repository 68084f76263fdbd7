// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Kinds.hpp"

#include <filesystem>
#include <system_error>

#include "platform/Foundation/NSFileManager.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {
namespace {

constexpr std::u16string_view kVolumes = u"/Volumes/";

/// What is at the path itself, which may be a link.
std::filesystem::file_type typeAtPath(const NSString &path) {
  std::error_code error;
  const auto name = path.fileSystemRepresentation();
  return name ? std::filesystem::symlink_status(*name, error).type() : std::filesystem::file_type::none;
}

}  // namespace

bool isDirectoryAtPath(const NSString &path) {
  bool isDirectory = false;
  return NSFileManager::fileExistsAtPath(path, &isDirectory) && isDirectory;
}

bool isSymbolicLinkAtPath(const NSString &path) {
  return typeAtPath(path) == std::filesystem::file_type::symlink;
}

bool fileExistsAtPath(const NSString &path, Flag traverseLink) {
  if (traverseLink) return NSFileManager::fileExistsAtPath(path);
  const std::filesystem::file_type type = typeAtPath(path);
  return type != std::filesystem::file_type::none && type != std::filesystem::file_type::not_found;
}

bool isVolumeMountedAtPath(const NSString &path) {
  const std::u16string_view units = path.view();
  if (!units.starts_with(kVolumes)) return true;
  const std::size_t name = units.find_first_not_of(u'/', kVolumes.size());
  if (name == units.npos) return true;
  return isDirectoryAtPath(NSString::stringWithCharacters(units.substr(0, units.find(u'/', name))));
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
