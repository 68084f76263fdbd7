// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSData.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "platform/Foundation/System/LargeBytes.hpp"
#include "platform/Foundation/System/RegularFile.hpp"

namespace nimbo {
namespace {

using detail::DataStorage;

class MallocedStorage final : public DataStorage {
 public:
  using DataStorage::DataStorage;
  ~MallocedStorage() override { std::free(const_cast<std::uint8_t *>(bytes)); }
};

class PartStorage final : public DataStorage {
 public:
  PartStorage(NSData whole, std::uint32_t location, std::uint32_t count)
      : DataStorage(whole.bytes() + location, count), whole_(std::move(whole)) {}

 private:
  NSData whole_;
};

}  // namespace

detail::DataStorage::~DataStorage() = default;

NSData NSData::data() {
  return NSData(makeShared<DataStorage>(nullptr, 0));
}

NSData NSData::dataWithBytes(const void *bytes, std::size_t length) {
  if (length > NSNotFound) return NSData();
  if (length == 0) return data();
  void *copy = allocateBytes(length);
  if (!copy) throw std::bad_alloc();
  std::memcpy(copy, bytes, length);
  return dataWithMallocedBytes(copy, length);
}

NSData NSData::dataWithMallocedBytes(void *bytes, std::size_t length) {
  std::unique_ptr<void, decltype(&std::free)> owner(bytes, &std::free);
  if (length > NSNotFound) return NSData();
  NSData data(
      makeShared<MallocedStorage>(static_cast<std::uint8_t *>(bytes), static_cast<std::uint32_t>(length)));
  (void)owner.release();
  return data;
}

NSData NSData::dataWithContentsOfFile(const NSString &path, NSError *error) {
  std::uint64_t size = 0;
  const FileDescriptor file = openRegularFile(path, &size, error);
  if (!file) return NSData();
  NSData data = size <= NSNotFound ? readData(file.get(), size, NSNotFound, error) : NSData();
  const bool hasGrown = size < NSNotFound && data.length() == NSNotFound;
  if (size <= NSNotFound && !hasGrown) return data;
  setError(error, ErrorCode::tooLarge, "the file is too large");
  return NSData();
}

NSData NSData::subdataWithRange(NSRange range) const {
  const std::uint32_t location = std::min(range.location, length());
  const std::uint32_t count = std::min(range.length, length() - location);
  if (count == length()) return *this;
  if (count == 0) return data();
  return NSData(makeShared<PartStorage>(*this, location, count));
}

}  // namespace nimbo
