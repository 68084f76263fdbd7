// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSString+NSStringNimboExtensions/RawAccess.hpp"

#include <algorithm>
#include <utility>

#include "Classes/Characters/AnswerOr.hpp"
#include "platform/Foundation/NSStringFormatting.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
inline namespace NSStringNimboExtensions {

namespace {

void appendHexadecimal(NSMutableString &result, unichar unit) {
  for (int shift = 12; shift >= 0; shift -= 4) result.appendCharacter(lowerHexDigit<unichar>(unit >> shift));
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
  return answerOr(string, [&] {
    NSMutableString result;
    for (std::uint32_t i = 0; i < string.length(); ++i) {
      const unichar unit = string.characterAtIndex(i);
      appendFormat(result, u"%d: ", i);
      appendHexadecimal(result, unit);
      if (unit > u' ' && unit < 0x7f) {
        result.appendCharacter(u' ');
        result.appendCharacter(unit);
      }
      result.appendCharacter(u'\n');
    }
    return std::move(result).string();
  });
}

NSString dumpAsArray(const NSString &string) {
  if (!string) return string;
  return answerOr(string, [&] {
    NSMutableString result;
    result.appendCharacter(u'{');
    for (std::uint32_t i = 0; i < string.length(); ++i) {
      result.append(i == 0 ? u"0x" : u", 0x");
      appendHexadecimal(result, string.characterAtIndex(i));
    }
    result.appendCharacter(u'}');
    return std::move(result).string();
  });
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
