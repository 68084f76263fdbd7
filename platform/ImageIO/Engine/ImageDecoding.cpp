// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/ImageDecoding.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "platform/CoreGraphics/CGImage.hpp"
#include "platform/ImageIO/Engine/BoxShrinking.hpp"
#include "platform/ImageIO/Engine/ImageColors.hpp"
#include "platform/ImageIO/Engine/ImageReader.hpp"
#include "platform/ImageIO/Engine/PixelCopying.hpp"

namespace nimbo::detail {
namespace {

/// As much memory is used for the pixels that are answered.
constexpr std::int64_t kMaximumAnsweredBytes = std::int64_t{1} << 30;

/// The ratios of the sides of a thumbnail and of its image differ by rounding.
constexpr double kMaximumShapeDifference = 0.02;

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

/// Whether one can be a smaller picture of the other: cameras put black bars at the sides of some thumbnails.
bool haveOneShape(PixelSize a, PixelSize b) {
  const double ratio = static_cast<double>(a.width) * b.height / (static_cast<double>(a.height) * b.width);
  return std::abs(ratio - 1) <= kMaximumShapeDifference;
}

/// Decodes one image.
class Decoding {
 public:
  Decoding(ImageReader &reader, const ImageRequest &request, NSError &error)
      : reader_(reader), request_(request), error_(error) {}

  ImagePixels pixels() {
    auto image = reader_.open(request_.index, &error_);
    if (!image) return {};
    const PixelSize whole = pixelSizeOfImage(image.get());
    if (request_.withTransform) orientation_ = Orientation(vips_image_get_orientation(image.get()));
    const PixelSize wanted = answeredSize(request_, whole, orientation_);
    if (request_.mayBeEmbedded && request_.index == 0)
      if (ImagePixels embedded = embeddedPixels(whole, wanted); embedded.bytes) return embedded;
    if (!request_.mayBeDecoded) {
      setError(&error_, ErrorCode::incomplete, "the image has no thumbnail of its own");
      return {};
    }
    if (!canBeAnswered(wanted)) {
      setError(&error_, ErrorCode::tooLarge, "the image has too many pixels");
      return {};
    }
    const double shrink = std::min(static_cast<double>(whole.width) / wanted.width,
                                   static_cast<double>(whole.height) / wanted.height);
    if (shrink != 1) image = reader_.openSmaller(request_.index, shrink, std::move(image));
    return finished(std::move(image), wanted);
  }

 private:
  ImagePixels finished(VipsPointer<VipsImage> image, PixelSize size) {
    if (image && request_.quality != CGInterpolationQuality::none)
      image = shrunkByBoxes(std::move(image), size, request_.deadline);
    if (image) image = scaledImage(std::move(image), size, request_.quality);
    if (image) image = imageInSRGB(std::move(image));
    return image ? copiedPixels(image.get(), orientation_, request_.deadline) : ImagePixels();
  }

  ImagePixels embeddedPixels(PixelSize whole, PixelSize wanted) {
    if (wanted.width == whole.width && request_.mayBeDecoded) return {};
    auto image = reader_.openThumbnail(std::max(wanted.width, wanted.height), !request_.mayBeDecoded);
    if (!image) return {};
    const PixelSize size = pixelSizeOfImage(image.get());
    if (!haveOneShape(size, whole) || (size.width == whole.width && size.height == whole.height)) return {};
    if (size.width < wanted.width || size.height < wanted.height) {
      if (request_.mayBeDecoded) return {};
      wanted = size;
    }
    return finished(std::move(image), wanted);
  }

  ImageReader &reader_;
  const ImageRequest &request_;
  NSError &error_;
  Orientation orientation_;
};

}  // namespace

ImagePixels decodedPixels(const ImageInput &input, const ImageRequest &request, NSError *error) {
  const auto reader = readerOfInput(input, request.deadline);
  if (!reader) {
    setError(error, ErrorCode::unsupportedType, "the file is no image of a known kind");
    return {};
  }
  NSError reason;
  ImagePixels pixels = Decoding(*reader, request, reason).pixels();
  vips_error_clear();
  if (pixels.bytes || !error) return pixels;
  // What is cut off by the deadline looks damaged.
  if (request.deadline.isOver())
    setError(error, ErrorCode::timeLimit, "the image takes too long to decode");
  else if (reason)
    *error = std::move(reason);
  else
    setError(error, ErrorCode::damaged, "the image is damaged");
  return pixels;
}

}  // namespace nimbo::detail
