// SPDX-License-Identifier: Apache-2.0
//
// Images drawn into rectangles of what has the focus, over what is there, `fraction` of them being visible.
// Nothing is drawn of an image without representations. False when something cannot be drawn; the context's
// failure says why. One thread uses an image at a time.
//
//     canvas.drawWithFocus([&](NSGraphicsContext &context) {
//       drawTiledInRect(pattern, context, bounds(canvas));
//       drawScaledInRect(photo, context, {{8, 8}, {240, 176}});
//     });
#pragma once

#include "platform/AppKit/Images/NSImage.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSImageNimboExtensions {

/// Draws the best representation into the whole rectangle.
bool drawBestRepresentationInRect(const NSImage &image, NSGraphicsContext &context, const NSRect &rect,
                                  double fraction = 1.0);
/// Draws the image in the middle of the rectangle, as large as fits with its proportions.
bool drawScaledInRect(const NSImage &image, NSGraphicsContext &context, const NSRect &rect,
                      double fraction = 1.0);
/// Draws the image in the middle of the rectangle in its own size; what is outside the rectangle is cut off.
bool drawCenteredInRect(const NSImage &image, NSGraphicsContext &context, const NSRect &rect,
                        double fraction = 1.0);
/// Draws the image upside down into the whole rectangle.
bool drawFlippedInRect(const NSImage &image, NSGraphicsContext &context, const NSRect &rect,
                       double fraction = 1.0);
/// Draws the image in its own size again and again, from the lower left corner on, until the rectangle is full.
bool drawTiledInRect(const NSImage &image, NSGraphicsContext &context, const NSRect &rect,
                     double fraction = 1.0);

/// The image in its size with another one over all of it. Nil as `imageWithSize`.
NSImage imageWithOverlay(const NSImage &image, const NSImage &overlay, const Deadline &deadline = {},
                         NSError *error = nullptr);

}  // namespace NSImageNimboExtensions
}  // namespace nimbo
