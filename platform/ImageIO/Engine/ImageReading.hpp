// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

#include "platform/ImageIO/ImageEngine.hpp"

namespace nimbo::detail {

/// How many bytes are enough to tell the formats apart.
constexpr std::size_t kFirstBytesLength = 1024;

/// The first bytes of the image, at most so many.
std::string firstBytes(const ImageInput &input, std::size_t length = kFirstBytesLength);

/// Reads bytes at a place, as pread(2) does; never behind the end that the image had when it was opened.
std::int64_t readBytes(const ImageInput &input, void *buffer, std::int64_t length, std::int64_t position);

/// All bytes of the image; nil when they cannot be read or are too many. Throws std::bad_alloc.
NSData wholeData(const ImageInput &input);

/// Adds what Exiv2 finds: Exif, IPTC and XMP. Of formats that libvips leaves unknown it gives type and size
/// too. Answers nil, or why there is metadata that cannot be read.
NSError addMetadataWithExiv2(const ImageInput &input, ImageHeader &header);

}  // namespace nimbo::detail
