// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/RandomAccessFile.hpp"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace nimbo {

std::string RandomAccessFile::read(std::uint64_t offset, std::size_t count) const {
  if (offset >= size) return std::string();
  std::string bytes(static_cast<std::size_t>(std::min<std::uint64_t>(count, size - offset)), '\0');
  std::size_t length = 0;
  while (length < bytes.size()) {
    const ssize_t got =
        ::pread(descriptor, bytes.data() + length, bytes.size() - length, static_cast<off_t>(offset + length));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    length += static_cast<std::size_t>(got);
  }
  bytes.resize(length);
  return bytes;
}

std::uint16_t littleEndian16(std::string_view bytes, std::size_t offset) {
  if (offset + 2 > bytes.size()) return 0;
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[offset + i]); };
  return static_cast<std::uint16_t>(byte(0) | byte(1) << 8);
}

std::uint32_t littleEndian32(std::string_view bytes, std::size_t offset) {
  if (offset + 4 > bytes.size()) return 0;
  return littleEndian16(bytes, offset) | static_cast<std::uint32_t>(littleEndian16(bytes, offset + 2)) << 16;
}

}  // namespace nimbo
