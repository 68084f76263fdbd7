// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/CSS/CSSColor.hpp"

namespace nimbo::detail {

/// The three components of a colour.
using ColorComponents = std::array<double, 3>;

/// Spaces of colours; the components of RGB spaces go from 0 to 1, those of XYZ are relative to white.
enum class ColorSpace : std::uint8_t {
  kSRGB,
  kLinearSRGB,
  kDisplayP3,
  kA98RGB,
  kProPhotoRGB,
  kRec2020,
  kXYZD50,
  kXYZD65,
  kLab,    ///< Lightness from 0 to 100.
  kOklab,  ///< Lightness from 0 to 1.
};

/// The space of a name in "color()" and "color-mix()".
std::optional<ColorSpace> colorSpaceNamed(std::u16string_view name);

/// The same colour's components in gamma-encoded sRGB, which may lie outside its gamut.
ColorComponents sRGBOf(ColorSpace space, const ColorComponents &components);

/// The components, in another space, of a colour in gamma-encoded sRGB; the space is sRGB, linear sRGB, Oklab
/// or XYZ D65.
ColorComponents componentsOfSRGB(const ColorComponents &sRGB, ColorSpace space);

/// Hue in degrees, saturation and lightness from 0 to 1.
ColorComponents sRGBOfHSL(double hue, double saturation, double lightness);

/// The colour, cut to the gamut.
CSSColor colorOfSRGB(const ColorComponents &sRGB, double alpha);

}  // namespace nimbo::detail
