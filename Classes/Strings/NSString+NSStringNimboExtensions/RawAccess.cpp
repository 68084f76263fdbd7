// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSString+NSStringNimboExtensions/RawAccess.hpp"

#include <algorithm>
#include <charconv>
#include <utility>

#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
inline namespace NSStringNimboExtensions {

namespace {

void appendHexadecimal(NSMutableString &result, unichar unit) {
  for (int shift = 12; shift >= 0; shift -= 4) result.appendCharacter(lowerHexDigit<unichar>(unit >> shift));
}

void appendDecimal(NSMutableString &result, std::uint32_t number) {
  char digits[10];
  const auto end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
  for (const char *digit = digits; digit != end; ++digit) result.appendCharacter(static_cast<unichar>(*digit));
}

}  // namespace

std::uint32_t getChars(const NSString &string, std::span<char> chars) {
  const std::u16string_view units = string.view().substr(0, chars.size());
  std::transform(units.begin(), units.end(), chars.begin(),
                 [](unichar c) { return c > 0xff ? '?' : static_cast<char>(c); });
  return static_cast<std::uint32_t>(units.size());
}

NSString string(const NSString &string) {
  return string;
}

NSString dump(const NSString &string) {
  if (!string) return string;
  NSMutableString result;
  for (std::uint32_t i = 0; i < string.length(); ++i) {
    const unichar unit = string.characterAtIndex(i);
    appendDecimal(result, i);
    result.appendString(u": "_ns);
    appendHexadecimal(result, unit);
    if (unit > u' ' && unit < 0x7f) {
      result.appendCharacter(u' ');
      result.appendCharacter(unit);
    }
    result.appendCharacter(u'\n');
  }
  return std::move(result).string();
}

NSString dumpAsArray(const NSString &string) {
  if (!string) return string;
  NSMutableString result;
  result.appendCharacter(u'{');
  for (std::uint32_t i = 0; i < string.length(); ++i) {
    result.appendString(i == 0 ? u"0x"_ns : u", 0x"_ns);
    appendHexadecimal(result, string.characterAtIndex(i));
  }
  result.appendCharacter(u'}');
  return std::move(result).string();
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
