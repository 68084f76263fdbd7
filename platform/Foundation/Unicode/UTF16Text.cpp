// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Unicode/UTF16Text.hpp"

#include <cstring>

namespace nimbo {
namespace {

constexpr char16_t kMark = 0xfeff, kSwappedMark = 0xfffe;

void swapBytes(std::u16string &units) {
  for (char16_t &unit : units) unit = static_cast<char16_t>(unit << 8 | unit >> 8);
}

}  // namespace

std::optional<std::endian> orderOfUTF16(std::string_view bytes) {
  if (bytes.size() < 2) return std::nullopt;
  const bool isHighFirst = bytes[0] == '\0', isHighSecond = bytes[1] == '\0';
  if (bytes.starts_with("\xfe\xff") || (isHighFirst && !isHighSecond)) return std::endian::big;
  if (bytes.starts_with("\xff\xfe") || (isHighSecond && !isHighFirst)) return std::endian::little;
  return std::nullopt;
}

std::u16string unitsOfUTF16(std::string_view bytes, std::endian order) {
  std::u16string units(bytes.size() / sizeof(char16_t), u'\0');
  if (!units.empty()) std::memcpy(units.data(), bytes.data(), units.size() * sizeof(char16_t));
  if (order != std::endian::native) swapBytes(units);
  if (units.starts_with(kSwappedMark)) swapBytes(units);
  if (units.starts_with(kMark)) units.erase(0, 1);
  return units;
}

}  // namespace nimbo
