// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSPropertyReader.hpp"

#include <algorithm>
#include <array>
#include <string>

#include "platform/CSS/CSSNameLookup.hpp"

namespace nimbo::detail {

namespace {

using K = CSSKeyword;
using enum CSSProperty;
using Keywords = std::span<const CSSKeyword>;

constexpr double kLightestWeight = 1, kHeaviestWeight = 1000;
constexpr double kNormalWeight = 400, kBoldWeight = 700;

constexpr CSSNumericRange kQuirkyLength{.takesLengths = true, .mayLackUnit = true};
constexpr CSSNumericRange kPositiveQuirkyLength{
    .takesLengths = true, .isNonNegative = true, .mayLackUnit = true};
constexpr CSSNumericRange kQuirkyLengthPercentage{
    .takesLengths = true, .takesPercentages = true, .mayLackUnit = true};
constexpr CSSNumericRange kPositiveQuirkyLengthPercentage{
    .takesLengths = true, .takesPercentages = true, .isNonNegative = true, .mayLackUnit = true};
constexpr CSSNumericRange kLengthPercentage{.takesLengths = true, .takesPercentages = true};

/// The keywords of properties that have nothing else, and of those that have more.
Keywords keywordsOf(CSSProperty property) {
  static constexpr CSSKeyword kBorderStyleKeywords[] = {K::kNone,  K::kHidden, K::kDotted, K::kDashed,
                                                        K::kSolid, K::kDouble, K::kGroove, K::kRidge,
                                                        K::kInset, K::kOutset};
  static constexpr CSSKeyword kAutoAlone[] = {K::kAuto};
  static constexpr CSSKeyword kNoneAlone[] = {K::kNone};
  static constexpr CSSKeyword kNormalAlone[] = {K::kNormal};
  static constexpr CSSKeyword kSizeKeywords[] = {K::kAuto, K::kMinContent, K::kMaxContent, K::kFitContent,
                                                 K::kStretch};
  static constexpr CSSKeyword kMaximumSizeKeywords[] = {K::kNone, K::kMinContent, K::kMaxContent,
                                                        K::kFitContent, K::kStretch};
  static constexpr CSSKeyword kCollapses[] = {K::kSeparate, K::kCollapse};
  static constexpr CSSKeyword kBoxes[] = {K::kContentBox, K::kBorderBox};
  static constexpr CSSKeyword kCaptionSides[] = {K::kTop, K::kBottom};
  static constexpr CSSKeyword kClears[] = {K::kNone, K::kLeft,        K::kRight,
                                           K::kBoth, K::kInlineStart, K::kInlineEnd};
  static constexpr CSSKeyword kVisibilities[] = {K::kVisible, K::kAuto, K::kHidden};
  static constexpr CSSKeyword kDirections[] = {K::kLtr, K::kRtl};
  static constexpr CSSKeyword kEmptyCellsKeywords[] = {K::kShow, K::kHide};
  static constexpr CSSKeyword kFloats[] = {K::kNone, K::kLeft, K::kRight, K::kInlineStart, K::kInlineEnd};
  static constexpr CSSKeyword kFontSizes[] = {K::kXXSmall, K::kXSmall, K::kSmall,   K::kMedium,
                                              K::kLarge,   K::kXLarge, K::kXXLarge, K::kXXXLarge,
                                              K::kSmaller, K::kLarger, K::kMath};
  static constexpr CSSKeyword kCaps[] = {K::kNormal,        K::kSmallCaps, K::kAllSmallCaps, K::kPetiteCaps,
                                         K::kAllPetiteCaps, K::kUnicase,   K::kTitlingCaps};
  static constexpr CSSKeyword kPositions[] = {K::kNormal, K::kSub, K::kSuper};
  static constexpr CSSKeyword kMarkerPositions[] = {K::kInside, K::kOutside};
  static constexpr CSSKeyword kOverflowKeywords[] = {K::kVisible, K::kHidden, K::kClip, K::kScroll, K::kAuto};
  static constexpr CSSKeyword kPlacements[] = {K::kStatic, K::kRelative, K::kAbsolute, K::kFixed, K::kSticky};
  static constexpr CSSKeyword kTableLayouts[] = {K::kAuto, K::kFixed};
  static constexpr CSSKeyword kTextAligns[] = {
      K::kStart,   K::kEnd,         K::kLeft,       K::kRight,       K::kCenter,
      K::kJustify, K::kMatchParent, K::kWebkitLeft, K::kWebkitRight, K::kWebkitCenter};
  static constexpr CSSKeyword kLastAligns[] = {K::kAuto,  K::kStart,  K::kEnd,     K::kLeft,
                                               K::kRight, K::kCenter, K::kJustify, K::kMatchParent};
  static constexpr CSSKeyword kDecorationStyles[] = {K::kSolid, K::kDouble, K::kDotted, K::kDashed, K::kWavy};
  static constexpr CSSKeyword kThicknesses[] = {K::kAuto, K::kFromFont};
  static constexpr CSSKeyword kTextOverflows[] = {K::kClip, K::kEllipsis};
  static constexpr CSSKeyword kBidis[] = {K::kNormal,       K::kEmbed,           K::kIsolate,
                                          K::kBidiOverride, K::kIsolateOverride, K::kPlaintext};
  static constexpr CSSKeyword kVerticalAligns[] = {K::kBaseline, K::kSub,    K::kSuper,  K::kTop,
                                                   K::kTextTop,  K::kMiddle, K::kBottom, K::kTextBottom};
  static constexpr CSSKeyword kVisibilityKeywords[] = {K::kVisible, K::kHidden, K::kCollapse};
  static constexpr CSSKeyword kWhiteSpaces[] = {K::kNormal,  K::kPre,     K::kNowrap,
                                                K::kPreWrap, K::kPreLine, K::kBreakSpaces};
  switch (property) {
    case kBorderTopStyle:
    case kBorderRightStyle:
    case kBorderBottomStyle:
    case kBorderLeftStyle:
    case kBorderInlineStartStyle:
    case kBorderInlineEndStyle:
      return kBorderStyleKeywords;
    case kBorderCollapse:
      return kCollapses;
    case kBoxSizing:
      return kBoxes;
    case kCaptionSide:
      return kCaptionSides;
    case kClear:
      return kClears;
    case kContentVisibility:
      return kVisibilities;
    case kDirection:
      return kDirections;
    case kEmptyCells:
      return kEmptyCellsKeywords;
    case kFloat:
      return kFloats;
    case kFontSize:
      return kFontSizes;
    case kFontVariantCaps:
      return kCaps;
    case kFontVariantPosition:
      return kPositions;
    case kLetterSpacing:
    case kLineHeight:
    case kWordSpacing:
      return kNormalAlone;
    case kListStyleImage:
      return kNoneAlone;
    case kListStylePosition:
      return kMarkerPositions;
    case kOverflowX:
    case kOverflowY:
      return kOverflowKeywords;
    case kPosition:
      return kPlacements;
    case kTableLayout:
      return kTableLayouts;
    case kTextAlign:
      return kTextAligns;
    case kTextAlignLast:
      return kLastAligns;
    case kTextDecorationStyle:
      return kDecorationStyles;
    case kTextDecorationThickness:
      return kThicknesses;
    case kTextOverflow:
      return kTextOverflows;
    case kUnicodeBidi:
      return kBidis;
    case kVerticalAlign:
      return kVerticalAligns;
    case kVisibility:
      return kVisibilityKeywords;
    case kWhiteSpace:
      return kWhiteSpaces;
    case kTop:
    case kRight:
    case kBottom:
    case kLeft:
    case kInsetInlineStart:
    case kInsetInlineEnd:
    case kMarginTop:
    case kMarginRight:
    case kMarginBottom:
    case kMarginLeft:
    case kMarginInlineStart:
    case kMarginInlineEnd:
      return kAutoAlone;
    case kWidth:
    case kHeight:
    case kMinWidth:
    case kMinHeight:
      return kSizeKeywords;
    case kMaxWidth:
    case kMaxHeight:
      return kMaximumSizeKeywords;
    default:
      return {};
  }
}

CSSValue listOf(CSSValueReader &reader, const std::vector<CSSValue> &values) {
  return CSSValue::list(reader.arena().copy(std::span<const CSSValue>(values)));
}

CSSValue borderWidth(CSSValueReader &reader) {
  constexpr double kThinPixels = 1, kMediumPixels = 3, kThickPixels = 5;
  static constexpr CSSKeyword kWidths[] = {K::kThin, K::kMedium, K::kThick};
  if (const CSSValue width = reader.keyword(kWidths)) {
    const double pixels = width.is(K::kThin)     ? kThinPixels
                          : width.is(K::kMedium) ? kMediumPixels
                                                 : kThickPixels;
    return CSSValue::number(pixels, CSSUnit::kPixels);
  }
  return reader.numeric(kPositiveQuirkyLength);
}

/// The outer kind of box of a table, flexible box and so on that stands in a line.
CSSKeyword inlineDisplay(CSSKeyword inside) {
  switch (inside) {
    case K::kFlowRoot:
      return K::kInlineBlock;
    case K::kTable:
      return K::kInlineTable;
    case K::kFlex:
      return K::kInlineFlex;
    case K::kGrid:
      return K::kInlineGrid;
    case K::kFlow:
      return K::kInline;
    default:
      return inside;
  }
}

CSSValue display(CSSValueReader &reader) {
  static constexpr CSSKeyword kSingle[] = {
      K::kNone,       K::kContents,          K::kInlineBlock,      K::kInlineTable,      K::kInlineFlex,
      K::kInlineGrid, K::kTableRowGroup,     K::kTableHeaderGroup, K::kTableFooterGroup, K::kTableRow,
      K::kTableCell,  K::kTableColumnGroup,  K::kTableColumn,      K::kTableCaption,     K::kRubyBase,
      K::kRubyText,   K::kRubyBaseContainer, K::kRubyTextContainer};
  static constexpr CSSKeyword kOutsides[] = {K::kBlock, K::kInline, K::kRunIn};
  static constexpr CSSKeyword kInsides[] = {K::kFlow, K::kFlowRoot, K::kTable, K::kFlex,
                                            K::kGrid, K::kRuby,     K::kMath};
  if (const CSSValue single = reader.keyword(kSingle)) return single;
  CSSValue outside, inside;
  bool isListItem = false;
  for (;;) {
    CSSValue found;
    if (!outside && (found = reader.keyword(kOutsides))) {
      outside = found;
    } else if (!inside && (found = reader.keyword(kInsides))) {
      inside = found;
    } else if (isListItem || !reader.takeKeyword(K::kListItem)) {
      break;
    } else {
      isListItem = true;
    }
  }
  if (isListItem)
    return !inside || inside.is(K::kFlow) || inside.is(K::kFlowRoot) ? CSSValue(K::kListItem) : CSSValue();
  if (!outside && !inside) return {};
  if (outside.is(K::kInline)) return inside ? inlineDisplay(inside.keyword()) : K::kInline;
  if (!outside) return inside.is(K::kFlow) ? K::kBlock : inside.keyword();
  return !inside || inside.is(K::kFlow) ? outside : inside;
}

CSSValue clip(CSSValueReader &reader) {
  if (reader.takeKeyword(K::kAuto)) return K::kAuto;
  std::optional<CSSValueReader> arguments = reader.function("rect");
  if (!arguments) return {};
  std::vector<CSSValue> sides;
  for (; sides.size() < 4; arguments->take(CSSTokenType::kComma)) {
    const CSSValue side =
        arguments->takeKeyword(K::kAuto) ? CSSValue(K::kAuto) : arguments->numeric(kQuirkyLength);
    if (!side) return {};
    sides.push_back(side);
  }
  return arguments->isAtEnd() ? CSSValue::function(K::kRect, listOf(reader, sides).values()) : CSSValue();
}

/// Shapes other than "inset()" are known as shapes alone.
CSSValue clipPath(CSSValueReader &reader) {
  if (reader.takeKeyword(K::kNone)) return K::kNone;
  if (const CSSValue address = reader.url()) return address;
  std::u16string_view name;
  std::optional<CSSValueReader> arguments = reader.anyFunction(name);
  if (!arguments) return {};
  if (equalsOneOfASCIINoCase(name, {"polygon", "circle", "ellipse", "path"}))
    return CSSValue::function(equalsASCIINoCase(name, "path") ? K::kPath : K::kPolygon, {});
  if (!equalsASCIINoCase(name, "inset")) return {};
  std::vector<CSSValue> sides;
  while (sides.size() < 4) {
    const CSSValue side = arguments->numeric(kLengthPercentage);
    if (!side) break;
    sides.push_back(side);
  }
  return sides.empty() ? CSSValue() : CSSValue::function(K::kInset, listOf(reader, sides).values());
}

CSSValue listStyle(CSSValueReader &reader) {
  if (const CSSValue string = reader.string()) return string;
  const CSSKeyword known = reader.peekKeyword();
  const CSSValue name = reader.identifier();
  const bool isStyle = known == K::kNone || (known >= K::kDisc && known <= K::kDisclosureClosed);
  return name && isStyle ? CSSValue(known) : name;
}

CSSValue counterFunction(CSSValueReader &reader) {
  std::u16string_view name;
  std::optional<CSSValueReader> arguments = reader.anyFunction(name);
  if (!arguments) return {};
  const CSSKeyword function = keywordNamed(name);
  if (function != K::kAttr && function != K::kCounter && function != K::kCounters) return {};
  std::vector<CSSValue> values{arguments->identifier()};
  if (!values[0]) return {};
  if (function == K::kAttr) {
    // A type and a fallback mean nothing to a string.
    return CSSValue::function(function, listOf(reader, values).values());
  }
  if (function == K::kCounters) {
    if (!arguments->take(CSSTokenType::kComma)) return {};
    values.push_back(arguments->string());
    if (!values.back()) return {};
  }
  values.push_back(arguments->take(CSSTokenType::kComma) ? listStyle(*arguments) : CSSValue(K::kDecimal));
  if (!values.back() || !arguments->isAtEnd()) return {};
  return CSSValue::function(function, listOf(reader, values).values());
}

CSSValue contentPart(CSSValueReader &reader) {
  static constexpr CSSKeyword kQuoteKeywords[] = {K::kOpenQuote, K::kCloseQuote, K::kNoOpenQuote,
                                                  K::kNoCloseQuote};
  switch (reader.peek().type) {
    case CSSTokenType::kString:
      return reader.string();
    case CSSTokenType::kIdent:
      return reader.keyword(kQuoteKeywords);
    case CSSTokenType::kURL:
      return reader.url();
    case CSSTokenType::kFunction:
      if (const CSSValue address = reader.url()) return address;
      if (const std::size_t start = reader.position(); const CSSValue image = readBackgroundImage(reader)) {
        return image;
      } else {
        reader.setPosition(start);
      }
      return counterFunction(reader);
    default:
      return {};
  }
}

CSSValue content(CSSValueReader &reader) {
  static constexpr CSSKeyword kWhole[] = {K::kNone, K::kNormal};
  if (const CSSValue whole = reader.keyword(kWhole)) return whole;
  std::vector<CSSValue> parts;
  while (!reader.isAtEnd()) {
    if (!parts.empty() && reader.takeDelimiter(u'/')) {
      // What is read aloud in place of the content.
      while (!reader.isAtEnd()) {
        if (!contentPart(reader)) return {};
      }
      break;
    }
    const CSSValue part = contentPart(reader);
    if (!part) return {};
    parts.push_back(part);
  }
  return parts.empty() ? CSSValue() : listOf(reader, parts);
}

CSSValue quotes(CSSValueReader &reader) {
  static constexpr CSSKeyword kWhole[] = {K::kNone, K::kAuto};
  if (const CSSValue whole = reader.keyword(kWhole)) return whole;
  std::vector<CSSValue> strings;
  while (const CSSValue string = reader.string()) strings.push_back(string);
  return strings.empty() || strings.size() % 2 != 0 ? CSSValue() : listOf(reader, strings);
}

CSSValue counters(CSSValueReader &reader, double usual) {
  if (reader.takeKeyword(K::kNone)) return K::kNone;
  std::vector<CSSValue> pairs;
  while (!reader.isAtEnd()) {
    if (reader.peekKeyword() == K::kNone) return {};
    const CSSValue name = reader.identifier();
    if (!name) return {};
    pairs.push_back(name);
    const CSSValue number = reader.integer();
    pairs.push_back(number ? number : CSSValue::number(usual));
  }
  return pairs.empty() ? CSSValue() : listOf(reader, pairs);
}

CSSValue decorationLine(CSSValueReader &reader) {
  static constexpr CSSKeyword kLines[] = {K::kUnderline, K::kOverline, K::kLineThrough, K::kBlink};
  static constexpr CSSKeyword kWhole[] = {K::kNone, K::kSpellingError, K::kGrammarError};
  if (const CSSValue whole = reader.keyword(kWhole))
    return whole.is(K::kNone) ? whole : listOf(reader, {whole});
  std::vector<CSSValue> lines;
  while (const CSSValue line = reader.keyword(kLines)) {
    const bool isTwice = std::ranges::any_of(lines, [&](const CSSValue &l) { return l.is(line.keyword()); });
    if (isTwice) return {};
    lines.push_back(line);
  }
  return lines.empty() ? CSSValue() : listOf(reader, lines);
}

CSSValue fontWeight(CSSValueReader &reader) {
  static constexpr CSSKeyword kRelativeWeights[] = {K::kBolder, K::kLighter};
  if (const CSSValue relative = reader.keyword(kRelativeWeights)) return relative;
  if (reader.takeKeyword(K::kNormal)) return CSSValue::number(kNormalWeight);
  if (reader.takeKeyword(K::kBold)) return CSSValue::number(kBoldWeight);
  const std::size_t start = reader.position();
  const CSSValue weight = reader.number();
  if (weight.kind() != CSSValueKind::kNumber) return {};
  if (weight.number() >= kLightestWeight && weight.number() <= kHeaviestWeight) return weight;
  reader.setPosition(start);
  return {};
}

CSSValue fontStyle(CSSValueReader &reader) {
  static constexpr CSSKeyword kStyles[] = {K::kNormal, K::kItalic, K::kOblique};
  const CSSValue style = reader.keyword(kStyles);
  if (!style.is(K::kOblique) || reader.peek().type != CSSTokenType::kDimension) return style;
  return reader.angle() == 0 ? CSSValue(K::kNormal) : style;
}

CSSValue fontStretch(CSSValueReader &reader) {
  struct Stretch {
    CSSKeyword keyword;
    double percent;
  };
  static constexpr Stretch kStretches[] = {
      {K::kUltraCondensed, 50},  {K::kExtraCondensed, 62.5}, {K::kCondensed, 75},
      {K::kSemiCondensed, 87.5}, {K::kNormal, 100},          {K::kSemiExpanded, 112.5},
      {K::kExpanded, 125},       {K::kExtraExpanded, 150},   {K::kUltraExpanded, 200}};
  const CSSKeyword keyword = reader.peekKeyword();
  for (const Stretch &stretch : kStretches) {
    if (stretch.keyword != keyword) continue;
    reader.advance();
    return CSSValue::number(stretch.percent, CSSUnit::kPercent);
  }
  return reader.numeric({.takesPercentages = true, .isNonNegative = true});
}

CSSValue opacity(CSSValueReader &reader) {
  const CSSValue value = reader.numeric({.takesNumbers = true, .takesPercentages = true});
  CSSLengthContext context;
  context.percentageBase = 1;
  const std::optional<double> number = resolvedNumber(value, context);
  return number ? CSSValue::number(std::clamp(*number, 0.0, 1.0)) : CSSValue();
}

CSSValue textTransform(CSSValueReader &reader) {
  static constexpr CSSKeyword kCases[] = {K::kNone, K::kCapitalize, K::kUppercase, K::kLowercase, K::kMathAuto};
  static constexpr CSSKeyword kForms[] = {K::kFullWidth, K::kFullSizeKana};
  bool hasForm = false;
  while (reader.keyword(kForms)) hasForm = true;
  const CSSValue transform = reader.keyword(kCases);
  while (reader.keyword(kForms)) hasForm = true;
  if (!hasForm) return transform;
  if (transform.is(K::kNone)) return {};
  return transform ? transform : CSSValue(K::kNone);
}

CSSValue textIndent(CSSValueReader &reader) {
  static constexpr CSSKeyword kKinds[] = {K::kHanging, K::kEachLine};
  while (reader.keyword(kKinds)) continue;
  const CSSValue indent = reader.numeric(kQuirkyLengthPercentage);
  while (reader.keyword(kKinds)) continue;
  return indent;
}

CSSValue borderSpacing(CSSValueReader &reader) {
  const CSSValue horizontal = reader.numeric(kPositiveQuirkyLength);
  if (!horizontal) return {};
  const CSSValue vertical = reader.numeric(kPositiveQuirkyLength);
  return listOf(reader, {horizontal, vertical ? vertical : horizontal});
}

/// Of several layers the first with a picture.
CSSValue backgroundImages(CSSValueReader &reader) {
  CSSValue found = K::kNone;
  do {
    const CSSValue image = reader.takeKeyword(K::kNone) ? CSSValue(K::kNone) : readBackgroundImage(reader);
    if (!image) return {};
    if (found.is(K::kNone)) found = image;
  } while (reader.take(CSSTokenType::kComma));
  return found;
}

CSSValue sizeFunction(CSSValueReader &reader) {
  std::optional<CSSValueReader> arguments = reader.function("fit-content");
  if (!arguments) return {};
  return arguments->numeric(kLengthPercentage) && arguments->isAtEnd() ? CSSValue(K::kFitContent) : CSSValue();
}

CSSValue readOther(CSSProperty property, CSSValueReader &reader) {
  switch (property) {
    case kBackgroundColor:
    case kColor:
    case kBorderTopColor:
    case kBorderRightColor:
    case kBorderBottomColor:
    case kBorderLeftColor:
      return reader.color(true);
    case kBorderInlineStartColor:
    case kBorderInlineEndColor:
    case kTextDecorationColor:
      return reader.color(false);
    case kBorderTopWidth:
    case kBorderRightWidth:
    case kBorderBottomWidth:
    case kBorderLeftWidth:
    case kBorderInlineStartWidth:
    case kBorderInlineEndWidth:
      return borderWidth(reader);
    case kBackgroundImage:
      return backgroundImages(reader);
    case kListStyleImage:
      return readBackgroundImage(reader);
    case kBorderSpacing:
      return borderSpacing(reader);
    case kClip:
      return clip(reader);
    case kClipPath:
      return clipPath(reader);
    case kContent:
      return content(reader);
    case kCounterReset:
    case kCounterSet:
      return counters(reader, 0);
    case kCounterIncrement:
      return counters(reader, 1);
    case kDisplay:
      return display(reader);
    case kFontFamily:
      return readFontFamily(reader);
    case kFontSize:
      return reader.numeric(kPositiveQuirkyLengthPercentage);
    case kFontStretch:
      return fontStretch(reader);
    case kFontStyle:
      return fontStyle(reader);
    case kFontWeight:
      return fontWeight(reader);
    case kLetterSpacing:
    case kWordSpacing:
      return reader.numeric(kQuirkyLengthPercentage);
    case kLineHeight:
      return reader.numeric(
          {.takesNumbers = true, .takesLengths = true, .takesPercentages = true, .isNonNegative = true});
    case kListStyleType:
      return listStyle(reader);
    case kOpacity:
      return opacity(reader);
    case kQuotes:
      return quotes(reader);
    case kTabSize:
      return reader.numeric({.takesNumbers = true, .takesLengths = true, .isNonNegative = true});
    case kTextDecorationLine:
      return decorationLine(reader);
    case kTextDecorationThickness:
      return reader.numeric(kLengthPercentage);
    case kTextIndent:
      return textIndent(reader);
    case kTextOverflow:
      return reader.string();
    case kTextTransform:
      return textTransform(reader);
    case kTop:
    case kRight:
    case kBottom:
    case kLeft:
    case kInsetInlineStart:
    case kInsetInlineEnd:
    case kMarginTop:
    case kMarginRight:
    case kMarginBottom:
    case kMarginLeft:
    case kMarginInlineStart:
    case kMarginInlineEnd:
    case kVerticalAlign:
      return reader.numeric(kQuirkyLengthPercentage);
    case kWidth:
    case kHeight:
    case kMinWidth:
    case kMinHeight:
    case kMaxWidth:
    case kMaxHeight:
      if (const CSSValue size = reader.numeric(kPositiveQuirkyLengthPercentage)) return size;
      return sizeFunction(reader);
    case kPaddingTop:
    case kPaddingRight:
    case kPaddingBottom:
    case kPaddingLeft:
    case kPaddingInlineStart:
    case kPaddingInlineEnd:
      return reader.numeric(kPositiveQuirkyLengthPercentage);
    default:
      return {};
  }
}

}  // namespace

CSSValue readFontFamily(CSSValueReader &reader) {
  std::vector<CSSValue> families;
  do {
    if (const CSSValue name = reader.string()) {
      families.push_back(name);
      continue;
    }
    const CSSKeyword generic = reader.peekKeyword();
    const CSSValue first = reader.identifier();
    if (!first) return {};
    if (reader.peek().type != CSSTokenType::kIdent) {
      const bool isGeneric = (generic >= K::kSerif && generic <= K::kFangsong) || generic == K::kMath;
      families.push_back(isGeneric ? CSSValue(generic) : CSSValue::text(CSSValueKind::kString, first.text()));
      continue;
    }
    // A name without quotes has one space between its words.
    std::u16string name(first.text());
    while (reader.peek().type == CSSTokenType::kIdent) {
      name += u' ';
      name += reader.text(reader.peek());
      reader.advance();
    }
    families.push_back(CSSValue::text(CSSValueKind::kString, reader.arena().copy(std::u16string_view(name))));
  } while (reader.take(CSSTokenType::kComma));
  return listOf(reader, families);
}

CSSValue readBackgroundImage(CSSValueReader &reader) {
  if (const CSSValue address = reader.url()) return address;
  std::u16string_view name;
  const std::size_t start = reader.position();
  std::optional<CSSValueReader> arguments = reader.anyFunction(name);
  if (!arguments) return {};
  if (endsWithASCIINoCase(name, "-gradient")) return K::kGradient;
  if (equalsOneOfASCIINoCase(name, {"image-set", "-webkit-image-set", "cross-fade", "-webkit-cross-fade"})) {
    // The first picture stands for all of them.
    while (!arguments->isAtEnd()) {
      if (const CSSValue image = readBackgroundImage(*arguments)) return image;
      if (const CSSValue string = arguments->string()) return CSSValue::text(CSSValueKind::kURL, string.text());
      if (!arguments->block()) arguments->advance();
    }
  }
  reader.setPosition(start);
  return {};
}

CSSValue readLonghand(CSSProperty property, CSSValueReader &reader) {
  if (const Keywords keywords = keywordsOf(property); !keywords.empty()) {
    if (const CSSValue keyword = reader.keyword(keywords)) return keyword;
  }
  return readOther(property, reader);
}

bool readPropertyValue(CSSProperty property, const CSSPropertyReading &reading) {
  CSSValueReader &reader = reading.reader;
  if (const CSSKeyword wide = reader.peekKeyword(); isCSSWideKeyword(wide)) {
    const std::size_t start = reader.position();
    reader.advance();
    if (reader.isAtEnd()) {
      if (property == kAll || !isCSSShorthand(property)) reading.declare(property, wide);
      for (const CSSProperty longhand : longhandsOfCSSProperty(property)) reading.declare(longhand, wide);
      return true;
    }
    reader.setPosition(start);
  }
  if (isCSSShorthand(property)) return readShorthand(property, reading) && reader.isAtEnd();
  const CSSValue value = readLonghand(property, reader);
  if (!value || !reader.isAtEnd()) return false;
  reading.declare(property, value);
  return true;
}

}  // namespace nimbo::detail
