// SPDX-License-Identifier: Apache-2.0
#include <vips/vips.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string_view>

#include "platform/ImageIO/ICCProfile.hpp"
#include "platform/ImageIO/ImageInput.hpp"

namespace nimbo::detail {
namespace {

constexpr double kMillimetersPerInch = 25.4;
/// What libvips answers when the file names no resolution.
constexpr double kUnsetPixelsPerMillimeter = 1.0;
constexpr double kDefaultDPI = 72;

struct Unreference {
  void operator()(void *object) const { g_object_unref(object); }
};

/// Starts libvips once in the process. False when it cannot be started.
bool startVips() {
  static const bool started = [] {
    // Its remarks about damaged files are for nobody.
    g_log_set_handler(
        "VIPS", static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK | G_LOG_FLAG_FATAL | G_LOG_FLAG_RECURSION),
        [](const gchar *, GLogLevelFlags, const gchar *, gpointer) {}, nullptr);
    if (VIPS_INIT("quiverleaf") != 0) return false;
    vips_concurrency_set(1);
    vips_cache_set_max(0);
    vips_block_untrusted_set(TRUE);
    return true;
  }();
  return started;
}

/// Nil for what libvips loads besides images, as matrices of numbers.
NSString typeOfImage(VipsImage *image) {
  const char *loader = nullptr;
  if (!vips_image_get_typeof(image, VIPS_META_LOADER) ||
      vips_image_get_string(image, VIPS_META_LOADER, &loader))
    return {};
  const std::string_view name = loader;
  if (name.starts_with("jpegload")) return u"public.jpeg"_ns;
  if (name.starts_with("pngload")) return u"public.png"_ns;
  if (name.starts_with("tiffload")) return u"public.tiff"_ns;
  if (name.starts_with("gifload")) return u"com.compuserve.gif"_ns;
  if (name.starts_with("webpload")) return u"org.webmproject.webp"_ns;
  if (!name.starts_with("heifload")) return {};
  const char *compression = "";
  if (vips_image_get_typeof(image, "heif-compression"))
    vips_image_get_string(image, "heif-compression", &compression);
  if (compression == std::string_view("hevc")) return u"public.heic"_ns;
  return compression == std::string_view("av1") ? u"public.avif"_ns : u"public.heif"_ns;
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
  // The same fact by the name of the release and of the format.
  for (const char *name : {"bits-per-sample", "heif-bitdepth", "palette-bit-depth"}) {
    int bits = 0;
    if (vips_image_get_typeof(image, name) && vips_image_get_int(image, name, &bits) == 0 && bits > 0)
      return bits;
  }
  return static_cast<int>(vips_format_sizeof(vips_image_get_format(image))) * 8;
}

double dotsPerInch(double pixelsPerMillimeter) {
  if (!(pixelsPerMillimeter > 0) || pixelsPerMillimeter == kUnsetPixelsPerMillimeter) return kDefaultDPI;
  // Without the noise of the conversions there and back.
  return std::round(pixelsPerMillimeter * kMillimetersPerInch * 1000) / 1000;
}

/// Nil when the image has none.
NSData blobOfImage(VipsImage *image, const char *name) {
  const void *bytes = nullptr;
  std::size_t length = 0;
  if (!vips_image_get_typeof(image, name) || vips_image_get_blob(image, name, &bytes, &length)) return {};
  return NSData::dataWithBytes(bytes, length);
}

ImageHeader headerOfImage(VipsImage *image) {
  ImageHeader header;
  header.type = typeOfImage(image);
  if (!header.type) return header;
  header.count = static_cast<std::uint32_t>(std::max(1, vips_image_get_n_pages(image)));
  NSDictionary &properties = header.properties;
  properties.setObject(vips_image_get_width(image), u"PixelWidth"_ns);
  properties.setObject(vips_image_get_height(image), u"PixelHeight"_ns);
  properties.setObject(dotsPerInch(vips_image_get_xres(image)), u"DPIWidth"_ns);
  properties.setObject(dotsPerInch(vips_image_get_yres(image)), u"DPIHeight"_ns);
  properties.setObject(depthOfImage(image), u"Depth"_ns);
  properties.setObject(colorModelOfImage(image), u"ColorModel"_ns);
  properties.setObject(vips_image_hasalpha(image) != 0, u"HasAlpha"_ns);
  properties.setObject(vips_image_get_orientation(image), u"Orientation"_ns);
  const NSData profile = blobOfImage(image, VIPS_META_ICC_NAME);
  properties.setObject(descriptionOfICCProfile(profile.span()), u"ProfileName"_ns);
  header.exif = blobOfImage(image, VIPS_META_EXIF_NAME);
  header.xmp = blobOfImage(image, VIPS_META_XMP_NAME);
  return header;
}

}  // namespace

ImageHeader readHeaderWithVips(const ImageInput &input) {
  if (!startVips()) return {};
  ImageHeader header;
  const std::unique_ptr<VipsSource, Unreference> source(
      input.fileName.empty() ? vips_source_new_from_memory(input.data.bytes(), input.data.length())
                             : vips_source_new_from_file(input.fileName.c_str()));
  if (source) {
    const std::unique_ptr<VipsImage, Unreference> image(
        vips_image_new_from_source(source.get(), "", "access", VIPS_ACCESS_SEQUENTIAL, nullptr));
    if (image) header = headerOfImage(image.get());
  }
  vips_error_clear();
  return header;
}

}  // namespace nimbo::detail
