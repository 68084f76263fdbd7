// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/StyleBuilder.hpp"

#include <algorithm>

#include "platform/WebKit/Style/BoxDisplay.hpp"
#include "platform/WebKit/Style/FontProperties.hpp"

namespace nimbo::detail {

namespace {

constexpr double kMediumBorder = 3;
/// No length of a page is greater; more is no layout but a trick.
constexpr double kMaximumLength = 1'000'000;

/// What margins and paddings are unless declared.
constexpr BoxLength noLength() {
  return {BoxLength::Kind::pixels, 0};
}

/// Makes one style.
class StyleBuilder {
 public:
  StyleBuilder(Cascade &cascade, const ComputedStyle &parent, StyledElement element, StyleContext &context)
      : cascade_(cascade), parent_(parent), element_(element), context_(context) {}

  ComputedStyle make();

 private:
  void apply(CSSProperty property, const CSSValue &value);
  void applyInherited(CSSProperty property, const CSSValue &value);
  void applyCounting(CSSProperty property, const CSSValue &value);
  void applyDirection();
  void applyColor();
  void applyTextAlign(const CSSValue &value);
  void applyVerticalAlign(const CSSValue &value);
  void applyDecorations(bool isDeclaredFloat);
  void finishBorders();

  CSSColor color(const CSSValue &value, CSSColor otherwise) const;
  double length(const CSSValue &value, double otherwise) const;
  BoxLength boxLength(const CSSValue &value) const;
  bool isFromParent(const CSSValue &value) const { return value.is(CSSKeyword::kInherit); }

