// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A number of 1 to 8 bytes, the most significant one first.
///
///     bigEndian(data.bytes(), 4);
inline std::uint64_t bigEndian(const std::uint8_t *bytes, std::size_t size) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < size; ++i) value = value << 8 | bytes[i];
  return value;
}

/// Appends the last `size` bytes of the number, the most significant one first.
///
///     appendBigEndian(bytes, 0x00051607, 4);
inline void appendBigEndian(std::string &bytes, std::uint64_t value, std::size_t size) {
  for (std::size_t i = size; i > 0; --i) bytes += static_cast<char>(value >> 8 * (i - 1) & 0xff);
}

}  // namespace nimbo
