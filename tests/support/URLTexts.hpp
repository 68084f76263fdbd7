// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platform/Foundation/NSURL.hpp"

namespace nimbo {

inline NSString text(std::string_view utf8) {
  return NSString::stringWithUTF8String(utf8);
}

inline NSURL url(std::string_view string) {
  return NSURL::URLWithString(text(string));
}

/// Nil as "-", which is no URL or part of one in the tests.
inline std::string shown(const NSString &string) {
  return string ? string.UTF8String() : "-";
}

}  // namespace nimbo
