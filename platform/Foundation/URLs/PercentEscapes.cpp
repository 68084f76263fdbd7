// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/URLs/PercentEscapes.hpp"

#include <charconv>

namespace nimbo {
namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";

bool isLetterOrDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

}  // namespace

std::string bytesByAddingPercentEscapes(std::string_view bytes, std::string_view plain) {
  std::string escaped;
  escaped.reserve(bytes.size());
  for (const char c : bytes) {
    const auto value = static_cast<unsigned char>(c);
    if (isLetterOrDigit(c) || plain.find(c) != plain.npos)
      escaped.push_back(c);
    else
      escaped.append({'%', kDigits[value >> 4], kDigits[value & 15]});
  }
  return escaped;
}

std::string bytesByReplacingPercentEscapes(std::string_view bytes) {
  std::string decoded;
  decoded.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    unsigned char value = 0;
    const char *const digits = bytes.data() + i + 1;
    if (bytes[i] == '%' && i + 2 < bytes.size() &&
        std::from_chars(digits, digits + 2, value, 16).ptr == digits + 2) {
      decoded.push_back(static_cast<char>(value));
      i += 2;
    } else {
      decoded.push_back(bytes[i]);
    }
  }
  return decoded;
}

}  // namespace nimbo
