// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A colour of sRGB, eight bits a component: a plain value.
///
///     const NSColor link{0, 0, 238};
///     const NSColor shade{0, 0, 0, 64};
///     shade == NSColor{0, 0, 0};  // false
struct NSColor {
  /// From none to all of red.
  std::uint8_t red = 0;
  /// From none to all of green.
  std::uint8_t green = 0;
  /// From none to all of blue.
  std::uint8_t blue = 0;
  /// From transparent to opaque.
  std::uint8_t alpha = 255;

  /// Whether all components are equal.
  friend constexpr bool operator==(const NSColor &, const NSColor &) = default;
};

}  // namespace nimbo
