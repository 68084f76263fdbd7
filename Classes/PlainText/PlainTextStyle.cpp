// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/PlainTextStyle.hpp"

#include <algorithm>
#include <optional>

#include "Classes/Characters/UnitPredicates.hpp"
#include "Classes/Markup/TagAttributes.hpp"
#include "platform/Foundation/NSRange.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/Trimming.hpp"

namespace nimbo::detail {

namespace {

constexpr double kTiniestReadablePoints = 3;
constexpr double kPointsOfPixel = 0.75;
constexpr double kFarOutside = -100;
constexpr IsUnitOf kIsBlank{kMarkupWhiteSpace};

struct NamedColor {
  std::string_view name;
  std::uint32_t value;
};

constexpr NamedColor kNamedColors[] = {
    {"black", 0x000000},  {"silver", 0xc0c0c0}, {"gray", 0x808080},   {"white", 0xffffff},
    {"maroon", 0x800000}, {"red", 0xff0000},    {"purple", 0x800080}, {"fuchsia", 0xff00ff},
    {"green", 0x008000},  {"lime", 0x00ff00},   {"olive", 0x808000},  {"yellow", 0xffff00},
    {"navy", 0x000080},   {"blue", 0x0000ff},   {"teal", 0x008080},   {"aqua", 0x00ffff},
};

std::optional<std::uint32_t> colorValue(std::u16string_view text) {
  for (const NamedColor &color : kNamedColors) {
    if (equalsASCIINoCase(text, color.name)) return color.value;
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
      number = hasPoint ? number + digitValue(value[i]) * scale : number * 10 + digitValue(value[i]);
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
  const bool isPixels = equalsASCIINoCase(size->unit, "px");
  if (!isPixels && !equalsASCIINoCase(size->unit, "pt") && size->number != 0)
    return StyleFindings::Size::kReadable;
  const double points = isPixels ? size->number * kPointsOfPixel : size->number;
  return points <= kTiniestReadablePoints ? StyleFindings::Size::kTiny : StyleFindings::Size::kReadable;
}

bool isBackground(std::u16string_view name) {
  return equalsOneOfASCIINoCase(name, {"background", "background-color", "background-image"});
}

bool showsPage(std::u16string_view background, std::u16string_view pageColor) {
  return equalsOneOfASCIINoCase(background, {"inherit", "initial", "none", "transparent", "unset"}) ||
         isSameColor(background, pageColor);
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

StyleFindings findingsOfStyle(std::u16string_view style, std::u16string_view pageColor) {
  StyleFindings findings;
  bool isAbsolute = false, isOutside = false;
  while (!style.empty()) {
    const std::size_t end = std::min(style.find(u';'), style.size());
    const std::u16string_view declaration = style.substr(0, end);
    style.remove_prefix(std::min(end + 1, style.size()));
    const std::size_t colon = declaration.find(u':');
    if (colon == declaration.npos) continue;
    const std::u16string_view name = trimmed(declaration.substr(0, colon), kIsBlank);
    std::u16string_view value = trimmed(declaration.substr(colon + 1), kIsBlank);
    value = value.substr(0, value.find_first_of(u" \t\n\r\f!"));
    if (equalsASCIINoCase(name, "display") && equalsASCIINoCase(value, "none")) findings.isInvisible = true;
    if (equalsASCIINoCase(name, "visibility") && equalsASCIINoCase(value, "hidden"))
      findings.isInvisible = true;
    if (equalsASCIINoCase(name, "position")) isAbsolute = equalsASCIINoCase(value, "absolute");
    if (equalsASCIINoCase(name, "top") || equalsASCIINoCase(name, "left"))
      isOutside = isOutside || isFarOutside(value);
    if (equalsASCIINoCase(name, "font-size")) findings.size = sizeOf(value);
    if (equalsASCIINoCase(name, "color")) findings.isInPageColor = isSameColor(value, pageColor);
    if (isBackground(name)) findings.hasOwnBackground = !showsPage(value, pageColor);
  }
  findings.isInvisible = findings.isInvisible || (isAbsolute && isOutside);
  return findings;
}

}  // namespace nimbo::detail
