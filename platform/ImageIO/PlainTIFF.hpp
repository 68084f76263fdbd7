// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreGraphics/CGImage.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo::detail {

/// A TIFF file without compression, of an image without alpha, so that thumbnails need no library; nil when it
/// would have more than 2 GiB or there is no memory for it.
NSData plainTIFF(const CGImage &image, double dotsPerInch);

}  // namespace nimbo::detail
