// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/NSImage+NSImageNimboExtensions/Icons.hpp"

#include "Classes/Images/NSImage+NSImageNimboExtensions/Redrawing.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Sizes.hpp"
#include "platform/AppKit/Images/NSBitmapImageRep.hpp"

namespace nimbo {
inline namespace NSImageNimboExtensions {

NSImage draggingIcon(const NSImage &image, const Deadline &deadline, NSError *error) {
  constexpr double kVisible = 2.0 / 3;
  const NSImage thumbnail = thumbForSize(image, {kDraggingIconSide, kDraggingIconSide}, true, deadline, error);
  if (!thumbnail) return NSImage();
  NSImage icon = NSImage::imageWithSize(thumbnail.size());
  const auto draw = [&](NSGraphicsContext &context) {
    thumbnail.drawInRect(context, bounds(icon), {}, NSCompositingOperation::sourceOver, kVisible);
  };
  return icon.drawWithFocus(draw, deadline, error) ? icon : NSImage();
}

NSImage pasteboardIcon(const NSImage &image, const Deadline &deadline, NSError *error) {
  return thumbForSize(image, {kPasteboardIconSide, kPasteboardIconSide}, true, deadline, error);
}

NSData pasteboardData(const NSImage &image, NSError *error) {
  return image.TIFFRepresentationUsingCompression(static_cast<int>(NSTIFFCompression::LZW), 1.0F, error);
}

}  // namespace NSImageNimboExtensions
}  // namespace nimbo
