// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSData.hpp"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "platform/Foundation/System/FileDescriptor.hpp"
#include "platform/Foundation/System/LargeBytes.hpp"

namespace nimbo {
namespace {

using detail::DataStorage;

class MallocedStorage final : public DataStorage {
 public:
  using DataStorage::DataStorage;
  ~MallocedStorage() override { std::free(const_cast<std::uint8_t *>(bytes)); }
};

class MappedStorage final : public DataStorage {
 public:
  using DataStorage::DataStorage;
  ~MappedStorage() override { ::munmap(const_cast<std::uint8_t *>(bytes), length); }
};

class PartStorage final : public DataStorage {
 public:
  PartStorage(NSData whole, std::uint32_t location, std::uint32_t count)
      : DataStorage(whole.bytes() + location, count), whole_(std::move(whole)) {}

 private:
  NSData whole_;
};

FileDescriptor openRegularFile(const NSString &path, std::size_t *size) {
  const auto name = path.fileSystemRepresentation();
  // O_NONBLOCK: opening a FIFO must not wait for a writer.
  FileDescriptor file(name ? ::open(name->c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK) : -1);
  struct stat info = {};
  if (!file || ::fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode)) return FileDescriptor();
  *size = static_cast<std::size_t>(info.st_size);
  return file;
}

}  // namespace

detail::DataStorage::~DataStorage() = default;

NSData NSData::data() {
  return NSData(new DataStorage(nullptr, 0));
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
  auto *storage = new MallocedStorage(static_cast<std::uint8_t *>(bytes), static_cast<std::uint32_t>(length));
  (void)owner.release();
  return NSData(storage);
}

NSData NSData::dataWithContentsOfFile(const NSString &path) {
  std::size_t size = 0;
  const FileDescriptor file = openRegularFile(path, &size);
  if (!file || size > NSNotFound) return NSData();
  // Files of /proc claim no size but have content: keep reading until the end, growing as needed.
  std::size_t capacity = size + 1;
  std::size_t length = 0;
  std::unique_ptr<void, decltype(&std::free)> buffer(std::malloc(capacity), &std::free);
  while (buffer) {
    const ssize_t got = ::read(file.get(), static_cast<char *>(buffer.get()) + length, capacity - length);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return NSData();
    if (got == 0) return dataWithMallocedBytes(buffer.release(), length);
    length += static_cast<std::size_t>(got);
    if (length > NSNotFound) return NSData();
    if (length == capacity) {
      capacity = std::max<std::size_t>(4096, capacity * 2);
      void *larger = std::realloc(buffer.get(), capacity);
      if (!larger) break;
      (void)buffer.release();
      buffer.reset(larger);
    }
  }
  throw std::bad_alloc();
}

NSData NSData::dataWithContentsOfMappedFile(const NSString &path) {
  std::size_t size = 0;
  const FileDescriptor file = openRegularFile(path, &size);
  if (!file || size > NSNotFound) return NSData();
  if (size == 0) return data();
  void *bytes = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.get(), 0);
  if (bytes == MAP_FAILED) return NSData();
  return NSData(new MappedStorage(static_cast<std::uint8_t *>(bytes), static_cast<std::uint32_t>(size)));
}

NSData NSData::subdataWithRange(NSRange range) const {
  const std::uint32_t location = std::min(range.location, length());
  const std::uint32_t count = std::min(range.length, length() - location);
  if (count == length()) return *this;
  if (count == 0) return data();
  return NSData(new PartStorage(*this, location, count));
}

}  // namespace nimbo
