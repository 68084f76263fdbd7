// SPDX-License-Identifier: Apache-2.0
#include "platform/QTKit/Engine/PictureOrientation.hpp"

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/CoreGraphics/CGImage.hpp"

namespace nimbo::detail {
namespace {

constexpr std::size_t kMatrixLength = 9;
/// Columns that are read one by one take whole lines of the cache along; so many of them are taken together.
constexpr std::uint32_t kTileSide = 32;

/// One pixel.
using Pixel = std::uint32_t;
static_assert(sizeof(Pixel) == CGImage::kBytesPerPixel);

void copyPixel(const std::uint8_t *from, std::uint8_t *to) {
  std::memcpy(to, from, sizeof(Pixel));
}

}  // namespace

PictureOrientation orientationOfStream(const AVStream &stream) {
  std::size_t length = 0;
  const std::uint8_t *data = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, &length);
  std::int32_t matrix[kMatrixLength];
  if (!data || length < sizeof(matrix)) return {};
  std::memcpy(matrix, data, sizeof(matrix));
  // x' = a x + c y, y' = b x + d y.
  const std::int64_t a = matrix[0];
  const std::int64_t b = matrix[1];
  const std::int64_t c = matrix[3];
  const std::int64_t d = matrix[4];
  if (std::abs(a) + std::abs(d) >= std::abs(b) + std::abs(c)) return {false, a < 0, d < 0};
  return {true, c < 0, b < 0};
}

MoviePicture turnedPicture(MoviePicture picture, const PictureOrientation &orientation) {
  const auto [isTransposed, isFlippedHorizontally, isFlippedVertically] = orientation;
  if (!picture.pixels || (!isTransposed && !isFlippedHorizontally && !isFlippedVertically)) return picture;
  MoviePicture turned = {picture.width, picture.height, picture.hasAlpha, nullptr};
  if (isTransposed) std::swap(turned.width, turned.height);
  turned.pixels =
      std::make_unique_for_overwrite<std::uint8_t[]>(std::size_t{turned.width} * turned.height * sizeof(Pixel));
  const std::size_t step = isTransposed ? std::size_t{picture.width} * sizeof(Pixel) : sizeof(Pixel);
  for (std::uint32_t left = 0; left < turned.width; left += kTileSide)
    for (std::uint32_t y = 0; y < turned.height; ++y) {
      const std::uint32_t row = isFlippedVertically ? turned.height - 1 - y : y;
      const std::uint8_t *line =
          picture.pixels.get() +
          (isTransposed ? std::size_t{row} : std::size_t{row} * picture.width) * sizeof(Pixel);
      std::uint8_t *to = turned.pixels.get() + (std::size_t{y} * turned.width + left) * sizeof(Pixel);
      const std::uint32_t right = std::min(left + kTileSide, turned.width);
      for (std::uint32_t x = left; x < right; ++x, to += sizeof(Pixel))
        copyPixel(line + (isFlippedHorizontally ? turned.width - 1 - x : x) * step, to);
    }
  return turned;
}

}  // namespace nimbo::detail
