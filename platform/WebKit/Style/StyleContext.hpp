// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include "platform/CSS/CSSColor.hpp"
#include "platform/CSS/CSSMedium.hpp"
#include "platform/CSS/CSSValue.hpp"
#include "platform/WebKit/Style/ComputedStyle.hpp"
#include "platform/WebKit/Style/FontFamilies.hpp"

namespace nimbo::detail {

/// What of the page the styles of its elements depend on.
struct StyleContext {
  CSSMedium medium;
  bool isQuirks = false;
  double rootFontSize = 16;
  double rootLineHeight = 19.2;
  /// The colour of the body, which tables have in quirks mode.
  CSSColor bodyColor;
  FontFamilies families;

  /// What lengths are relative to in an element of the style; percentages to `percentageBase`.
  CSSLengthContext lengths(const InheritedStyle &style, std::optional<double> percentageBase = {}) const;
};

/// The greatest size of text in pixels.
inline constexpr double kMaximumFontSize = 10'000;

/// The height of a line of the font's own.
double ownLineHeight(double fontSize);

}  // namespace nimbo::detail
