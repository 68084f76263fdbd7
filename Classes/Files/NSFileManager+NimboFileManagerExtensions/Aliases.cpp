// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Aliases.hpp"

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <optional>

#include "Classes/Files/AliasRecords.hpp"
#include "Classes/Files/ResourceFork.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/System/FinderInfo.hpp"
#include "platform/Foundation/System/RegularFile.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {

namespace {

/// Aliases have icons in them, but a larger file is something else.
constexpr std::uint32_t kMaximumAliasBytes = 64u << 20;

/// Whether a file stands for another one, which its resource fork then tells.
constexpr FinderField kFinderIsAlias = {FinderField::Entry::finderInfo, 8, 2, 0x8000};
constexpr OSType kAliasResource = 0x616c6973;  // "alis"

std::optional<AliasOriginal> originalInResourceFork(const NSString &path) {
  if (finderField(path, kFinderIsAlias) == 0) return std::nullopt;
  const auto fork = ResourceFork::resourceForkForReadingAtPath(path);
  if (!fork) return std::nullopt;
  const auto found = std::ranges::find(fork->resources(), kAliasResource, &Resource::type);
  return found == fork->resources().end() ? std::nullopt : std::optional(originalOfAliasRecord(found->data));
}

/// Nothing when the file is no alias.
std::optional<AliasOriginal> originalOfFile(const NSString &path) {
  std::uint64_t size = 0;
  const FileDescriptor file = openRegularFile(path, &size);
  // Most files are known to be none by their first bytes.
  char head[kBookmarkHeadBytes];
  if (!file) return std::nullopt;
  if (size > kMaximumAliasBytes || ::pread(file.get(), head, sizeof(head), 0) != sizeof(head) ||
      !mayBeBookmark({head, sizeof(head)}))
    return originalInResourceFork(path);
  const NSData data = readData(file.get(), size, kMaximumAliasBytes);
  return isBookmark(data) ? std::optional(originalOfBookmark(data)) : std::nullopt;
}

}  // namespace

bool isAliasFileAtPath(const NSString &path, bool *isDirectory) {
  const auto original = originalOfFile(path);
  if (isDirectory) *isDirectory = original && original->isDirectory;
  return original.has_value();
}

NSString resolveAlias(const NSString &path, Flag /*noUI*/, bool *isDirectory) {
  const auto original = originalOfFile(path);
  NSString found = original ? original->path : NSString();
  bool isFolder = false;
  if (!NSFileManager::fileExistsAtPath(found, &isFolder)) isFolder = original && original->isDirectory;
  if (isDirectory) *isDirectory = found && isFolder;
  return found;
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
