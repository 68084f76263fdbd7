// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

namespace nimbo::detail {

/// What a "style" attribute says about whether its element can be read.
struct StyleFindings {
  enum class Size : std::uint8_t { kUnsaid, kTiny, kReadable };

  /// "display: none", "visibility: hidden", or placed absolutely and at least 100 units of length to the left
  /// of the page or above it.
  bool isInvisible = false;
  /// Tiny: up to 3 points or 4 pixels.
  Size size = Size::kUnsaid;
  bool isInPageColor = false;
  /// A picture, or another colour than the page's.
  bool hasOwnBackground = false;
  /// Displayed in lines of its own.
  bool isBlock = false;
};

/// `pageColor` is the page's colour; empty when it has none.
StyleFindings findingsOfStyle(std::u16string_view style, std::u16string_view pageColor);

/// Whether both are the same colour, in any form of style sheets; hexadecimal digits may lack the "#".
bool isSameColor(std::u16string_view a, std::u16string_view b);

}  // namespace nimbo::detail
