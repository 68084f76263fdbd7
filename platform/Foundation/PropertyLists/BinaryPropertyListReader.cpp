// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/PropertyLists/BinaryPropertyListReader.hpp"

#include <algorithm>
#include <bit>
#include <vector>

#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/PropertyLists/BinaryPropertyListFormat.hpp"
#include "platform/Foundation/PropertyLists/PropertyListLimits.hpp"
#include "platform/Foundation/System/BigEndian.hpp"

namespace nimbo {
namespace {

using namespace BinaryPropertyList;

[[noreturn]] void fail(const char *reason) {
  throw PropertyListError{reason};
}

class Reader {
 public:
  explicit Reader(const NSData &data) : data_(data), bytes_(data.bytes()) {
    const std::size_t length = data.length();
    if (length < kMagic.size() + 1 + kTrailerLength) fail("too short for a binary property list");
    const std::size_t trailerOffset = length - kTrailerLength;
    const std::uint8_t *trailer = bytes_ + trailerOffset;
    offsetSize_ = trailer[kTrailerOffsetSize];
    referenceSize_ = trailer[kTrailerReferenceSize];
    if (offsetSize_ < 1 || offsetSize_ > 8 || referenceSize_ < 1 || referenceSize_ > 8)
      fail("impossible offset or reference size");
    const std::uint64_t tableOffset = bigEndian(trailer + kTrailerTableOffset, 8);
    if (tableOffset <= kMagic.size() || tableOffset > trailerOffset)
      fail("the offset table is outside the data");
    table_ = bytes_ + tableOffset;
    end_ = table_;
    objectCount_ = bigEndian(trailer + kTrailerObjectCount, 8);
    if (objectCount_ > (trailerOffset - tableOffset) / offsetSize_)
      fail("more objects than the offset table holds");
    if (objectCount_ > NSPropertyListSerialization::kMaximumObjects)
      throw PropertyListError{"too many objects", ErrorCode::tooLarge};
    topObject_ = bigEndian(trailer + kTrailerTopObject, 8);
    unclaimedStringBytes_ = tableOffset;
  }

  id read() {
    strings_.resize(objectCount_);
    limits_.countValues(1);
    return object(topObject_, 0);
  }

 private:
  /// A read position inside the objects.
  struct Cursor {
    const std::uint8_t *at;
    const std::uint8_t *end;

    const std::uint8_t *take(std::uint64_t size) {
      if (size > static_cast<std::uint64_t>(end - at)) fail("an object goes beyond the data");
      const std::uint8_t *bytes = at;
      at += size;
      return bytes;
    }
  };

  Cursor cursorAtObject(std::uint64_t number) const {
    if (number >= objectCount_) fail("a reference to an object that is not there");
    const std::uint64_t offset = bigEndian(table_ + number * offsetSize_, offsetSize_);
    if (offset < kMagic.size() || offset >= static_cast<std::uint64_t>(end_ - bytes_))
      fail("an object's offset is outside the data");
    return {bytes_ + offset, end_};
  }

  static std::uint64_t count(std::uint8_t marker, Cursor &cursor) {
    if ((marker & 0x0f) != kCountFollows) return marker & 0x0f;
    const std::uint8_t size = *cursor.take(1);
    if (size < kInteger || size > kInteger + 3) fail("a count that is no integer");
    const std::size_t bytes = std::size_t(1) << (size & 0x0f);
    return bigEndian(cursor.take(bytes), bytes);
  }

  /// `depth` is the number of containers around the object.
  id object(std::uint64_t number, std::uint32_t depth) {
    Cursor cursor = cursorAtObject(number);
    const std::uint8_t marker = *cursor.take(1);
    switch (marker & 0xf0) {
      case kInteger:
        return integer(marker, cursor);
      case kData: {
        const std::uint64_t length = count(marker, cursor);
        const auto location = static_cast<std::uint32_t>(cursor.take(length) - bytes_);
        return data_.subdataWithRange({location, static_cast<std::uint32_t>(length)});
      }
      case kASCIIString:
      case kUTF16String:
        return string(number, marker, cursor);
      case kArray:
        return array(marker, cursor, depth);
      case kDictionary:
        return dictionary(marker, cursor, depth);
      case kUID:
        fail("UID objects are not supported");
      case kOrderedSet:
      case kSet:
        fail("set objects are not supported");
      default:
        break;
    }
    switch (marker) {
      case kNull:
        return NSNull();
      case kFalse:
        return false;
      case kTrue:
        return true;
      case kReal32:
        return std::bit_cast<float>(static_cast<std::uint32_t>(bigEndian(cursor.take(4), 4)));
      case kReal64:
        return std::bit_cast<double>(bigEndian(cursor.take(8), 8));
      case kDate:
        return NSDate{std::bit_cast<double>(bigEndian(cursor.take(8), 8))};
      default:
        fail("an object of an unknown kind");
    }
  }

