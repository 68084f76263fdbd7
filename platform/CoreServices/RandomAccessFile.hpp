// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace nimbo {

/// A file that is read in pieces; the descriptor is borrowed.
struct RandomAccessFile {
  int descriptor = -1;
  std::uint64_t size = 0;

  /// Up to `count` bytes from `offset` on; fewer at the end of the file or when reading fails.
  std::string read(std::uint64_t offset, std::size_t count) const;
};

/// The little-endian number of 16 bits at `offset`; 0 when it does not lie inside `bytes`.
std::uint16_t littleEndian16(std::string_view bytes, std::size_t offset);
/// The little-endian number of 32 bits at `offset`; 0 when it does not lie inside `bytes`.
std::uint32_t littleEndian32(std::string_view bytes, std::size_t offset);

}  // namespace nimbo
