// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreGraphics/CGImage.hpp"

#include <algorithm>
#include <utility>

namespace nimbo {

struct detail::ImageStorage : ReferenceCounted {
  ImageStorage(std::uint32_t columns, std::uint32_t rows, bool alpha, std::unique_ptr<std::uint8_t[]> bytes)
      : pixels(std::move(bytes)), width(columns), height(rows), hasAlpha(alpha) {}

  std::unique_ptr<std::uint8_t[]> pixels;
  std::uint32_t width;
  std::uint32_t height;
  bool hasAlpha;
};

template <>
void destroyShared<detail::ImageStorage>(ReferenceCounted *storage) noexcept {
  delete static_cast<detail::ImageStorage *>(storage);
}

CGImage CGImage::imageWithPixels(std::uint32_t width, std::uint32_t height, bool hasAlpha,
                                 std::unique_ptr<std::uint8_t[]> pixels) {
  CGImage image;
  if (width > 0 && width <= kMaximumSide && height > 0 && height <= kMaximumSide && pixels)
    image.storage_ = makeShared<detail::ImageStorage>(width, height, hasAlpha, std::move(pixels));
  return image;
}

CGImage CGImage::imageWithPixels(std::uint32_t width, std::uint32_t height,
                                 std::unique_ptr<std::uint8_t[]> pixels) {
  CGImage image = imageWithPixels(width, height, true, std::move(pixels));
  if (!image) return image;
  std::uint8_t lowest = 0xff;
  const std::uint8_t *const end = image.pixels() + image.bytesPerRow() * height;
  for (const std::uint8_t *pixel = image.pixels(); pixel != end; pixel += kBytesPerPixel)
    lowest = std::min(lowest, pixel[kBytesPerPixel - 1]);
  image.storage_->hasAlpha = lowest < 0xff;
  return image;
}

std::uint32_t CGImage::width() const noexcept {
  return storage_ ? storage_->width : 0;
}

std::uint32_t CGImage::height() const noexcept {
  return storage_ ? storage_->height : 0;
}

bool CGImage::hasAlpha() const noexcept {
  return storage_ && storage_->hasAlpha;
}

const std::uint8_t *CGImage::pixels() const noexcept {
  return storage_ ? storage_->pixels.get() : nullptr;
}

}  // namespace nimbo
