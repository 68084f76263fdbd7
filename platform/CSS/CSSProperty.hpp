// SPDX-License-Identifier: Apache-2.0
//
// The properties that matter to text, by name.
//
// A property whose name has another form that means the same in horizontal text has one value: "block-size" is
// "height", "margin-block-start" is "margin-top". Inline sides depend on the direction and have values of
// their own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "platform/Foundation/Attributes.hpp"

/// Calls X(value, name, inherited) for each property that is no shorthand.
// clang-format off
#define NIMBO_CSS_LONGHANDS(X) \
  X(BackgroundColor, "background-color", false) X(BackgroundImage, "background-image", false) \
  X(BorderTopWidth, "border-top-width", false) X(BorderRightWidth, "border-right-width", false) \
  X(BorderBottomWidth, "border-bottom-width", false) X(BorderLeftWidth, "border-left-width", false) \
  X(BorderTopStyle, "border-top-style", false) X(BorderRightStyle, "border-right-style", false) \
  X(BorderBottomStyle, "border-bottom-style", false) X(BorderLeftStyle, "border-left-style", false) \
  X(BorderTopColor, "border-top-color", false) X(BorderRightColor, "border-right-color", false) \
  X(BorderBottomColor, "border-bottom-color", false) X(BorderLeftColor, "border-left-color", false) \
  X(BorderInlineStartWidth, "border-inline-start-width", false) \
  X(BorderInlineEndWidth, "border-inline-end-width", false) \
  X(BorderInlineStartStyle, "border-inline-start-style", false) \
  X(BorderInlineEndStyle, "border-inline-end-style", false) \
  X(BorderInlineStartColor, "border-inline-start-color", false) \
  X(BorderInlineEndColor, "border-inline-end-color", false) \
  X(BorderCollapse, "border-collapse", true) X(BorderSpacing, "border-spacing", true) \
  X(Top, "top", false) X(Right, "right", false) X(Bottom, "bottom", false) X(Left, "left", false) \
  X(InsetInlineStart, "inset-inline-start", false) X(InsetInlineEnd, "inset-inline-end", false) \
  X(BoxSizing, "box-sizing", false) X(CaptionSide, "caption-side", true) X(Clear, "clear", false) \
  X(Clip, "clip", false) X(ClipPath, "clip-path", false) X(Color, "color", true) \
  X(Content, "content", false) X(ContentVisibility, "content-visibility", false) \
  X(CounterIncrement, "counter-increment", false) X(CounterReset, "counter-reset", false) \
  X(CounterSet, "counter-set", false) X(Direction, "direction", true) X(Display, "display", false) \
  X(EmptyCells, "empty-cells", true) X(Float, "float", false) X(FontFamily, "font-family", true) \
  X(FontSize, "font-size", true) X(FontStretch, "font-stretch", true) X(FontStyle, "font-style", true) \
  X(FontVariantCaps, "font-variant-caps", true) X(FontVariantPosition, "font-variant-position", true) \
  X(FontWeight, "font-weight", true) X(Height, "height", false) X(LetterSpacing, "letter-spacing", true) \
  X(LineHeight, "line-height", true) X(ListStyleImage, "list-style-image", true) \
  X(ListStylePosition, "list-style-position", true) X(ListStyleType, "list-style-type", true) \
  X(MarginTop, "margin-top", false) X(MarginRight, "margin-right", false) \
  X(MarginBottom, "margin-bottom", false) X(MarginLeft, "margin-left", false) \
  X(MarginInlineStart, "margin-inline-start", false) X(MarginInlineEnd, "margin-inline-end", false) \
  X(MaxHeight, "max-height", false) X(MaxWidth, "max-width", false) X(MinHeight, "min-height", false) \
  X(MinWidth, "min-width", false) X(Opacity, "opacity", false) X(OverflowX, "overflow-x", false) \
  X(OverflowY, "overflow-y", false) X(PaddingTop, "padding-top", false) \
  X(PaddingRight, "padding-right", false) X(PaddingBottom, "padding-bottom", false) \
  X(PaddingLeft, "padding-left", false) X(PaddingInlineStart, "padding-inline-start", false) \
  X(PaddingInlineEnd, "padding-inline-end", false) X(Position, "position", false) X(Quotes, "quotes", true) \
  X(TabSize, "tab-size", true) X(TableLayout, "table-layout", false) X(TextAlign, "text-align", true) \
  X(TextAlignLast, "text-align-last", true) X(TextDecorationColor, "text-decoration-color", false) \
  X(TextDecorationLine, "text-decoration-line", false) \
  X(TextDecorationStyle, "text-decoration-style", false) \
  X(TextDecorationThickness, "text-decoration-thickness", false) X(TextIndent, "text-indent", true) \
  X(TextOverflow, "text-overflow", false) X(TextTransform, "text-transform", true) \
  X(UnicodeBidi, "unicode-bidi", false) X(VerticalAlign, "vertical-align", false) \
  X(Visibility, "visibility", true) X(WhiteSpace, "white-space", true) X(Width, "width", false) \
  X(WordSpacing, "word-spacing", true)

