// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/ImageReader.hpp"

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