  /// Integers of 8 bytes and more are signed, shorter ones are not.
  static id integer(std::uint8_t marker, Cursor &cursor) {
    const unsigned logarithm = marker & 0x0f;
    if (logarithm > 4) fail("an integer of an unknown size");
    std::int64_t high = 0;
    if (logarithm == 4) high = static_cast<std::int64_t>(bigEndian(cursor.take(8), 8));
    const std::size_t size = std::min<std::size_t>(8, std::size_t(1) << logarithm);
    const auto low = static_cast<std::int64_t>(bigEndian(cursor.take(size), size));
    if (logarithm == 4 && high != (low < 0 ? -1 : 0)) fail("integer out of range");
    return low;
  }

  const NSString &string(std::uint64_t number, std::uint8_t marker, Cursor &cursor) {
    NSString &known = strings_[number];
    if (known) return known;
    const std::uint64_t length = count(marker, cursor);
    const std::uint64_t unitSize = (marker & 0xf0) == kASCIIString ? 1 : 2;
    if (length > data_.length()) fail("an object goes beyond the data");
    const std::uint8_t *bytes = cursor.take(length * unitSize);
    // Objects that share bytes could ask for far more memory than the data has bytes. Those that do not share
    // any never claim more than there are.
    if (length * unitSize > unclaimedStringBytes_) fail("objects overlap");
    unclaimedStringBytes_ -= length * unitSize;
    known = unitSize == 1 ? ASCIIString(bytes, static_cast<std::uint32_t>(length))
                          : UTF16String(bytes, static_cast<std::uint32_t>(length));
    return known;
  }

  static NSString ASCIIString(const std::uint8_t *bytes, std::uint32_t length) {
    NSString result = NSString::stringWithUTF8String({reinterpret_cast<const char *>(bytes), length});
    if (!result || result.length() != length) fail("an ASCII string that is not ASCII");
    return result;
  }

  static NSString UTF16String(const std::uint8_t *bytes, std::uint32_t length) {
    NSMutableString result;
    result.reserve(length);
    result.setLength(length);
    unichar *units = result.mutableCharacters();
    for (std::uint32_t i = 0; i < length; ++i, bytes += 2)
      units[i] = static_cast<unichar>(bytes[0] << 8 | bytes[1]);
    return std::move(result).string();
  }

  /// Takes `count` object numbers; nothing is counted or allocated before they are known to be there.
  const std::uint8_t *references(std::uint64_t count, Cursor &cursor) {
    limits_.countValues(count);
    return cursor.take(count * referenceSize_);
  }

  id array(std::uint8_t marker, Cursor &cursor, std::uint32_t depth) {
    const std::uint32_t inside = PropertyListLimits::enterContainer(depth);
    const std::uint64_t length = count(marker, cursor);
    const std::uint8_t *at = references(length, cursor);
    std::vector<id> elements;
    elements.reserve(length);
    for (std::uint64_t i = 0; i < length; ++i, at += referenceSize_)
      elements.push_back(object(bigEndian(at, referenceSize_), inside));
    return NSArray(std::move(elements));
  }

  id dictionary(std::uint8_t marker, Cursor &cursor, std::uint32_t depth) {
    const std::uint32_t inside = PropertyListLimits::enterContainer(depth);
    const std::uint64_t length = count(marker, cursor);
    const std::uint8_t *keys = references(length, cursor);
    const std::uint8_t *values = references(length, cursor);
    NSDictionary result = NSDictionary::dictionary();
    for (std::uint64_t i = 0; i < length; ++i, keys += referenceSize_, values += referenceSize_) {
      const NSString &name = key(bigEndian(keys, referenceSize_));
      result.setObject(object(bigEndian(values, referenceSize_), inside), name);
    }
    return result;
  }

  const NSString &key(std::uint64_t number) {
    Cursor cursor = cursorAtObject(number);
    const std::uint8_t marker = *cursor.take(1);
    if ((marker & 0xf0) != kASCIIString && (marker & 0xf0) != kUTF16String)
      fail("a dictionary key that is no string");
    return string(number, marker, cursor);
  }

  const NSData &data_;
  const std::uint8_t *bytes_;
  /// The end of the objects, where the offset table begins.
  const std::uint8_t *end_;
  const std::uint8_t *table_;
  std::size_t offsetSize_;
  std::size_t referenceSize_;
  std::uint64_t objectCount_;
  std::uint64_t topObject_;
  /// The strings by object number; nil until a string is first met.
  std::vector<NSString> strings_;
  std::uint64_t unclaimedStringBytes_;
  PropertyListLimits limits_;
};

}  // namespace

id propertyListFromBinaryData(const NSData &data) {
  return Reader(data).read();
}

}  // namespace nimbo
