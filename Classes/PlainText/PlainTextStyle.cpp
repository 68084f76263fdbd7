// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/PlainTextStyle.hpp"

#include <optional>

#include "platform/CSS/CSSDeclaration.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {

namespace {

constexpr double kTiniestReadablePoints = 3;
constexpr double kPointsOfPixel = 0.75;
constexpr double kFarOutside = -100;

/// A number with its unit, such as "-1.5em".
struct Measure {
  double number;
  std::u16string_view unit;
};

std::optional<Measure> measure(std::u16string_view value) {
  CSSTokenizer tokenizer(value);
  const CSSToken token = tokenizer.next();
  if (token.type != CSSTokenType::kNumber && token.type != CSSTokenType::kPercentage &&
      token.type != CSSTokenType::kDimension)
    return std::nullopt;
  return Measure{tokenizer.number(token), tokenizer.rawText(token)};
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
  if (a.empty() || b.empty()) return false;
  const std::optional<CSSColor> color = readColor(a, CSSMode::kQuirks);
  return color && color == readColor(b, CSSMode::kQuirks);
}

StyleFindings findingsOfStyle(std::u16string_view style, std::u16string_view pageColor) {
  StyleFindings findings;
  bool isAbsolute = false, isOutside = false;
  CSSRawDeclarations declarations(style);
  while (const std::optional<CSSRawDeclaration> declaration = declarations.next()) {
    const std::u16string_view value =
        declaration->value.substr(0, declaration->value.find_first_of(u" \t\n\r\f!"));
    switch (propertyNamed(declaration->name)) {
      case CSSProperty::kDisplay:
        findings.isInvisible = findings.isInvisible || equalsASCIINoCase(value, "none");
        findings.isBlock =
            equalsOneOfASCIINoCase(value, {"block", "flex", "flow-root", "grid", "list-item", "table"});
        break;
      case CSSProperty::kVisibility:
        findings.isInvisible = findings.isInvisible || equalsASCIINoCase(value, "hidden");
        break;
      case CSSProperty::kPosition:
        isAbsolute = equalsASCIINoCase(value, "absolute");
        break;
      case CSSProperty::kTop:
      case CSSProperty::kLeft:
        isOutside = isOutside || isFarOutside(value);
        break;
      case CSSProperty::kFontSize:
        findings.size = sizeOf(value);
        break;
      case CSSProperty::kColor:
        findings.isInPageColor = isSameColor(declaration->value, pageColor);
        break;
      case CSSProperty::kBackground:
      case CSSProperty::kBackgroundColor:
      case CSSProperty::kBackgroundImage:
        findings.hasOwnBackground = !showsPage(value, pageColor);
        break;
      default:
        break;
    }
  }
  findings.isInvisible = findings.isInvisible || (isAbsolute && isOutside);
  return findings;
}

}  // namespace nimbo::detail
