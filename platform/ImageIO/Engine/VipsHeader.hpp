// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vips/vips.h>

#include "platform/ImageIO/Engine/ImageFormats.hpp"
#include "platform/ImageIO/Engine/ImageReading.hpp"

namespace nimbo::detail {

/// What libvips says of the image of that number.
ImageHeader headerOfImage(VipsImage *image, const ImageFormat &format, std::uint32_t index);

/// The name of the image's colour profile; nil when it has none, or it has no name.
NSString profileNameOfImage(VipsImage *image);

}  // namespace nimbo::detail
