// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/PlainTextStyle.hpp"

#include <algorithm>
#include <optional>

#include "Classes/PlainText/PlainTextAttributes.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {

namespace {

constexpr double kTiniestReadablePoints = 3;
constexpr double kPointsOfPixel = 0.75;
constexpr double kFarOutside = -100;
constexpr std::u16string_view kBlanks = u" \t\n\r\f";

struct NamedColor {
  std::u16string_view name;
  std::uint32_t value;
};

constexpr NamedColor kNamedColors[] = {
    {u"black", 0x000000},  {u"silver", 0xc0c0c0}, {u"gray", 0x808080},   {u"white", 0xffffff},
    {u"maroon", 0x800000}, {u"red", 0xff0000},    {u"purple", 0x800080}, {u"fuchsia", 0xff00ff},
    {u"green", 0x008000},  {u"lime", 0x00ff00},   {u"olive", 0x808000},  {u"yellow", 0xffff00},
    {u"navy", 0x000080},   {u"blue", 0x0000ff},   {u"teal", 0x008080},   {u"aqua", 0x00ffff},
};

std::u16string_view trimmed(std::u16string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

std::optional<std::uint32_t> colorValue(std::u16string_view text) {
  for (const NamedColor &color : kNamedColors) {
    if (equalsNoCase(text, color.name)) return color.value;
  }
  if (text.starts_with(u'#')) text.remove_prefix(1);
  if (text.size() != 3 && text.size() != 6) return std::nullopt;
  std::uint32_t value = 0;
  for (const unichar c : text) {
    const std::uint32_t digit = hexDigitValue(c);
    if (digit > 15) return std::nullopt;
    value = text.size() == 3 ? value << 8 | digit * 0x11 : value << 4 | digit;
  }
  return value;
}

struct Measure {
  double number;
  std::u16string_view unit;
};

/// A number with its unit, such as "-1.5em".
std::optional<Measure> measure(std::u16string_view value) {
  const bool isNegative = value.starts_with(u'-');
  if (isNegative) value.remove_prefix(1);
  double number = 0, scale = 1;
  std::size_t i = 0;
  bool hasPoint = false, hasDigit = false;
  for (; i < value.size(); ++i) {
    if (value[i] == u'.' && !hasPoint) {
      hasPoint = true;
    } else if (isASCIIDigit(value[i])) {
      hasDigit = true;
      if (hasPoint) scale /= 10;
      number = hasPoint ? number + (value[i] - u'0') * scale : number * 10 + (value[i] - u'0');
    } else {
      break;
    }
  }
  if (!hasDigit) return std::nullopt;
  return Measure{isNegative ? -number : number, value.substr(i)};
}

StyleFindings::Size sizeOf(std::u16string_view value) {
  const std::optional<Measure> size = measure(value);
  if (!size) return StyleFindings::Size::kReadable;
  const bool isPixels = equalsNoCase(size->unit, u"px");
  if (!isPixels && !equalsNoCase(size->unit, u"pt") && size->number != 0) return StyleFindings::Size::kReadable;
  const double points = isPixels ? size->number * kPointsOfPixel : size->number;
  return points <= kTiniestReadablePoints ? StyleFindings::Size::kTiny : StyleFindings::Size::kReadable;
}

bool isBackground(std::u16string_view name) {
  constexpr std::u16string_view kNames[] = {u"background", u"background-color", u"background-image"};
  return std::ranges::any_of(kNames, [&](std::u16string_view each) { return equalsNoCase(name, each); });
}

bool showsPage(std::u16string_view background, const NSString &pageColor) {
  constexpr std::u16string_view kWords[] = {u"inherit", u"initial", u"none", u"transparent", u"unset"};
  return std::ranges::any_of(kWords,
                             [&](std::u16string_view each) { return equalsNoCase(background, each); }) ||
         (pageColor && isSameColor(background, pageColor.view()));
}

bool isFarOutside(std::u16string_view value) {
  const std::optional<Measure> place = measure(value);
  return place && place->number <= kFarOutside;
}

}  // namespace

bool isSameColor(std::u16string_view a, std::u16string_view b) {
  const std::optional<std::uint32_t> value = colorValue(a);
  return value && value == colorValue(b);
}

StyleFindings findingsOfStyle(std::u16string_view style, const NSString &pageColor) {
  StyleFindings findings;
  bool isAbsolute = false, isOutside = false;
  while (!style.empty()) {
    const std::size_t end = std::min(style.find(u';'), style.size());
    const std::u16string_view declaration = style.substr(0, end);
    style.remove_prefix(std::min(end + 1, style.size()));
    const std::size_t colon = declaration.find(u':');
    if (colon == declaration.npos) continue;
    const std::u16string_view name = trimmed(declaration.substr(0, colon));
    std::u16string_view value = trimmed(declaration.substr(colon + 1));
    value = value.substr(0, value.find_first_of(u" \t\n\r\f!"));
    if (equalsNoCase(name, u"display") && equalsNoCase(value, u"none")) findings.isInvisible = true;
    if (equalsNoCase(name, u"visibility") && equalsNoCase(value, u"hidden")) findings.isInvisible = true;
    if (equalsNoCase(name, u"position")) isAbsolute = equalsNoCase(value, u"absolute");
    if (equalsNoCase(name, u"top") || equalsNoCase(name, u"left")) isOutside = isOutside || isFarOutside(value);
    if (equalsNoCase(name, u"font-size")) findings.size = sizeOf(value);
    if (equalsNoCase(name, u"color"))
      findings.isInPageColor = pageColor && isSameColor(value, pageColor.view());
    if (isBackground(name)) findings.hasOwnBackground = !showsPage(value, pageColor);
  }
  findings.isInvisible = findings.isInvisible || (isAbsolute && isOutside);
  return findings;
}

}  // namespace nimbo::detail
