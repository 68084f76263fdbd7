// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/FontProperties.hpp"

#include <algorithm>
#include <array>

namespace nimbo::detail {

namespace {

using Sizes = std::array<double, 8>;

/// The sizes of "xx-small" to "xxx-large".
constexpr Sizes kSizes = {9, 10, 13, 16, 18, 24, 32, 48};
/// Those of the family "monospace" alone, whose medium size is smaller.
constexpr Sizes kMonospaceSizes = {9, 10, 12, 13, 16, 20, 26, 39};
constexpr Sizes kQuirksMonospaceSizes = {9, 9, 10, 13, 16, 20, 26, 40};
constexpr double kMonospaceShare = 13.0 / 16;
constexpr double kStepOfSizes = 1.2;
constexpr double kLeastRelativeSize = 6;

constexpr bool isSizeKeyword(CSSKeyword keyword) {
  return keyword >= CSSKeyword::kXXSmall && keyword <= CSSKeyword::kXXXLarge;
}

double sizeOfKeyword(CSSKeyword keyword, bool isMonospace, bool isQuirks) {
  const auto place = static_cast<std::size_t>(keyword) - static_cast<std::size_t>(CSSKeyword::kXXSmall);
  if (!isMonospace) return kSizes[place];
  return isQuirks ? kQuirksMonospaceSizes[place] : kMonospaceSizes[place];
}

constexpr bool isGenericFamily(CSSKeyword keyword) {
  return keyword >= CSSKeyword::kSerif && keyword <= CSSKeyword::kFangsong;
}

void applyFamily(const CSSValue &value, StyleContext &context, InheritedStyle &style) {
  if (!value || value.is(CSSKeyword::kInherit)) return;
  style.fontFamily = NSString();
  style.genericFamily = CSSKeyword::kSerif;
  style.isMonospaceAlone = false;
  const std::span<const CSSValue> families =
      value.kind() == CSSValueKind::kList ? value.values() : std::span(&value, 1);
  bool hasGeneric = false;
  for (const CSSValue &family : families) {
    if (family.kind() == CSSValueKind::kString || family.kind() == CSSValueKind::kIdentifier) {
      if (!style.fontFamily) style.fontFamily = context.families.named(family.text());
    } else if (isGenericFamily(family.keyword()) && !hasGeneric) {
      hasGeneric = true;
      style.genericFamily = family.keyword();
    }
  }
  style.isMonospaceAlone = families.size() == 1 && families.front().is(CSSKeyword::kMonospace);
}

/// Whether the size of the value follows that of the parent.
bool isRelativeSize(const CSSValue &value) {
  switch (value.kind()) {
    case CSSValueKind::kPercentage:
      return true;
    case CSSValueKind::kLength:
      return value.unit() == CSSUnit::kEm || value.unit() == CSSUnit::kEx || value.unit() == CSSUnit::kCh ||
             value.unit() == CSSUnit::kCap || value.unit() == CSSUnit::kIc;
    default:
      return value.is(CSSKeyword::kLarger) || value.is(CSSKeyword::kSmaller);
  }
}

void applySize(const CSSValue &value, const InheritedStyle &parent, const StyleContext &context,
               InheritedStyle &style) {
  if (value.is(CSSKeyword::kInitial) || isSizeKeyword(value.keyword())) {
    style.fontSizeKeyword = value.is(CSSKeyword::kInitial) ? CSSKeyword::kMedium : value.keyword();
    style.hasAbsoluteFontSize = false;
    style.declaredFontSize = sizeOfKeyword(style.fontSizeKeyword, style.isMonospaceAlone, context.isQuirks);
    return;
  }
  const double parentSize = parent.declaredFontSize;
  CSSLengthContext lengths = context.lengths(parent, parentSize);
  lengths.fontSize = parentSize;
  std::optional<double> size = resolvedNumber(value, lengths);
  if (value.is(CSSKeyword::kLarger)) size = parentSize * kStepOfSizes;
  if (value.is(CSSKeyword::kSmaller)) size = parentSize / kStepOfSizes;
  if (size) {
    style.declaredFontSize = std::clamp(*size, 0.0, kMaximumFontSize);
    style.fontSizeKeyword = CSSKeyword::kUnknown;
    style.hasAbsoluteFontSize = parent.hasAbsoluteFontSize || !isRelativeSize(value);
  }
  if (style.hasAbsoluteFontSize || style.isMonospaceAlone == parent.isMonospaceAlone) return;
  // The size was meant for other letters.
  if (style.fontSizeKeyword != CSSKeyword::kUnknown)
    style.declaredFontSize = sizeOfKeyword(style.fontSizeKeyword, style.isMonospaceAlone, context.isQuirks);
  else
    style.declaredFontSize *= style.isMonospaceAlone ? kMonospaceShare : 1 / kMonospaceShare;
}

/// Enlarges a size that nobody can read, unless it was declared so or is to hide the text.
double readableSize(const InheritedStyle &style) {
  const bool isTooSmall = style.declaredFontSize > 0 && style.declaredFontSize < kLeastRelativeSize;
  return isTooSmall && !style.hasAbsoluteFontSize ? kLeastRelativeSize : style.declaredFontSize;
}

std::uint16_t bolder(std::uint16_t weight) {
  if (weight < 350) return 400;
  if (weight < 550) return 700;
  return std::max<std::uint16_t>(weight, 900);
}

std::uint16_t lighter(std::uint16_t weight) {
  if (weight < 100) return weight;
  if (weight < 550) return 100;
  return weight < 750 ? 400 : 700;
}

void applyWeight(const CSSValue &value, const InheritedStyle &parent, const StyleContext &context,
                 InheritedStyle &style) {
  if (value.is(CSSKeyword::kInitial)) style.fontWeight = 400;
  if (value.is(CSSKeyword::kBolder)) style.fontWeight = bolder(parent.fontWeight);
  if (value.is(CSSKeyword::kLighter)) style.fontWeight = lighter(parent.fontWeight);
  if (const std::optional<double> weight = resolvedNumber(value, context.lengths(parent)))
    style.fontWeight = static_cast<std::uint16_t>(std::clamp(*weight, 1.0, 1000.0));
}

void applyLineHeight(const CSSValue &value, const StyleContext &context, InheritedStyle &style) {
  if (value.is(CSSKeyword::kInitial) || value.is(CSSKeyword::kNormal)) {
    style.lineHeight.reset();
    style.lineHeightMultiple.reset();
  } else if (value && !value.is(CSSKeyword::kInherit)) {
    const bool isMultiple = value.unit() == CSSUnit::kNone;
    const std::optional<double> number = resolvedNumber(value, context.lengths(style, style.fontSize));
    if (!number || *number < 0) return;
    style.lineHeightMultiple = isMultiple ? number : std::nullopt;
    style.lineHeight = number;
  }
  if (style.lineHeightMultiple) style.lineHeight = *style.lineHeightMultiple * style.fontSize;
}

}  // namespace

double ownLineHeight(double fontSize) {
  return fontSize * 1.2;
}

CSSLengthContext StyleContext::lengths(const InheritedStyle &style,
                                       std::optional<double> percentageBase) const {
  CSSLengthContext lengths;
  lengths.fontSize = style.fontSize;
  lengths.rootFontSize = rootFontSize;
  lengths.xHeight = lengths.chWidth = style.fontSize / 2;
  lengths.lineHeight = style.lineHeight.value_or(ownLineHeight(style.fontSize));
  lengths.rootLineHeight = rootLineHeight;
  lengths.viewportWidth = medium.widthInPixels;
  lengths.viewportHeight = medium.heightInPixels;
  lengths.percentageBase = percentageBase;
  return lengths;
}

void applyFontProperties(const Cascade &cascade, const InheritedStyle &parent, StyleContext &context,
                         InheritedStyle &style) {
  applyFamily(cascade.value(CSSProperty::kFontFamily), context, style);
  applySize(cascade.value(CSSProperty::kFontSize), parent, context, style);
  style.fontSize = readableSize(style);
  applyWeight(cascade.value(CSSProperty::kFontWeight), parent, context, style);
  if (const CSSValue slant = cascade.value(CSSProperty::kFontStyle); slant && !slant.is(CSSKeyword::kInherit))
    style.isItalic = slant.keyword() == CSSKeyword::kItalic || slant.keyword() == CSSKeyword::kOblique;
  if (const CSSValue capitals = cascade.value(CSSProperty::kFontVariantCaps);
      capitals && !capitals.is(CSSKeyword::kInherit))
    style.isSmallCaps = capitals.is(CSSKeyword::kSmallCaps) || capitals.is(CSSKeyword::kAllSmallCaps);
  applyLineHeight(cascade.value(CSSProperty::kLineHeight), context, style);
}

}  // namespace nimbo::detail
