// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Images/NSImageRep.hpp"

namespace nimbo {

NSImageRep::~NSImageRep() = default;

const ClassDescription &NSImageRep::imageRepClass() {
  static const ClassDescription description{u"NSImageRep"_ns, &rootClass(), {}, {}, nullptr};
  return description;
}

const ClassDescription &NSImageRep::classDescription() const {
  return imageRepClass();
}

bool NSImageRep::drawInRect(NSGraphicsContext &context, const NSRect &rect, const NSRect &from,
                            NSCompositingOperation operation, double fraction, NSError *error) const {
  const bool hasPart = from.size.width > 0 && from.size.height > 0;
  NSError failure;
  const bool isDrawn =
      draw(context, rect, hasPart ? from : NSRect{{0, 0}, size()}, operation, fraction, &failure);
  if (!isDrawn && !context.failure) context.failure = failure;
  if (failure && error) *error = failure;
  return isDrawn;
}

}  // namespace nimbo
