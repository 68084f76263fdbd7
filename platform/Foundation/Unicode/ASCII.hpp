// SPDX-License-Identifier: Apache-2.0
//
// Letters and digits of ASCII among bytes and units. Only ASCII means anything here: other bytes and units are
// no letters and no digits, are equal to nothing, and stay as they are. Any thread may call these, and they
// work at compile time.
//
//     toASCIILower(u'É');  // u'É'
//     hexDigitValue('f');  // 15
//     endsWithASCIINoCase("PAGE.HTML"sv, ".html");  // true
#pragma once

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What text is made of: bytes or code units.
template <class T>
concept ASCIICodeUnit = std::same_as<T, char> || std::same_as<T, char16_t>;

/// Whether it is one of "0" to "9".
template <ASCIICodeUnit Unit>
constexpr bool isASCIIDigit(Unit c) {
  return c >= '0' && c <= '9';
}

/// The value of a decimal digit, which it must be.
template <ASCIICodeUnit Unit>
constexpr std::uint32_t digitValue(Unit c) {
  return static_cast<std::uint32_t>(c - '0');
}

/// Whether it is white space: the space, or U+0009 to U+000D.
template <ASCIICodeUnit Unit>
constexpr bool isASCIIWhiteSpace(Unit c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

/// Whether it is one of "A" to "Z".
template <ASCIICodeUnit Unit>
constexpr bool isASCIIUppercase(Unit c) {
  return c >= 'A' && c <= 'Z';
}

/// Whether it is one of "a" to "z".
template <ASCIICodeUnit Unit>
constexpr bool isASCIILowercase(Unit c) {
  return c >= 'a' && c <= 'z';
}

/// Whether it is a letter in either case.
template <ASCIICodeUnit Unit>
constexpr bool isASCIILetter(Unit c) {
  return isASCIILowercase(static_cast<Unit>(c | 0x20));
}

/// Whether it is a letter or a digit.
template <ASCIICodeUnit Unit>
constexpr bool isASCIIAlphanumeric(Unit c) {
  return isASCIIDigit(c) || isASCIILetter(c);
}

/// The letter in lower case.
template <ASCIICodeUnit Unit>
constexpr Unit toASCIILower(Unit c) {
  return isASCIIUppercase(c) ? static_cast<Unit>(c + ('a' - 'A')) : c;
}

/// The letter in upper case.
template <ASCIICodeUnit Unit>
constexpr Unit toASCIIUpper(Unit c) {
  return isASCIILowercase(c) ? static_cast<Unit>(c - ('a' - 'A')) : c;
}

/// The value of a hexadecimal digit; 16 for what is none, so that a digit of a smaller base is one whose value
/// is below the base.
template <ASCIICodeUnit Unit>
constexpr std::uint32_t hexDigitValue(Unit c) {
  if (isASCIIDigit(c)) return digitValue(c);
  const std::uint32_t letter = (static_cast<std::uint32_t>(c) | 0x20) - 'a';
  return letter < 6 ? letter + 10 : 16;
}

/// Whether it is a hexadecimal digit in either case.
template <ASCIICodeUnit Unit>
constexpr bool isASCIIHexDigit(Unit c) {
  return hexDigitValue(c) < 16;
}

/// The hexadecimal digit of the value's lowest four bits, in small letters.
template <ASCIICodeUnit Unit = char>
constexpr Unit lowerHexDigit(std::uint32_t value) {
  return static_cast<Unit>("0123456789abcdef"[value & 0xf]);
}

/// The hexadecimal digit of the value's lowest four bits, in capital letters.
template <ASCIICodeUnit Unit = char>
constexpr Unit upperHexDigit(std::uint32_t value) {
  return static_cast<Unit>("0123456789ABCDEF"[value & 0xf]);
}

/// Whether the text is `lower`, which is ASCII without capitals, but for the case of its letters.
template <ASCIICodeUnit Unit>
constexpr bool equalsASCIINoCase(std::basic_string_view<Unit> text, std::string_view lower) {
  const auto isEqual = [](Unit c, char expected) { return toASCIILower(c) == static_cast<Unit>(expected); };
  return std::ranges::equal(text, lower, isEqual);
}

/// Whether the text is one of these, as `equalsASCIINoCase` compares.
template <ASCIICodeUnit Unit>
constexpr bool equalsOneOfASCIINoCase(std::basic_string_view<Unit> text,
                                      std::initializer_list<std::string_view> lower) {
  return std::ranges::any_of(lower, [=](std::string_view one) { return equalsASCIINoCase(text, one); });
}

/// Whether the text begins with `lower`, as `equalsASCIINoCase` compares.
template <ASCIICodeUnit Unit>
constexpr bool startsWithASCIINoCase(std::basic_string_view<Unit> text, std::string_view lower) {
  return text.size() >= lower.size() && equalsASCIINoCase(text.substr(0, lower.size()), lower);
}

/// Whether the text ends with `lower`, as `equalsASCIINoCase` compares.
template <ASCIICodeUnit Unit>
constexpr bool endsWithASCIINoCase(std::basic_string_view<Unit> text, std::string_view lower) {
  return text.size() >= lower.size() && equalsASCIINoCase(text.substr(text.size() - lower.size()), lower);
}

}  // namespace nimbo
