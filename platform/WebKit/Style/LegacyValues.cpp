// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/LegacyValues.hpp"

#include <algorithm>
#include <array>
#include <string>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {

namespace {

constexpr std::size_t kMaximumColorLength = 128;
constexpr std::uint32_t kMaximumInteger = 1'000'000'000;

bool isHTMLSpace(char16_t c) {
  return c == u' ' || c == u'\t' || c == u'\n' || c == u'\f' || c == u'\r';
}

void skipSpaces(std::u16string_view &text) {
  while (!text.empty() && isHTMLSpace(text.front())) text.remove_prefix(1);
}

std::u16string_view withoutSpaces(std::u16string_view text) {
  skipSpaces(text);
  while (!text.empty() && isHTMLSpace(text.back())) text.remove_suffix(1);
  return text;
}

/// The digits that the text begins with, which are taken off; nothing when there are none.
std::optional<std::uint32_t> takeDigits(std::u16string_view &text) {
  if (text.empty() || !isASCIIDigit(text.front())) return {};
  std::uint32_t number = 0;
  for (; !text.empty() && isASCIIDigit(text.front()); text.remove_prefix(1))
    number = std::min(kMaximumInteger / 10, number) * 10 + digitValue(text.front());
  return number;
}

/// One part of a colour in digits of which the first two, after those that all parts have in vain, count.
std::uint8_t colorPart(std::u16string_view digits) {
  std::uint32_t value = 0;
  for (const char16_t c : digits.substr(0, 2)) value = value * 16 + hexDigitValue(c);
  return static_cast<std::uint8_t>(value);
}

}  // namespace

std::optional<CSSColor> legacyColor(std::u16string_view text) {
  if (text.empty()) return {};
  text = withoutSpaces(text);
  if (equalsASCIINoCase(text, "transparent")) return {};
  if (const std::optional<CSSColor> named = colorNamed(text)) return named;
  if (text.size() == 4 && text.front() == u'#') {
    if (const std::optional<CSSColor> color = colorOfHexDigits(text.substr(1))) return color;
  }
  std::u16string digits;
  text = text.substr(0, kMaximumColorLength);
  if (text.starts_with(u'#')) text.remove_prefix(1);
  // A character outside of the Basic Multilingual Plane is two units here, and two zeros.
  for (const char16_t c : text) digits += isASCIIHexDigit(c) ? c : u'0';
  while (digits.size() % 3 != 0) digits += u'0';
  std::size_t length = digits.size() / 3;
  std::array<std::u16string_view, 3> parts;
  for (std::size_t i = 0; i < parts.size(); ++i)
    parts[i] = std::u16string_view(digits).substr(i * length, length);
  if (length > 8) {
    for (std::u16string_view &part : parts) part.remove_prefix(length - 8);
    length = 8;
  }
  while (length > 2 &&
         std::ranges::all_of(parts, [](std::u16string_view part) { return part.front() == u'0'; })) {
    for (std::u16string_view &part : parts) part.remove_prefix(1);
    --length;
  }
  return CSSColor{colorPart(parts[0]), colorPart(parts[1]), colorPart(parts[2])};
}

CSSValue legacyDimension(std::u16string_view text) {
  skipSpaces(text);
  if (text.starts_with(u'+')) text.remove_prefix(1);
  const std::optional<std::uint32_t> whole = takeDigits(text);
  if (!whole) return {};
  double number = *whole;
  if (text.size() > 1 && text.front() == u'.') {
    double scale = 1;
    for (text.remove_prefix(1); !text.empty() && isASCIIDigit(text.front()); text.remove_prefix(1))
      number += digitValue(text.front()) * (scale /= 10);
  }
  return CSSValue::number(number, text.starts_with(u'%') ? CSSUnit::kPercent : CSSUnit::kPixels);
}

std::optional<std::uint32_t> legacyNonNegativeInteger(std::u16string_view text) {
  skipSpaces(text);
  if (text.starts_with(u'+')) text.remove_prefix(1);
  return takeDigits(text);
}

CSSValue legacyFontSize(std::u16string_view text) {
  static constexpr std::array kSizes = {CSSKeyword::kXSmall,  CSSKeyword::kSmall,  CSSKeyword::kMedium,
                                        CSSKeyword::kLarge,   CSSKeyword::kXLarge, CSSKeyword::kXXLarge,
                                        CSSKeyword::kXXXLarge};
  constexpr int kMediumSize = 3;
  skipSpaces(text);
  const char16_t sign = text.empty() ? u'\0' : text.front();
  if (sign == u'+' || sign == u'-') text.remove_prefix(1);
  const std::optional<std::uint32_t> digits = takeDigits(text);
  if (!digits) return {};
  int size = static_cast<int>(std::min(*digits, 10U));
  if (sign == u'+') size = kMediumSize + size;
  if (sign == u'-') size = kMediumSize - size;
  return kSizes[static_cast<std::size_t>(std::clamp(size, 1, 7) - 1)];
}

}  // namespace nimbo::detail
