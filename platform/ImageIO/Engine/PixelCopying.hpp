// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vips/vips.h>

#include <cstdint>

#include "platform/ImageIO/ImageEngine.hpp"

namespace nimbo::detail {

/// Numbers of columns and rows.
struct PixelSize {
  std::uint32_t width;
  std::uint32_t height;
};

/// The size of an image of libvips.
PixelSize pixelSizeOfImage(VipsImage *image);

/// How an image is turned to be shown: the numbers 1 to 8 of Exif, another one being 1.
class Orientation {
 public:
  explicit Orientation(int number = 1) : number_(number >= 1 && number <= 8 ? number : 1) {}

  /// Whether columns become rows.
  bool swapsSides() const { return number_ >= 5; }
  /// Whether the left becomes the right, or the top with `swapsSides`.
  bool reversesColumns() const { return number_ == 2 || number_ == 3 || number_ == 7 || number_ == 8; }
  /// Whether the top becomes the bottom, or the right with `swapsSides`.
  bool reversesRows() const { return number_ == 3 || number_ == 4 || number_ == 6 || number_ == 7; }

 private:
  int number_;
};

/// The pixels of an image of sRGB with 8 bits a sample, turned. No bytes when there is no memory, it cannot be
/// decoded, or the deadline is over before it is.
ImagePixels copiedPixels(VipsImage *image, Orientation orientation, const Deadline &deadline);

}  // namespace nimbo::detail
