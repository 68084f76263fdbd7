// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreGraphics/CGImage.hpp"

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
