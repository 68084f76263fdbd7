// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A colour in sRGB, cut to its gamut.
struct CSSColor {
  /// From 0 to 255.
  std::uint8_t red = 0;
  /// From 0 to 255.
  std::uint8_t green = 0;
  /// From 0 to 255.
  std::uint8_t blue = 0;
  /// From 0, which is transparent, to 1.
  float alpha = 1;

  /// Whether all parts are equal.
  friend bool operator==(const CSSColor &, const CSSColor &) = default;
};

/// The colour of a name such as "red" or "transparent", in any case; the system's colours are those of a light
/// scheme. Nothing for another name, "currentcolor" among them.
std::optional<CSSColor> colorNamed(std::u16string_view name);

/// The colour of three, four, six or eight hexadecimal digits, without "#".
std::optional<CSSColor> colorOfHexDigits(std::u16string_view digits);

}  // namespace nimbo
