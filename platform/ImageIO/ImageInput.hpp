// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo::detail {

/// Where an image is read from: the open file, or the data when there is none. A file counts as as large as it
/// was when it was opened.
struct ImageInput {
  /// The open file, borrowed; negative when the image is data.
  int descriptor = -1;
  /// The size of the file in bytes when it was opened.
  std::uint64_t fileSize = 0;
  /// The data, when there is no file.
  NSData data;

  /// How many bytes are enough to tell the formats apart.
  static constexpr std::size_t kFirstBytesLength = 64;
  /// The first bytes of the image, at most so many.
  std::string firstBytes() const;
};

/// What a reader found out about an image.
struct ImageHeader {
  /// Nil when the reader does not know the format, or cannot read the header.
  NSString type;
  /// Whether the file begins like an image of a known format.
  bool isKnown = false;
  /// The number of images in the file.
  std::uint32_t count = 1;
  /// The facts, by the names of `CGImageSource::properties`.
  NSDictionary properties;
};

/// The header as libvips reads it; formats whose loaders are not meant for untrusted files are unknown.
ImageHeader readHeaderWithVips(const ImageInput &input);

/// The header of a Windows bitmap, which libvips does not read by itself.
ImageHeader readHeaderOfBMP(const ImageInput &input);

/// Adds what Exiv2 finds: Exif, IPTC and XMP. Of formats that libvips leaves unknown it gives type and size
/// too. Answers nil, or why there is metadata that cannot be read.
NSError addMetadataWithExiv2(const ImageInput &input, ImageHeader &header);

}  // namespace nimbo::detail
