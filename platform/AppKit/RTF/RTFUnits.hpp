// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace nimbo {

/// The longest length in twips, twentieths of a point, that is written or believed.
inline constexpr std::int32_t kMaximumTwips = 1 << 24;

constexpr double pointsOfTwips(std::int32_t twips) {
  return twips / 20.0;
}

/// The nearest whole number of a unit of which so many are a point.
inline std::int32_t unitsOfPoints(double points, double unitsPerPoint) {
  const double units = points * unitsPerPoint;
  if (!(std::abs(units) <= kMaximumTwips)) return units > 0 ? kMaximumTwips : -kMaximumTwips;
  return static_cast<std::int32_t>(std::lround(units));
}

inline std::int32_t twipsOfPoints(double points) {
  return unitsOfPoints(points, 20);
}

}  // namespace nimbo
