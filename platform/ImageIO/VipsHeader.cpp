// SPDX-License-Identifier: Apache-2.0
#include <unistd.h>
#include <vips/vips.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdint>
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

/// A format by the bytes that it begins with. libvips is never asked to find out by itself: it would try every
/// loader, and one of them does not come to an end on some compressed files.
struct Format {
  std::string_view signature;
  std::size_t offset;
  NSString type;
  int (*load)(VipsSource *, VipsImage **, ...);
};

/// Null when the bytes begin no format of ours.
const Format *formatOfBytes(std::string_view bytes) {
  using namespace std::literals;
  static const Format kFormats[] = {
      {"\xff\xd8\xff"sv, 0, u"public.jpeg"_ns, vips_jpegload_source},
      {"\x89PNG\r\n\x1a\n"sv, 0, u"public.png"_ns, vips_pngload_source},
      {"II*\0"sv, 0, u"public.tiff"_ns, vips_tiffload_source},
      {"MM\0*"sv, 0, u"public.tiff"_ns, vips_tiffload_source},
      {"II+\0"sv, 0, u"public.tiff"_ns, vips_tiffload_source},
      {"MM\0+"sv, 0, u"public.tiff"_ns, vips_tiffload_source},
      {"GIF8"sv, 0, u"com.compuserve.gif"_ns, vips_gifload_source},
      {"WEBP"sv, 8, u"org.webmproject.webp"_ns, vips_webpload_source},
      {"ftyp"sv, 4, u"public.heif"_ns, vips_heifload_source},
  };
  for (const Format &format : kFormats)
    if (bytes.substr(std::min(format.offset, bytes.size())).starts_with(format.signature)) return &format;
  return nullptr;
}

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
  // Rounding takes away the noise of the conversions there and back.
  return std::round(pixelsPerMillimeter * kMillimetersPerInch * 1000) / 1000;
}

/// Nil when the image has no profile, or it has no name.
NSString profileNameOfImage(VipsImage *image) {
  const void *bytes = nullptr;
  std::size_t length = 0;
  if (!vips_image_get_typeof(image, VIPS_META_ICC_NAME) ||
      vips_image_get_blob(image, VIPS_META_ICC_NAME, &bytes, &length))
    return {};
  return descriptionOfICCProfile({static_cast<const std::uint8_t *>(bytes), length});
}

ImageHeader headerOfImage(VipsImage *image, const Format &format) {
  ImageHeader header;
  header.isKnown = true;
  header.type = typeOfImage(image, format.type);
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
  properties.setObject(profileNameOfImage(image), u"ProfileName"_ns);
  return header;
}

/// A file with a position of its own, which ends where it ended when it was opened: libvips relies on that.
struct OpenFile {
  int descriptor;
  std::int64_t size;
  std::int64_t position = 0;

  /// Reads as read(2) does.
  std::int64_t read(void *buffer, std::int64_t length) {
    const auto room = static_cast<std::size_t>(std::clamp<std::int64_t>(size - position, 0, length));
    ssize_t got = 0;
    do {
      got = ::pread(descriptor, buffer, room, position);
    } while (got < 0 && errno == EINTR);
    position += std::max<ssize_t>(got, 0);
    return got;
  }
  /// Seeks as lseek(2) does.
  std::int64_t seek(std::int64_t offset, int whence) {
    const std::int64_t start = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? position : size;
    if (offset < -start || offset > INT64_MAX - start) return -1;
    return position = start + offset;
  }
};

/// What libvips reads the file through, which must live as long. By itself it maps files, and who cuts a mapped
/// file short ends the process.
VipsSource *sourceOfFile(OpenFile &file) {
  using Read = gint64 (*)(VipsSourceCustom *, void *, gint64, gpointer);
  using Seek = gint64 (*)(VipsSourceCustom *, gint64, int, gpointer);
  const Read read = [](VipsSourceCustom *, void *buffer, gint64 length, gpointer self) -> gint64 {
    return static_cast<OpenFile *>(self)->read(buffer, length);
  };
  const Seek seek = [](VipsSourceCustom *, gint64 offset, int whence, gpointer self) -> gint64 {
    return static_cast<OpenFile *>(self)->seek(offset, whence);
  };
  VipsSourceCustom *source = vips_source_custom_new();
  g_signal_connect(source, "read", reinterpret_cast<GCallback>(read), &file);
  g_signal_connect(source, "seek", reinterpret_cast<GCallback>(seek), &file);
  return &source->parent_object;
}

}  // namespace

ImageHeader readHeaderWithVips(const ImageInput &input) {
  const Format *format = formatOfBytes(input.firstBytes());
  if (!format || !startVips()) return {};
  ImageHeader header;
  header.isKnown = true;
  OpenFile file = {input.descriptor, static_cast<std::int64_t>(input.fileSize)};
  const std::unique_ptr<VipsSource, Unreference> source(
      input.descriptor < 0 ? vips_source_new_from_memory(input.data.bytes(), input.data.length())
                           : sourceOfFile(file));
  VipsImage *loaded = nullptr;
  if (source && format->load(source.get(), &loaded, "access", VIPS_ACCESS_SEQUENTIAL, nullptr) == 0) {
    const std::unique_ptr<VipsImage, Unreference> image(loaded);
    header = headerOfImage(image.get(), *format);
  }
  vips_error_clear();
  return header;
}

}  // namespace nimbo::detail
