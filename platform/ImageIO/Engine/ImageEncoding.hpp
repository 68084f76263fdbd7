// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

#include "platform/ImageIO/ImageEngine.hpp"

namespace nimbo::detail {

/// A file of the images; nil when it cannot be made, `*error` says why.
NSData encodedImages(std::span<const ImageView> images, const NSString &type,
                     const CGImageDestinationOptions &options, NSError *error);

}  // namespace nimbo::detail
