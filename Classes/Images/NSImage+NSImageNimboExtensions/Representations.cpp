// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/NSImage+NSImageNimboExtensions/Representations.hpp"

#include <algorithm>

#include "Classes/Images/PixelReps.hpp"

namespace nimbo {
inline namespace NSImageNimboExtensions {

namespace {

template <class Rep>
SharedPointer<Rep> firstOfClass(const NSImage &image, NSImageRepClass kind) {
  return SharedPointer<Rep>::adopt(static_cast<Rep *>(imageRepOfClass(image, kind).detach()));
}

bool hasRepOfClass(const NSImage &image, NSImageRepClass kind) {
  return static_cast<bool>(imageRepOfClass(image, kind));
}

}  // namespace

bool isReallyValid(const NSImage &image) {
  const NSSize size = image.size();
  return size.width > 0 && size.height > 0 && !image.representations().empty();
}

bool hasAlpha(const NSImage &image) {
  return std::ranges::any_of(image.representations(), [](const SharedPointer<NSImageRep> &representation) {
    return !isPixelRep(*representation) || representation->hasAlpha();
  });
}

SharedPointer<NSImageRep> imageRepOfClass(const NSImage &image, NSImageRepClass kind) {
  const auto &representations = image.representations();
  const auto found =
      std::ranges::find_if(representations, [&](const SharedPointer<NSImageRep> &representation) {
        return representation->representationClass() == kind;
      });
  return found == representations.end() ? SharedPointer<NSImageRep>() : *found;
}

SharedPointer<NSBitmapImageRep> bitmapImageRep(const NSImage &image) {
  return firstOfClass<NSBitmapImageRep>(image, NSImageRepClass::bitmap);
}

SharedPointer<NSCachedImageRep> cachedImageRep(const NSImage &image) {
  return firstOfClass<NSCachedImageRep>(image, NSImageRepClass::cached);
}

SharedPointer<NSPDFImageRep> PDFImageRep(const NSImage &image) {
  return firstOfClass<NSPDFImageRep>(image, NSImageRepClass::PDF);
}

SharedPointer<NSEPSImageRep> EPSImageRep(const NSImage &image) {
  return firstOfClass<NSEPSImageRep>(image, NSImageRepClass::EPS);
}

SharedPointer<NSImageRep> PICTImageRep(const NSImage &image) {
  return imageRepOfClass(image, NSImageRepClass::PICT);
}

SharedPointer<NSImageRep> iconRefBitmapImageRep(const NSImage &image) {
  return imageRepOfClass(image, NSImageRepClass::iconRef);
}

void removeAllRepresentations(NSImage &image) {
  while (!image.representations().empty()) image.removeRepresentation(image.representations().back());
}

bool isBitmapImage(const NSImage &image) {
  return hasRepOfClass(image, NSImageRepClass::bitmap);
}

bool isPDFImage(const NSImage &image) {
  return hasRepOfClass(image, NSImageRepClass::PDF);
}

bool isEPSImage(const NSImage &image) {
  return hasRepOfClass(image, NSImageRepClass::EPS);
}

bool isPICTImage(const NSImage &image) {
  return hasRepOfClass(image, NSImageRepClass::PICT);
}

bool isIconRefBitmapImage(const NSImage &image) {
  return hasRepOfClass(image, NSImageRepClass::iconRef);
}

bool isScalableImage(const NSImage &image) {
  return isPDFImage(image) || isEPSImage(image) || isPICTImage(image);
}

}  // namespace NSImageNimboExtensions
}  // namespace nimbo
