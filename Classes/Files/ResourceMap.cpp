// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/ResourceMap.hpp"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"
#include "platform/Foundation/System/BigEndian.hpp"

namespace nimbo {
namespace {

/// Offsets and lengths of contents and map.
constexpr std::uint32_t kHeaderLength = 16;
/// Where the contents begin in forks that are written here, as in most others.
constexpr std::uint32_t kDataOffset = 256;
/// The map begins with a copy of the header and fields that mean something in memory only.
constexpr std::uint32_t kMapAttributesOffset = 22;
constexpr std::uint32_t kTypeListOffset = 24;
constexpr std::uint32_t kNameListOffset = 26;
constexpr std::uint32_t kMapHeaderLength = 28;
constexpr std::uint32_t kTypeLength = 8;
constexpr std::uint32_t kReferenceLength = 12;
constexpr std::uint32_t kNoName = 0xffff;
constexpr std::uint32_t kLargestOffset = 0xffff;
constexpr std::uint32_t kLargestDataOffset = 0xffffff;

/// Bytes that are read where they are there, and nowhere else.
class Area {
 public:
  explicit Area(const NSData &data) : data_(data) {}

  std::uint64_t length() const { return data_.length(); }
  bool has(std::uint64_t offset, std::uint64_t length) const {
    return offset <= data_.length() && length <= data_.length() - offset;
  }
  /// The bytes, which are there.
  NSData part(std::uint64_t offset, std::uint64_t length) const {
    return data_.subdataWithRange({static_cast<std::uint32_t>(offset), static_cast<std::uint32_t>(length)});
  }
  /// A number of bytes that are there.
  std::uint32_t number(std::uint64_t offset, std::size_t size) const {
    return static_cast<std::uint32_t>(bigEndian(data_.bytes() + offset, size));
  }

 private:
  NSData data_;
};

/// A count that is stored as one less, so that the largest number is none.
std::uint32_t countFromStored(std::uint32_t stored) {
  return (stored + 1) & 0xffff;
}

class Reader {
 public:
  Reader(const NSData &contents, const NSData &map) : contents_(contents), map_(map) {}

  std::optional<ResourceMap> read() {
    ResourceMap result;
    if (!map_.has(0, kMapHeaderLength)) return std::nullopt;
    result.attributes = static_cast<std::uint16_t>(map_.number(kMapAttributesOffset, 2));
    typeList_ = map_.number(kTypeListOffset, 2);
    nameList_ = map_.number(kNameListOffset, 2);
    if (!map_.has(typeList_, 2)) return std::nullopt;
    const std::uint32_t typeCount = countFromStored(map_.number(typeList_, 2));
    if (!map_.has(typeList_ + 2, std::uint64_t{typeCount} * kTypeLength)) return std::nullopt;
    // Lists that do not overlap have no more resources than this. Without it a small map could name billions.
    std::uint64_t unclaimedBytes = map_.length() - typeList_ - 2 - std::uint64_t{typeCount} * kTypeLength;
    for (std::uint32_t i = 0; i < typeCount; ++i) {
      const std::uint64_t type = typeList_ + 2 + std::uint64_t{i} * kTypeLength;
      const std::uint32_t count = countFromStored(map_.number(type + 4, 2));
      const std::uint64_t first = typeList_ + map_.number(type + 6, 2);
      const std::uint64_t length = std::uint64_t{count} * kReferenceLength;
      if (length > unclaimedBytes || !map_.has(first, length)) return std::nullopt;
      unclaimedBytes -= length;
      for (std::uint32_t j = 0; j < count; ++j) {
        auto resource = resourceAt(first + std::uint64_t{j} * kReferenceLength, map_.number(type, 4));
        if (!resource) return std::nullopt;
        result.resources.push_back(*std::move(resource));
      }
    }
    return result;
  }

 private:
  std::optional<Resource> resourceAt(std::uint64_t reference, OSType type) const {
    Resource resource = {.type = type};
    resource.ID = static_cast<std::int16_t>(map_.number(reference, 2));
    if (const std::uint32_t offset = map_.number(reference + 2, 2); offset != kNoName) {
      const std::uint64_t name = std::uint64_t{nameList_} + offset;
      if (!map_.has(name, 1) || !map_.has(name + 1, map_.number(name, 1))) return std::nullopt;
      resource.name = initWithData(map_.part(name + 1, map_.number(name, 1)), NSMacOSRomanStringEncoding);
    }
    resource.attributes = static_cast<std::uint8_t>(map_.number(reference + 4, 1));
    const std::uint64_t content = map_.number(reference + 5, 3);
    if (!contents_.has(content, 4) || !contents_.has(content + 4, contents_.number(content, 4)))
      return std::nullopt;
    resource.data = contents_.part(content + 4, contents_.number(content, 4));
    return resource;
  }

