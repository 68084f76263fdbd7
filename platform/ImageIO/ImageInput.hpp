// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/Foundation/id.hpp"

namespace nimbo::detail {

/// Where an image is read from: the file of that name, or the data when the name is empty.
struct ImageInput {
  std::string fileName;
  NSData data;

  /// At most so many bytes, enough to tell the formats apart.
  static constexpr std::size_t kFirstBytesLength = 64;
  std::string firstBytes() const;
};

/// What a reader found out about an image.
struct ImageHeader {
  /// Nil when the reader does not know the format.
  NSString type;
  std::uint32_t count = 1;
  /// By the names of `CGImageSource::properties`.
  NSDictionary properties;
};

/// The header as libvips reads it; formats whose loaders are not meant for untrusted files are unknown.
ImageHeader readHeaderWithVips(const ImageInput &input);

/// The header of a Windows bitmap, which libvips does not read by itself.
ImageHeader readHeaderOfBMP(const ImageInput &input);

/// Adds what Exiv2 finds: Exif, IPTC and XMP. Of formats that libvips leaves unknown it gives type and size
/// too.
void addMetadataWithExiv2(const ImageInput &input, ImageHeader &header);

}  // namespace nimbo::detail
