// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/ImageEncoding.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "platform/Foundation/System/LargeBytes.hpp"
#include "platform/ImageIO/Engine/BMPWriting.hpp"
#include "platform/ImageIO/Engine/ImageColors.hpp"
#include "platform/ImageIO/Engine/TIFFJoining.hpp"

namespace nimbo::detail {
namespace {

constexpr double kMillimetersPerInch = 25.4;
constexpr double kMaximumQuality = 100;

struct FileType {
  NSString type;
  const char *saver;
  bool hasQuality;
  bool hasAlpha;
  /// Whether several images of one size make one file.
  bool hasFrames;
};

const FileType *fileTypeOf(const NSString &type) {
  static const FileType kTypes[] = {
      {u"public.tiff"_ns, "tiffsave_buffer", false, true, false},
      {u"public.png"_ns, "pngsave_buffer", false, true, false},
      {u"public.jpeg"_ns, "jpegsave_buffer", true, false, false},
      {u"com.compuserve.gif"_ns, "gifsave_buffer", false, true, true},
      {u"public.jpeg-2000"_ns, "jp2ksave_buffer", true, true, false},
      {u"org.webmproject.webp"_ns, "webpsave_buffer", true, true, false},
      {u"public.heic"_ns, "heifsave_buffer", true, true, false},
  };
  const auto *found = std::ranges::find(kTypes, type, &FileType::type);
  return found == std::end(kTypes) ? nullptr : found;
}

/// The pixels with the colours as they are without alpha, or on white.
std::vector<std::uint8_t> samplesOf(const ImageView &image, bool withAlpha) {
  const std::size_t count = std::size_t{image.width} * image.height;
  std::vector<std::uint8_t> samples(count * (withAlpha ? 4 : 3));
  std::uint8_t *to = samples.data();
  for (const std::uint8_t *from = image.bytes, *end = from + count * 4; from != end; from += 4) {
    const unsigned alpha = from[3];
    for (int color = 0; color < 3; ++color) {
      if (!withAlpha)
        *to++ = static_cast<std::uint8_t>(std::min(255u, from[color] + 255 - alpha));
      else
        *to++ =
            static_cast<std::uint8_t>(alpha == 0 ? 0 : std::min(255u, (from[color] * 255 + alpha / 2) / alpha));
    }
    if (withAlpha) *to++ = static_cast<std::uint8_t>(alpha);
  }
  return samples;
}

NSData dataWithBlob(VipsBlob *blob) {
  std::size_t length = 0;
  const void *bytes = vips_blob_get(blob, &length);
  NSData data = NSData::dataWithBytes(bytes, length);
  vips_area_unref(VIPS_AREA(blob));
  return data;
}

/// Nil when libvips cannot make it.
NSData savedImage(VipsImage *image, const FileType &type, const CGImageDestinationOptions &options) {
  const VipsPointer<VipsOperation> saver(vips_operation_new(type.saver));
  if (!saver) return {};
  // The resolution of JPEG goes for metadata, of which there is none else.
  g_object_set(saver.get(), "in", image, "strip", type.type != u"public.jpeg"_ns, nullptr);
  if (type.hasQuality)
    g_object_set(saver.get(), "Q",
                 static_cast<int>(std::clamp(std::round(double{options.compressionFactor} * kMaximumQuality),
                                             1.0, kMaximumQuality)),
                 nullptr);
  if (options.usesLZW && type.type == u"public.tiff"_ns)
    g_object_set(saver.get(), "compression", VIPS_FOREIGN_TIFF_COMPRESSION_LZW, "predictor",
                 VIPS_FOREIGN_TIFF_PREDICTOR_HORIZONTAL, nullptr);
  VipsBlob *blob = nullptr;
  if (vips_object_build(VIPS_OBJECT(saver.get())) == 0) g_object_get(saver.get(), "buffer", &blob, nullptr);
  vips_object_unref_outputs(VIPS_OBJECT(saver.get()));
  return blob ? dataWithBlob(blob) : NSData();
}

/// A file of images that all have the first one's size and stand below each other.
NSData savedFrames(std::span<const ImageView> images, const FileType &type,
                   const CGImageDestinationOptions &options) {
  const ImageView &first = images.front();
  const bool withAlpha =
      type.hasAlpha && std::ranges::any_of(images, [](const ImageView &image) { return image.hasAlpha; });
  std::vector<std::uint8_t> samples;
  for (const ImageView &image : images) {
    const std::vector<std::uint8_t> frame = samplesOf(image, withAlpha);
    if (samples.empty())
      samples = frame;
    else
      samples.insert(samples.end(), frame.begin(), frame.end());
  }
  const VipsPointer<VipsImage> memory(vips_image_new_from_memory(
      samples.data(), samples.size(), static_cast<int>(first.width),
      static_cast<int>(first.height * images.size()), withAlpha ? 4 : 3, VIPS_FORMAT_UCHAR));
  if (!memory) return {};
  const double resolution = options.dotsPerInch / kMillimetersPerInch;
  const auto image = applied(memory, [resolution](auto in, auto out) {
    return vips_copy(in, out, "interpretation", VIPS_INTERPRETATION_sRGB, "xres", resolution, "yres",
                     resolution, nullptr);
  });
  if (!image) return {};
  if (images.size() > 1) vips_image_set_int(image.get(), VIPS_META_PAGE_HEIGHT, static_cast<int>(first.height));
  vips_image_set_string(image.get(), VIPS_META_RESOLUTION_UNIT, "in");
  return savedImage(image.get(), type, options);
}

bool haveOneSize(std::span<const ImageView> images) {
  return std::ranges::all_of(images, [&](const ImageView &image) {
    return image.width == images.front().width && image.height == images.front().height;
  });
}

NSData savedImages(std::span<const ImageView> images, const FileType &type,
                   const CGImageDestinationOptions &options) {
  if (images.size() == 1 || type.hasFrames) return savedFrames(images, type, options);
  std::vector<NSData> files;
  for (const ImageView &image : images) files.push_back(savedFrames({&image, 1}, type, options));
  return joinedTIFFs(files);
}

}  // namespace

NSData encodedImages(std::span<const ImageView> images, const NSString &type,
                     const CGImageDestinationOptions &options, NSError *error) {
  const bool isTIFF = type == u"public.tiff"_ns;
  if (images.size() == 1 && type == u"com.microsoft.bmp"_ns)
    return dataWithBMP(images.front(), options.dotsPerInch);
  const FileType *fileType = fileTypeOf(type);
  if (!fileType || (images.size() > 1 && !isTIFF && !(fileType->hasFrames && haveOneSize(images)))) {
    setError(error, ErrorCode::unsupportedType, "no such picture can be written");
    return {};
  }
  if (fileType->hasQuality && std::isnan(options.compressionFactor)) {
    setError(error, ErrorCode::other, "the compression factor is no number");
    return {};
  }
  if (!startVips()) {
    setError(error, ErrorCode::other, "the library of images cannot be started");
    return {};
  }
  if (type == u"public.heic"_ns) loadVipsModule("heif");
  NSData data = savedImages(images, *fileType, options);
  vips_error_clear();
  if (!data) setError(error, ErrorCode::other, "the picture cannot be written in this format");
  return data;
}

}  // namespace nimbo::detail
