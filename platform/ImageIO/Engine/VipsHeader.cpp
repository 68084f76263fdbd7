// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/VipsHeader.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/ImageIO/Engine/ICCProfile.hpp"

namespace nimbo::detail {
namespace {

constexpr double kMillimetersPerInch = 25.4;
/// What libvips answers when the file names no resolution.
constexpr double kUnsetPixelsPerMillimeter = 1.0;
constexpr double kDefaultDPI = 72;

/// The type of a HEIF file by its compression; else `type`.
NSString typeOfImage(VipsImage *image, const NSString &type) {
  const char *compression = "";
  if (vips_image_get_typeof(image, "heif-compression"))
    vips_image_get_string(image, "heif-compression", &compression);
  if (compression == std::string_view("hevc")) return u"public.heic"_ns;
  return compression == std::string_view("av1") ? u"public.avif"_ns : type;
}

NSString colorModelOfImage(VipsImage *image) {
  switch (vips_image_guess_interpretation(image)) {
    case VIPS_INTERPRETATION_sRGB:
    case VIPS_INTERPRETATION_RGB:
    case VIPS_INTERPRETATION_RGB16:
    case VIPS_INTERPRETATION_scRGB:
      return u"RGB"_ns;
    case VIPS_INTERPRETATION_B_W:
    case VIPS_INTERPRETATION_GREY16:
      return u"Gray"_ns;
    case VIPS_INTERPRETATION_CMYK:
      return u"CMYK"_ns;
    case VIPS_INTERPRETATION_LAB:
    case VIPS_INTERPRETATION_LABQ:
    case VIPS_INTERPRETATION_LABS:
      return u"Lab"_ns;
    default:
      return {};
  }
}

int depthOfImage(VipsImage *image) {
  // The same fact under the name of a later and of this release.
  for (const char *name : {"bits-per-sample", "heif-bitdepth"}) {
    int bits = 0;
    if (vips_image_get_typeof(image, name) && vips_image_get_int(image, name, &bits) == 0 && bits > 0)
      return bits;
  }
  return static_cast<int>(vips_format_sizeof(vips_image_get_format(image))) * 8;
}

double dotsPerInch(double pixelsPerMillimeter) {
  if (!(pixelsPerMillimeter > 0) || pixelsPerMillimeter == kUnsetPixelsPerMillimeter) return kDefaultDPI;
  // Several formats store whole pixels of a metre, cut or rounded, which no whole number of dots an inch is.
  constexpr double kMillimetersPerMeter = 1000;
  const double whole = std::round(pixelsPerMillimeter * kMillimetersPerInch);
  if (std::abs(pixelsPerMillimeter - whole / kMillimetersPerInch) * kMillimetersPerMeter < 1) return whole;
  // Rounding takes away the noise of the conversions there and back.
  return std::round(pixelsPerMillimeter * kMillimetersPerInch * 1000) / 1000;
}

/// Nothing when the loader tells no such number.
std::optional<int> numberOf(VipsImage *image, const char *name) {
  int number = 0;
  if (!vips_image_get_typeof(image, name) || vips_image_get_int(image, name, &number) != 0) return std::nullopt;
  return number;
}

NSDictionary factsOfGIF(VipsImage *image, std::uint32_t index) {
  constexpr double kMillisecondsPerSecond = 1000;
  NSDictionary facts;
  if (const auto loops = numberOf(image, "loop")) facts.setObject(*loops, u"LoopCount"_ns);
  int *delays = nullptr;
  int count = 0;
  if (vips_image_get_typeof(image, "delay") && vips_image_get_array_int(image, "delay", &delays, &count) == 0 &&
      index < static_cast<std::uint32_t>(count))
    facts.setObject(delays[index] / kMillisecondsPerSecond, u"DelayTime"_ns);
  return facts;
}

/// What one format alone says.
void addFactsOfFormat(VipsImage *image, const ImageFormat &format, std::uint32_t index,
                      NSDictionary &properties) {
  if (format.type == u"public.png"_ns)
    properties.setObject(NSDictionary{{u"InterlaceType"_ns, numberOf(image, "interlaced").value_or(0)}},
                         u"{PNG}"_ns);
  else if (format.type == u"public.jpeg"_ns)
    properties.setObject(
        NSDictionary{{u"IsProgressive"_ns, numberOf(image, "jpeg-multiscan").value_or(0) != 0}}, u"{JFIF}"_ns);
  else if (format.type == u"com.compuserve.gif"_ns)
    properties.setObject(factsOfGIF(image, index), u"{GIF}"_ns);
}

}  // namespace

NSString profileNameOfImage(VipsImage *image) {
  const void *bytes = nullptr;
  std::size_t length = 0;
  if (!vips_image_get_typeof(image, VIPS_META_ICC_NAME) ||
      vips_image_get_blob(image, VIPS_META_ICC_NAME, &bytes, &length))
    return {};
  return descriptionOfICCProfile({static_cast<const std::uint8_t *>(bytes), length});
}

ImageHeader headerOfImage(VipsImage *image, const ImageFormat &format, std::uint32_t index) {
  ImageHeader header;
  header.isKnown = true;
  header.type = typeOfImage(image, format.type);
  header.count = format.hasPages ? static_cast<std::uint32_t>(std::max(1, vips_image_get_n_pages(image))) : 1;
  NSDictionary &properties = header.properties;
  properties.setObject(vips_image_get_width(image), u"PixelWidth"_ns);
  properties.setObject(vips_image_get_height(image), u"PixelHeight"_ns);
  properties.setObject(dotsPerInch(vips_image_get_xres(image)), u"DPIWidth"_ns);
  properties.setObject(dotsPerInch(vips_image_get_yres(image)), u"DPIHeight"_ns);
  properties.setObject(depthOfImage(image), u"Depth"_ns);
  properties.setObject(colorModelOfImage(image), u"ColorModel"_ns);
  properties.setObject(vips_image_hasalpha(image) != 0, u"HasAlpha"_ns);
  properties.setObject(vips_image_get_orientation(image), u"Orientation"_ns);
  properties.setObject(profileNameOfImage(image), u"ProfileName"_ns);
  addFactsOfFormat(image, format, index, properties);
  return header;
}

}  // namespace nimbo::detail
