// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/PixelCopying.hpp"

#include <algorithm>
#include <cstddef>

#include "platform/CoreGraphics/CGImage.hpp"
#include "platform/ImageIO/Engine/VipsSession.hpp"

namespace nimbo::detail {
namespace {

/// How many bytes are decoded at once.
constexpr std::uint32_t kStripBytes = 128u << 10;
constexpr std::uint32_t kMaximumStripRows = 64;

std::uint8_t multiplied(unsigned color, unsigned alpha) {
  const unsigned product = color * alpha + 128;
  return static_cast<std::uint8_t>((product + (product >> 8)) >> 8);
}

/// Copies a row; `step` is from one pixel to the next of the answer, in bytes.
template <bool hasAlpha>
void copyRow(const std::uint8_t *from, std::uint32_t count, std::uint32_t bands, std::uint8_t *to,
             std::ptrdiff_t step) {
  for (std::uint32_t x = 0; x < count; ++x, from += bands, to += step) {
    const unsigned alpha = hasAlpha ? from[3] : 255;
    for (int color = 0; color < 3; ++color) to[color] = hasAlpha ? multiplied(from[color], alpha) : from[color];
    to[3] = static_cast<std::uint8_t>(alpha);
  }
}

/// Where a pixel goes.
struct Placement {
  std::ptrdiff_t first, columnStep, rowStep;
};

Placement placementOf(PixelSize size, Orientation orientation) {
  constexpr auto kPixel = static_cast<std::ptrdiff_t>(CGImage::kBytesPerPixel);
  const std::ptrdiff_t width = size.width;
  const std::ptrdiff_t height = size.height;
  Placement placement = {0, orientation.swapsSides() ? height * kPixel : kPixel,
                         orientation.swapsSides() ? kPixel : width * kPixel};
  if (orientation.reversesColumns()) {
    placement.first += (width - 1) * placement.columnStep;
    placement.columnStep = -placement.columnStep;
  }
  if (orientation.reversesRows()) {
    placement.first += (height - 1) * placement.rowStep;
    placement.rowStep = -placement.rowStep;
  }
  return placement;
}

}  // namespace

PixelSize pixelSizeOfImage(VipsImage *image) {
  return {static_cast<std::uint32_t>(vips_image_get_width(image)),
          static_cast<std::uint32_t>(vips_image_get_height(image))};
}

ImagePixels copiedPixels(VipsImage *image, Orientation orientation, const Deadline &deadline) {
  const PixelSize size = pixelSizeOfImage(image);
  const auto bands = static_cast<std::uint32_t>(vips_image_get_bands(image));
  ImagePixels pixels = {size.width, size.height, bands >= 4, nullptr};
  if (orientation.swapsSides()) std::swap(pixels.width, pixels.height);
  pixels.bytes = std::make_unique_for_overwrite<std::uint8_t[]>(std::size_t{size.width} * size.height *
                                                                CGImage::kBytesPerPixel);
  const VipsPointer<VipsRegion> region(vips_region_new(image));
  const std::uint32_t stripRows = std::clamp(kStripBytes / (size.width * bands), 1u, kMaximumStripRows);
  const Placement placement = placementOf(size, orientation);
  for (std::uint32_t top = 0; top < size.height; top += stripRows) {
    const std::uint32_t rows = std::min(stripRows, size.height - top);
    const VipsRect strip = {0, static_cast<int>(top), static_cast<int>(size.width), static_cast<int>(rows)};
    if (deadline.isOver() || vips_region_prepare(region.get(), &strip) != 0) return {};
    for (std::uint32_t y = top; y < top + rows; ++y) {
      const std::uint8_t *from = VIPS_REGION_ADDR(region.get(), 0, static_cast<int>(y));
      std::uint8_t *to =
          pixels.bytes.get() + placement.first + static_cast<std::ptrdiff_t>(y) * placement.rowStep;
      (pixels.hasAlpha ? copyRow<true> : copyRow<false>)(from, size.width, bands, to, placement.columnStep);
    }
  }
  return pixels;
}

}  // namespace nimbo::detail
