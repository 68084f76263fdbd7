// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/AppKit/Images/NSGraphicsContext.hpp"
#include "platform/CoreGraphics/CGImage.hpp"
#include "platform/Foundation/NSGeometry.hpp"

namespace nimbo::detail {

/// Draws the part `from` of an image that is `size` points large into the whole of `rect`.
void drawPixels(NSGraphicsContext &context, const NSRect &rect, const CGImage &image, NSSize size,
                const NSRect &from, NSCompositingOperation operation, double fraction);

}  // namespace nimbo::detail
