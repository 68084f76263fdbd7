// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSProperty.hpp"

#include <array>

#include "platform/CSS/CSSNameLookup.hpp"

namespace nimbo {

namespace {

struct PropertyFacts {
  std::string_view name;
  bool isInherited;
};

#define NIMBO_CSS_PROPERTY_FACTS(value, name, inherited) {name, inherited},
constexpr auto kFacts = std::to_array<PropertyFacts>({{"", false},
                                                      {"", true},
                                                      NIMBO_CSS_LONGHANDS(NIMBO_CSS_PROPERTY_FACTS)
                                                          NIMBO_CSS_SHORTHANDS(NIMBO_CSS_PROPERTY_FACTS)});
#undef NIMBO_CSS_PROPERTY_FACTS

using enum CSSProperty;

#define NIMBO_CSS_PROPERTY_ROW(value, name, inherited) {name, k##value},
constexpr detail::CSSNameLookup kProperties(std::to_array<detail::CSSNamedValue<CSSProperty>>({
    NIMBO_CSS_LONGHANDS(NIMBO_CSS_PROPERTY_ROW) NIMBO_CSS_SHORTHANDS(NIMBO_CSS_PROPERTY_ROW)  //
    {"block-size", kHeight},
    {"border-block-end", kBorderBottom},
    {"border-block-end-color", kBorderBottomColor},
    {"border-block-end-style", kBorderBottomStyle},
    {"border-block-end-width", kBorderBottomWidth},
    {"border-block-start", kBorderTop},
    {"border-block-start-color", kBorderTopColor},
    {"border-block-start-style", kBorderTopStyle},
    {"border-block-start-width", kBorderTopWidth},
    {"inline-size", kWidth},
    {"inset-block-end", kBottom},
    {"inset-block-start", kTop},
    {"margin-block-end", kMarginBottom},
    {"margin-block-start", kMarginTop},
    {"max-block-size", kMaxHeight},
    {"max-inline-size", kMaxWidth},
    {"min-block-size", kMinHeight},
    {"min-inline-size", kMinWidth},
    {"overflow-block", kOverflowY},
    {"overflow-inline", kOverflowX},
    {"padding-block-end", kPaddingBottom},
    {"padding-block-start", kPaddingTop},
    {"-webkit-box-sizing", kBoxSizing},
    {"-webkit-margin-end", kMarginInlineEnd},
    {"-webkit-margin-start", kMarginInlineStart},
    {"-webkit-opacity", kOpacity},
    {"-webkit-padding-end", kPaddingInlineEnd},
    {"-webkit-padding-start", kPaddingInlineStart},
    {"-webkit-text-decoration", kTextDecoration},
}));
#undef NIMBO_CSS_PROPERTY_ROW

constexpr CSSProperty kBackgroundParts[] = {kBackgroundColor, kBackgroundImage};
constexpr CSSProperty kBorderParts[] = {kBorderTopWidth,    kBorderTopStyle,    kBorderTopColor,
                                        kBorderRightWidth,  kBorderRightStyle,  kBorderRightColor,
                                        kBorderBottomWidth, kBorderBottomStyle, kBorderBottomColor,
                                        kBorderLeftWidth,   kBorderLeftStyle,   kBorderLeftColor};
constexpr CSSProperty kBorderBlockParts[] = {kBorderTopWidth,    kBorderTopStyle,    kBorderTopColor,
                                             kBorderBottomWidth, kBorderBottomStyle, kBorderBottomColor};
constexpr CSSProperty kBorderInlineParts[] = {kBorderInlineStartWidth, kBorderInlineStartStyle,
                                              kBorderInlineStartColor, kBorderInlineEndWidth,
                                              kBorderInlineEndStyle,   kBorderInlineEndColor};
constexpr CSSProperty kBorderWidths[] = {kBorderTopWidth, kBorderRightWidth, kBorderBottomWidth,
                                         kBorderLeftWidth};
constexpr CSSProperty kBorderStyles[] = {kBorderTopStyle, kBorderRightStyle, kBorderBottomStyle,
                                         kBorderLeftStyle};
constexpr CSSProperty kBorderColors[] = {kBorderTopColor, kBorderRightColor, kBorderBottomColor,
                                         kBorderLeftColor};
constexpr CSSProperty kBorderBlockWidths[] = {kBorderTopWidth, kBorderBottomWidth};
constexpr CSSProperty kBorderBlockStyles[] = {kBorderTopStyle, kBorderBottomStyle};
constexpr CSSProperty kBorderBlockColors[] = {kBorderTopColor, kBorderBottomColor};
constexpr CSSProperty kBorderInlineWidths[] = {kBorderInlineStartWidth, kBorderInlineEndWidth};
constexpr CSSProperty kBorderInlineStyles[] = {kBorderInlineStartStyle, kBorderInlineEndStyle};
constexpr CSSProperty kBorderInlineColors[] = {kBorderInlineStartColor, kBorderInlineEndColor};
constexpr CSSProperty kFontParts[] = {kFontStyle,   kFontVariantCaps, kFontVariantPosition, kFontWeight,
                                      kFontStretch, kFontSize,        kLineHeight,          kFontFamily};
constexpr CSSProperty kFontVariantParts[] = {kFontVariantCaps, kFontVariantPosition};
constexpr CSSProperty kInsets[] = {kTop, kRight, kBottom, kLeft};
constexpr CSSProperty kBlockInsets[] = {kTop, kBottom};
constexpr CSSProperty kInlineInsets[] = {kInsetInlineStart, kInsetInlineEnd};
constexpr CSSProperty kListStyleParts[] = {kListStyleType, kListStylePosition, kListStyleImage};
constexpr CSSProperty kMargins[] = {kMarginTop, kMarginRight, kMarginBottom, kMarginLeft};
constexpr CSSProperty kBlockMargins[] = {kMarginTop, kMarginBottom};
constexpr CSSProperty kInlineMargins[] = {kMarginInlineStart, kMarginInlineEnd};
constexpr CSSProperty kOverflows[] = {kOverflowX, kOverflowY};
constexpr CSSProperty kPaddings[] = {kPaddingTop, kPaddingRight, kPaddingBottom, kPaddingLeft};
constexpr CSSProperty kBlockPaddings[] = {kPaddingTop, kPaddingBottom};
constexpr CSSProperty kInlinePaddings[] = {kPaddingInlineStart, kPaddingInlineEnd};
constexpr CSSProperty kTextDecorationParts[] = {kTextDecorationLine, kTextDecorationStyle, kTextDecorationColor,
                                                kTextDecorationThickness};

}  // namespace

CSSProperty propertyNamed(std::u16string_view name) {
  if (name.starts_with(u"--")) return name.size() > 2 ? kCustom : kUnknown;
  const CSSProperty *const property = kProperties.find(name);
  return property ? *property : kUnknown;
}

std::string_view nameOfCSSProperty(CSSProperty property) {
  return kFacts[static_cast<std::size_t>(property)].name;
}

bool isInheritedCSSProperty(CSSProperty property) {
  return kFacts[static_cast<std::size_t>(property)].isInherited;
}

std::span<const CSSProperty> longhandsOfCSSProperty(CSSProperty shorthand) {
  switch (shorthand) {
    case kBackground:
      return kBackgroundParts;
    case kBorder:
      return kBorderParts;
    case kBorderBlock:
      return kBorderBlockParts;
    case kBorderInline:
      return kBorderInlineParts;
    case kBorderTop:
      return std::span(kBorderParts).first(3);
    case kBorderRight:
      return std::span(kBorderParts).subspan(3, 3);
    case kBorderBottom:
      return std::span(kBorderParts).subspan(6, 3);
    case kBorderLeft:
      return std::span(kBorderParts).last(3);
    case kBorderInlineStart:
      return std::span(kBorderInlineParts).first(3);
    case kBorderInlineEnd:
      return std::span(kBorderInlineParts).last(3);
    case kBorderWidth:
      return kBorderWidths;
    case kBorderStyle:
      return kBorderStyles;
    case kBorderColor:
      return kBorderColors;
    case kBorderBlockWidth:
      return kBorderBlockWidths;
    case kBorderBlockStyle:
      return kBorderBlockStyles;
    case kBorderBlockColor:
      return kBorderBlockColors;
    case kBorderInlineWidth:
      return kBorderInlineWidths;
    case kBorderInlineStyle:
      return kBorderInlineStyles;
    case kBorderInlineColor:
      return kBorderInlineColors;
    case kFont:
      return kFontParts;
    case kFontVariant:
      return kFontVariantParts;
    case kInset:
      return kInsets;
    case kInsetBlock:
      return kBlockInsets;
    case kInsetInline:
      return kInlineInsets;
    case kListStyle:
      return kListStyleParts;
    case kMargin:
      return kMargins;
    case kMarginBlock:
      return kBlockMargins;
    case kMarginInline:
      return kInlineMargins;
    case kOverflow:
      return kOverflows;
    case kPadding:
      return kPaddings;
    case kPaddingBlock:
      return kBlockPaddings;
    case kPaddingInline:
      return kInlinePaddings;
    case kTextDecoration:
      return kTextDecorationParts;
    default:
      return {};
  }
}

CSSProperty physicalCSSProperty(CSSProperty property, bool isRightToLeft) {
  switch (property) {
    case kMarginInlineStart:
      return isRightToLeft ? kMarginRight : kMarginLeft;
    case kMarginInlineEnd:
      return isRightToLeft ? kMarginLeft : kMarginRight;
    case kPaddingInlineStart:
      return isRightToLeft ? kPaddingRight : kPaddingLeft;
    case kPaddingInlineEnd:
      return isRightToLeft ? kPaddingLeft : kPaddingRight;
    case kInsetInlineStart:
      return isRightToLeft ? kRight : kLeft;
    case kInsetInlineEnd:
      return isRightToLeft ? kLeft : kRight;
    case kBorderInlineStartWidth:
      return isRightToLeft ? kBorderRightWidth : kBorderLeftWidth;
    case kBorderInlineEndWidth:
      return isRightToLeft ? kBorderLeftWidth : kBorderRightWidth;
    case kBorderInlineStartStyle:
      return isRightToLeft ? kBorderRightStyle : kBorderLeftStyle;
    case kBorderInlineEndStyle:
      return isRightToLeft ? kBorderLeftStyle : kBorderRightStyle;
    case kBorderInlineStartColor:
      return isRightToLeft ? kBorderRightColor : kBorderLeftColor;
    case kBorderInlineEndColor:
      return isRightToLeft ? kBorderLeftColor : kBorderRightColor;
    default:
      return property;
  }
}

}  // namespace nimbo
