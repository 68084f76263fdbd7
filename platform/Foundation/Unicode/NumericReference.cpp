// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Unicode/NumericReference.hpp"

#include <algorithm>
#include <array>
#include <cstddef>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

/// What Windows has from 0x80 to 0x9f; 0 where it has nothing.
constexpr std::array<char16_t, 32> kWindowsCharacters = {
    0x20ac, 0,      0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017d, 0,      0,      0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
    0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0,      0x017e, 0x0178};

char32_t characterOfNumber(char32_t number) {
  if (number == 0 || number > 0x10ffff || (number >= 0xd800 && number <= 0xdfff)) return 0xfffd;
  return number <= 0xffff ? windowsCharacter(static_cast<char16_t>(number)) : number;
}

}  // namespace

char16_t windowsCharacter(char16_t unit) {
  const bool isMeant = unit >= 0x80 && unit <= 0x9f && kWindowsCharacters[unit - 0x80] != 0;
  return isMeant ? kWindowsCharacters[unit - 0x80] : unit;
}

NumericReference numericReferenceAt(std::u16string_view text) {
  std::size_t i = 2;
  const bool isHexadecimal = i < text.size() && (text[i] | 0x20) == u'x';
  const std::uint32_t base = isHexadecimal ? 16 : 10;
  if (isHexadecimal) ++i;
  const std::size_t digits = i;
  char32_t number = 0;
  for (; i < text.size() && hexDigitValue(text[i]) < base; ++i)
    number = std::min<char32_t>(number * base + hexDigitValue(text[i]), 0x110000);
  if (i == digits) return {};
  if (i < text.size() && text[i] == u';') ++i;
  return {static_cast<std::uint32_t>(i), characterOfNumber(number)};
}

}  // namespace nimbo
