// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>

#include "platform/ImageIO/Engine/VipsSession.hpp"

namespace nimbo::detail {

/// What an operation of libvips makes of an image: `operation` takes the image and a pointer to the result, and
/// answers 0 when all is well. Null when it is not, or there is no image.
template <class Operation>
VipsPointer<VipsImage> applied(const VipsPointer<VipsImage> &image, Operation operation) {
  VipsImage *result = nullptr;
  if (!image || operation(image.get(), &result) != 0) return nullptr;
  return VipsPointer<VipsImage>(result);
}

/// The image in sRGB, by its colour profile if it has one: 3 bands of 8 bits, or 4 with alpha. Null when that
/// cannot be.
VipsPointer<VipsImage> imageInSRGB(VipsPointer<VipsImage> image);

}  // namespace nimbo::detail
