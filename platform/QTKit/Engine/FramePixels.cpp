// SPDX-License-Identifier: Apache-2.0
#include "platform/QTKit/Engine/FramePixels.hpp"

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "platform/CoreGraphics/CGImage.hpp"

namespace nimbo::detail {
namespace {

/// Aspects beyond this, or below its inverse, are damage.
constexpr double kMaximumAspect = 16;
/// From so many rows on, pictures that do not name their colours have those of high definition.
constexpr int kHighDefinitionRows = 720;
/// The scaler may write whole vectors, beyond the end of the last row.
constexpr std::size_t kScalerOverrun = 64;
/// One in the fixed-point numbers of the scaler.
constexpr int kFixedPointOne = 1 << 16;

/// What the frame says of how its brightness and colour differences become red, green and blue.
void setColors(SwsContext *scaler, const AVFrame &frame) {
  int space = SWS_CS_DEFAULT;
  switch (frame.colorspace) {
    case AVCOL_SPC_BT709:
      space = SWS_CS_ITU709;
      break;
    case AVCOL_SPC_FCC:
      space = SWS_CS_FCC;
      break;
    case AVCOL_SPC_SMPTE240M:
      space = SWS_CS_SMPTE240M;
      break;
    case AVCOL_SPC_BT2020_NCL:
    case AVCOL_SPC_BT2020_CL:
      space = SWS_CS_BT2020;
      break;
    case AVCOL_SPC_UNSPECIFIED:
      space = frame.height >= kHighDefinitionRows ? SWS_CS_ITU709 : SWS_CS_ITU601;
      break;
    default:
      space = SWS_CS_ITU601;
  }
  const int *coefficients = sws_getCoefficients(space);
  // Some forms of pixels have the full range by themselves.
  int *inverse = nullptr;
  int *table = nullptr;
  int isFull = 0;
  int rest[4] = {};
  sws_getColorspaceDetails(scaler, &inverse, &isFull, &table, &rest[0], &rest[1], &rest[2], &rest[3]);
  if (frame.color_range == AVCOL_RANGE_JPEG) isFull = 1;
  sws_setColorspaceDetails(scaler, coefficients, isFull, coefficients, 1, 0, kFixedPointOne, kFixedPointOne);
}

/// The colours multiplied by alpha, which also says whether there is any transparency.
void premultiply(MoviePicture &picture) {
  picture.hasAlpha = false;
  std::uint8_t *pixel = picture.pixels.get();
  const std::size_t count = std::size_t{picture.width} * picture.height;
  for (std::size_t i = 0; i < count; ++i, pixel += CGImage::kBytesPerPixel) {
    if (pixel[3] == 255) continue;
    picture.hasAlpha = true;
    for (int component = 0; component < 3; ++component)
      pixel[component] = static_cast<std::uint8_t>((pixel[component] * pixel[3] + 127) / 255);
  }
}

}  // namespace

NSSize squarePixelSize(int width, int height, AVRational sampleAspect) {
  if (width <= 0 || height <= 0) return {};
  const NSSize coded = {static_cast<double>(width), static_cast<double>(height)};
  const double aspect = sampleAspect.den > 0 ? av_q2d(sampleAspect) : 0;
  if (!(aspect >= 1 / kMaximumAspect && aspect <= kMaximumAspect)) return coded;
  const NSSize size = {std::max(std::round(width * aspect), 1.0), coded.height};
  const bool fits =
      size.width <= CGImage::kMaximumSide && size.width * size.height <= double{kMaximumFramePixels};
  return fits ? size : coded;
}

MoviePicture pictureOfFrame(const AVFrame &frame, AVRational sampleAspect, NSError *error) {
  const auto format = static_cast<AVPixelFormat>(frame.format);
  const NSSize size = squarePixelSize(frame.width, frame.height, sampleAspect);
  const AVPixFmtDescriptor *description = av_pix_fmt_desc_get(format);
  if (!description || !sws_isSupportedInput(format)) {
    setError(error, ErrorCode::unsupportedType, "the movie's pictures have an unknown form");
    return {};
  }
  if (frame.width <= 0 || frame.height <= 0 || size.width > CGImage::kMaximumSide ||
      size.height > CGImage::kMaximumSide || size.width * size.height > double{kMaximumFramePixels}) {
    setError(error, ErrorCode::tooLarge, "the movie's pictures are too large");
    return {};
  }
  MoviePicture picture;
  picture.width = static_cast<std::uint32_t>(size.width);
  picture.height = static_cast<std::uint32_t>(size.height);
  picture.hasAlpha = (description->flags & AV_PIX_FMT_FLAG_ALPHA) != 0 || format == AV_PIX_FMT_PAL8;
  const int bytesPerRow = static_cast<int>(picture.width * CGImage::kBytesPerPixel);
  const std::size_t length = std::size_t{picture.height} * picture.width * CGImage::kBytesPerPixel;
  picture.pixels = std::make_unique_for_overwrite<std::uint8_t[]>(length + kScalerOverrun);
  const FFmpegPointer<SwsContext> scaler(
      sws_getContext(frame.width, frame.height, format, static_cast<int>(picture.width),
                     static_cast<int>(picture.height), picture.hasAlpha ? AV_PIX_FMT_RGBA : AV_PIX_FMT_RGB0,
                     SWS_BICUBIC | SWS_FULL_CHR_H_INT | SWS_ACCURATE_RND, nullptr, nullptr, nullptr));
  if (!scaler) {
    setError(error, ErrorCode::memoryLimit, "the movie's pictures need too much memory");
    return {};
  }
  setColors(scaler.get(), frame);
  std::uint8_t *const rows[] = {picture.pixels.get(), nullptr, nullptr, nullptr};
  const int strides[] = {bytesPerRow, 0, 0, 0};
  sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, rows, strides);
  if (picture.hasAlpha)
    premultiply(picture);
  else
    for (std::size_t i = 3; i < length; i += CGImage::kBytesPerPixel) picture.pixels[i] = 255;
  return picture;
}

}  // namespace nimbo::detail
