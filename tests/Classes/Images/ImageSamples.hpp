// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>

#include "platform/AppKit/Images/NSBitmapImageRep.hpp"
#include "platform/AppKit/Images/NSCachedImageRep.hpp"
#include "platform/AppKit/Images/NSImage.hpp"

namespace nimbo {

using Pixel = std::array<std::uint8_t, CGImage::kBytesPerPixel>;

inline constexpr Pixel kRed = {255, 0, 0, 255}, kGreen = {0, 255, 0, 255}, kBlue = {0, 0, 255, 255},
                       kWhite = {255, 255, 255, 255}, kClear = {0, 0, 0, 0};

/// Pixels whose upper half has one colour and whose lower half another one.
inline CGImage halves(std::uint32_t width, std::uint32_t height, const Pixel &upper, const Pixel &lower) {
  auto pixels = std::make_unique<std::uint8_t[]>(width * height * upper.size());
  for (std::uint32_t i = 0; i < width * height; ++i)
    std::ranges::copy(i < width * (height / 2) ? upper : lower, pixels.get() + i * upper.size());
  return CGImage::imageWithPixels(width, height, upper[3] < 255 || lower[3] < 255, std::move(pixels));
}

/// The pixel of a column and a row, which is counted from the top.
inline Pixel pixelAt(const CGImage &image, std::uint32_t x, std::uint32_t y) {
  Pixel pixel = {};
  const std::uint8_t *first = image.pixels() + y * image.bytesPerRow() + x * pixel.size();
  std::copy(first, first + pixel.size(), pixel.begin());
  return pixel;
}

/// The pixels of an image that has only been drawn.
inline CGImage drawnPixels(const NSImage &image) {
  const auto &representations = image.representations();
  if (representations.size() != 1) return CGImage();
  if (const auto *cached = dynamic_cast<const NSCachedImageRep *>(representations.front().get()))
    return cached->decodedImage();
  const auto *bitmap = dynamic_cast<const NSBitmapImageRep *>(representations.front().get());
  return bitmap ? bitmap->decodedImage() : CGImage();
}

/// A representation without pixels, which draws nothing, or raises a failure.
class EmptyRep final : public NSImageRep {
 public:
  explicit EmptyRep(NSImageRepClass kind, NSSize size = {8, 8}, bool fails = false, bool hasAlpha = false)
      : kind_(kind), size_(size), fails_(fails), hasAlpha_(hasAlpha) {}
  NSImageRepClass representationClass() const override { return kind_; }
  NSSize size() const override { return size_; }
  bool hasAlpha() const override { return hasAlpha_; }

 private:
  bool draw(NSGraphicsContext &, const NSRect &, const NSRect &, NSCompositingOperation, double,
            NSError *error) const override {
    if (fails_) setError(error, ErrorCode::damaged, "it is damaged");
    return !fails_;
  }

  NSImageRepClass kind_;
  NSSize size_;
  bool fails_, hasAlpha_;
};

}  // namespace nimbo
