// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/ImageIO/Engine/ImageFormats.hpp"
#include "platform/ImageIO/Engine/VipsSession.hpp"

namespace nimbo::detail {

/// The image of that number, to be read once from the top to the bottom; the input must live as long. Null when
/// the file is damaged or has no such image. Index 0 is the primary image.
VipsPointer<VipsImage> openWithVips(const ImageFormat &format, const VipsInput &input, std::uint32_t index);

/// The same with fewer pixels, as far as the format allows to leave some out, but no fewer than a `shrink`-th
/// of each side. Formats without pixels of their own are drawn at just that size.
VipsPointer<VipsImage> openSmallerWithVips(const ImageFormat &format, const VipsInput &input,
                                           std::uint32_t index, double shrink);

/// The thumbnail in a HEIF file, the image itself when it has none.
VipsPointer<VipsImage> openThumbnailWithVips(const ImageFormat &format, const VipsInput &input);

/// The name of the image's colour profile; nil when it has none, or it has no name.
NSString profileNameOfImage(VipsImage *image);

}  // namespace nimbo::detail
