// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/Engine/EmbeddedThumbnail.hpp"

#include <algorithm>

#include "platform/ImageIO/Engine/Exiv2Image.hpp"

namespace nimbo::detail {

NSData embeddedThumbnail(const ImageInput &input, std::uint32_t longerSide, bool maySmaller) {
  try {
    const auto image = openWithExiv2(input);
    if (!image.get()) return {};
    image->readMetadata();
    const Exiv2::PreviewManager manager(*image);
    NSData largest;
    // The smallest comes first.
    for (const Exiv2::PreviewProperties &properties : manager.getPreviewProperties()) {
      if (properties.mimeType_ != "image/jpeg") continue;
      const bool isEnough = std::max(properties.width_, properties.height_) >= longerSide;
      if (!isEnough && !maySmaller) continue;
      const Exiv2::PreviewImage preview = manager.getPreviewImage(properties);
      largest = NSData::dataWithBytes(preview.pData(), preview.size());
      if (isEnough) return largest;
    }
    return largest;
  } catch (const TooLargeToRead &) {
    return {};
  } catch (const std::exception &) {
    return {};
  }
}

}  // namespace nimbo::detail
