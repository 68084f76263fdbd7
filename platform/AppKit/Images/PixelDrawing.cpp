// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Images/PixelDrawing.hpp"

namespace nimbo::detail {

void drawPixels(NSGraphicsContext &context, const NSRect &rect, const CGImage &image, NSSize size,
                const NSRect &from, NSCompositingOperation operation, double fraction) {
  const double x = image.width() / size.width;
  const double y = image.height() / size.height;
  const NSRect pixels = {{from.origin.x * x, from.origin.y * y}, {from.size.width * x, from.size.height * y}};
  context.CGContextToDraw().drawImage(rect, image, pixels, blendModeOfOperation(operation), fraction);
}

}  // namespace nimbo::detail
