// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/AliasRecords.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Classes/Paths/NSString+NSStringNimboPathExtensions/Paths.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"

namespace nimbo {

namespace {

constexpr std::string_view kBookmarkMagic = "book", kAliasMagic = "alis", kAliasFileMark = "mark";
/// More tables or components than any path has are not looked at; they may name each other in circles.
constexpr std::uint32_t kMaximumTables = 16, kMaximumComponents = 4096;

/// Bytes read at offsets that may lie anywhere.
class BoundedBytes {
 public:
  explicit BoundedBytes(std::string_view bytes) : bytes_(bytes) {}

  /// The bytes of a part; nothing when it does not lie inside.
  std::optional<std::string_view> part(std::uint64_t offset, std::uint64_t length) const {
    if (offset > bytes_.size() || length > bytes_.size() - offset) return std::nullopt;
    return bytes_.substr(offset, length);
  }
  std::optional<std::uint32_t> littleEndian32(std::uint64_t offset) const { return number(offset, 4, true); }
  std::optional<std::uint32_t> bigEndian16(std::uint64_t offset) const { return number(offset, 2, false); }

 private:
  std::optional<std::uint32_t> number(std::uint64_t offset, std::uint32_t size, bool isLittle) const {
    const auto bytes = part(offset, size);
    if (!bytes) return std::nullopt;
    std::uint32_t value = 0;
    for (std::uint32_t i = 0; i < size; ++i)
      value = value << 8 | static_cast<unsigned char>((*bytes)[isLittle ? size - 1 - i : i]);
    return value;
  }

  std::string_view bytes_;
};

bool isName(std::string_view name) {
  return !name.empty() && name.find_first_of(std::string_view("/\0", 2)) == name.npos;
}

/// The records of bookmark data. Each is its length, its type, whose last byte is a subtype, and its bytes.
class Bookmark {
 public:
  enum Type : std::uint32_t { kString = 0x100, kData = 0x200, kArray = 0x600, kURL = 0x900 };

  /// Looks where the records begin; offsets count from there.
  static std::optional<Bookmark> open(std::string_view bytes) {
    const BoundedBytes all(bytes);
    const bool isFile = all.part(8, kAliasFileMark.size()) == kAliasFileMark;
    const auto headerLength = all.littleEndian32(isFile ? 16 : 12);
    if (!headerLength || *headerLength < 16 || *headerLength > bytes.size()) return std::nullopt;
    return Bookmark(bytes.substr(*headerLength));
  }

  /// The bytes of what stands under a key in any table, if it is of the type.
  std::optional<std::string_view> value(std::uint32_t key, Type type) const {
    auto table = records_.littleEndian32(0);
    for (std::uint32_t i = 0; table && *table != 0 && i < kMaximumTables; ++i) {
      if (records_.littleEndian32(*table + std::uint64_t{4}) != kTableMagic) break;
      if (const auto found = valueInTable(*table, key, type)) return found;
      table = records_.littleEndian32(*table + std::uint64_t{12});
    }
    return std::nullopt;
  }

  /// The strings of an array, as the components of a path.
  std::optional<std::string> pathOfArray(std::string_view array) const {
    const BoundedBytes offsets(array);
    std::string path;
    if (array.empty() || array.size() / 4 > kMaximumComponents) return std::nullopt;
    for (std::size_t i = 0; i + 4 <= array.size(); i += 4) {
      const auto name = record(*offsets.littleEndian32(i), kString);
      if (!name || !isName(*name)) return std::nullopt;
      path.append("/").append(*name);
    }
    return path;
  }

 private:
  static constexpr std::uint32_t kTableMagic = 0xfffffffe, kSubtypeMask = 0xff;

  explicit Bookmark(std::string_view records) : records_(records) {}

  std::optional<std::string_view> record(std::uint32_t offset, Type type) const {
    const auto length = records_.littleEndian32(offset);
    const auto found = records_.littleEndian32(offset + std::uint64_t{4});
    if (!length || !found || (*found & ~kSubtypeMask) != type) return std::nullopt;
    return records_.part(offset + std::uint64_t{8}, *length);
  }

