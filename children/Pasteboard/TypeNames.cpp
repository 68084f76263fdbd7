// SPDX-License-Identifier: Apache-2.0
#include "children/Pasteboard/TypeNames.hpp"

#include <algorithm>
#include <string>

#include "platform/AppKit/Pasteboard/PasteboardFeed.hpp"

namespace nimbo {

bool isTypeName(std::string_view name) {
  return !name.empty() && name.size() <= kMaximumTypeNameBytes &&
         std::ranges::none_of(name, [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

bool isSameType(std::string_view a, std::string_view b) {
  const auto folded = [](std::string_view name) {
    std::string result;
    for (const char c : name)
      if (c != ' ' && c != '"') result += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return result;
  };
  return a == b || (a.find('/') != std::string_view::npos && folded(a) == folded(b));
}

}  // namespace nimbo
