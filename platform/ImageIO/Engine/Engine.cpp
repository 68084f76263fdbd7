// SPDX-License-Identifier: Apache-2.0
#include <utility>

#include "platform/Foundation/ExceptionGuard.hpp"
#include "platform/Foundation/System/EngineLibrary.hpp"
#include "platform/ImageIO/Engine/ImageDecoding.hpp"
#include "platform/ImageIO/Engine/ImageEncoding.hpp"
#include "platform/ImageIO/Engine/ImageReader.hpp"
#include "platform/ImageIO/Engine/VipsText.hpp"

namespace nimbo::detail {
namespace {

ImageHeader headerAtIndex(const ImageInput &input, std::uint32_t index) {
  const auto reader = readerOfInput(input, Deadline::never());
  ImageHeader header = reader ? reader->header(index) : ImageHeader();
  vips_error_clear();
  return header;
}

ImageHeader headerOfInput(const ImageInput &input, NSError *error) {
  ImageHeader header = headerAtIndex(input, 0);
  NSError metadataError = addMetadataWithExiv2(input, header);
  if (header.type) {
    if (error && metadataError) *error = std::move(metadataError);
  } else if (header.isKnown) {
    setError(error, ErrorCode::damaged, "the image is damaged");
  } else {
    setError(error, ErrorCode::unsupportedType, "the file is no image of a known kind");
  }
  return header;
}

class Engine final : public ImageEngine {
 public:
  ImageHeader header(const ImageInput &input, NSError *error) const override {
    return guarded(error, [&] { return headerOfInput(input, error); });
  }
  NSDictionary properties(const ImageInput &input, std::uint32_t index) const override {
    return guarded(nullptr, [&] { return headerAtIndex(input, index).properties; });
  }
  ImagePixels pixels(const ImageInput &input, const ImageRequest &request, NSError *error) const override {
    return guarded(error, [&] { return decodedPixels(input, request, error); });
  }
  NSData file(std::span<const ImageView> images, const NSString &type, const CGImageDestinationOptions &options,
              NSError *error) const override {
    return guarded(error, [&] { return encodedImages(images, type, options, error); });
  }
  ImagePixels textLine(const NSString &text, double pointSize, std::uint32_t maximumWidth, const CGColor &color,
                       NSError *error) const override {
    return guarded(error, [&] { return drawnTextLine(text, pointSize, maximumWidth, color, error); });
  }
};

}  // namespace
}  // namespace nimbo::detail

/// The engine of pictures, for `nimbo::detail::imageEngine`.
NIMBO_ENGINE const void *nimboEngine();

const void *nimboEngine() {
  static const nimbo::detail::Engine engine;
  return static_cast<const nimbo::detail::ImageEngine *>(&engine);
}