/// Calls X(value, name, false) for each shorthand.
#define NIMBO_CSS_SHORTHANDS(X) \
  X(All, "all", false) X(Background, "background", false) X(Border, "border", false) \
  X(BorderBlock, "border-block", false) X(BorderBlockColor, "border-block-color", false) \
  X(BorderBlockStyle, "border-block-style", false) X(BorderBlockWidth, "border-block-width", false) \
  X(BorderBottom, "border-bottom", false) X(BorderColor, "border-color", false) \
  X(BorderInline, "border-inline", false) X(BorderInlineColor, "border-inline-color", false) \
  X(BorderInlineEnd, "border-inline-end", false) X(BorderInlineStart, "border-inline-start", false) \
  X(BorderInlineStyle, "border-inline-style", false) X(BorderInlineWidth, "border-inline-width", false) \
  X(BorderLeft, "border-left", false) X(BorderRight, "border-right", false) \
  X(BorderStyle, "border-style", false) X(BorderTop, "border-top", false) \
  X(BorderWidth, "border-width", false) X(Font, "font", false) X(FontVariant, "font-variant", false) \
  X(Inset, "inset", false) X(InsetBlock, "inset-block", false) X(InsetInline, "inset-inline", false) \
  X(ListStyle, "list-style", false) X(Margin, "margin", false) X(MarginBlock, "margin-block", false) \
  X(MarginInline, "margin-inline", false) X(Overflow, "overflow", false) X(Padding, "padding", false) \
  X(PaddingBlock, "padding-block", false) X(PaddingInline, "padding-inline", false) \
  X(TextDecoration, "text-decoration", false)
// clang-format on

namespace NIMBO_PUBLIC nimbo {

/// A property: "kColor", "kMarginTop" ...; first the longhands, then the shorthands.
enum class CSSProperty : std::uint8_t {
  kUnknown,
  kCustom,  ///< One whose name begins with "--".
/// The value for a name.
#define NIMBO_CSS_PROPERTY(value, name, inherited) k##value,
  NIMBO_CSS_LONGHANDS(NIMBO_CSS_PROPERTY) NIMBO_CSS_SHORTHANDS(NIMBO_CSS_PROPERTY)
#undef NIMBO_CSS_PROPERTY
};

/// How many values a property has that is no shorthand, so that tables of longhands can be indexed by it.
inline constexpr std::size_t kCSSLonghands = static_cast<std::size_t>(CSSProperty::kAll);

/// Whether the property stands for others.
constexpr bool isCSSShorthand(CSSProperty property) {
  return property >= CSSProperty::kAll;
}

/// The property of the name in any case; `kCustom` for a name of more than "--" that begins so, and `kUnknown`
/// for the others that are not listed above.
CSSProperty propertyNamed(std::u16string_view name);

/// The name; empty for `kUnknown` and `kCustom`.
std::string_view nameOfCSSProperty(CSSProperty property);

/// Whether an element has its parent's value when nothing is declared.
bool isInheritedCSSProperty(CSSProperty property);

/// The properties that a shorthand sets, in the order of its grammar; none for `kAll` and for longhands. It
/// lives as long as the process.
std::span<const CSSProperty> longhandsOfCSSProperty(CSSProperty shorthand);

/// The property of a left or right side that an inline side's stands for; any other property itself.
CSSProperty physicalCSSProperty(CSSProperty property, bool isRightToLeft);

}  // namespace nimbo
