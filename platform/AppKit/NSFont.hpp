// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The weight of a font that nobody made bold.
inline constexpr std::uint16_t kRegularFontWeight = 400;
/// The weight of a bold font.
inline constexpr std::uint16_t kBoldFontWeight = 700;

/// A font as a document asks for it: a plain value. Whether the machine has it is not known.
///
///     NSFont font{u"Times"_ns, 14};
///     font.weight = kBoldFontWeight;
///     font.isBold();  // true
struct NSFont {
  /// The name of the family, as "Times New Roman"; nil for the reader's own.
  NSString familyName;
  /// The size in points.
  double pointSize = 12;
  /// From 100 to 900.
  std::uint16_t weight = kRegularFontWeight;
  /// Whether it is italic or slanted.
  bool isItalic = false;
  /// Whether its lower-case letters are small capitals.
  bool isSmallCaps = false;

  /// Whether it counts as bold where there is nothing but bold and regular.
  bool isBold() const noexcept { return weight >= 600; }
  /// Whether all are equal.
  friend bool operator==(const NSFont &, const NSFont &) = default;
};

}  // namespace nimbo
