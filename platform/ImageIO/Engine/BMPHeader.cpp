// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/BMPHeader.hpp"

#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "platform/ImageIO/Engine/ByteOrder.hpp"

namespace nimbo::detail {
namespace {

constexpr std::uint32_t kCoreHeaderLength = 12;
constexpr std::uint32_t kInformationHeaderLength = 40;
constexpr std::uint32_t kHeaderLengthWithAlphaMask = 56;
constexpr double kInchesPerMeter = 39.3701;
constexpr double kDefaultDPI = 72;

double dotsPerInch(std::uint32_t dotsPerMeter) {
  return dotsPerMeter == 0 ? kDefaultDPI : std::round(dotsPerMeter / kInchesPerMeter * 1000) / 1000;
}

}  // namespace

ImageHeader headerOfBMP(std::string_view bytes) {
  const auto littleEndianAt = [bytes](std::size_t offset, std::size_t length) {
    return numberAt(bytes, offset, length, ByteOrder::little);
  };
  const std::uint32_t length = littleEndianAt(14, 4);
  const bool isCore = length == kCoreHeaderLength;
  if (!isCore && length < kInformationHeaderLength) return {};
  const std::size_t size = isCore ? 2 : 4;
  const std::int64_t width = littleEndianAt(18, size);
  // A negative height says that the rows begin at the top.
  const std::int64_t height = isCore ? littleEndianAt(20, size)
                                     : std::abs(std::int64_t{static_cast<std::int32_t>(littleEndianAt(22, 4))});
  ImageHeader header;
  header.isKnown = true;
  if (width <= 0 || width > INT32_MAX || height <= 0) return header;
  header.type = u"com.microsoft.bmp"_ns;
  header.properties.setObject(width, u"PixelWidth"_ns);
  header.properties.setObject(height, u"PixelHeight"_ns);
  header.properties.setObject(dotsPerInch(isCore ? 0 : littleEndianAt(38, 4)), u"DPIWidth"_ns);
  header.properties.setObject(dotsPerInch(isCore ? 0 : littleEndianAt(42, 4)), u"DPIHeight"_ns);
  header.properties.setObject(u"RGB"_ns, u"ColorModel"_ns);
  // A fourth byte of a pixel may be alpha, or idle, unless a mask is there for it.
  if (littleEndianAt(isCore ? 24 : 28, 2) != 32)
    header.properties.setObject(false, u"HasAlpha"_ns);
  else if (length >= kHeaderLengthWithAlphaMask && littleEndianAt(66, 4) != 0)
    header.properties.setObject(true, u"HasAlpha"_ns);
  return header;
}

}  // namespace nimbo::detail
