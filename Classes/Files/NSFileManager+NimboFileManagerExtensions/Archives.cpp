// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Archives.hpp"

#include <algorithm>
#include <charconv>
#include <string>
#include <string_view>

#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/ItemStatus.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {

namespace {

/// Up to how many archives each number is tried; beyond, the folder tells which there are.
constexpr std::uint32_t kTriedNumbers = 100;

/// Nil for the root, whose name takes no extension.
NSString archiveOf(const NSString &path, std::uint64_t number) {
  NSString archive =
      stringByAppendingPathExtension(path, NSString::stringWithUTF8String(std::to_string(number)));
  return archive == path ? NSString() : archive;
}

/// The number of an archive by its name, if it is one of the file's.
std::optional<std::uint32_t> numberOf(std::string_view name, std::string_view prefix) {
  if (!name.starts_with(prefix)) return std::nullopt;
  name.remove_prefix(prefix.size());
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
  const bool isWhole = error == std::errc() && name == std::to_string(number);
  return isWhole ? std::optional(number) : std::nullopt;
}

/// The highest number that an archive moves up to.
std::uint32_t highestNumber(const NSString &path, std::uint32_t numberOfArchives) {
  if (numberOfArchives <= kTriedNumbers) return numberOfArchives - 1;
  const NSString parent = stringByDeletingLastPathComponent(path);
  const auto names = NSFileManager::contentsOfDirectoryAtPath(parent.length() == 0 ? u"."_ns : parent);
  const std::string prefix = lastPathComponent(path).fileSystemRepresentation().value_or("") + ".";
  std::uint32_t highest = 0;
  for (const NSString &name : names.value_or(std::vector<NSString>())) {
    const auto number = numberOf(name.fileSystemRepresentation().value_or(""), prefix);
    if (number && *number < numberOfArchives - 1) highest = std::max(highest, *number + 1);
  }
  return highest;
}

}  // namespace

std::vector<NSString> archivedPaths(const NSString &path) {
  std::vector<NSString> paths;
  for (NSString each = path; statusOfItem(each); each = archiveOf(path, paths.size() - 1))
    paths.push_back(each);
  return paths;
}

bool archivePath(const NSString &path, std::uint32_t numberOfArchives) {
  if (numberOfArchives == 0 || isMissing(path)) return true;
  const NSString newest = archiveOf(path, 0);
  if (NSFileManager::moveItemAtPath(path, newest)) return true;
  // Where it cannot be moved for another reason, no archive has to go for it.
  if (!statusOfItem(newest)) return false;
  for (std::uint64_t i = numberOfArchives - 1; statusOfItem(archiveOf(path, i)); ++i)
    NSFileManager::removeItemAtPath(archiveOf(path, i));
  for (std::uint32_t i = highestNumber(path, numberOfArchives); i > 0; --i)
    NSFileManager::moveItemAtPath(archiveOf(path, i - 1), archiveOf(path, i));
  return NSFileManager::moveItemAtPath(path, newest);
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
