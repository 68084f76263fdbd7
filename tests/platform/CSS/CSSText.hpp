// SPDX-License-Identifier: Apache-2.0
//
// Values of style sheets as text, to be compared.
#pragma once

#include <cmath>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "platform/CSS/CSSDeclaration.hpp"
#include "platform/Foundation/NSString.hpp"

namespace nimbo {

inline std::u16string unitsOf(std::string_view text) {
  return std::u16string(NSString::stringWithUTF8String(text).view());
}

inline std::string textOf(std::u16string_view units) {
  return NSString::stringWithCharacters(units).UTF8String();
}

inline std::string textOfNumber(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.4g", number);
  return text;
}

inline std::string textOfUnit(CSSUnit unit) {
  constexpr const char *kUnits[] = {"",    "px",  "%",  "em",  "ex", "cap", "ch",   "ic",  "rem",
                                    "rex", "rch", "lh", "rlh", "vw", "vh",  "vmin", "vmax"};
  return kUnits[static_cast<std::size_t>(unit)];
}

inline std::string textOfValue(const CSSValue &value) {
  switch (value.kind()) {
    case CSSValueKind::kNone:
      return "(none)";
    case CSSValueKind::kKeyword:
      return std::string(nameOfCSSKeyword(value.keyword()));
    case CSSValueKind::kNumber:
    case CSSValueKind::kPercentage:
    case CSSValueKind::kLength:
      return textOfNumber(value.number()) + textOfUnit(value.unit());
    case CSSValueKind::kExpression: {
      CSSLengthContext context;
      context.percentageBase = 200;
      const std::optional<double> number = resolvedNumber(value, context);
      return "=" + (number ? textOfNumber(*number) : "?") + textOfUnit(value.unit());
    }
    case CSSValueKind::kColor: {
      char text[32];
      const CSSColor color = value.color();
      std::snprintf(text, sizeof text, "#%02x%02x%02x", color.red, color.green, color.blue);
      return text + (color.alpha < 1 ? "/" + textOfNumber(color.alpha) : std::string());
    }
    case CSSValueKind::kString:
      return "\"" + textOf(value.text()) + "\"";
    case CSSValueKind::kIdentifier:
      return textOf(value.text());
    case CSSValueKind::kURL:
      return "url(" + textOf(value.text()) + ")";
    case CSSValueKind::kTokens:
      return "{" + textOf(value.text()) + "}";
    case CSSValueKind::kList:
    case CSSValueKind::kFunction:
      break;
  }
  std::string text = std::string(nameOfCSSKeyword(value.keyword())) + "[";
  for (const CSSValue &part : value.values()) text += (text.ends_with('[') ? "" : " ") + textOfValue(part);
  return text + "]";
}

inline std::string textOfDeclarations(std::span<const CSSDeclaration> declarations) {
  std::string text;
  for (const CSSDeclaration &declaration : declarations) {
    if (!text.empty()) text += "; ";
    text += declaration.property == CSSProperty::kCustom ? textOf(declaration.customName)
                                                         : nameOfCSSProperty(declaration.property);
    text += ": " + textOfValue(declaration.value) + (declaration.isImportant ? " !" : "");
  }
  return text;
}

inline std::string declarationsOf(std::string_view style, CSSMode mode = CSSMode::kStandard) {
  const std::u16string units = unitsOf(style);
  CSSArena arena;
  std::vector<CSSDeclaration> declarations;
  readDeclarations(units, mode, arena, declarations);
  return textOfDeclarations(declarations);
}

}  // namespace nimbo
