// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Aliases.hpp"

#include <unistd.h>

#include <cstdint>
#include <optional>

#include "Classes/Files/AliasRecords.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/System/RegularFile.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {

namespace {

/// Aliases have icons in them, but a larger file is something else.
constexpr std::uint32_t kMaximumAliasBytes = 64u << 20;

/// Nothing when the file is no alias.
std::optional<AliasOriginal> originalOfFile(const NSString &path) {
  std::uint64_t size = 0;
  const FileDescriptor file = openRegularFile(path, &size);
  // Most files are known to be none by their first bytes.
  char head[kBookmarkHeadBytes];
  if (!file || size > kMaximumAliasBytes || ::pread(file.get(), head, sizeof(head), 0) != sizeof(head) ||
      !mayBeBookmark({head, sizeof(head)}))
    return std::nullopt;
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
  const NSString found = original ? original->path : NSString();
  bool isFolder = false;
  if (!NSFileManager::fileExistsAtPath(found, &isFolder)) isFolder = original && original->isDirectory;
  if (isDirectory) *isDirectory = found && isFolder;
  return found;
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
