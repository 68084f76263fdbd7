// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "platform/ImageIO/Engine/ImageReader.hpp"

namespace nimbo::detail {

/// Pictures with more pixels are not decoded: the decoder's frame and the samples are there at once.
constexpr std::int64_t kMaximumFramePixels = kMaximumDecodedBytes / 8;

/// The formats of pictures that FFmpeg decodes here.
enum class FFmpegFormat { BMP, DDS, PAM, PBM, PCX, PGM, PPM, QDraw, QOI, SGI, SunRaster, TGA, XBM, XPM, XWD };

/// Decoded pixels of sRGB, a byte a sample.
struct DecodedSamples {
  int width = 0;
  int height = 0;
  /// 3, or 4 with alpha, by which the colours are not multiplied.
  int bands = 0;
  /// Null when there are none.
  std::unique_ptr<std::uint8_t[]> bytes;

  /// An image of the samples, which must live as long; null when there are none.
  VipsPointer<VipsImage> image() const;
};

/// What a file of one picture holds.
DecodedSamples decodedByFFmpeg(FFmpegFormat format, std::span<const std::uint8_t> file);

}  // namespace nimbo::detail
