// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/NSImage+NSImageNimboExtensions/Sizes.hpp"

#include <cmath>

namespace nimbo {
inline namespace NSImageNimboExtensions {

namespace {

/// A size in single precision.
struct FloatSize {
  explicit FloatSize(NSSize size)
      : width(static_cast<float>(size.width)), height(static_cast<float>(size.height)) {}

  float width;
  float height;
};

/// The side in whole units; 1 for one that is not above 0, which one that is no number is not.
double wholeSide(float side) {
  const float floored = std::floor(side);
  return floored > 0 ? floored : 1.0;
}

}  // namespace

NSSize thumb(NSSize maximum, NSSize forSize) {
  const FloatSize most(maximum), size(forSize);
  // One that is no number is not above the maximum.
  if (!(size.width > most.width) && !(size.height > most.height)) return forSize;
  const float heightAtMostWidth = most.width / size.width * size.height;
  if (heightAtMostWidth > most.height)
    return {wholeSide(most.height / size.height * size.width), wholeSide(most.height)};
  return {wholeSide(most.width), wholeSide(heightAtMostWidth)};
}

NSSize scale(float factor, NSSize forSize) {
  if (!(factor > 0)) return forSize;
  const FloatSize size(forSize);
  return {std::floor(size.width * factor), std::floor(size.height * factor)};
}

NSSize pixelSize(const NSImage &image) {
  const NSImageRep *widest = nullptr;
  std::uint32_t pixelsWide = 0;
  for (const auto &representation : image.representations()) {
    if (representation->pixelsWide() <= pixelsWide) continue;
    widest = representation.get();
    pixelsWide = widest->pixelsWide();
  }
  return widest ? NSSize{double(pixelsWide), double(widest->pixelsHigh())} : image.size();
}

NSSize thumbSize(const NSImage &image, NSSize maximum) {
  return thumb(maximum, pixelSize(image));
}

NSSize scaledSize(const NSImage &image, float factor) {
  return scale(factor, pixelSize(image));
}

void scaleToThumbSize(NSImage &image, NSSize maximum) {
  image.setScalesWhenResized(true);
  image.setSize(thumbSize(image, maximum));
}

NSRect bounds(const NSImage &image) {
  return {{0, 0}, image.size()};
}

float aspectRatio(const NSImage &image) {
  const FloatSize size(image.size());
  return size.height > 0 ? size.width / size.height : 0;
}

}  // namespace NSImageNimboExtensions
}  // namespace nimbo
