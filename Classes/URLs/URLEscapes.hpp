// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/NSRange.hpp"

namespace nimbo {

/// "%" and two hexadecimal digits.
constexpr std::uint32_t kEscapeLength = 3;

/// The value of a hexadecimal digit, or -1.
constexpr int valueOfHexDigit(unichar c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  const int letter = (c | 0x20) - u'a';
  return letter >= 0 && letter < 6 ? letter + 10 : -1;
}

/// Writes the escape of a unit below 256 and answers where it ends.
constexpr unichar *writeEscape(unichar c, unichar *out) {
  constexpr char16_t kDigits[] = u"0123456789abcdef";
  out[0] = u'%';
  out[1] = kDigits[c >> 4];
  out[2] = kDigits[c & 15];
  return out + kEscapeLength;
}

}  // namespace nimbo
