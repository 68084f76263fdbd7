// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Removal.hpp"

#include <unistd.h>

#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/ItemStatus.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSLog.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSStringJoining.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {

namespace {

bool isFolder(const NSString &path) {
  const auto status = statusOfItem(path);
  return status && S_ISDIR(status->st_mode);
}

/// Removes the folder, and the ".DS_Store" in it.
bool removeEmptyFolder(const NSString &path) {
  unlinkFileAtPath(stringByAppendingPathComponent(path, u".DS_Store"_ns));
  return _rmdir(path);
}

}  // namespace

bool removePath(const NSString &path) {
  if (path.length() == 0) return false;
  if (NSFileManager::removeItemAtPath(path) || isMissing(path) || unlinkFileAtPath(path)) return true;
  NSLog(u"Couldn't remove path %@", path);
  return false;
}

bool removeEmptyDirectoryAtPath(const NSString &path) {
  return isFolder(path) && removeEmptyFolder(path);
}

bool removeEmptyDirectoriesInside(const NSString &root, const NSString &startingAtPath) {
  const NSString inside = root.view().ends_with(u'/') ? root : stringByConcatenating(root, u"/");
  if (!startingAtPath.view().starts_with(inside.view()) || !isFolder(startingAtPath)) return false;
  NSString folder = startingAtPath;
  do {
    if (!removeEmptyFolder(folder)) break;
    folder = stringByDeletingLastPathComponent(folder);
  } while (folder.length() > inside.length());
  return true;
}

bool unlinkFileAtPath(const NSString &path) {
  const auto name = path.fileSystemRepresentation();
  return name && ::unlink(name->c_str()) == 0;
}

bool _rmdir(const NSString &path) {
  const auto name = path.fileSystemRepresentation();
  return name && ::rmdir(name->c_str()) == 0;
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
