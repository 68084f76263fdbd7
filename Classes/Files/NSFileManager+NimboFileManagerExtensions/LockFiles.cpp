// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/LockFiles.hpp"

#include <unistd.h>

#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Creation.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/ItemStatus.hpp"
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/Removal.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "platform/Foundation/System/DataWriting.hpp"
#include "platform/Foundation/System/RegularFile.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {

namespace {

/// More than any lock has; what others put there is not read without end.
constexpr std::uint32_t kMaximumLockBytes = 1 << 16;

constexpr auto kUserName = u"userName";
constexpr auto kProcessNumber = u"processNumber";

NSString lockOf(const NSString &path) {
  return stringByAppendingPathExtension(path, u"lock"_ns);
}

/// Replaces a lock, and not what a link in its place leads to.
bool replaceLock(const NSData &data, const NSString &lock) {
  const auto old = statusOfItem(lock);
  if (old && S_ISLNK(old->st_mode) && !unlinkFileAtPath(lock)) return false;
  return writeDataToFile(data, lock, true);
}

}  // namespace

NSString lockFileAtPath(const NSString &path, Flag override) {
  if (path.length() == 0) return NSString();
  const NSString lock = lockOf(path);
  if (!override && statusOfItem(lock)) return NSString();
  const NSDictionary owner = {{NSString::stringWithCharacters(kUserName), NSUserName()},
                              {NSString::stringWithCharacters(kProcessNumber), ::getpid()}};
  const NSData data = NSPropertyListSerialization::dataWithPropertyList(owner, NSPropertyListFormat::xml);
  if (!data || !createPathToFile(lock)) return NSString();
  return (override ? replaceLock(data, lock) : writeDataToNewFile(data, lock)) ? lock : NSString();
}

bool unlockFileAtPath(const NSString &path) {
  const NSString lock = lockOf(path);
  std::uint64_t size = 0;
  const FileDescriptor file = openRegularFile(lock, &size);
  if (!file) return false;
  const NSDictionary owner =
      NSPropertyListSerialization::propertyListFromData(readData(file.get(), size, kMaximumLockBytes))
          .dictionary();
  return owner.objectForKey(NSString::stringWithCharacters(kUserName)).string() == NSUserName() &&
         owner.objectForKey(NSString::stringWithCharacters(kProcessNumber)).integer() == ::getpid() &&
         unlinkFileAtPath(lock);
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
