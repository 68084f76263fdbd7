// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/ImageDecoding.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "platform/CoreGraphics/CGImage.hpp"
#include "platform/ImageIO/Engine/ImageColors.hpp"
#include "platform/ImageIO/Engine/PixelCopying.hpp"
#include "platform/ImageIO/Engine/VipsLoading.hpp"

namespace nimbo::detail {
namespace {

/// Larger images are not decoded at all.
constexpr std::int64_t kMaximumPixels = std::int64_t{1} << 29;
/// As much memory is used for an image whose decoder holds it whole.
constexpr std::int64_t kMaximumDecodedBytes = std::int64_t{1} << 30;
/// As much memory is used for the pixels that are answered.
constexpr std::int64_t kMaximumAnsweredBytes = std::int64_t{1} << 30;

/// What a decoder holds of an image in memory: all of it when it does not decode row by row.
std::int64_t decodedBytes(VipsImage *image, const ImageFormat &format) {
  const std::int64_t pixels = std::int64_t{vips_image_get_width(image)} * vips_image_get_height(image);
  if (vips_image_get_typeof(image, "jpeg-multiscan"))
    return pixels * vips_image_get_bands(image) * static_cast<std::int64_t>(sizeof(std::int16_t));
  int interlaced = 0;
  if (vips_image_get_typeof(image, "interlaced")) vips_image_get_int(image, "interlaced", &interlaced);
  return format.isDecodedWhole || interlaced ? pixels * static_cast<std::int64_t>(VIPS_IMAGE_SIZEOF_PEL(image))
                                             : 0;
}

bool isTooLarge(VipsImage *image, const ImageFormat &format) {
  return std::int64_t{vips_image_get_width(image)} * vips_image_get_height(image) > kMaximumPixels ||
         decodedBytes(image, format) > kMaximumDecodedBytes;
}

VipsKernel kernelOfQuality(CGInterpolationQuality quality) {
  switch (quality) {
    case CGInterpolationQuality::none:
      return VIPS_KERNEL_NEAREST;
    case CGInterpolationQuality::low:
      return VIPS_KERNEL_LINEAR;
    case CGInterpolationQuality::standard:
    case CGInterpolationQuality::high:
      break;
  }
  return VIPS_KERNEL_LANCZOS3;
}

/// The image in that size, which it has already or is scaled to; null when it cannot be.
VipsPointer<VipsImage> scaledImage(VipsPointer<VipsImage> image, PixelSize size,
                                   CGInterpolationQuality quality) {
  const int width = vips_image_get_width(image.get());
  const int height = vips_image_get_height(image.get());
  if (width == static_cast<int>(size.width) && height == static_cast<int>(size.height)) return image;
  const VipsBandFormat format = vips_image_get_format(image.get());
  // Colours of transparent pixels must not bleed into others.
  const bool hasAlpha = vips_image_hasalpha(image.get()) && quality != CGInterpolationQuality::none;
  if (hasAlpha) image = applied(image, [](auto in, auto out) { return vips_premultiply(in, out, nullptr); });
  image = applied(image, [&](auto in, auto out) {
    return vips_resize(in, out, static_cast<double>(size.width) / width, "vscale",
                       static_cast<double>(size.height) / height, "kernel", kernelOfQuality(quality), nullptr);
  });
  if (!hasAlpha) return image;
  image = applied(image, [](auto in, auto out) { return vips_unpremultiply(in, out, nullptr); });
  return applied(image, [&](auto in, auto out) { return vips_cast(in, out, format, nullptr); });
}

/// The size of the answer, before the orientation is applied.
PixelSize answeredSize(const ImageRequest &request, PixelSize image, Orientation orientation) {
  if (request.width > 0)
    return orientation.swapsSides() ? PixelSize{request.height, request.width}
                                    : PixelSize{request.width, request.height};
  const std::uint32_t longer = std::max(image.width, image.height);
  if (request.maxPixelSize == 0 || longer <= request.maxPixelSize) return image;
  const double scale = static_cast<double>(request.maxPixelSize) / longer;
  const auto scaled = [scale](std::uint32_t side) {
    return std::max<std::uint32_t>(1, static_cast<std::uint32_t>(std::lround(side * scale)));
  };
  return {scaled(image.width), scaled(image.height)};
}

bool canBeAnswered(PixelSize size) {
  return size.width <= CGImage::kMaximumSide && size.height <= CGImage::kMaximumSide &&
         std::int64_t{size.width} * size.height * static_cast<std::int64_t>(CGImage::kBytesPerPixel) <=
             kMaximumAnsweredBytes;
}

/// Tells of a failure of which libvips knows more than anybody wants to.
void setDecodingError(NSError *error, const Deadline &deadline) {
  if (deadline.isOver())
    setError(error, ErrorCode::timeLimit, "the image takes too long to decode");
  else
    setError(error, ErrorCode::damaged, "the image is damaged");
}

ImagePixels pixelsByVips(const ImageInput &input, const ImageFormat &format, const ImageRequest &request,
                         NSError *error) {
  const VipsInput source(input, request.deadline);
  VipsPointer<VipsImage> image = openWithVips(format, source, request.index);
  if (!image) {
    setDecodingError(error, request.deadline);
    return {};
  }
  const PixelSize whole = pixelSizeOfImage(image.get());
  const Orientation orientation =
      request.withTransform ? Orientation(vips_image_get_orientation(image.get())) : Orientation();
  const PixelSize wanted = answeredSize(request, whole, orientation);
  if (isTooLarge(image.get(), format) || !canBeAnswered(wanted)) {
    setError(error, ErrorCode::tooLarge, "the image has too many pixels");
    return {};
  }
  const double shrink = std::min(static_cast<double>(whole.width) / wanted.width,
                                 static_cast<double>(whole.height) / wanted.height);
  if (shrink != 1) image = openSmallerWithVips(format, source, request.index, shrink);
  if (image) image = scaledImage(std::move(image), wanted, request.quality);
  if (image) image = imageInSRGB(std::move(image));
  ImagePixels pixels;
  if (image) pixels = copiedPixels(image.get(), orientation, request.deadline);
  if (!pixels.bytes) setDecodingError(error, request.deadline);
  return pixels;
}

}  // namespace

ImagePixels decodedPixels(const ImageInput &input, const ImageRequest &request, NSError *error) {
  const ImageFormat *format = imageFormatOfBytes(firstBytes(input));
  ImagePixels pixels;
  if (!format) {
    setError(error, ErrorCode::unsupportedType, "the file is no image of a known kind");
    return pixels;
  }
  if (!startVips()) {
    setError(error, ErrorCode::other, "the library of images cannot be started");
    return pixels;
  }
  if (request.mayBeDecoded)
    pixels = pixelsByVips(input, *format, request, error);
  else
    setError(error, ErrorCode::incomplete, "the image has no thumbnail of its own");
  vips_error_clear();
  return pixels;
}

}  // namespace nimbo::detail
