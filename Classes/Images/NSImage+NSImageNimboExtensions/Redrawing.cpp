// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/NSImage+NSImageNimboExtensions/Redrawing.hpp"

#include "Classes/Images/NSImage+NSImageNimboExtensions/Representations.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Sizes.hpp"
#include "Classes/Images/PixelReps.hpp"

namespace nimbo {
inline namespace NSImageNimboExtensions {

namespace {

/// How an image is drawn anew.
struct Redrawing {
  NSSize size;
  NSRect fromRect = {};
  bool shouldAntialias = true;
  NSImageInterpolation interpolation = NSImageInterpolation::standard;
};

CGColor colorOf(const NSColor &color) {
  constexpr double kFull = 255;
  return {color.red / kFull, color.green / kFull, color.blue / kFull, color.alpha / kFull};
}

/// The part of an image in the points of one of its representations.
NSRect inPointsOfRep(const NSRect &part, const NSImage &image, const NSImageRep &representation) {
  const NSSize from = image.size(), to = representation.size();
  if (part.size == NSSize() || !(from.width > 0) || !(from.height > 0)) return {};
  const double x = to.width / from.width, y = to.height / from.height;
  return {{part.origin.x * x, part.origin.y * y}, {part.size.width * x, part.size.height * y}};
}

void drawAnew(const NSImage &image, const Redrawing &how, NSGraphicsContext &context) {
  context.shouldAntialias = how.shouldAntialias;
  context.imageInterpolation = how.interpolation;
  const NSRect target = {{0, 0}, how.size};
  const SharedPointer<NSImageRep> best = image.bestRepresentationForDefaultDevice();
  if (!best) return;
  if (isPixelRep(*best) && best->hasAlpha()) {
    context.CGContextToDraw().fillRect(target, colorOf(image.backgroundColor()));
    image.drawInRect(context, target, how.fromRect, NSCompositingOperation::sourceOver, 1.0);
    return;
  }
  if (!isPixelRep(*best)) context.CGContextToDraw().fillRect(target, CGColor{1, 1, 1, 1});
  best->drawInRect(context, target, inPointsOfRep(how.fromRect, image, *best),
                   NSCompositingOperation::sourceOver, 1.0);
}

NSImage redrawnImage(const NSImage &image, const Redrawing &how, const Deadline &deadline, NSError *error) {
  if (!image) return image;
  NSImage drawn = NSImage::imageWithSize(how.size);
  if (!drawn) setError(error, ErrorCode::tooLarge, "no picture can have this size");
  const auto draw = [&](NSGraphicsContext &context) { drawAnew(image, how, context); };
  return drawn && drawn.drawWithFocus(draw, deadline, error) ? drawn : NSImage();
}

NSData redrawnTIFF(const NSImage &image, const Redrawing &how, const Deadline &deadline, NSError *error) {
  const NSImage drawn = redrawnImage(image, how, deadline, error);
  return drawn ? drawn.TIFFRepresentation(error) : NSData();
}

NSImage redrawnBitmap(const NSImage &image, const Redrawing &how, const Deadline &deadline, NSError *error) {
  NSImage drawn = redrawnImage(image, how, deadline, error);
  if (const auto cached = cachedImageRep(drawn)) {
    removeAllRepresentations(drawn);
    drawn.addRepresentation(NSBitmapImageRep::imageRepWithCGImage(cached->decodedImage(), cached->size()));
  }
  return drawn;
}

}  // namespace

NSData TIFFRepresentationWithSize(const NSImage &image, NSSize size, Flag shouldAntialias,
                                  NSImageInterpolation interpolation, Flag, const Deadline &deadline,
                                  NSError *error) {
  return redrawnTIFF(image, {size, {}, shouldAntialias, interpolation}, deadline, error);
}

NSData TIFFRepresentationWithSize(const NSImage &image, NSSize size, Flag, const Deadline &deadline,
                                  NSError *error) {
  return redrawnTIFF(image, {size}, deadline, error);
}

NSData TIFFRepresentationWithSize(const NSImage &image, NSSize size, const NSRect &fromRect, Flag,
                                  const Deadline &deadline, NSError *error) {
  return redrawnTIFF(image, {size, fromRect}, deadline, error);
}

NSData TIFFRepresentationFromRect(const NSImage &image, const NSRect &fromRect, const Deadline &deadline,
                                  NSError *error) {
  return redrawnTIFF(image, {fromRect.size, fromRect}, deadline, error);
}

NSImage imageWithSize(const NSImage &image, NSSize size, Flag shouldAntialias,
                      NSImageInterpolation interpolation, Flag, const Deadline &deadline, NSError *error) {
  return redrawnImage(image, {size, {}, shouldAntialias, interpolation}, deadline, error);
}

NSImage imageWithSize(const NSImage &image, NSSize size, Flag, const Deadline &deadline, NSError *error) {
  return redrawnImage(image, {size}, deadline, error);
}

NSImage bitmapImageWithSize(const NSImage &image, NSSize size, Flag shouldAntialias,
                            NSImageInterpolation interpolation, Flag, const Deadline &deadline,
                            NSError *error) {
  return redrawnBitmap(image, {size, {}, shouldAntialias, interpolation}, deadline, error);
}

NSImage bitmapImageWithSize(const NSImage &image, NSSize size, Flag, const Deadline &deadline, NSError *error) {
  return redrawnBitmap(image, {size}, deadline, error);
}

NSImage thumbForSize(const NSImage &image, NSSize maximum, Flag shouldAntialias,
                     NSImageInterpolation interpolation, Flag cachedSeparately, const Deadline &deadline,
                     NSError *error) {
  return imageWithSize(image, thumbSize(image, maximum), shouldAntialias, interpolation, cachedSeparately,
                       deadline, error);
}

NSImage thumbForSize(const NSImage &image, NSSize maximum, Flag cachedSeparately, const Deadline &deadline,
                     NSError *error) {
  return imageWithSize(image, thumbSize(image, maximum), cachedSeparately, deadline, error);
}

NSImage initWithImage(const NSImage &image, NSSize size, Flag, const Deadline &deadline, NSError *error) {
  return redrawnImage(image, {size}, deadline, error);
}

NSImage initWithImage(const NSImage &image, const NSRect &fromRect, NSSize size, Flag, const Deadline &deadline,
                      NSError *error) {
  return redrawnImage(image, {size, fromRect}, deadline, error);
}

NSImage bitmapImageCachedSeparately(const NSImage &image, Flag, const Deadline &deadline, NSError *error) {
  const NSData TIFF = image.TIFFRepresentation(error);
  return TIFF ? NSImage::imageWithData(TIFF, deadline, error) : NSImage();
}

NSImage copyOfBitmapImageCachedSeparately(const NSImage &image, Flag cachedSeparately, const Deadline &deadline,
                                          NSError *error) {
  return bitmapImageCachedSeparately(image, cachedSeparately, deadline, error);
}

}  // namespace NSImageNimboExtensions
}  // namespace nimbo
