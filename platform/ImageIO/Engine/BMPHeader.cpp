// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/ImageIO/Engine/ImageReading.hpp"

namespace nimbo::detail {
namespace {

/// The file header of 14 bytes, and the first fields of the bitmap's own, which begins with its length.
constexpr std::size_t kHeaderLength = 54;
constexpr std::uint32_t kCoreHeaderLength = 12;
constexpr std::uint32_t kInformationHeaderLength = 40;
constexpr double kInchesPerMeter = 39.3701;
constexpr double kDefaultDPI = 72;

std::uint32_t littleEndianAt(std::string_view bytes, std::size_t offset, std::size_t length) {
  std::uint32_t value = 0;
  for (std::size_t i = length; i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[offset + i]);
  return value;
}

double dotsPerInch(std::uint32_t dotsPerMeter) {
  return dotsPerMeter == 0 ? kDefaultDPI : std::round(dotsPerMeter / kInchesPerMeter * 1000) / 1000;
}

}  // namespace

ImageHeader readHeaderOfBMP(const ImageInput &input) {
  std::string bytes = firstBytes(input, kHeaderLength);
  if (!bytes.starts_with("BM")) return {};
  // Zeros stand for what is missing.
  bytes.resize(kHeaderLength);
  const std::uint32_t length = littleEndianAt(bytes, 14, 4);
  const bool isCore = length == kCoreHeaderLength;
  if (!isCore && length < kInformationHeaderLength) return {};
  const std::size_t size = isCore ? 2 : 4;
  const std::int64_t width = littleEndianAt(bytes, 18, size);
  // A negative height says that the rows begin at the top.
  const std::int64_t height =
      isCore ? littleEndianAt(bytes, 20, size)
             : std::abs(std::int64_t{static_cast<std::int32_t>(littleEndianAt(bytes, 22, 4))});
  ImageHeader header;
  header.isKnown = true;
  if (width <= 0 || width > INT32_MAX || height <= 0) return header;
  header.type = u"com.microsoft.bmp"_ns;
  header.properties.setObject(width, u"PixelWidth"_ns);
  header.properties.setObject(height, u"PixelHeight"_ns);
  header.properties.setObject(dotsPerInch(isCore ? 0 : littleEndianAt(bytes, 38, 4)), u"DPIWidth"_ns);
  header.properties.setObject(dotsPerInch(isCore ? 0 : littleEndianAt(bytes, 42, 4)), u"DPIHeight"_ns);
  header.properties.setObject(u"RGB"_ns, u"ColorModel"_ns);
  return header;
}

}  // namespace nimbo::detail
