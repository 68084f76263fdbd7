// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Listing.hpp"

#include <limits.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

#include "Classes/Files/Wildcard.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSLog.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSStringCase.hpp"
#include "platform/Foundation/System/FolderWalk.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {
namespace {

/// Folders in folders by long names would else take memory by the square of their number.
constexpr std::size_t kUnopenableUnits = std::size_t{1} << 27;

enum class Kinds { all, files, folders };

bool isOfKind(const FolderWalk::Entry &entry, Kinds kinds) {
  return kinds == Kinds::all || entry.isFolder == (kinds == Kinds::folders);
}

/// The path that a link leads to; the path itself where that is nothing.
NSString resolved(const NSString &path) {
  std::error_code error;
  const std::filesystem::path target =
      std::filesystem::canonical(path.fileSystemRepresentation().value_or(""), error);
  return error ? path : NSString::stringWithFileSystemRepresentation(target.native());
}

std::vector<NSString> listing(const NSString &path, Kinds kinds, bool fullPath, bool resolveLinks) {
  std::vector<NSString> found;
  for (FolderWalk walk(path, resolveLinks); walk.next();) {
    const FolderWalk::Entry &entry = walk.entry();
    if (!isOfKind(entry, kinds)) continue;
    NSString name = NSString::stringWithFileSystemRepresentation(entry.name);
    if (fullPath) name = stringByAppendingPathComponent(path, name);
    found.push_back(fullPath && resolveLinks && entry.isLink ? resolved(name) : std::move(name));
  }
  return found;
}

/// Most names are ASCII, whose units are their bytes.
void appendName(std::u16string &path, std::string_view name) {
  const std::size_t length = path.size();
  path.resize(length + name.size());
  unsigned char bits = 0;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const auto byte = static_cast<unsigned char>(name[i]);
    bits |= byte;
    path[length + i] = byte;
  }
  if (bits < 0x80) return;
  path.resize(length);
  path += NSString::stringWithFileSystemRepresentation(name).view();
}

std::vector<NSString> deepListing(const NSString &folder, Kinds kinds, bool resolveLinks) {
  std::vector<NSString> found;
  std::u16string path;
  // How long the path of each folder is that the walk is in, with the "/" behind it.
  std::vector<std::size_t> lengths = {0};
  std::size_t unopenableUnits = 0;
  for (FolderWalk walk(folder, resolveLinks); walk.next();) {
    const FolderWalk::Entry &entry = walk.entry();
    lengths.resize(entry.depth + 1);
    path.resize(lengths.back());
    appendName(path, entry.name);
    if (path.size() >= PATH_MAX && (unopenableUnits += path.size()) > kUnopenableUnits) {
      if (unopenableUnits - path.size() <= kUnopenableUnits)
        NSLog(u"Longer paths than the system opens are left out of the listing of %@", folder);
      continue;
    }
    if (isOfKind(entry, kinds)) found.push_back(NSString::stringWithCharacters(path));
    if (!entry.isFolder) continue;
    path += u'/';
    lengths.push_back(path.size());
    walk.enter();
  }
  return found;
}

/// The folder's entries whose names the function is true for.
template <class Matches>
std::vector<NSString> listingOfNames(const NSString &path, bool fullPath, Matches matches) {
  auto names = NSFileManager::contentsOfDirectoryAtPath(path);
  if (!names) return {};
  std::erase_if(*names, [&](const NSString &name) { return !matches(name); });
  if (fullPath)
    for (NSString &name : *names) name = stringByAppendingPathComponent(path, name);
  return std::move(*names);
}

}  // namespace

std::vector<NSString> directoryContentsAtPath(const NSString &path, Flag fullPath, Flag resolveLinks) {
  return listing(path, Kinds::all, fullPath, resolveLinks);
}

std::vector<NSString> directoryFilesAtPath(const NSString &path, Flag fullPath, Flag resolveLinks) {
  return listing(path, Kinds::files, fullPath, resolveLinks);
}

std::vector<NSString> directoryFoldersAtPath(const NSString &path, Flag fullPath, Flag resolveLinks) {
  return listing(path, Kinds::folders, fullPath, resolveLinks);
}

std::vector<NSString> deepDirectoryContentsAtPath(const NSString &path, Flag resolveLinks) {
  return deepListing(path, Kinds::all, resolveLinks);
}

std::vector<NSString> deepDirectoryFilesAtPath(const NSString &path, Flag resolveLinks) {
  return deepListing(path, Kinds::files, resolveLinks);
}

std::vector<NSString> deepDirectoryFoldersAtPath(const NSString &path, Flag resolveLinks) {
  return deepListing(path, Kinds::folders, resolveLinks);
}

std::vector<NSString> directoryContentsAtPath(const NSString &path, const NSString &matchingExtension,
                                              Flag fullPath) {
  const NSString wanted = lowercaseString(matchingExtension);
  return listingOfNames(path, fullPath,
                        [&](const NSString &name) { return lowercaseString(pathExtension(name)) == wanted; });
}

std::vector<NSString> directoryContentsAtPathMatchingWildcard(const NSString &path, const NSString &wildcard,
                                                              Flag fullPath) {
  const Wildcard wanted(wildcard);
  return listingOfNames(path, fullPath, [&](const NSString &name) { return wanted.matches(name); });
}

bool directoryContainsFilesAtPath(const NSString &path, Flag resolveLinks, Flag onlyVisible) {
  for (FolderWalk walk(path, resolveLinks); walk.next();) {
    const FolderWalk::Entry &entry = walk.entry();
    const bool isHidden = entry.name.starts_with('.') || entry.name == "Icon\r";
    if (!entry.isFolder && !(onlyVisible && isHidden)) return true;
  }
  return false;
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
