// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "platform/Foundation/NSString.hpp"

namespace nimbo::bench {

/// A page as UTF-8 and as code units.
struct Page {
  std::string bytes;
  NSString string;
};
using Pages = std::vector<Page>;

inline Page pageOfText(const NSString &string) {
  return {string.UTF8String(), string};
}

/// The pages below a folder, with whole characters, so that every contestant reads the same.
inline Pages pagesIn(const char *folder) {
  Pages pages;
  for (const auto &entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    std::ifstream file(entry.path(), std::ios::binary);
    const auto string =
        NSString::stringWithLossyUTF8String(std::string(std::istreambuf_iterator<char>(file), {}));
    if (string.length() > 0) pages.push_back(pageOfText(string));
  }
  return pages;
}

}  // namespace nimbo::bench