  Area contents_;
  Area map_;
  std::uint32_t typeList_ = 0;
  std::uint32_t nameList_ = 0;
};

class Writer {
 public:
  explicit Writer(const ResourceMap &map) : map_(map) {}

  NSData write() {
    if (!addResources()) return NSData();
    std::string types, references;
    const std::size_t typeListLength = 2 + types_.size() * kTypeLength;
    appendBigEndian(types, types_.size() - 1, 2);
    for (const Type &type : types_) {
      const std::size_t first = typeListLength + references.size();
      if (first > kLargestOffset || type.count > kLargestOffset) return NSData();
      appendBigEndian(types, type.code, 4);
      appendBigEndian(types, type.count - 1, 2);
      appendBigEndian(types, first, 2);
      references += type.references;
    }
    const std::size_t nameListOffset = kMapHeaderLength + typeListLength + references.size();
    if (nameListOffset > kLargestOffset) return NSData();

    std::string header;
    const std::size_t dataOffset =
        kHeaderLength + std::max(map_.reserved.length(), kDataOffset - kHeaderLength);
    appendBigEndian(header, dataOffset, 4);
    appendBigEndian(header, dataOffset + contents_.size(), 4);
    appendBigEndian(header, contents_.size(), 4);
    appendBigEndian(header, nameListOffset + names_.size(), 4);
    std::string bytes = header;
    bytes += map_.reserved.view();
    bytes.resize(dataOffset, '\0');
    bytes += contents_;
    bytes += header;
    bytes.append(kMapAttributesOffset - kHeaderLength, '\0');
    appendBigEndian(bytes, map_.attributes, 2);
    appendBigEndian(bytes, kMapHeaderLength, 2);
    appendBigEndian(bytes, nameListOffset, 2);
    bytes += types + references + names_;
    return NSData::dataWithBytes(bytes.data(), bytes.size());
  }

 private:
  struct Type {
    OSType code = 0;
    std::size_t count = 0;
    std::string references;
  };

  bool addResources() {
    for (const Resource &resource : map_.resources) {
      const std::size_t content = contents_.size(), name = resource.name ? names_.size() : kNoName;
      if (content > kLargestDataOffset || (resource.name && name >= kNoName) || !addName(resource.name))
        return false;
      Type &type = typeOfCode(resource.type);
      ++type.count;
      appendBigEndian(type.references, static_cast<std::uint16_t>(resource.ID), 2);
      appendBigEndian(type.references, name, 2);
      appendBigEndian(type.references, resource.attributes, 1);
      appendBigEndian(type.references, content, 3);
      appendBigEndian(type.references, 0, 4);
      // One behind this offset could be no offset at all.
      if (resource.data.length() > kLargestDataOffset) return false;
      appendBigEndian(contents_, resource.data.length(), 4);
      contents_ += resource.data.view();
    }
    return true;
  }

  bool addName(const NSString &name) {
    if (!name) return true;
    const NSData bytes = dataUsingEncoding(name, NSMacOSRomanStringEncoding);
    if (!bytes || bytes.length() > 0xff) return false;
    appendBigEndian(names_, bytes.length(), 1);
    names_ += bytes.view();
    return true;
  }

  Type &typeOfCode(OSType code) {
    // Resources of a type mostly stand together.
    auto found =
        std::find_if(types_.rbegin(), types_.rend(), [=](const Type &type) { return type.code == code; });
    if (found != types_.rend()) return *found;
    types_.push_back({.code = code, .references = {}});
    return types_.back();
  }

  const ResourceMap &map_;
  std::string contents_;
  std::string names_;
  std::vector<Type> types_;
};

}  // namespace

std::optional<ResourceMap> ResourceMap::resourceMapWithData(const NSData &data) {
  const Area fork(data);
  if (!fork.has(0, kHeaderLength)) return std::nullopt;
  const std::uint64_t dataOffset = fork.number(0, 4), mapOffset = fork.number(4, 4);
  const std::uint64_t dataLength = fork.number(8, 4), mapLength = fork.number(12, 4);
  const bool areApart = dataOffset + dataLength <= mapOffset || mapOffset + mapLength <= dataOffset;
  if (std::min(dataOffset, mapOffset) < kHeaderLength || !areApart || !fork.has(dataOffset, dataLength) ||
      !fork.has(mapOffset, mapLength))
    return std::nullopt;
  auto map = Reader(fork.part(dataOffset, dataLength), fork.part(mapOffset, mapLength)).read();
  if (map && dataOffset == kDataOffset && mapOffset > dataOffset)
    map->reserved = fork.part(kHeaderLength, kDataOffset - kHeaderLength);
  return map;
}

NSData ResourceMap::data() const {
  return Writer(*this).write();
}

}  // namespace nimbo
