// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace nimbo {

using ZipParts = std::vector<std::pair<std::string, std::string>>;

/// A zip archive whose parts are stored as they are. Bit 0 of `flags` says that they are encrypted.
inline std::string storedZip(const ZipParts &parts, std::uint16_t flags = 0) {
  const auto number = [](std::size_t value, int bytes) {
    std::string text;
    for (; bytes > 0; --bytes, value >>= 8) text += static_cast<char>(value);
    return text;
  };
  const auto checksum = [](std::string_view bytes) {
    std::uint32_t sum = 0xffffffff;
    for (const char byte : bytes) {
      sum ^= static_cast<std::uint8_t>(byte);
      for (int i = 0; i < 8; ++i) sum = (sum >> 1) ^ (sum & 1 ? 0xedb88320 : 0);
    }
    return ~sum;
  };
  std::string archive, directory;
  for (const auto &[name, bytes] : parts) {
    const std::string facts = number(20, 2) + number(flags, 2) + number(0, 6) + number(checksum(bytes), 4) +
                              number(bytes.size(), 4) + number(bytes.size(), 4) + number(name.size(), 2) +
                              number(0, 2);
    directory += "PK\1\2" + number(20, 2) + facts + number(0, 10) + number(archive.size(), 4) + name;
    archive += "PK\3\4" + facts + name + bytes;
  }
  const std::string count = number(std::min<std::size_t>(parts.size(), 0xffff), 2);
  return archive + directory + "PK\5\6" + number(0, 4) + count + count + number(directory.size(), 4) +
         number(archive.size(), 4) + number(0, 2);
}

}  // namespace nimbo
