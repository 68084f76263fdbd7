// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/ImageIO/Engine/PixelCopying.hpp"
#include "platform/ImageIO/Engine/VipsSession.hpp"

namespace nimbo::detail {

/// The image with fewer pixels, averages of those that it has, so that what is left of scaling it to `size` is
/// at least a halving; the image itself when there is nothing to gain. libvips multiplies by alpha in
/// floating-point numbers before it shrinks, which takes much time and memory. Null when it cannot be decoded
/// by the deadline.
VipsPointer<VipsImage> shrunkByBoxes(VipsPointer<VipsImage> image, PixelSize size, const Deadline &deadline);

}  // namespace nimbo::detail
