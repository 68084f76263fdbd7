// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/BMPWriting.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <new>

#include "platform/Foundation/NSRange.hpp"
#include "platform/Foundation/System/LargeBytes.hpp"

namespace nimbo::detail {
namespace {

constexpr std::size_t kFileHeaderLength = 14;
constexpr std::size_t kInformationHeaderLength = 40;
constexpr std::size_t kHeadersLength = kFileHeaderLength + kInformationHeaderLength;
constexpr unsigned kBitsPerPixel = 24;
constexpr double kInchesPerMeter = 39.3701;

std::uint8_t *append(std::uint8_t *to, std::size_t value, int length) {
  for (int i = 0; i < length; ++i, value >>= 8) *to++ = static_cast<std::uint8_t>(value);
  return to;
}

}  // namespace

NSData dataWithBMP(const ImageView &image, double dotsPerInch) {
  // Rows end at multiples of four bytes.
  const std::size_t rowLength = (std::size_t{image.width} * 3 + 3) / 4 * 4;
  const std::size_t length = kHeadersLength + rowLength * image.height;
  if (length > NSNotFound) return {};
  auto *const bytes = static_cast<std::uint8_t *>(allocateBytes(length));
  if (!bytes) throw std::bad_alloc();
  const auto dotsPerMeter = static_cast<std::size_t>(std::lround(std::max(dotsPerInch, 0.0) * kInchesPerMeter));
  std::uint8_t *to = append(append(bytes, 'B' | 'M' << 8, 2), length, 4);
  to = append(append(append(to, 0, 4), kHeadersLength, 4), kInformationHeaderLength, 4);
  to = append(append(append(append(to, image.width, 4), image.height, 4), 1, 2), kBitsPerPixel, 2);
  to = append(append(to, 0, 4), length - kHeadersLength, 4);
  to = append(append(append(append(to, dotsPerMeter, 4), dotsPerMeter, 4), 0, 4), 0, 4);
  // The last row comes first, and blue before red.
  for (std::size_t y = image.height; y-- > 0;) {
    const std::uint8_t *from = image.bytes + y * image.width * 4;
    for (std::uint32_t x = 0; x < image.width; ++x, from += 4)
      for (int color = 2; color >= 0; --color)
        *to++ = static_cast<std::uint8_t>(std::min(255, from[color] + 255 - from[3]));
    to = append(to, 0, static_cast<int>(rowLength - std::size_t{image.width} * 3));
  }
  return NSData::dataWithMallocedBytes(bytes, length);
}

}  // namespace nimbo::detail
