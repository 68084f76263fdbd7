// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSStringCase.hpp"

#include <unicode/ustring.h>

#include <stdexcept>

#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {

NSString lowercaseString(const NSString &string) {
  const auto sourceLength = static_cast<std::int32_t>(string.length());
  if (sourceLength == 0) return string;
  NSMutableString result;
  std::int32_t length = sourceLength;
  for (int pass = 0; pass < 2; ++pass) {  // The second one only when lower case is longer.
    result.setLength(static_cast<std::uint32_t>(length));
    UErrorCode status = U_ZERO_ERROR;
    length = u_strToLower(result.mutableCharacters(), length, string.characters(), sourceLength, "", &status);
    if (U_SUCCESS(status)) break;
    if (status != U_BUFFER_OVERFLOW_ERROR) throw std::length_error("lowercaseString");
  }
  result.setLength(static_cast<std::uint32_t>(length));
  return result.view() == string.view() ? string : std::move(result).string();
}

}  // namespace nimbo
