// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSGeometry.hpp"

#include <array>
#include <cstdio>

namespace nimbo {

NSString NSStringFromSize(NSSize size) {
  std::array<char, 64> text{};
  const int length = std::snprintf(text.data(), text.size(), "{%g, %g}", size.width, size.height);
  return NSString::stringWithUTF8String({text.data(), static_cast<std::size_t>(length)});
}

}  // namespace nimbo
