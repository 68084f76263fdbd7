// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSData+ASCII.hpp"

#include <algorithm>

namespace nimbo {
inline namespace ASCII {

bool isAsciiString(const NSData &data) {
  const auto bytes = data.span();
  return data && std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t byte) { return byte < 0x80; });
}

}  // namespace ASCII
}  // namespace nimbo
