// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace nimbo {

inline std::string repeated(std::string_view part, std::size_t times) {
  std::string text;
  text.reserve(part.size() * times);
  while (times-- > 0) text += part;
  return text;
}

inline std::u16string repeated(std::u16string_view part, std::size_t times) {
  std::u16string text;
  text.reserve(part.size() * times);
  while (times-- > 0) text += part;
  return text;
}

}  // namespace nimbo
