// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/AppKit/Images/NSImageRep.hpp"
#include "platform/CoreGraphics/CGImage.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What has been drawn with the focus on an image.
///
///     image.addRepresentation(NSCachedImageRep::imageRepWithCGImage(frame, movieSize));
class NSCachedImageRep final : public NSImageRep {
 public:
  /// One of pixels that are there, and its size in points; null when the image is nil or a side is not above 0.
  static SharedPointer<NSCachedImageRep> imageRepWithCGImage(const CGImage &image, NSSize sizeInPoints);

  const ClassDescription &classDescription() const override;
  NSImageRepClass representationClass() const override { return NSImageRepClass::cached; }
  NSSize size() const override { return size_; }
  std::uint32_t pixelsWide() const override { return image_.width(); }
  std::uint32_t pixelsHigh() const override { return image_.height(); }
  bool hasAlpha() const override { return image_.hasAlpha(); }
  /// Its pixels.
  const CGImage &decodedImage() const NIMBO_LIFETIMEBOUND { return image_; }

 private:
  NSCachedImageRep(const CGImage &image, NSSize sizeInPoints) : image_(image), size_(sizeInPoints) {}
  bool draw(NSGraphicsContext &context, const NSRect &rect, const NSRect &from,
            NSCompositingOperation operation, double fraction, NSError *error) const override;

  CGImage image_;
  NSSize size_;
};

}  // namespace nimbo
