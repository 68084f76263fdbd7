// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>

#include "platform/CSS/CSSColorSpaces.hpp"
#include "platform/CSS/CSSNameLookup.hpp"
#include "platform/CSS/CSSValueReader.hpp"

namespace nimbo::detail {

namespace {

enum class ColorFunction : std::uint8_t {
  kRGB,
  kHSL,
  kHWB,
  kLab,
  kLCH,
  kOklab,
  kOklch,
  kColor,
  kMix,
  kLightDark
};

constexpr CSSNameLookup kFunctions(std::to_array<CSSNamedValue<ColorFunction>>({
    {"rgb", ColorFunction::kRGB},
    {"rgba", ColorFunction::kRGB},
    {"hsl", ColorFunction::kHSL},
    {"hsla", ColorFunction::kHSL},
    {"hwb", ColorFunction::kHWB},
    {"lab", ColorFunction::kLab},
    {"lch", ColorFunction::kLCH},
    {"oklab", ColorFunction::kOklab},
    {"oklch", ColorFunction::kOklch},
    {"color", ColorFunction::kColor},
    {"color-mix", ColorFunction::kMix},
    {"light-dark", ColorFunction::kLightDark},
}));

/// A component: a number, or a part of the whole that the component may be.
struct Component {
  double number = 0;
  bool isPercentage = false;
  /// "none", which is 0 and does not stand between commas.
  bool isMissing = false;
};

struct Components {
  std::array<Component, 3> parts;
  double alpha = 1;
  bool hasCommas = false;

