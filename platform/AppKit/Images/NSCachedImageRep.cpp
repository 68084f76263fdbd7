// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Images/NSCachedImageRep.hpp"

#include "platform/AppKit/Images/PixelDrawing.hpp"

namespace nimbo {

SharedPointer<NSCachedImageRep> NSCachedImageRep::imageRepWithCGImage(const CGImage &image,
                                                                      NSSize sizeInPoints) {
  if (!image || !(sizeInPoints.width > 0) || !(sizeInPoints.height > 0)) return {};
  return SharedPointer<NSCachedImageRep>::adopt(new NSCachedImageRep(image, sizeInPoints));
}

const ClassDescription &NSCachedImageRep::classDescription() const {
  static const ClassDescription description{u"NSCachedImageRep"_ns, &imageRepClass(), {}, {}, nullptr};
  return description;
}

bool NSCachedImageRep::draw(NSGraphicsContext &context, const NSRect &rect, const NSRect &from,
                            NSCompositingOperation operation, double fraction, NSError *) const {
  detail::drawPixels(context, rect, image_, size_, from, operation, fraction);
  return true;
}

}  // namespace nimbo