  std::optional<std::string_view> valueInTable(std::uint32_t table, std::uint32_t key, Type type) const {
    const std::uint64_t entries = table + std::uint64_t{20};
    const auto count = records_.littleEndian32(table + std::uint64_t{16});
    for (std::uint64_t i = 0; count && i < *count; ++i) {
      const auto entryKey = records_.littleEndian32(entries + 12 * i);
      const auto offset = records_.littleEndian32(entries + 12 * i + 4);
      if (!entryKey || !offset) break;
      if (*entryKey == key) return record(*offset, type);
    }
    return std::nullopt;
  }

  BoundedBytes records_;
};

/// The keys of bookmark data.
enum BookmarkKey : std::uint32_t { kPathKey = 0x1004, kFilePropertiesKey = 0x1010, kAliasRecordKey = 0xfe00 };
/// In the first byte of the file's properties.
constexpr unsigned kIsDirectoryProperty = 2;

/// The places in alias records, in bytes.
constexpr std::uint64_t kVersionOffset = 6, kKindOffset = 8;
/// Of the records that name the volume and the file by fields of fixed length, and of those with larger times.
constexpr std::uint64_t kTagsOfVersion2 = 150, kTagsOfVersion3 = 58;
/// The tags of alias records.
enum AliasTag : std::uint32_t { kCarbonPathTag = 2, kPathTag = 18, kMountPointTag = 19, kEndTag = 0xffff };

struct AliasPaths {
  std::optional<std::string_view> carbon, path, mountPoint;
};

AliasPaths pathsOfTags(const BoundedBytes &record, std::uint64_t offset) {
  AliasPaths paths;
  for (;;) {
    const auto tag = record.bigEndian16(offset), length = record.bigEndian16(offset + 2);
    if (!tag || !length || *tag == kEndTag) return paths;
    const auto value = record.part(offset + 4, *length);
    if (*tag == kCarbonPathTag) paths.carbon = value;
    if (*tag == kPathTag) paths.path = value;
    if (*tag == kMountPointTag) paths.mountPoint = value;
    offset += 4 + *length + *length % 2;
  }
}

NSString pathOfBytes(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  const bool isPath = path.starts_with('/') && path.find('\0') == path.npos;
  return isPath ? NSString::stringWithFileSystemRepresentation(path) : NSString();
}

}  // namespace

bool mayBeBookmark(std::string_view head) {
  return head.starts_with(kBookmarkMagic) || head.starts_with(kAliasMagic);
}

bool isBookmark(const NSData &data) {
  const std::string_view bytes = data.view();
  const BoundedBytes all(bytes);
  if (!mayBeBookmark(bytes)) return false;
  return all.part(8, kAliasFileMark.size()) == kAliasFileMark || all.littleEndian32(4) == bytes.size();
}

AliasOriginal originalOfBookmark(const NSData &data) {
  const auto bookmark = isBookmark(data) ? Bookmark::open(data.view()) : std::nullopt;
  if (!bookmark) return {};
  if (const auto components = bookmark->value(kPathKey, Bookmark::kArray)) {
    if (const auto path = bookmark->pathOfArray(*components)) {
      const auto properties = bookmark->value(kFilePropertiesKey, Bookmark::kData);
      const bool isDirectory = properties && !properties->empty() &&
                               (static_cast<unsigned char>(properties->front()) & kIsDirectoryProperty) != 0;
      return {pathOfBytes(*path), isDirectory};
    }
  }
  const auto record = bookmark->value(kAliasRecordKey, Bookmark::kData);
  return record ? originalOfAliasRecord(NSData::dataWithBytes(record->data(), record->size()))
                : AliasOriginal();
}

AliasOriginal originalOfAliasRecord(const NSData &data) {
  const BoundedBytes record(data.view());
  const auto version = record.bigEndian16(kVersionOffset), kind = record.bigEndian16(kKindOffset);
  if (!kind || !version || *version < 2 || *version > 3) return {};
  const AliasPaths paths = pathsOfTags(record, version == 2 ? kTagsOfVersion2 : kTagsOfVersion3);
  AliasOriginal original{.path = {}, .isDirectory = *kind == 1};
  if (paths.path) {
    std::string path(paths.mountPoint.value_or(""));
    if (path.ends_with('/') && paths.path->starts_with('/')) path.pop_back();
    original.path = pathOfBytes(path.append(*paths.path));
  } else if (paths.carbon) {
    const NSData name = NSData::dataWithBytes(paths.carbon->data(), paths.carbon->size());
    original.path = pathOfBytes(POSIXPath(initWithData(name, NSMacOSRomanStringEncoding)).UTF8String());
  }
  return original;
}

}  // namespace nimbo
