// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

/// The text of an input: its first byte chooses whether the others are units of one byte each or, in the order
/// of this machine, of two. A byte that is left over is dropped.
inline std::u16string fuzzedText(const std::uint8_t *data, std::size_t size) {
  if (size == 0) return {};
  if ((data[0] & 1) == 0) return {data + 1, data + size};
  std::u16string text((size - 1) / sizeof(char16_t), u'\0');
  if (!text.empty()) std::memcpy(text.data(), data + 1, text.size() * sizeof(char16_t));
  return text;
}
