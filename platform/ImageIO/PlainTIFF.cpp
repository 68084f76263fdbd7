// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/PlainTIFF.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "platform/Foundation/System/LargeBytes.hpp"

namespace nimbo::detail {
namespace {

constexpr std::uint32_t kSamples = 3;
constexpr std::uint32_t kRowsPerStrip = 128;

/// Writes numbers, little-endian.
class Numbers {
 public:
  explicit Numbers(std::uint8_t *to) : to_(to) {}

  void put(std::uint32_t number, int bytes) {
    for (; bytes > 0; --bytes, number >>= 8) *to_++ = static_cast<std::uint8_t>(number);
  }
  /// A field with one value, or with where its values are.
  void putShort(std::uint32_t tag, std::uint32_t value, std::uint32_t count = 1) {
    putField(tag, 3, count, value);
  }
  void putLong(std::uint32_t tag, std::uint32_t value, std::uint32_t count = 1) {
    putField(tag, 4, count, value);
  }
  void putRational(std::uint32_t tag, std::uint32_t place) { putField(tag, 5, 1, place); }

 private:
  void putField(std::uint32_t tag, std::uint32_t type, std::uint32_t count, std::uint32_t value) {
    put(tag, 2);
    put(type, 2);
    put(count, 4);
    put(value, 4);
  }

  std::uint8_t *to_;
};

}  // namespace

NSData plainTIFF(const CGImage &image, double dotsPerInch) {
  constexpr std::uint32_t kFields = 14;
  constexpr std::uint32_t kDirectory = 8, kDirectoryBytes = 2 + kFields * 12 + 4;
  constexpr std::uint32_t kDepths = kDirectory + kDirectoryBytes, kResolution = kDepths + 2 * kSamples;
  constexpr std::uint32_t kStrips = kResolution + 8;
  constexpr std::uint32_t kHundredths = 100;
  const std::uint32_t rowBytes = image.width() * kSamples, stripBytes = rowBytes * kRowsPerStrip;
  const std::uint32_t strips = (image.height() + kRowsPerStrip - 1) / kRowsPerStrip;
  const std::uint32_t lengths = kStrips + 4 * strips;
  const std::uint32_t pixels = strips == 1 ? kStrips : lengths + 4 * strips;
  const std::uint64_t size = pixels + std::uint64_t{rowBytes} * image.height();
  if (size > std::numeric_limits<std::int32_t>::max()) return {};
  auto *const file = static_cast<std::uint8_t *>(allocateBytes(size));
  if (!file) return {};

  Numbers header(file);
  header.put(0x4949, 2);
  header.put(42, 2);
  header.put(kDirectory, 4);
  header.put(kFields, 2);
  header.putLong(256, image.width());
  header.putLong(257, image.height());
  header.putShort(258, kDepths, kSamples);
  header.putShort(259, 1);                                      // no compression
  header.putShort(262, 2);                                      // red, green and blue
  header.putLong(273, strips == 1 ? pixels : kStrips, strips);  // where the strips are
  header.putShort(274, 1);                                      // the first row is the upper one
  header.putShort(277, kSamples);
  header.putLong(278, kRowsPerStrip);
  header.putLong(279, strips == 1 ? rowBytes * image.height() : lengths, strips);
  header.putRational(282, kResolution);
  header.putRational(283, kResolution);
  header.putShort(284, 1);  // samples of a pixel beside each other
  header.putShort(296, 2);  // a resolution in inches
  header.put(0, 4);
  for (std::uint32_t i = 0; i < kSamples; ++i) header.put(8, 2);
  header.put(static_cast<std::uint32_t>(std::lround(std::clamp(dotsPerInch, 0.0, 1e6) * kHundredths)), 4);
  header.put(kHundredths, 4);
  if (strips > 1) {
    for (std::uint32_t i = 0; i < strips; ++i) header.put(pixels + i * stripBytes, 4);
    for (std::uint32_t i = 0; i < strips; ++i)
      header.put(std::min(kRowsPerStrip, image.height() - i * kRowsPerStrip) * rowBytes, 4);
  }

  std::uint8_t *to = file + pixels;
  for (std::uint32_t y = 0; y < image.height(); ++y) {
    const std::uint8_t *from = image.pixels() + y * image.bytesPerRow();
    for (std::uint32_t x = 0; x < image.width(); ++x, to += kSamples, from += CGImage::kBytesPerPixel)
      std::memcpy(to, from, kSamples);
  }
  return NSData::dataWithMallocedBytes(file, size);
}

}  // namespace nimbo::detail
