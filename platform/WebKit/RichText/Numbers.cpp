// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/RichText/Numbers.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {

namespace {

/// How many units a number is read of.
constexpr std::size_t kMaximumNumberLength = 64;

}  // namespace

std::optional<double> takeNumber(std::u16string_view *text) {
  std::string ascii;
  for (const char16_t c : text->substr(0, kMaximumNumberLength)) {
    if (c >= 0x80) break;
    ascii += static_cast<char>(c);
  }
  const std::size_t sign = ascii.starts_with('+') ? 1 : 0;
  double number = 0;
  const auto result = std::from_chars(ascii.data() + sign, ascii.data() + ascii.size(), number);
  if (result.ec != std::errc() || !std::isfinite(number)) return {};
  text->remove_prefix(static_cast<std::size_t>(result.ptr - ascii.data()));
  return number;
}

std::optional<std::int32_t> integerOfAttribute(std::optional<std::u16string_view> value) {
  if (!value) return {};
  std::u16string_view text = *value;
  while (!text.empty() && isASCIIWhiteSpace(text.front())) text.remove_prefix(1);
  const bool isNegative = text.starts_with(u'-');
  if (isNegative || text.starts_with(u'+')) text.remove_prefix(1);
  if (text.empty() || !isASCIIDigit(text.front())) return {};
  constexpr std::int64_t kMost = 0x7fffffff;
  std::int64_t number = 0;
  for (const char16_t c : text) {
    if (!isASCIIDigit(c)) break;
    number = std::min(kMost, number * 10 + digitValue(c));
  }
  return static_cast<std::int32_t>(isNegative ? -number : number);
}

}  // namespace nimbo::detail
