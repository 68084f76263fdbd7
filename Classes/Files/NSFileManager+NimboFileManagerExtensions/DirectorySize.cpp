// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/DirectorySize.hpp"

#include "Classes/Files/FolderSizes.hpp"
#include "platform/Foundation/System/FolderWalk.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {

std::uint64_t directorySize(const NSString &path) {
  FolderSizes sizes;
  for (FolderWalk walk(path, true); walk.next();) {
    const std::uint32_t outer = walk.entry().folder;
    if (!walk.entry().isFolder)
      sizes.addFile(outer, walk.sizeOfEntry());
    else if (const auto inner = walk.enter())
      sizes.addFolder(outer, *inner);
  }
  return sizes.total();
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
