// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cmath>
#include <cstdint>

#include "platform/AppKit/NSColor.hpp"
#include "platform/CSS/CSSColor.hpp"

namespace nimbo::detail {

/// How many points a pixel of CSS is.
inline constexpr double kPointsPerPixel = 0.75;

/// Pixels of CSS as points, to a hundredth.
inline double pointsOfPixels(double pixels) {
  return std::round(pixels * kPointsPerPixel * 100) / 100;
}

/// A colour of a style sheet.
inline NSColor colorOf(const CSSColor &color) {
  return {color.red, color.green, color.blue, static_cast<std::uint8_t>(std::lround(color.alpha * 255))};
}

}  // namespace nimbo::detail
