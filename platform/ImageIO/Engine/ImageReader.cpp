// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/ImageReader.hpp"

#include "platform/Foundation/System/EngineLibrary.hpp"
#include "platform/ImageIO/Engine/FFmpegReader.hpp"
#include "platform/ImageIO/Engine/IconReader.hpp"
#include "platform/ImageIO/Engine/PhotoshopReader.hpp"
#include "platform/ImageIO/Engine/RawReader.hpp"
#include "platform/ImageIO/Engine/VipsReader.hpp"

namespace nimbo::detail {

VipsPointer<VipsImage> ImageReader::openSmaller(std::uint32_t, double, VipsPointer<VipsImage> image) {
  return image;
}

VipsPointer<VipsImage> ImageReader::openThumbnail(std::uint32_t, bool) {
  return nullptr;
}

const ImageCodec *imageCodec(NSError *error) {
  return static_cast<const ImageCodec *>(engineNamed("imagecodec", error));
}

VipsPointer<VipsImage> imageOfSamples(const DecodedSamples &samples) {
  if (!samples.bytes) return nullptr;
  const std::size_t length = static_cast<std::size_t>(samples.width) *
                             static_cast<std::size_t>(samples.height) * static_cast<std::size_t>(samples.bands);
  VipsPointer<VipsImage> image(vips_image_new_from_memory(samples.bytes.get(), length, samples.width,
                                                          samples.height, samples.bands, VIPS_FORMAT_UCHAR));
  if (image) image->Type = VIPS_INTERPRETATION_sRGB;
  return image;
}

std::unique_ptr<ImageReader> readerOfInput(const ImageInput &input, const Deadline &deadline) {
  if (!startVips()) return nullptr;
  const std::string bytes = firstBytes(input);
  // Raw pictures look like TIFF, and TGA like nothing.
  for (const auto &make :
       {rawReaderOfInput, vipsReaderOfInput, photoshopReaderOfInput, iconReaderOfInput, ffmpegReaderOfInput})
    if (auto reader = make(input, bytes, deadline)) return reader;
  return nullptr;
}

}  // namespace nimbo::detail
