// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <cstddef>

#include "platform/CSS/CSSNameLookup.hpp"
#include "platform/CSS/CSSPropertyReader.hpp"

namespace nimbo::detail {

namespace {

using enum CSSProperty;

/// One value to four, for the top, right, bottom and left, or one to two.
bool readSides(std::span<const CSSProperty> sides, const CSSPropertyReading &reading) {
  std::array<CSSValue, 4> values;
  std::size_t count = 0;
  while (count < sides.size() && !reading.reader.isAtEnd()) {
    const CSSValue value = readLonghand(sides[count], reading.reader);
    if (!value) return false;
    values[count++] = value;
  }
  if (count == 0) return false;
  // What is not said is as on the opposite side, or as on the side before.
  for (std::size_t i = count; i < sides.size(); ++i) values[i] = values[i >= 2 ? i - 2 : 0];
  for (std::size_t i = 0; i < sides.size(); ++i) reading.declare(sides[i], values[i]);
  return true;
}

/// Values of different longhands in any order, each at most once; the others get their initial values.
bool readInAnyOrder(std::span<const CSSProperty> longhands, std::span<CSSValue> values,
                    CSSValueReader &reader) {
  bool hasAny = false;
  for (std::size_t i = 0; i < longhands.size() && !reader.isAtEnd();) {
    CSSValue value;
    if (!values[i]) value = readLonghand(longhands[i], reader);
    if (!value) {
      ++i;
      continue;
    }
    values[i] = value;
    hasAny = true;
    i = 0;
  }
  for (std::size_t i = 0; i < longhands.size(); ++i)
    if (!values[i]) values[i] = initialCSSValue(longhands[i]);
  return hasAny;
}

bool readBorder(CSSProperty shorthand, const CSSPropertyReading &reading) {
  const std::span<const CSSProperty> longhands = longhandsOfCSSProperty(shorthand);
  std::array<CSSValue, 3> values;
  if (!readInAnyOrder(longhands.first(3), values, reading.reader)) return false;
  for (std::size_t i = 0; i < longhands.size(); ++i) reading.declare(longhands[i], values[i % 3]);
  return true;
}

bool readTextDecoration(const CSSPropertyReading &reading) {
  const std::span<const CSSProperty> longhands = longhandsOfCSSProperty(kTextDecoration);
  std::array<CSSValue, 4> values;
  if (!readInAnyOrder(longhands, values, reading.reader)) return false;
  for (std::size_t i = 0; i < longhands.size(); ++i) reading.declare(longhands[i], values[i]);
  return true;
}

/// A "none" is of the type or of the image, whichever is not given otherwise.
bool readListStyle(const CSSPropertyReading &reading) {
  CSSValueReader &reader = reading.reader;
  CSSValue type, position, image;
  std::size_t nones = 0;
  while (!reader.isAtEnd()) {
    CSSValue value;
    if (reader.takeKeyword(CSSKeyword::kNone)) {
      ++nones;
    } else if (!position && (value = readLonghand(kListStylePosition, reader))) {
      position = value;
    } else if (!image && (value = readLonghand(kListStyleImage, reader))) {
      image = value;
    } else if (!type && (value = readLonghand(kListStyleType, reader))) {
      type = value;
    } else {
      return false;
    }
  }
  const std::size_t free = (type ? 0u : 1u) + (image ? 0u : 1u);
  if (nones > free || (nones == 0 && !type && !image && !position)) return false;
  if (nones > 0 && !type) type = CSSKeyword::kNone;
  reading.declare(kListStyleType, type ? type : initialCSSValue(kListStyleType));
  reading.declare(kListStylePosition, position ? position : initialCSSValue(kListStylePosition));
  reading.declare(kListStyleImage, image ? image : initialCSSValue(kListStyleImage));
  return true;
}

/// What text does not look like is read over.
bool skipBackgroundPart(CSSValueReader &reader) {
  constexpr CSSNumericRange kPlace{.takesLengths = true, .takesPercentages = true};
  static constexpr CSSNameLookup kNames(std::to_array<CSSNamedValue<bool>>({
      {"left", true},        {"right", true},  {"top", true},        {"bottom", true},
      {"center", true},      {"repeat", true}, {"repeat-x", true},   {"repeat-y", true},
      {"no-repeat", true},   {"space", true},  {"round", true},      {"fixed", true},
      {"local", true},       {"scroll", true}, {"border-box", true}, {"padding-box", true},
      {"content-box", true}, {"text", true},   {"contain", true},    {"cover", true},
      {"auto", true},
  }));
  if (reader.peek().type == CSSTokenType::kIdent && kNames.find(reader.text(reader.peek()))) {
    reader.advance();
    return true;
  }
  return reader.numeric(kPlace) || reader.takeDelimiter(u'/');
}

bool readBackground(const CSSPropertyReading &reading) {
  CSSValueReader &reader = reading.reader;
  CSSValue image = CSSKeyword::kNone, color;
  bool isLastLayer = false;
  do {
    if (isLastLayer) return false;
    bool hasPart = false, hasImage = false;
    while (!reader.isAtEnd() && reader.peek().type != CSSTokenType::kComma) {
      CSSValue value;
      if (!hasImage && (value = reader.takeKeyword(CSSKeyword::kNone) ? CSSValue(CSSKeyword::kNone)
                                                                      : readBackgroundImage(reader))) {
        hasImage = true;
        if (image.is(CSSKeyword::kNone)) image = value;
      } else if (!isLastLayer && (value = reader.color(false))) {
        color = value;
        isLastLayer = true;
      } else if (!skipBackgroundPart(reader)) {
        return false;
      }
      hasPart = true;
    }
    if (!hasPart) return false;
  } while (reader.take(CSSTokenType::kComma));
  reading.declare(kBackgroundColor, color ? color : initialCSSValue(kBackgroundColor));
  reading.declare(kBackgroundImage, image);
  return true;
}

/// The parts in front of the size, in any order; "normal" may be any of them.
bool readFont(const CSSPropertyReading &reading) {
  CSSValueReader &reader = reading.reader;
  static constexpr CSSKeyword kSystemFonts[] = {CSSKeyword::kCaptionFont,  CSSKeyword::kIcon,
                                                CSSKeyword::kMenu,         CSSKeyword::kMessageBox,
                                                CSSKeyword::kSmallCaption, CSSKeyword::kStatusBar};
  const std::span<const CSSProperty> longhands = longhandsOfCSSProperty(kFont);
  std::array<CSSValue, 8> values;
  for (std::size_t i = 0; i < longhands.size(); ++i) values[i] = initialCSSValue(longhands[i]);
  const auto value = [&](CSSProperty property) -> CSSValue & {
    return values[static_cast<std::size_t>(std::ranges::find(longhands, property) - longhands.begin())];
  };
  const auto declareAll = [&] {
    for (std::size_t i = 0; i < longhands.size(); ++i) reading.declare(longhands[i], values[i]);
    return true;
  };
  if (reader.keyword(kSystemFonts)) {
    constexpr double kSystemFontPixels = 16;
    value(kFontSize) = CSSValue::number(kSystemFontPixels, CSSUnit::kPixels);
    const CSSValue family = CSSKeyword::kSystemUI;
    value(kFontFamily) = CSSValue::list(reader.arena().copy(std::span<const CSSValue>(&family, 1)));
    return declareAll();
  }
  static constexpr std::array kParts = {kFontStyle, kFontVariantCaps, kFontWeight, kFontStretch};
  std::array<bool, kParts.size()> isGiven{};
  for (std::size_t given = 0; given < kParts.size(); ++given) {
    if (reader.takeKeyword(CSSKeyword::kNormal)) continue;
    bool hasPart = false;
    for (std::size_t i = 0; i < kParts.size() && !hasPart; ++i) {
      // The shorthand knows the variants of the first level, and stretches by name.
      if (isGiven[i] || (kParts[i] == kFontVariantCaps && reader.peekKeyword() != CSSKeyword::kSmallCaps) ||
          (kParts[i] == kFontStretch && reader.peek().type != CSSTokenType::kIdent))
        continue;
      if (const CSSValue found = readLonghand(kParts[i], reader)) {
        value(kParts[i]) = found;
        isGiven[i] = hasPart = true;
      }
    }
    if (!hasPart) break;
  }
  const CSSValue size = readLonghand(kFontSize, reader);
  const bool isSized = size && !size.is(CSSKeyword::kMath);
  if (!isSized) return false;
  value(kFontSize) = size;
  if (reader.takeDelimiter(u'/')) {
    value(kLineHeight) = readLonghand(kLineHeight, reader);
    if (!value(kLineHeight)) return false;
  }
  value(kFontFamily) = readFontFamily(reader);
  return value(kFontFamily) && declareAll();
}

/// Variants that look like plain text are read over.
bool readFontVariant(const CSSPropertyReading &reading) {
  CSSValueReader &reader = reading.reader;
  CSSValue caps, position;
  if (!reader.takeKeyword(CSSKeyword::kNormal) && !reader.takeKeyword(CSSKeyword::kNone)) {
    if (reader.isAtEnd()) return false;
    while (!reader.isAtEnd()) {
      CSSValue value;
      const CSSKeyword next = reader.peekKeyword();
      if (next == CSSKeyword::kNormal || next == CSSKeyword::kNone) return false;
      if (!caps && (value = readLonghand(kFontVariantCaps, reader))) {
        caps = value;
      } else if (!position && (value = readLonghand(kFontVariantPosition, reader))) {
        position = value;
      } else if (reader.peek().type == CSSTokenType::kIdent) {
        reader.advance();
      } else {
        return false;
      }
    }
  }
  reading.declare(kFontVariantCaps, caps ? caps : CSSKeyword::kNormal);
  reading.declare(kFontVariantPosition, position ? position : CSSKeyword::kNormal);
  return true;
}

}  // namespace

CSSValue initialCSSValue(CSSProperty property) {
  switch (property) {
    case kBackgroundColor:
      return CSSValue::color({0, 0, 0, 0});
    case kFontSize:
      return CSSKeyword::kMedium;
    case kFontStretch:
      return CSSValue::number(100, CSSUnit::kPercent);
    case kFontWeight:
      return CSSValue::number(400);
    case kFontStyle:
    case kFontVariantCaps:
    case kFontVariantPosition:
    case kLineHeight:
      return CSSKeyword::kNormal;
    case kListStyleType:
      return CSSKeyword::kDisc;
    case kListStylePosition:
      return CSSKeyword::kOutside;
    case kTextDecorationStyle:
      return CSSKeyword::kSolid;
    case kTextDecorationThickness:
      return CSSKeyword::kAuto;
    case kTextDecorationLine:
    case kListStyleImage:
    case kBackgroundImage:
      return CSSKeyword::kNone;
    default:
      break;
  }
  const std::string_view name = nameOfCSSProperty(property);
  if (name.ends_with("-color")) return CSSKeyword::kCurrentcolor;
  if (name.ends_with("-style")) return CSSKeyword::kNone;
  if (name.ends_with("-width")) return CSSValue::number(3, CSSUnit::kPixels);
  return {};
}

bool readShorthand(CSSProperty shorthand, const CSSPropertyReading &reading) {
  const bool hasQuirks =
      shorthand == kMargin || shorthand == kPadding || shorthand == kBorderWidth || shorthand == kBorderColor;
  if (!hasQuirks) reading.reader.setStandardMode();
  switch (shorthand) {
    case kBackground:
      return readBackground(reading);
    case kBorder:
    case kBorderTop:
    case kBorderRight:
    case kBorderBottom:
    case kBorderLeft:
    case kBorderBlock:
    case kBorderInline:
    case kBorderInlineStart:
    case kBorderInlineEnd:
      return readBorder(shorthand, reading);
    case kFont:
      return readFont(reading);
    case kFontVariant:
      return readFontVariant(reading);
    case kListStyle:
      return readListStyle(reading);
    case kTextDecoration:
      return readTextDecoration(reading);
    case kAll:
      return false;
    default:
      return readSides(longhandsOfCSSProperty(shorthand), reading);
  }
}

}  // namespace nimbo::detail
