// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/ImageIO/ImageEngine.hpp"

namespace nimbo::detail {

/// The pixels that the request asks for; no bytes when there are none, `*error` says why.
ImagePixels decodedPixels(const ImageInput &input, const ImageRequest &request, NSError *error);

}  // namespace nimbo::detail