  Cascade &cascade_;
  const ComputedStyle &parent_;
  StyledElement element_;
  StyleContext &context_;
  ComputedStyle style_;
  std::array<CSSKeyword, kBoxSides> borderStyles_ = {CSSKeyword::kNone, CSSKeyword::kNone, CSSKeyword::kNone,
                                                     CSSKeyword::kNone};
  /// Nothing for that of the text.
  std::array<std::optional<CSSColor>, kBoxSides> borderColors_;
};

CSSColor StyleBuilder::color(const CSSValue &value, CSSColor otherwise) const {
  if (value.kind() == CSSValueKind::kColor) return value.color();
  return value.is(CSSKeyword::kCurrentcolor) ? style_.inherited.color : otherwise;
}

double StyleBuilder::length(const CSSValue &value, double otherwise) const {
  const std::optional<double> pixels = resolvedNumber(value, context_.lengths(style_.inherited));
  return pixels ? std::clamp(*pixels, -kMaximumLength, kMaximumLength) : otherwise;
}

BoxLength StyleBuilder::boxLength(const CSSValue &value) const {
  const bool isPercent = value.unit() == CSSUnit::kPercent;
  const std::optional<double> number = resolvedNumber(
      value, context_.lengths(style_.inherited, isPercent ? std::optional(100.0) : std::nullopt));
  if (!number) return {};
  return {isPercent ? BoxLength::Kind::percent : BoxLength::Kind::pixels,
          std::clamp(*number, -kMaximumLength, kMaximumLength)};
}

void StyleBuilder::applyDirection() {
  const CSSValue value = cascade_.value(CSSProperty::kDirection);
  if (value.is(CSSKeyword::kLtr) || value.is(CSSKeyword::kInitial))
    style_.inherited.direction = CSSKeyword::kLtr;
  if (value.is(CSSKeyword::kRtl)) style_.inherited.direction = CSSKeyword::kRtl;
  cascade_.setRightToLeft(style_.inherited.direction == CSSKeyword::kRtl);
}

void StyleBuilder::applyColor() {
  const CSSValue value = cascade_.value(CSSProperty::kColor);
  if (value.is(CSSKeyword::kInitial))
    style_.inherited.color = {};
  else if (!value && element_ == StyledElement::kHTMLTable && context_.isQuirks)
    style_.inherited.color = context_.bodyColor;
  else
    style_.inherited.color = color(value, style_.inherited.color);
}

void StyleBuilder::applyTextAlign(const CSSValue &value) {
  CSSKeyword &align = style_.inherited.textAlign;
  if (!value) {
    if (element_ == StyledElement::kHTMLHeaderCell && align == CSSKeyword::kStart) align = CSSKeyword::kCenter;
    return;
  }
  if (value.is(CSSKeyword::kInitial)) align = CSSKeyword::kStart;
  if (value.is(CSSKeyword::kMatchParent)) {
    const bool isRightToLeft = parent_.inherited.direction == CSSKeyword::kRtl;
    if (align == CSSKeyword::kStart) align = isRightToLeft ? CSSKeyword::kRight : CSSKeyword::kLeft;
    if (align == CSSKeyword::kEnd) align = isRightToLeft ? CSSKeyword::kLeft : CSSKeyword::kRight;
  } else if (value.keyword() != CSSKeyword::kUnknown && !isCSSWideKeyword(value.keyword())) {
    align = value.keyword();
  }
}

void StyleBuilder::applyVerticalAlign(const CSSValue &value) {
  if (isFromParent(value)) {
    style_.verticalAlign = parent_.verticalAlign;
  } else if (value.kind() != CSSValueKind::kKeyword) {
    const InheritedStyle &own = style_.inherited;
    const double line = own.lineHeight.value_or(ownLineHeight(own.fontSize));
    if (const std::optional<double> pixels = resolvedNumber(value, context_.lengths(own, line)))
      style_.verticalAlign = CSSValue::number(*pixels, CSSUnit::kPixels);
  } else if (!value.is(CSSKeyword::kInitial)) {
    style_.verticalAlign = value;
  }
}

/// The properties that elements inherit and that nothing else depends on.
void StyleBuilder::applyInherited(CSSProperty property, const CSSValue &value) {
  if (isFromParent(value)) return;
  static const InheritedStyle kInitialStyle;
  const bool isInitial = value.is(CSSKeyword::kInitial);
  const auto setKeyword = [&](CSSKeyword InheritedStyle::*member) {
    if (isInitial)
      style_.inherited.*member = kInitialStyle.*member;
    else if (value.keyword() != CSSKeyword::kUnknown)
      style_.inherited.*member = value.keyword();
  };
  switch (property) {
    case CSSProperty::kVisibility:
      return setKeyword(&InheritedStyle::visibility);
    case CSSProperty::kTextTransform:
      return setKeyword(&InheritedStyle::textTransform);
    case CSSProperty::kWhiteSpace:
      return setKeyword(&InheritedStyle::whiteSpace);
    case CSSProperty::kListStylePosition:
      return setKeyword(&InheritedStyle::listStylePosition);
    case CSSProperty::kBorderCollapse:
      return setKeyword(&InheritedStyle::borderCollapse);
    case CSSProperty::kCaptionSide:
      return setKeyword(&InheritedStyle::captionSide);
    case CSSProperty::kListStyleType:
      style_.inherited.listStyleType = isInitial ? kInitialStyle.listStyleType : value;
      return;
    case CSSProperty::kLetterSpacing:
      style_.inherited.letterSpacing = length(value, 0);
      return;
    case CSSProperty::kTextIndent:
      style_.inherited.textIndent = length(value, 0);
      return;
    case CSSProperty::kQuotes:
      style_.inherited.quotes = isInitial || value.is(CSSKeyword::kAuto) ? CSSValue() : value;
      return;
    default:
      return;
  }
}

void StyleBuilder::applyCounting(CSSProperty property, const CSSValue &value) {
  CSSValue ComputedStyle::*const member =
      property == CSSProperty::kContent            ? &ComputedStyle::content
      : property == CSSProperty::kCounterReset     ? &ComputedStyle::counterReset
      : property == CSSProperty::kCounterIncrement ? &ComputedStyle::counterIncrement
                                                   : &ComputedStyle::counterSet;
  if (isFromParent(value))
    style_.*member = parent_.*member;
  else if (value.kind() != CSSValueKind::kKeyword)
    style_.*member = value;
}

void StyleBuilder::apply(CSSProperty property, const CSSValue &value) {
  if (!value) return;
  if (isInheritedCSSProperty(property)) return applyInherited(property, value);
  using Sides = std::array<BoxLength, kBoxSides>;
  const auto setSide = [&](Sides ComputedStyle::*sides, BoxSide side) {
    (style_.*sides)[side] = isFromParent(value)              ? (parent_.*sides)[side]
                            : value.is(CSSKeyword::kInitial) ? noLength()
                                                             : boxLength(value);
  };
  const auto setBorderWidth = [&](BoxSide side) {
    style_.borderWidth[side] =
        isFromParent(value) ? parent_.borderWidth[side] : std::max(0.0, length(value, kMediumBorder));
  };
  const auto setBorderStyle = [&](BoxSide side) {
    if (isFromParent(value))
      borderStyles_[side] = parent_.borderWidth[side] > 0 ? CSSKeyword::kSolid : CSSKeyword::kNone;
    else if (!value.is(CSSKeyword::kInitial))
      borderStyles_[side] = value.keyword();
  };
  const auto setBorderColor = [&](BoxSide side) {
    if (isFromParent(value)) borderColors_[side] = parent_.borderColor[side];
    if (value.kind() == CSSValueKind::kColor) borderColors_[side] = value.color();
  };
  const auto setKeyword = [&](CSSKeyword ComputedStyle::*member) {
    if (isFromParent(value))
      style_.*member = parent_.*member;
    else if (!value.is(CSSKeyword::kInitial) && value.keyword() != CSSKeyword::kUnknown)
      style_.*member = value.keyword();
  };
  switch (property) {
    case CSSProperty::kDisplay:
      return setKeyword(&ComputedStyle::display);
    case CSSProperty::kFloat:
      return setKeyword(&ComputedStyle::floating);
    case CSSProperty::kPosition:
      return setKeyword(&ComputedStyle::position);
    case CSSProperty::kContentVisibility:
      style_.isUnseen = style_.isUnseen || value.is(CSSKeyword::kHidden);
      return;
    case CSSProperty::kBackgroundColor:
      style_.backgroundColor =
          isFromParent(value) ? parent_.backgroundColor : color(value, style_.backgroundColor);
      return;
    case CSSProperty::kVerticalAlign:
      return applyVerticalAlign(value);
    case CSSProperty::kMarginTop:
      return setSide(&ComputedStyle::margin, kTopSide);
    case CSSProperty::kMarginRight:
      return setSide(&ComputedStyle::margin, kRightSide);
    case CSSProperty::kMarginBottom:
      return setSide(&ComputedStyle::margin, kBottomSide);
    case CSSProperty::kMarginLeft:
      return setSide(&ComputedStyle::margin, kLeftSide);
    case CSSProperty::kPaddingTop:
      return setSide(&ComputedStyle::padding, kTopSide);
    case CSSProperty::kPaddingRight:
      return setSide(&ComputedStyle::padding, kRightSide);
    case CSSProperty::kPaddingBottom:
      return setSide(&ComputedStyle::padding, kBottomSide);
    case CSSProperty::kPaddingLeft:
      return setSide(&ComputedStyle::padding, kLeftSide);
    case CSSProperty::kBorderTopWidth:
      return setBorderWidth(kTopSide);
    case CSSProperty::kBorderRightWidth:
      return setBorderWidth(kRightSide);
    case CSSProperty::kBorderBottomWidth:
      return setBorderWidth(kBottomSide);
    case CSSProperty::kBorderLeftWidth:
      return setBorderWidth(kLeftSide);
    case CSSProperty::kBorderTopStyle:
      return setBorderStyle(kTopSide);
    case CSSProperty::kBorderRightStyle:
      return setBorderStyle(kRightSide);
    case CSSProperty::kBorderBottomStyle:
      return setBorderStyle(kBottomSide);
    case CSSProperty::kBorderLeftStyle:
      return setBorderStyle(kLeftSide);
    case CSSProperty::kBorderTopColor:
      return setBorderColor(kTopSide);
    case CSSProperty::kBorderRightColor:
      return setBorderColor(kRightSide);
    case CSSProperty::kBorderBottomColor:
      return setBorderColor(kBottomSide);
    case CSSProperty::kBorderLeftColor:
      return setBorderColor(kLeftSide);
    case CSSProperty::kWidth:
      style_.width = isFromParent(value) ? parent_.width : boxLength(value);
      return;
    case CSSProperty::kHeight:
      style_.height = isFromParent(value) ? parent_.height : boxLength(value);
      return;
    case CSSProperty::kContent:
    case CSSProperty::kCounterReset:
    case CSSProperty::kCounterIncrement:
    case CSSProperty::kCounterSet:
      return applyCounting(property, value);
    default:
      return;
  }
}

void StyleBuilder::applyDecorations(bool isDeclaredFloat) {
  if (!breaksDecorations(style_, isDeclaredFloat) && element_ != StyledElement::kRubyText) {
    style_.underline = parent_.underline;
    style_.overline = parent_.overline;
    style_.lineThrough = parent_.lineThrough;
  }
  // The parent's own lines hold anyway: to inherit them adds nothing.
  const CSSValue lines = cascade_.value(CSSProperty::kTextDecorationLine);
  const std::span<const CSSValue> list =
      lines.kind() == CSSValueKind::kList ? lines.values() : std::span(&lines, 1);
  const CSSValue style = cascade_.value(CSSProperty::kTextDecorationStyle);
  const DecorationLine line = {
      style.keyword() == CSSKeyword::kUnknown || isCSSWideKeyword(style.keyword()) ? CSSKeyword::kSolid
                                                                                   : style.keyword(),
      color(cascade_.value(CSSProperty::kTextDecorationColor), style_.inherited.color)};
  for (const CSSValue &which : list) {
    if (which.is(CSSKeyword::kUnderline)) style_.underline = line;
    if (which.is(CSSKeyword::kOverline)) style_.overline = line;
    if (which.is(CSSKeyword::kLineThrough)) style_.lineThrough = line;
  }
}

void StyleBuilder::finishBorders() {
  for (std::size_t side = 0; side < kBoxSides; ++side) {
    if (borderStyles_[side] == CSSKeyword::kNone || borderStyles_[side] == CSSKeyword::kHidden)
      style_.borderWidth[side] = 0;
    style_.borderColor[side] = borderColors_[side].value_or(style_.inherited.color);
  }
}

ComputedStyle StyleBuilder::make() {
  style_.inherited = parent_.inherited;
  style_.inherited.customProperties = cascade_.customProperties();
  style_.borderWidth.fill(kMediumBorder);
  style_.margin.fill(noLength());
  style_.padding.fill(noLength());
  style_.isUnseen = parent_.isUnseen;
  style_.mayHoldSeenElement = parent_.mayHoldSeenElement;
  applyDirection();
  applyFontProperties(cascade_, parent_.inherited, context_, style_.inherited);
  applyColor();
  applyTextAlign(cascade_.value(CSSProperty::kTextAlign));
  for (const CSSProperty property : cascade_.declaredProperties()) apply(property, cascade_.value(property));
  finishBorders();
  const bool isDeclaredFloat = style_.floating != CSSKeyword::kNone;
  adjustDisplay(parent_, element_ == StyledElement::kRoot, style_);
  applyDecorations(isDeclaredFloat);
  return std::move(style_);
}

}  // namespace

ComputedStyle makeStyle(Cascade &cascade, const ComputedStyle &parent, StyledElement element,
                        StyleContext &context) {
  return StyleBuilder(cascade, parent, element, context).make();
}

bool dependsOnParentBox(Cascade &cascade) {
  return std::ranges::any_of(cascade.declaredProperties(), [&](CSSProperty property) {
    return !isInheritedCSSProperty(property) && property != CSSProperty::kVerticalAlign &&
           property != CSSProperty::kTextDecorationLine && cascade.value(property).is(CSSKeyword::kInherit);
  });
}

}  // namespace nimbo::detail
