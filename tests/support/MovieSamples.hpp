// SPDX-License-Identifier: Apache-2.0
//
// The movies of tests/data/movies, which scripts/make-test-movies makes.
#pragma once

#include <cmath>
#include <cstdint>
#include <string>

#include "platform/CoreGraphics/CGImage.hpp"
#include "platform/Foundation/NSString.hpp"

namespace nimbo {

inline NSString movieSample(const std::string &name) {
  return NSString::stringWithUTF8String(QUIVERLEAF_TEST_DATA "/movies/" + name);
}

/// Which frame of a numbered movie it is, by its gray; -1 when it is none or not gray.
inline int numberOfFrame(const CGImage &image) {
  if (!image) return -1;
  const std::uint8_t *pixel =
      image.pixels() + image.bytesPerRow() * (image.height() / 2) + image.width() / 2 * 4;
  if (std::abs(pixel[0] - pixel[1]) > 2 || std::abs(pixel[1] - pixel[2]) > 2 || pixel[3] != 255) return -1;
  // Brightness 16 is black and 235 is white; a frame has four more than the one before.
  return static_cast<int>(std::lround(pixel[1] * 219 / 255.0 / 4));
}

}  // namespace nimbo