  /// A part, of which 100 % are `whole`.
  double part(std::size_t i, double whole) const {
    return parts[i].isPercentage ? parts[i].number / 100 * whole : parts[i].number;
  }
};

std::optional<Component> component(CSSValueReader &reader, bool isHue) {
  if (reader.takeKeyword(CSSKeyword::kNone)) return Component{0, false, true};
  if (isHue) {
    const std::optional<double> degrees = reader.angle();
    return degrees ? std::optional(Component{*degrees}) : std::nullopt;
  }
  const CSSValue value = reader.numeric({.takesNumbers = true, .takesPercentages = true});
  if (!value) return std::nullopt;
  // Percentages of an expression are those of 100.
  CSSLengthContext context;
  context.percentageBase = 100;
  const bool isPercentage = value.unit() == CSSUnit::kPercent;
  return Component{resolvedNumber(value, context).value_or(0), isPercentage};
}

/// Three components, of which one may be a hue, and the alpha; `takesCommas` says whether the old form, with
/// commas, is there.
std::optional<Components> components(CSSValueReader &reader, std::size_t hue, bool takesCommas) {
  Components result;
  bool hasMissing = false;
  for (std::size_t i = 0; i < result.parts.size(); ++i) {
    if (i == 1) result.hasCommas = takesCommas && reader.take(CSSTokenType::kComma);
    if (i == 2 && result.hasCommas && !reader.take(CSSTokenType::kComma)) return std::nullopt;
    const std::optional<Component> found = component(reader, i == hue);
    if (!found) return std::nullopt;
    result.parts[i] = *found;
    hasMissing = hasMissing || found->isMissing;
  }
  if (reader.isAtEnd()) return result.hasCommas && hasMissing ? std::nullopt : std::optional(result);
  if (!(result.hasCommas ? reader.take(CSSTokenType::kComma) : reader.takeDelimiter(u'/'))) return std::nullopt;
  const std::optional<Component> alpha = component(reader, false);
  if (!alpha || !reader.isAtEnd() || (result.hasCommas && (hasMissing || alpha->isMissing)))
    return std::nullopt;
  result.alpha = alpha->isPercentage ? alpha->number / 100 : alpha->number;
  return result;
}

constexpr std::size_t kNoHue = 3;

ColorComponents rectangular(double lightness, double chroma, double hue) {
  const double radians = hue * std::numbers::pi / 180;
  return {lightness, std::max(0.0, chroma) * std::cos(radians), std::max(0.0, chroma) * std::sin(radians)};
}

std::optional<CSSColor> rgb(CSSValueReader &arguments) {
  const std::optional<Components> c = components(arguments, kNoHue, true);
  if (!c) return std::nullopt;
  const auto &[red, green, blue] = c->parts;
  if (c->hasCommas && (red.isPercentage != green.isPercentage || red.isPercentage != blue.isPercentage))
    return std::nullopt;
  return colorOfSRGB({c->part(0, 255) / 255, c->part(1, 255) / 255, c->part(2, 255) / 255}, c->alpha);
}

std::optional<CSSColor> hsl(CSSValueReader &arguments, bool isHWB) {
  const std::optional<Components> c = components(arguments, 0, !isHWB);
  if (!c || (c->hasCommas && !(c->parts[1].isPercentage && c->parts[2].isPercentage))) return std::nullopt;
  const double hue = c->parts[0].number;
  const double second = std::max(0.0, c->part(1, 100) / 100), third = c->part(2, 100) / 100;
  if (!isHWB) return colorOfSRGB(sRGBOfHSL(hue, std::min(1.0, second), std::clamp(third, 0.0, 1.0)), c->alpha);
  const double black = std::max(0.0, third), gray = second / (second + black);
  if (second + black >= 1) return colorOfSRGB({gray, gray, gray}, c->alpha);
  ColorComponents color = sRGBOfHSL(hue, 1, 0.5);
  for (double &part : color) part = part * (1 - second - black) + second;
  return colorOfSRGB(color, c->alpha);
}

std::optional<CSSColor> lab(CSSValueReader &arguments, ColorSpace space, bool isPolar) {
  const std::optional<Components> c = components(arguments, isPolar ? 2 : kNoHue, false);
  if (!c) return std::nullopt;
  const bool isOk = space == ColorSpace::kOklab;
  const double white = isOk ? 1 : 100;
  const double lightness = std::clamp(c->part(0, white), 0.0, white);
  const double axis = isOk ? 0.4 : isPolar ? 150 : 125;
  const ColorComponents parts = isPolar ? rectangular(lightness, c->part(1, axis), c->parts[2].number)
                                        : ColorComponents{lightness, c->part(1, axis), c->part(2, axis)};
  return colorOfSRGB(sRGBOf(space, parts), c->alpha);
}

std::optional<ColorSpace> takeColorSpace(CSSValueReader &reader) {
  if (reader.peek().type != CSSTokenType::kIdent) return std::nullopt;
  const std::optional<ColorSpace> space = colorSpaceNamed(reader.text(reader.peek()));
  reader.advance();
  return space;
}

std::optional<CSSColor> colorOfSpace(CSSValueReader &arguments) {
  const std::optional<ColorSpace> space = takeColorSpace(arguments);
  if (!space || *space == ColorSpace::kLab || *space == ColorSpace::kOklab) return std::nullopt;
  const std::optional<Components> c = components(arguments, kNoHue, false);
  if (!c) return std::nullopt;
  return colorOfSRGB(sRGBOf(*space, {c->part(0, 1), c->part(1, 1), c->part(2, 1)}), c->alpha);
}

struct MixPart {
  CSSColor color;
  std::optional<double> share;
};

std::optional<MixPart> mixPart(CSSValueReader &reader) {
  constexpr CSSNumericRange kShare{.takesPercentages = true, .isNonNegative = true};
  MixPart part;
  CSSValue share = reader.numeric(kShare);
  const CSSValue color = reader.color(false);
  if (color.kind() != CSSValueKind::kColor) return std::nullopt;
  if (!share) share = reader.numeric(kShare);
  if (share && (share.kind() != CSSValueKind::kPercentage || share.number() > 100)) return std::nullopt;
  part.color = color.color();
  if (share) part.share = share.number() / 100;
  return part;
}

/// Mixtures in spaces without a hue.
std::optional<CSSColor> mixture(CSSValueReader &arguments) {
  if (arguments.peek().type != CSSTokenType::kIdent ||
      !equalsASCIINoCase(arguments.text(arguments.peek()), "in"))
    return std::nullopt;
  arguments.advance();
  const std::optional<ColorSpace> space = takeColorSpace(arguments);
  const bool isMixed = space == ColorSpace::kSRGB || space == ColorSpace::kLinearSRGB ||
                       space == ColorSpace::kOklab || space == ColorSpace::kXYZD65;
  if (!isMixed || !arguments.take(CSSTokenType::kComma)) return std::nullopt;
  const std::optional<MixPart> a = mixPart(arguments);
  if (!a || !arguments.take(CSSTokenType::kComma)) return std::nullopt;
  const std::optional<MixPart> b = mixPart(arguments);
  if (!b || !arguments.isAtEnd()) return std::nullopt;
  double first = a->share ? *a->share : b->share ? 1 - *b->share : 0.5;
  double second = b->share ? *b->share : 1 - first;
  const double sum = first + second;
  if (sum <= 0) return std::nullopt;
  first /= sum;
  second /= sum;
  const double alpha = a->color.alpha * first + b->color.alpha * second;
  const auto parts = [&](CSSColor c) {
    return componentsOfSRGB({c.red / 255.0, c.green / 255.0, c.blue / 255.0}, *space);
  };
  const ColorComponents ofA = parts(a->color), ofB = parts(b->color);
  ColorComponents mixed{};
  for (std::size_t i = 0; i < mixed.size() && alpha > 0; ++i)
    mixed[i] = (ofA[i] * a->color.alpha * first + ofB[i] * b->color.alpha * second) / alpha;
  return colorOfSRGB(sRGBOf(*space, mixed), alpha * std::min(1.0, sum));
}

/// The first of two colours, if both are colours.
std::optional<CSSColor> lightColor(CSSValueReader &arguments) {
  const CSSValue light = arguments.color(false);
  if (light.kind() != CSSValueKind::kColor || !arguments.take(CSSTokenType::kComma)) return std::nullopt;
  if (!arguments.color(false) || !arguments.isAtEnd()) return std::nullopt;
  return light.color();
}

std::optional<CSSColor> colorOf(ColorFunction function, CSSValueReader &arguments) {
  switch (function) {
    case ColorFunction::kRGB:
      return rgb(arguments);
    case ColorFunction::kHSL:
      return hsl(arguments, false);
    case ColorFunction::kHWB:
      return hsl(arguments, true);
    case ColorFunction::kLab:
      return lab(arguments, ColorSpace::kLab, false);
    case ColorFunction::kLCH:
      return lab(arguments, ColorSpace::kLab, true);
    case ColorFunction::kOklab:
      return lab(arguments, ColorSpace::kOklab, false);
    case ColorFunction::kOklch:
      return lab(arguments, ColorSpace::kOklab, true);
    case ColorFunction::kColor:
      return colorOfSpace(arguments);
    case ColorFunction::kMix:
      return mixture(arguments);
    case ColorFunction::kLightDark:
      return lightColor(arguments);
  }
  return std::nullopt;
}

}  // namespace

CSSValue CSSValueReader::colorFunction() {
  const ColorFunction *const function = kFunctions.find(text(peek()));
  if (!function) return {};
  const std::size_t start = position_;
  if (std::optional<CSSValueReader> arguments = block()) {
    if (const std::optional<CSSColor> color = colorOf(*function, *arguments)) return CSSValue::color(*color);
  }
  position_ = start;
  return {};
}

CSSValue CSSValueReader::color(bool mayLackHash) {
  const CSSToken &token = peek();
  const bool isQuirky = mayLackHash && mode_ == CSSMode::kQuirks;
  std::optional<CSSColor> color;
  switch (token.type) {
    case CSSTokenType::kHash:
      color = colorOfHexDigits(text(token));
      break;
    case CSSTokenType::kIdent: {
      const std::u16string_view name = text(token);
      color = colorNamed(name);
      if (!color && isQuirky && (name.size() == 3 || name.size() == 6)) color = colorOfHexDigits(name);
      if (!color && keywordNamed(name) == CSSKeyword::kCurrentcolor) {
        advance();
        return CSSKeyword::kCurrentcolor;
      }
      break;
    }
    case CSSTokenType::kFunction:
      return colorFunction();
    case CSSTokenType::kNumber:
    case CSSTokenType::kDimension:
      // A number has lost the zeros that it began with; as many come back as make six digits.
      if (isQuirky && token.flag && !token.hasSign) {
        std::u16string_view digits = tokenizer_->source().substr(token.location, token.end - token.location);
        digits.remove_prefix(std::min(digits.find_first_not_of(u'0'), digits.size()));
        if (digits.size() <= 6)
          color = colorOfHexDigits(std::u16string(6 - digits.size(), u'0').append(digits));
      }
      break;
    default:
      break;
  }
  if (!color) return {};
  advance();
  return CSSValue::color(*color);
}

}  // namespace nimbo::detail
