// SPDX-License-Identifier: Apache-2.0
//
// "." and ".." in the paths of URLs. Any thread may call these.
//
//     pathWithoutDotSegments(u"/a/./b/../c");  // "/a/c"
//     mayHoldDotSegments(u"/a/b.c");  // false
#pragma once

#include <string>
#include <string_view>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A path without "." and ".." among its segments, by RFC 3986, section 5.2.4.
std::u16string pathWithoutDotSegments(std::u16string_view path);

/// Whether a segment of the path begins with ".".
constexpr bool mayHoldDotSegments(std::u16string_view path) {
  return path.starts_with(u'.') || path.find(u"/.") != path.npos;
}

}  // namespace nimbo
