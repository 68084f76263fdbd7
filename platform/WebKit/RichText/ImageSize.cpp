// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/RichText/ImageSize.hpp"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/WebKit/RichText/Numbers.hpp"

namespace nimbo::detail {

namespace {

/// How much of an SVG picture may stand in front of its "svg" tag, and how long that may be.
constexpr std::size_t kMaximumSVGHead = 65536;

std::uint32_t byteAt(std::string_view bytes, std::size_t index) {
  return index < bytes.size() ? static_cast<std::uint8_t>(bytes[index]) : 0;
}

std::uint32_t big16(std::string_view bytes, std::size_t index) {
  return byteAt(bytes, index) << 8 | byteAt(bytes, index + 1);
}

std::uint32_t big32(std::string_view bytes, std::size_t index) {
  return big16(bytes, index) << 16 | big16(bytes, index + 2);
}

std::uint32_t little16(std::string_view bytes, std::size_t index) {
  return byteAt(bytes, index) | byteAt(bytes, index + 1) << 8;
}

std::uint32_t little24(std::string_view bytes, std::size_t index) {
  return little16(bytes, index) | byteAt(bytes, index + 2) << 16;
}

std::uint32_t little32(std::string_view bytes, std::size_t index) {
  return little16(bytes, index) | little16(bytes, index + 2) << 16;
}

std::optional<NSSize> checkedSize(double width, double height) {
  if (!(width > 0 && height > 0 && width <= kMaximumImagePixels && height <= kMaximumImagePixels)) return {};
  return NSSize{width, height};
}

/// Whether a block of Exif says that the picture lies on its side.
bool isTurned(std::string_view exif) {
  constexpr std::uint32_t kOrientation = 0x112;
  if (!exif.starts_with(std::string_view("Exif\0\0", 6))) return false;
  exif.remove_prefix(6);
  const bool isLittle = exif.starts_with("II");
  const auto read16 = [&](std::size_t i) { return isLittle ? little16(exif, i) : big16(exif, i); };
  const std::size_t directory = isLittle ? little32(exif, 4) : big32(exif, 4);
  const std::uint32_t count = read16(directory);
  for (std::uint32_t i = 0; i < count && directory + 14 + 12 * std::size_t{i} <= exif.size(); ++i)
    if (const std::size_t entry = directory + 2 + 12 * std::size_t{i}; read16(entry) == kOrientation)
      return read16(entry + 8) >= 5 && read16(entry + 8) <= 8;
  return false;
}

std::optional<NSSize> sizeOfJPEG(std::string_view bytes) {
  bool turned = false;
  for (std::size_t i = 2; i + 9 < bytes.size();) {
    if (byteAt(bytes, i) != 0xff) return {};
    const std::uint32_t marker = byteAt(bytes, i + 1);
    if (marker == 0xff || marker == 0x01 || (marker >= 0xd0 && marker <= 0xd8)) {
      i += marker == 0xff ? 1 : 2;
      continue;
    }
    const std::size_t length = big16(bytes, i + 2);
    if (length < 2) return {};
    const bool isFrame = marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
    if (isFrame) {
      const double height = big16(bytes, i + 5), width = big16(bytes, i + 7);
      return turned ? checkedSize(height, width) : checkedSize(width, height);
    }
    if (marker == 0xe1) turned |= isTurned(bytes.substr(i + 4, length - 2));
    i += 2 + length;
  }
  return {};
}

std::optional<NSSize> sizeOfWebP(std::string_view bytes) {
  const std::string_view kind = bytes.substr(12, 4);
  if (kind == "VP8X") return checkedSize(little24(bytes, 24) + 1, little24(bytes, 27) + 1);
  if (kind == "VP8 ") return checkedSize(little16(bytes, 26) & 0x3fff, little16(bytes, 28) & 0x3fff);
  if (kind != "VP8L") return {};
  const std::uint32_t bits = little32(bytes, 21);
  return checkedSize((bits & 0x3fff) + 1, (bits >> 14 & 0x3fff) + 1);
}

/// The value of an attribute in a tag; empty when there is none.
std::u16string attributeInTag(std::string_view tag, std::string_view name) {
  for (std::size_t i = tag.find(name); i != tag.npos; i = tag.find(name, i + 1)) {
    const std::size_t quote = tag.find_first_not_of(" \t\r\n=", i + name.size());
    if (!isASCIIWhiteSpace(tag[i - 1]) || quote == tag.npos || (tag[quote] != '"' && tag[quote] != '\''))
      continue;
    const std::size_t end = tag.find(tag[quote], quote + 1);
    if (end == tag.npos) return {};
    const std::string_view value = tag.substr(quote + 1, end - quote - 1);
    return {value.begin(), value.end()};
  }
  return {};
}

/// The pixels of a length in an SVG attribute; nothing for percentages.
std::optional<double> pixelsOfSVGLength(std::u16string_view text) {
  static constexpr struct {
    std::string_view name;
    double pixels;
  } kUnits[] = {{"", 1},    {"px", 1},         {"pt", 4.0 / 3},   {"pc", 16},
                {"in", 96}, {"cm", 96 / 2.54}, {"mm", 96 / 25.4}, {"em", 16}};
  const std::optional<double> number = takeNumber(&text);
  if (!number) return {};
  for (const auto &unit : kUnits)
    if (equalsASCIINoCase(text, unit.name)) return *number * unit.pixels;
  return {};
}

std::optional<NSSize> sizeOfSVG(std::string_view tag) {
  const auto width = pixelsOfSVGLength(attributeInTag(tag, "width"));
  const auto height = pixelsOfSVGLength(attributeInTag(tag, "height"));
  if (width && height) return checkedSize(*width, *height);
  const std::u16string box = attributeInTag(tag, "viewBox");
  std::u16string_view rest = box;
  double sides[4] = {};
  for (double &side : sides) {
    while (!rest.empty() && (isASCIIWhiteSpace(rest.front()) || rest.front() == u',')) rest.remove_prefix(1);
    const std::optional<double> number = takeNumber(&rest);
    if (!number) return {};
    side = *number;
  }
  if (!(sides[2] > 0 && sides[3] > 0)) return {};
  if (width) return checkedSize(*width, *width * sides[3] / sides[2]);
  if (height) return checkedSize(*height * sides[2] / sides[3], *height);
  return checkedSize(sides[2], sides[3]);
}

}  // namespace

std::optional<ImageHeader> imageHeader(std::string_view bytes) {
  if (bytes.starts_with("\x89PNG\r\n\x1a\n"))
    return ImageHeader{"png", checkedSize(big32(bytes, 16), big32(bytes, 20))};
  if (bytes.starts_with("\xff\xd8\xff")) return ImageHeader{"jpg", sizeOfJPEG(bytes)};
  if (bytes.starts_with("GIF87a") || bytes.starts_with("GIF89a"))
    return ImageHeader{"gif", checkedSize(little16(bytes, 6), little16(bytes, 8))};
  if (bytes.starts_with("RIFF") && bytes.size() >= 16 && bytes.substr(8, 4) == "WEBP")
    return ImageHeader{"webp", sizeOfWebP(bytes)};
  if (bytes.starts_with("BM") && bytes.size() >= 26) {
    const bool isOld = little32(bytes, 14) == 12;
    const auto height = static_cast<std::int32_t>(little32(bytes, 22));
    return ImageHeader{"bmp", isOld ? checkedSize(little16(bytes, 18), little16(bytes, 20))
                                    : checkedSize(little32(bytes, 18), std::abs(double{1} * height))};
  }
  const std::string_view head = bytes.substr(0, kMaximumSVGHead);
  const std::size_t first = head.find_first_not_of("\xef\xbb\xbf \t\r\n");
  if (first == head.npos || head[first] != '<') return {};
  const std::size_t tag = head.find("<svg");
  if (tag == head.npos) return {};
  const std::string_view rest = head.substr(tag);
  return ImageHeader{"svg", sizeOfSVG(rest.substr(0, rest.find('>')))};
}

}  // namespace nimbo::detail
