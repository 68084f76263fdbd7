// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/PropertyLists/BinaryPropertyListWriter.hpp"

#include <bit>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "platform/Foundation/PropertyLists/BinaryPropertyListFormat.hpp"
#include "platform/Foundation/PropertyLists/PropertyListLimits.hpp"
#include "platform/Foundation/System/LargeBytes.hpp"
#include "platform/Foundation/Unicode/UTF8Conversion.hpp"

namespace nimbo {
namespace {

using namespace BinaryPropertyList;

/// Data of this size and more is a piece of its own when there are pieces.
constexpr std::uint32_t kSeparatePieceBytes = 64u << 10;

/// The fewest of 1, 2, 4 and 8 bytes that hold `value`.
std::size_t sizeOfNumber(std::uint64_t value) {
  return value <= 0xff ? 1 : value <= 0xffff ? 2 : value <= 0xffffffff ? 4 : 8;
}

/// The marker of an object with a count, and the count's own object when it needs one.
std::size_t sizeOfMarker(std::uint64_t count) {
  return count < kCountFollows ? 1 : 2 + sizeOfNumber(count);
}

bool isASCII(std::u16string_view units) {
  unichar all = 0;
  for (const unichar unit : units) all |= unit;
  return all < 0x80;
}

/// The distinct keys of a property list, numbered in the order in which they are first met.
class KeyTable {
 public:
  KeyTable() : slots_(kInitialSlots) { keys_.reserve(kInitialSlots / 2); }

  /// The key's number; `*isNew` tells whether it was met for the first time. `key` is borrowed.
  std::uint32_t number(const NSString &key, bool *isNew) {
    if (2 * keys_.size() >= slots_.size()) grow();
    std::uint32_t &slot = find(key);
    *isNew = slot == 0;
    if (*isNew) {
      keys_.push_back(&key);
      slot = static_cast<std::uint32_t>(keys_.size());
    }
    return slot - 1;
  }

  const std::vector<const NSString *> &keys() const { return keys_; }

 private:
  static constexpr std::size_t kInitialSlots = 32;

  std::uint32_t &find(const NSString &key) {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t at = key.hash() & mask;; at = (at + 1) & mask)
      if (slots_[at] == 0 || *keys_[slots_[at] - 1] == key) return slots_[at];
  }

  void grow() {
    slots_.assign(2 * slots_.size(), 0);
    for (std::size_t i = 0; i < keys_.size(); ++i) find(*keys_[i]) = static_cast<std::uint32_t>(i + 1);
  }

  std::vector<const NSString *> keys_;
  /// The number + 1 of the key that hashes here, or 0; a power of two of them, at most half of them taken.
  std::vector<std::uint32_t> slots_;
};

/// Measures the property list, then writes it. The objects of the keys come first, then the values in the order
/// of the walk.
class Writer {
 public:
  explicit Writer(bool inPieces) : inPieces_(inPieces) {}

  /// All bytes but those of the pieces of their own.
  NSData write(const id &propertyList) {
    notes_.reserve(32);
    limits_.countValues(1);
    measure(propertyList, 0);

    const std::uint64_t objectCount = keys_.keys().size() + values_;
    referenceSize_ = sizeOfNumber(objectCount - 1);
    const std::uint64_t tableOffset = kMagic.size() + objectBytes_ + references_ * referenceSize_;
    offsetSize_ = sizeOfNumber(tableOffset);
    const std::uint64_t length = tableOffset + objectCount * offsetSize_ + kTrailerLength;
    if (length > NSNotFound) throw PropertyListError{"larger than data can be", ErrorCode::tooLarge};

    std::unique_ptr<void, decltype(&std::free)> bytes(allocateBytes(length - separateBytes_), &std::free);
    if (!bytes) throw std::bad_alloc();
    start_ = at_ = static_cast<std::uint8_t *>(bytes.get());
    nextNote_ = notes_.data();
    nextOffset_ = start_ + tableOffset - separateBytes_;
    put(kMagic.data(), kMagic.size());
    for (const NSString *key : keys_.keys()) {
      beginObject();
      putString(*key, isASCII(key->view()));
    }
    writeObject(propertyList);
    putTrailer(nextOffset_, objectCount, tableOffset);
    return NSData::dataWithMallocedBytes(bytes.release(), length - separateBytes_);
  }

  std::vector<NSData> writePieces(const id &propertyList) {
    const NSData rest = write(propertyList);
    std::vector<NSData> pieces;
    std::uint32_t begin = 0;
    for (const auto &[location, data] : separatePieces_) {
      pieces.push_back(rest.subdataWithRange({begin, location - begin}));
      pieces.push_back(data);
      begin = location;
    }
    pieces.push_back(rest.subdataWithRange({begin, rest.length() - begin}));
    return pieces;
  }

