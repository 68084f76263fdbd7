// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <utility>

#include "platform/CoreGraphics/CGImage.hpp"

namespace nimbo {

/// The bytes of a pixel; the colours are multiplied by alpha.
struct Pixel {
  int red = 0;
  int green = 0;
  int blue = 0;
  int alpha = 255;
  friend bool operator==(const Pixel &, const Pixel &) = default;
};

inline constexpr Pixel kRedPixel = {255, 0, 0};
inline constexpr Pixel kBluePixel = {0, 0, 255};
inline constexpr Pixel kWhitePixel = {255, 255, 255};
inline constexpr Pixel kNoPixel = {0, 0, 0, 0};

inline void PrintTo(const Pixel &pixel, std::ostream *out) {
  *out << '(' << pixel.red << ' ' << pixel.green << ' ' << pixel.blue << ' ' << pixel.alpha << ')';
}

/// The pixel of a column and a row from the top.
inline Pixel pixelAt(const CGImage &image, std::uint32_t x, std::uint32_t y) {
  const std::uint8_t *const bytes = image.pixels() + y * image.bytesPerRow() + x * CGImage::kBytesPerPixel;
  return {bytes[0], bytes[1], bytes[2], bytes[3]};
}

/// An image of what a function says of each column and row from the top.
inline CGImage imageOf(std::uint32_t width, std::uint32_t height,
                       const std::function<Pixel(std::uint32_t x, std::uint32_t y)> &pixel,
                       bool hasAlpha = false) {
  std::unique_ptr<std::uint8_t[]> pixels(
      new std::uint8_t[std::size_t{width} * height * CGImage::kBytesPerPixel]);
  std::uint8_t *out = pixels.get();
  for (std::uint32_t y = 0; y < height; ++y) {
    for (std::uint32_t x = 0; x < width; ++x) {
      const Pixel value = pixel(x, y);
      for (const int component : {value.red, value.green, value.blue, value.alpha})
        *out++ = static_cast<std::uint8_t>(component);
    }
  }
  return CGImage::imageWithPixels(width, height, hasAlpha, std::move(pixels));
}

/// An image of one colour.
inline CGImage imageOf(std::uint32_t width, std::uint32_t height, const Pixel &pixel) {
  return imageOf(
      width, height, [&pixel](auto, auto) { return pixel; }, pixel.alpha < 255);
}

}  // namespace nimbo
