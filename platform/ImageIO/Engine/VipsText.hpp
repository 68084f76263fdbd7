// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/ImageIO/ImageEngine.hpp"

namespace nimbo::detail {

/// A line of text; no bytes when it cannot be drawn, `*error` says why.
ImagePixels drawnTextLine(const NSString &text, double pointSize, std::uint32_t maximumWidth,
                          const CGColor &color, NSError *error);

}  // namespace nimbo::detail
