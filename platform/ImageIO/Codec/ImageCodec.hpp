// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "platform/Foundation/NSError.hpp"

namespace nimbo::detail {

/// Pictures with more pixels are not decoded: the decoder's frame and the samples are there at once.
constexpr std::int64_t kMaximumFramePixels = std::int64_t{1} << 27;

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
};

/// What the library `nimbo-imagecodec` answers: FFmpeg's decoders of pictures, whose libraries take a third of
/// the time that the engine's take to load, for formats that are rare.
class ImageCodec {
 public:
  /// What a file of one picture holds; no bytes when it cannot be decoded. Unless the file says that it has
  /// alpha, the samples have none that is 0, or 255, throughout. Throws std::bad_alloc.
  virtual DecodedSamples samples(FFmpegFormat format, std::span<const std::uint8_t> file,
                                 bool saysAlpha) const = 0;

 protected:
  ~ImageCodec() = default;
};

/// The codec, which lives as long as the process; null, with `*error`, when it cannot be loaded.
const ImageCodec *imageCodec(NSError *error);

}  // namespace nimbo::detail
