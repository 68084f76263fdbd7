// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/ImageIO/ImageEngine.hpp"

namespace nimbo::detail {

/// A Windows bitmap of 24 bits a pixel, the transparent on white; nil when it would be too large.
NSData dataWithBMP(const ImageView &image, double dotsPerInch);

}  // namespace nimbo::detail
