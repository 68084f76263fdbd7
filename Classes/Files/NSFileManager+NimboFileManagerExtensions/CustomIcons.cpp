// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/CustomIcons.hpp"

#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSURL.hpp"
#include "platform/Foundation/System/FSRef.hpp"
#include "platform/Foundation/System/FinderInfo.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {

namespace {

/// Whether both are there and one, whatever links lead to them.
bool isSameFile(const NSString &path, const NSString &other) {
  FSRef file, otherFile;
  return FSPathMakeRef(path, &file) && FSPathMakeRef(other, &otherFile) && file == otherFile;
}

}  // namespace

bool existsCustomIconForPath(const NSString &path, Flag isDirectory) {
  if (path.length() == 0) return false;
  if (!isDirectory) return finderField(path, kFinderHasCustomIcon) != 0;
  if (NSFileManager::fileExistsAtPath(stringByAppendingPathComponent(path, u"Icon\r"_ns))) return true;
  const NSString parent =
      stringByDeletingLastPathComponent(stringByStandardizingPath(NSURL::fileURLWithPath(path).path()));
  return isSameFile(parent, u"/"_ns) || isSameFile(parent, NSHomeDirectory());
}

bool existsCustomIconForPath(const NSString &path) {
  bool isDirectory = false;
  return NSFileManager::fileExistsAtPath(path, &isDirectory) && existsCustomIconForPath(path, isDirectory);
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
