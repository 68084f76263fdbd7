// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/NSRange.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

/// "%" and two hexadecimal digits.
constexpr std::uint32_t kEscapeLength = 3;

/// Writes the escape of a unit below 256 and answers where it ends.
constexpr unichar *writeEscape(unichar c, unichar *out) {
  out[0] = u'%';
  out[1] = lowerHexDigit<unichar>(c >> 4u);
  out[2] = lowerHexDigit<unichar>(c);
  return out + kEscapeLength;
}

}  // namespace nimbo
