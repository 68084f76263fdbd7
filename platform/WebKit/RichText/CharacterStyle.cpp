// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/RichText/CharacterStyle.hpp"

#include <algorithm>

#include "platform/WebKit/RichText/Points.hpp"

namespace nimbo::detail {

namespace {

/// The width that percentages are of, in pixels: that of the page.
constexpr double kPageWidth = 1280;

/// The natural height of a line, of the font's size.
constexpr double kNaturalLineHeight = 1.2;

/// The contrast to white below which text cannot be read on it.
constexpr double kLeastContrast = 2;

/// The families that stand for generic ones.
NSString familyOf(const InheritedStyle &style) {
  if (style.fontFamily) return style.fontFamily;
  switch (style.genericFamily) {
    case CSSKeyword::kMonospace:
    case CSSKeyword::kUIMonospace:
      return u"Courier New"_ns;
    case CSSKeyword::kSansSerif:
    case CSSKeyword::kSystemUI:
    case CSSKeyword::kUISansSerif:
    case CSSKeyword::kUIRounded:
      return u"Arial"_ns;
    case CSSKeyword::kCursive:
      return u"Comic Sans MS"_ns;
    case CSSKeyword::kFantasy:
      return u"Impact"_ns;
    default:
      return u"Times New Roman"_ns;
  }
}

double luminance(const CSSColor &color) {
  const auto linear = [](std::uint8_t component) {
    const double part = component / 255.0;
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

bool isLight(const CSSColor &color) {
  return (1 + 0.05) / (luminance(color) + 0.05) < kLeastContrast;
}

NSUnderlineStyle underlineStyleOf(CSSKeyword style) {
  switch (style) {
    case CSSKeyword::kNone:
      return NSUnderlineStyle::none;
    case CSSKeyword::kDouble:
      return NSUnderlineStyle::doubled;
    case CSSKeyword::kDotted:
      return NSUnderlineStyle::dotted;
    case CSSKeyword::kDashed:
      return NSUnderlineStyle::dashed;
    case CSSKeyword::kWavy:
      return NSUnderlineStyle::wavy;
    default:
      return NSUnderlineStyle::single;
  }
}

NSStrikethroughStyle strikethroughStyleOf(CSSKeyword style) {
  if (style == CSSKeyword::kNone) return NSStrikethroughStyle::none;
  return style == CSSKeyword::kDouble ? NSStrikethroughStyle::doubled : NSStrikethroughStyle::single;
}

NSTextAlignment alignmentOf(const InheritedStyle &style) {
  const bool isRightToLeft = style.direction == CSSKeyword::kRtl;
  switch (style.textAlign) {
    case CSSKeyword::kLeft:
    case CSSKeyword::kWebkitLeft:
      return isRightToLeft ? NSTextAlignment::left : NSTextAlignment::natural;
    case CSSKeyword::kRight:
    case CSSKeyword::kWebkitRight:
      return isRightToLeft ? NSTextAlignment::natural : NSTextAlignment::right;
    case CSSKeyword::kEnd:
      return isRightToLeft ? NSTextAlignment::left : NSTextAlignment::right;
    case CSSKeyword::kCenter:
    case CSSKeyword::kWebkitCenter:
      return NSTextAlignment::center;
    case CSSKeyword::kJustify:
      return NSTextAlignment::justified;
    default:
      return NSTextAlignment::natural;
  }
}

double pixelsOf(const BoxLength &length) {
  switch (length.kind) {
    case BoxLength::Kind::automatic:
      return 0;
    case BoxLength::Kind::pixels:
      return length.value;
    case BoxLength::Kind::percent:
      return length.value / 100 * kPageWidth;
  }
  return 0;
}

/// The border and padding of a side, in points.
double edgeOf(const ComputedStyle &style, BoxSide side) {
  return pointsOfPixels(style.borderWidth[side] + pixelsOf(style.padding[side]));
}

double marginOf(const ComputedStyle &style, BoxSide side) {
  return pointsOfPixels(pixelsOf(style.margin[side]));
}

bool isInLine(CSSKeyword display) {
  return display == CSSKeyword::kInline || display == CSSKeyword::kContents || display == CSSKeyword::kRuby ||
         display == CSSKeyword::kRubyBase || display == CSSKeyword::kRubyText ||
         display == CSSKeyword::kInlineBlock;
}

}  // namespace

InlineContext contextInElement(const ComputedStyle &style, const InlineContext &outer) {
  InlineContext context = outer;
  const bool hasBackground = style.backgroundColor.alpha > 0;
  if (!isInLine(style.display)) {
    if (hasBackground) {
      context.background.reset();
      context.blockBackground = colorOf(style.backgroundColor);
    }
    return context;
  }
  if (hasBackground) context.background = colorOf(style.backgroundColor);
  const CSSValue &align = style.verticalAlign;
  if (align.is(CSSKeyword::kSub)) --context.superscript;
  if (align.is(CSSKeyword::kSuper)) ++context.superscript;
  if (align.kind() == CSSValueKind::kLength) context.baselineOffset += pointsOfPixels(align.number());
  return context;
}

TextAttributes attributesOfText(const ComputedStyle &style, const InlineContext &context) {
  const InheritedStyle &inherited = style.inherited;
  TextAttributes attributes;
  attributes.font.familyName = familyOf(inherited);
  attributes.font.pointSize = pointsOfPixels(inherited.fontSize);
  attributes.font.weight = inherited.fontWeight;
  attributes.font.isItalic = inherited.isItalic;
  attributes.font.isSmallCaps = inherited.isSmallCaps;
  // Black is the colour of text that nobody has given one.
  if (inherited.color != CSSColor()) attributes.foregroundColor = colorOf(inherited.color);
  attributes.backgroundColor = context.background;
  if (!context.background && context.blockBackground && isLight(inherited.color))
    attributes.backgroundColor = context.blockBackground;
  attributes.underlineStyle = underlineStyleOf(style.underline.style);
  if (style.underline.style != CSSKeyword::kNone && style.underline.color != inherited.color)
    attributes.underlineColor = colorOf(style.underline.color);
  attributes.strikethroughStyle = strikethroughStyleOf(style.lineThrough.style);
  attributes.superscript = context.superscript;
  attributes.baselineOffset = context.baselineOffset;
  attributes.kern = pointsOfPixels(inherited.letterSpacing);
  attributes.link = context.link;
  return attributes;
}

BlockStyle blockStyleOf(const ComputedStyle &style) {
  const InheritedStyle &inherited = style.inherited;
  BlockStyle block;
  block.alignment = alignmentOf(inherited);
  block.isRightToLeft = inherited.direction == CSSKeyword::kRtl;
  block.leftInset = marginOf(style, kLeftSide) + edgeOf(style, kLeftSide);
  block.rightInset = marginOf(style, kRightSide) + edgeOf(style, kRightSide);
  block.textIndent = pointsOfPixels(inherited.textIndent);
  if (inherited.lineHeightMultiple)
    block.lineHeightMultiple = std::round(*inherited.lineHeightMultiple / kNaturalLineHeight * 100) / 100;
  else if (inherited.lineHeight)
    block.minimumLineHeight = std::max(0.0, pointsOfPixels(*inherited.lineHeight));
  block.marginTop = marginOf(style, kTopSide);
  block.marginBottom = marginOf(style, kBottomSide);
  block.edgeTop = edgeOf(style, kTopSide);
  block.edgeBottom = edgeOf(style, kBottomSide);
  return block;
}

}  // namespace nimbo::detail
