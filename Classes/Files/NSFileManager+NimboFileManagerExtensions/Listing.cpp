// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Listing.hpp"

#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSStringCase.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {

std::vector<NSString> directoryContentsAtPath(const NSString &path, const NSString &matchingExtension) {
  auto names = NSFileManager::contentsOfDirectoryAtPath(path);
  if (!names) return {};
  const NSString wanted = lowercaseString(matchingExtension);
  std::erase_if(*names, [&](const NSString &name) { return lowercaseString(pathExtension(name)) != wanted; });
  return std::move(*names);
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
