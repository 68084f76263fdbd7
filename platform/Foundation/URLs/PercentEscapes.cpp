// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/URLs/PercentEscapes.hpp"

#include <charconv>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

std::string bytesByAddingPercentEscapes(std::string_view bytes, std::string_view plain) {
  std::string escaped;
  escaped.reserve(bytes.size());
  for (const char c : bytes) {
    const auto value = static_cast<unsigned char>(c);
    if (isASCIIAlphanumeric(c) || plain.find(c) != plain.npos)
      escaped.push_back(c);
    else
      escaped.append({'%', upperHexDigit(value >> 4u), upperHexDigit(value)});
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
