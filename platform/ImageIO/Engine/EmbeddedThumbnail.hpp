// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/ImageIO/Engine/ImageReading.hpp"

namespace nimbo::detail {

/// The JPEG file that a JPEG file has in its metadata as a picture of itself: the smallest one with at least so
/// many pixels on its longer side, or the largest at all if `maySmaller`. Nil when there is none.
NSData embeddedThumbnail(const ImageInput &input, std::uint32_t longerSide, bool maySmaller);

}  // namespace nimbo::detail
