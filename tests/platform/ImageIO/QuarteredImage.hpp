// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/CoreGraphics/CGImage.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/ImageIO/CGImageSource.hpp"

namespace nimbo {

/// The colours at the middles of the quarters: upper left, upper right, lower left, lower right.
using Quarters = std::array<std::array<int, 4>, 4>;

/// What the pictures of the tests show.
inline constexpr Quarters kQuarters = {
    {{255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}, {255, 255, 255, 255}}};

inline Quarters quartersOf(const CGImage &image) {
  Quarters quarters = {};
  for (std::size_t i = 0; image && i < 4; ++i) {
    const std::size_t x = image.width() * (1 + i % 2 * 2) / 4;
    const std::size_t y = image.height() * (1 + i / 2 * 2) / 4;
    const std::uint8_t *pixel = image.pixels() + y * image.bytesPerRow() + x * CGImage::kBytesPerPixel;
    std::copy_n(pixel, 4, quarters[i].begin());
  }
  return quarters;
}

/// The greatest difference of two samples.
inline int difference(const Quarters &a, const Quarters &b) {
  int greatest = 0;
  for (std::size_t i = 0; i < 16; ++i)
    greatest = std::max(greatest, std::abs(a[i / 4][i % 4] - b[i / 4][i % 4]));
  return greatest;
}

/// A picture of the quarters, without alpha or with so much of it.
inline CGImage quarteredImage(std::uint32_t width, std::uint32_t height, int alpha = 255) {
  auto pixels = std::make_unique<std::uint8_t[]>(std::size_t{width} * height * 4);
  for (std::size_t i = 0; i < std::size_t{width} * height; ++i) {
    const auto &color = kQuarters[(i % width * 2 / width) + (i / width * 2 / height) * 2];
    for (std::size_t part = 0; part < 4; ++part)
      pixels[i * 4 + part] = static_cast<std::uint8_t>(color[part] * alpha / 255);
  }
  return CGImage::imageWithPixels(width, height, alpha != 255, std::move(pixels));
}

/// A picture of the tests.
inline NSData testPicture(const std::string &name) {
  return NSData::dataWithContentsOfFile(
      NSString::stringWithUTF8String(std::string(TEST_FILES "/image-thumbnail/") + name));
}

/// The small picture that the tests ask for.
inline constexpr CGImageThumbnailOptions kThumbnail = {
    .maxPixelSize = 16, .createFromImageIfAbsent = true, .withTransform = true};

inline NSData dataWithBytes(std::string_view bytes) {
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

inline CGImage thumbnail(const NSData &data, const CGImageThumbnailOptions &options, NSError *error = nullptr) {
  const auto source = CGImageSource::sourceWithData(data, error);
  return source ? source->createThumbnailAtIndex(0, options, error) : CGImage();
}

}  // namespace nimbo