 private:
  /// `depth` is the number of containers around the value.
  void measure(const id &value, std::uint32_t depth) {
    ++values_;
    value.visit([&](const auto &v) { measureValue(v, depth); });
  }

  [[noreturn]] static void measureValue(std::monostate, std::uint32_t) {
    throw PropertyListError{"nil is no property list", ErrorCode::other};
  }
  [[noreturn]] static void measureValue(const SharedPointer<NSObject> &, std::uint32_t) {
    throw PropertyListError{"an object is no property list", ErrorCode::other};
  }
  void measureValue(NSNull, std::uint32_t) { objectBytes_ += 1; }
  void measureValue(bool, std::uint32_t) { objectBytes_ += 1; }
  void measureValue(std::int64_t number, std::uint32_t) {
    objectBytes_ += 1 + sizeOfNumber(static_cast<std::uint64_t>(number));
  }
  void measureValue(double, std::uint32_t) { objectBytes_ += 1 + 8; }
  void measureValue(NSDate, std::uint32_t) { objectBytes_ += 1 + 8; }
  void measureValue(const NSData &data, std::uint32_t) {
    objectBytes_ += sizeOfMarker(data.length()) + data.length();
    if (isPiece(data)) separateBytes_ += data.length();
  }
  void measureValue(const NSString &string, std::uint32_t) {
    const bool ascii = isASCII(string.view());
    notes_.push_back(ascii);
    measureString(string, ascii);
  }
  void measureValue(const NSArray &array, std::uint32_t depth) {
    const std::uint32_t inside = PropertyListLimits::enterContainer(depth);
    measureContainer(array.count(), 1);
    for (const id &element : array) measure(element, inside);
  }
  void measureValue(const NSDictionary &dictionary, std::uint32_t depth) {
    const std::uint32_t inside = PropertyListLimits::enterContainer(depth);
    measureContainer(dictionary.count(), 2);
    for (const auto &[key, value] : dictionary) {
      bool isNew = false;
      notes_.push_back(keys_.number(key, &isNew));
      if (isNew) measureString(key, isASCII(key.view()));
    }
    for (const auto &[key, value] : dictionary) measure(value, inside);
  }

  void measureString(const NSString &string, bool ascii) {
    objectBytes_ += sizeOfMarker(string.length()) + (ascii ? 1 : 2) * std::uint64_t(string.length());
  }
  void measureContainer(std::uint64_t count, std::uint64_t referencesPerElement) {
    limits_.countValues(count * referencesPerElement);
    references_ += count * referencesPerElement;
    objectBytes_ += sizeOfMarker(count);
  }

  /// Returns the object's number.
  std::uint64_t writeObject(const id &value) {
    const std::uint64_t number = beginObject();
    value.visit([&](const auto &v) { writeValue(v); });
    return number;
  }

  void writeValue(std::monostate) {}
  void writeValue(const SharedPointer<NSObject> &) {}
  void writeValue(NSNull) { putByte(kNull); }
  void writeValue(bool boolean) { putByte(boolean ? kTrue : kFalse); }
  void writeValue(std::int64_t number) { putInteger(static_cast<std::uint64_t>(number)); }
  void writeValue(double number) {
    putByte(kReal64);
    putNumber(std::bit_cast<std::uint64_t>(number), 8);
  }
  void writeValue(NSDate date) {
    putByte(kDate);
    putNumber(std::bit_cast<std::uint64_t>(date.timeIntervalSinceReferenceDate), 8);
  }
  void writeValue(const NSData &data) {
    putMarker(kData, data.length());
    if (!isPiece(data)) return put(data.bytes(), data.length());
    separatePieces_.emplace_back(static_cast<std::uint32_t>(at_ - start_), data);
    skippedBytes_ += data.length();
  }
  void writeValue(const NSString &string) { putString(string, *nextNote_++ != 0); }
  void writeValue(const NSArray &array) {
    putMarker(kArray, array.count());
    std::uint8_t *reference = reserveReferences(array.count());
    for (const id &element : array) putReference(reference, writeObject(element));
  }
  void writeValue(const NSDictionary &dictionary) {
    putMarker(kDictionary, dictionary.count());
    std::uint8_t *reference = reserveReferences(2 * std::uint64_t(dictionary.count()));
    for (std::uint32_t i = 0; i < dictionary.count(); ++i) putReference(reference, *nextNote_++);
    for (const auto &[key, value] : dictionary) putReference(reference, writeObject(value));
  }

