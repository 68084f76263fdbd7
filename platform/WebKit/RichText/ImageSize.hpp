// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string_view>

#include "platform/Foundation/NSGeometry.hpp"

namespace nimbo::detail {

/// The greatest width and height that a picture may claim; those that claim more are taken for broken.
inline constexpr double kMaximumImagePixels = 65535;

/// What the first bytes of a picture say.
struct ImageHeader {
  /// What a file of this kind is called by, as "png".
  std::string_view pathExtension;
  /// In pixels, turned as it is to be shown; nothing when it does not say.
  std::optional<NSSize> sizeInPixels;
};

/// The header of a PNG, JPEG, GIF, WebP, BMP or SVG picture; nothing for other bytes.
std::optional<ImageHeader> imageHeader(std::string_view bytes);

}  // namespace nimbo::detail
