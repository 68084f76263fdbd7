// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace nimbo::detail {

/// Which of the bytes of a number comes first.
enum class ByteOrder { little, big };

/// The number of up to four bytes at a place; zeros stand for what is missing.
inline std::uint32_t numberAt(std::string_view bytes, std::size_t offset, std::size_t length, ByteOrder order) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < length; ++i) {
    const std::size_t place = offset + (order == ByteOrder::big ? i : length - 1 - i);
    number = number << 8 | (place < bytes.size() ? static_cast<unsigned char>(bytes[place]) : 0u);
  }
  return number;
}

}  // namespace nimbo::detail