  /// Enters the place as the next object's into the offset table and returns the object's number.
  std::uint64_t beginObject() {
    putNumberAt(nextOffset_, static_cast<std::uint64_t>(at_ - start_) + skippedBytes_, offsetSize_);
    nextOffset_ += offsetSize_;
    return nextNumber_++;
  }
  std::uint8_t *reserveReferences(std::uint64_t count) {
    std::uint8_t *first = at_;
    at_ += count * referenceSize_;
    return first;
  }
  void putReference(std::uint8_t *&reference, std::uint64_t number) const {
    putNumberAt(reference, number, referenceSize_);
    reference += referenceSize_;
  }

  void putByte(std::uint8_t byte) { *at_++ = byte; }
  void put(const void *bytes, std::size_t length) {
    if (length != 0) std::memcpy(at_, bytes, length);
    at_ += length;
  }
  static void putNumberAt(std::uint8_t *bytes, std::uint64_t value, std::size_t size) {
    for (std::size_t i = size; i > 0; --i, value >>= 8) bytes[i - 1] = static_cast<std::uint8_t>(value);
  }
  void putNumber(std::uint64_t value, std::size_t size) {
    putNumberAt(at_, value, size);
    at_ += size;
  }
  /// Numbers with the highest bit set are written with 8 bytes and read as negative ones.
  void putInteger(std::uint64_t value) {
    const std::size_t size = sizeOfNumber(value);
    putByte(static_cast<std::uint8_t>(kInteger + std::countr_zero(size)));
    putNumber(value, size);
  }
  void putMarker(std::uint8_t kind, std::uint64_t count) {
    putByte(static_cast<std::uint8_t>(kind | (count < kCountFollows ? count : kCountFollows)));
    if (count >= kCountFollows) putInteger(count);
  }
  void putString(const NSString &string, bool ascii) {
    putMarker(ascii ? kASCIIString : kUTF16String, string.length());
    if (ascii) {
      at_ += convertUTF16ToUTF8(string.characters(), string.length(), reinterpret_cast<char *>(at_),
                                string.length())
                 .written;
      return;
    }
    // A local position: the compiler would have to store `at_` after each byte, which might be part of it.
    std::uint8_t *at = at_;
    for (const unichar unit : string.view()) {
      *at++ = static_cast<std::uint8_t>(unit >> 8);
      *at++ = static_cast<std::uint8_t>(unit);
    }
    at_ = at;
  }
  void putTrailer(std::uint8_t *trailer, std::uint64_t objectCount, std::uint64_t tableOffset) const {
    std::memset(trailer, 0, kTrailerLength);
    trailer[kTrailerOffsetSize] = static_cast<std::uint8_t>(offsetSize_);
    trailer[kTrailerReferenceSize] = static_cast<std::uint8_t>(referenceSize_);
    putNumberAt(trailer + kTrailerObjectCount, objectCount, 8);
    putNumberAt(trailer + kTrailerTopObject, keys_.keys().size(), 8);
    putNumberAt(trailer + kTrailerTableOffset, tableOffset, 8);
  }

  bool isPiece(const NSData &data) const { return inPieces_ && data.length() >= kSeparatePieceBytes; }

  const bool inPieces_;
  PropertyListLimits limits_;
  KeyTable keys_;
  /// What the measuring walk leaves for the writing one, in the order of the walk: for each dictionary the
  /// numbers of its keys, for each string whether it is ASCII.
  std::vector<std::uint32_t> notes_;
  std::uint64_t values_ = 0;
  std::uint64_t references_ = 0;
  /// The bytes of all objects, without the references.
  std::uint64_t objectBytes_ = 0;
  /// The bytes of all pieces of their own.
  std::uint64_t separateBytes_ = 0;

  std::size_t referenceSize_ = 0;
  std::size_t offsetSize_ = 0;
  std::uint8_t *start_ = nullptr;
  std::uint8_t *at_ = nullptr;
  std::uint8_t *nextOffset_ = nullptr;
  std::uint64_t nextNumber_ = 0;
  const std::uint32_t *nextNote_ = nullptr;
  /// The pieces of their own so far, each with its place among the other bytes, and their bytes.
  std::vector<std::pair<std::uint32_t, NSData>> separatePieces_;
  std::uint64_t skippedBytes_ = 0;
};

}  // namespace

NSData binaryDataWithPropertyList(const id &propertyList) {
  return Writer(false).write(propertyList);
}

std::vector<NSData> binaryPiecesWithPropertyList(const id &propertyList) {
  return Writer(true).writePieces(propertyList);
}

}  // namespace nimbo
