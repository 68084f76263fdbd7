// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/ImageReading.hpp"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

#include "platform/Foundation/NSRange.hpp"
#include "platform/Foundation/System/LargeBytes.hpp"

namespace nimbo::detail {

std::int64_t readBytes(const ImageInput &input, void *buffer, std::int64_t length, std::int64_t position) {
  const auto end = static_cast<std::int64_t>(input.size());
  const auto room = static_cast<std::size_t>(std::clamp<std::int64_t>(end - position, 0, length));
  if (room == 0) return 0;
  if (input.descriptor < 0) {
    std::memcpy(buffer, input.data.bytes() + position, room);
    return static_cast<std::int64_t>(room);
  }
  ssize_t got = 0;
  do {
    got = ::pread(input.descriptor, buffer, room, position);
  } while (got < 0 && errno == EINTR);
  return got;
}

std::string firstBytes(const ImageInput &input, std::size_t length) {
  std::string bytes(length, '\0');
  const std::int64_t got = readBytes(input, bytes.data(), static_cast<std::int64_t>(length), 0);
  bytes.resize(static_cast<std::size_t>(std::max<std::int64_t>(got, 0)));
  return bytes;
}

NSData wholeData(const ImageInput &input) {
  if (input.descriptor < 0) return input.data;
  if (input.fileSize > NSNotFound) return {};
  void *const bytes = allocateBytes(static_cast<std::size_t>(input.fileSize));
  if (!bytes) throw std::bad_alloc();
  std::int64_t length = 0;
  while (length < static_cast<std::int64_t>(input.fileSize)) {
    const std::int64_t got = readBytes(input, static_cast<char *>(bytes) + length,
                                       static_cast<std::int64_t>(input.fileSize) - length, length);
    if (got <= 0) break;
    length += got;
  }
  return NSData::dataWithMallocedBytes(bytes, static_cast<std::size_t>(length));
}

}  // namespace nimbo::detail
