// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSFileAttributes.hpp"

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cerrno>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Foundation/NSDate.hpp"
#include "platform/Foundation/System/FinderInfo.hpp"

namespace nimbo {
namespace {

/// From 1970 to 2000, where file servers begin to count.
constexpr double kServerEpochSeconds = 946684800.0;
/// A user's or group's record is never longer.
constexpr std::size_t kMaximumRecordLength = 64u << 10;

struct Item {
  const NSString &path;
  struct statx status;
};

NSDate dateOf(const statx_timestamp &time) {
  return NSDate::dateWithTimeIntervalSince1970(static_cast<double>(time.tv_sec) + time.tv_nsec * 1e-9);
}

id typeOf(const Item &item) {
  switch (item.status.stx_mode & S_IFMT) {
    case S_IFDIR:
      return NSFileTypeDirectory();
    case S_IFREG:
      return NSFileTypeRegular();
    case S_IFLNK:
      return NSFileTypeSymbolicLink();
    case S_IFSOCK:
      return NSFileTypeSocket();
    case S_IFCHR:
      return NSFileTypeCharacterSpecial();
    case S_IFBLK:
      return NSFileTypeBlockSpecial();
    default:
      return NSFileTypeUnknown();
  }
}

id ownerOf(const Item &item) {
  std::vector<char> buffer(kMaximumRecordLength);
  passwd record = {}, *found = nullptr;
  ::getpwuid_r(item.status.stx_uid, &record, buffer.data(), buffer.size(), &found);
  return found ? NSString::stringWithFileSystemRepresentation(found->pw_name) : NSString();
}

id groupOf(const Item &item) {
  std::vector<char> buffer(kMaximumRecordLength);
  group record = {}, *found = nullptr;
  ::getgrgid_r(item.status.stx_gid, &record, buffer.data(), buffer.size(), &found);
  return found ? NSString::stringWithFileSystemRepresentation(found->gr_name) : NSString();
}

/// Nothing for symbolic links and devices, of which servers keep nothing.
std::optional<std::uint64_t> fieldOf(const Item &item, const FinderField &field) {
  const auto kind = item.status.stx_mode & S_IFMT;
  if (kind != S_IFREG && kind != S_IFDIR) return std::nullopt;
  return finderField(item.path, field);
}

id codeOf(const Item &item, const FinderField &field) {
  if (!S_ISREG(item.status.stx_mode)) return id();
  return finderField(item.path, field);
}

id creationDateOf(const Item &item) {
  if (const auto seconds = fieldOf(item, kServerCreationDate); seconds && *seconds != kNoServerDate)
    return NSDate::dateWithTimeIntervalSince1970(
        kServerEpochSeconds + static_cast<std::int32_t>(static_cast<std::uint32_t>(*seconds)));
  if ((item.status.stx_mask & STATX_BTIME) == 0) return id();
  return dateOf(item.status.stx_btime);
}

struct Attribute {
  NSString key;
  id (*value)(const Item &item);
};

const std::vector<Attribute> &attributes() {
  static const std::vector<Attribute> table = {
      {NSFileType(), typeOf},
      {NSFileSize(), [](const Item &item) -> id { return item.status.stx_size; }},
      {NSFilePosixPermissions(), [](const Item &item) -> id { return item.status.stx_mode & 07777; }},
      {NSFileOwnerAccountName(), ownerOf},
      {NSFileGroupOwnerAccountName(), groupOf},
      {NSFileSystemNumber(),
       [](const Item &item) -> id { return makedev(item.status.stx_dev_major, item.status.stx_dev_minor); }},
      {NSFileSystemFileNumber(), [](const Item &item) -> id { return item.status.stx_ino; }},
      {NSFileCreationDate(), creationDateOf},
      {NSFileModificationDate(), [](const Item &item) -> id { return dateOf(item.status.stx_mtime); }},
      {NSFileHFSTypeCode(), [](const Item &item) { return codeOf(item, kFinderType); }},
      {NSFileHFSCreatorCode(), [](const Item &item) { return codeOf(item, kFinderCreator); }},
      {NSFileExtensionHidden(),
       [](const Item &item) -> id {
         const auto bits = fieldOf(item, kFinderHidesExtension);
         return bits ? id(*bits != 0) : id();
       }},
  };
  return table;
}

std::optional<Item> itemAtPath(const NSString &path, bool traverseLink, NSError *error) {
  const auto name = path.fileSystemRepresentation();
  Item item = {path, {}};
  if (name && ::statx(AT_FDCWD, name->c_str(), traverseLink ? 0 : AT_SYMLINK_NOFOLLOW,
                      STATX_BASIC_STATS | STATX_BTIME, &item.status) == 0)
    return item;
  if (error) *error = NSError::errorWithFileErrno(name ? errno : ENOENT);
  return std::nullopt;
}

}  // namespace

NSDictionary fileAttributesAtPath(const NSString &path, Flag traverseLink, NSError *error) {
  const auto item = itemAtPath(path, traverseLink, error);
  if (!item) return NSDictionary();
  NSDictionary result = NSDictionary::dictionary();
  for (const Attribute &attribute : attributes()) result.setObject(attribute.value(*item), attribute.key);
  return result;
}

id fileAttributeAtPath(const NSString &path, const NSString &key, Flag traverseLink) {
  if (const auto item = itemAtPath(path, traverseLink, nullptr)) {
    for (const Attribute &attribute : attributes())
      if (attribute.key == key) return attribute.value(*item);
  }
  return id();
}

}  // namespace nimbo
