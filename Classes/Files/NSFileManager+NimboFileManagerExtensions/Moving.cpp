// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Moving.hpp"

#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/ItemStatus.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Kinds.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSStringJoining.hpp"
#include "platform/Foundation/System/FinderInfo.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {

namespace {

bool makeFolderOf(const NSString &path, NSError *error) {
  const NSString folder = stringByDeletingLastPathComponent(path);
  return folder.length() == 0 || NSFileManager::createDirectoryAtPath(folder, true, {}, error);
}

/// The path in one form; "~" is a name like others.
NSString standardized(const NSString &path) {
  return stringByStandardizingPath(path.view().starts_with(u'~') ? stringByConcatenating(u"./", path) : path);
}

bool movePath(const NSString &path, const NSString &toPath, bool overwrite, const FileManagerHandler &handler) {
  if (standardized(path) == standardized(toPath)) return statusOfItem(path).has_value();
  if (handler.willProcessPath) handler.willProcessPath(path);
  for (;;) {
    NSError error;
    // Folders are made only for something that is there.
    if (!statusOfItem(path))
      error = NSError::errorWithFileWritingErrno(errno);
    else if (makeFolderOf(toPath, &error) && (overwrite ? NSFileManager::replaceItemAtPath(toPath, path, &error)
                                                        : NSFileManager::moveItemAtPath(path, toPath, &error)))
      return true;
    const bool isInTheWay = statusOfItem(path) && statusOfItem(toPath);
    if (!handler.shouldProceedAfterError || !handler.shouldProceedAfterError(error, path, toPath)) return false;
    overwrite = overwrite || isInTheWay;
  }
}

}  // namespace

bool renamePath(const NSString &path, const NSString &to) {
  return NSFileManager::moveItemAtPath(path, to);
}

bool updatePath(const NSString &path, const NSString &toPath, Flag overwrite) {
  return movePath(path, toPath, overwrite, {});
}

bool updatePath(const NSString &path, const NSString &toPath, Flag overwrite, Flag hideFileExtensions,
                const FileManagerHandler &handler) {
  if (!movePath(path, toPath, overwrite, handler)) return false;
  // A link has no marks of its own.
  if (!isSymbolicLinkAtPath(toPath))
    setFinderField(toPath, kFinderHidesExtension, hideFileExtensions ? kFinderHidesExtension.mask : 0);
  return true;
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
