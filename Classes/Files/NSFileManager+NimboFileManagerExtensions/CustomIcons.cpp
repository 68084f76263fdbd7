// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/CustomIcons.hpp"

#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/System/FinderInfo.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {

bool existsCustomIconForPath(const NSString &path, Flag isDirectory) {
  if (path.length() == 0) return false;
  if (!isDirectory) return finderField(path, kFinderHasCustomIcon) != 0;
  if (NSFileManager::fileExistsAtPath(stringByAppendingPathComponent(path, u"Icon\r"_ns))) return true;
  const NSString parent = stringByDeletingLastPathComponent(stringByStandardizingPath(path));
  return parent.length() > 0 && (parent == u"/"_ns || parent == stringByStandardizingPath(NSHomeDirectory()));
}

bool existsCustomIconForPath(const NSString &path) {
  bool isDirectory = false;
  return NSFileManager::fileExistsAtPath(path, &isDirectory) && existsCustomIconForPath(path, isDirectory);
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
