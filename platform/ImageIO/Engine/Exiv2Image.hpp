// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <exiv2/exiv2.hpp>

#include "platform/ImageIO/Engine/ImageReading.hpp"

namespace nimbo::detail {

/// Thrown where Exiv2 wants the whole of a file that is too large for that.
struct TooLargeToRead {};

/// The image, of which nothing is read yet; the input must live as long. Null, or an exception of Exiv2, when
/// it does not know the format.
Exiv2::Image::AutoPtr openWithExiv2(const ImageInput &input);

}  // namespace nimbo::detail
