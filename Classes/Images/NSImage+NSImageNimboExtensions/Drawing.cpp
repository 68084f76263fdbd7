// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/NSImage+NSImageNimboExtensions/Drawing.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <utility>

#include "Classes/Images/NSImage+NSImageNimboExtensions/Redrawing.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Representations.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Sizes.hpp"

namespace nimbo {
inline namespace NSImageNimboExtensions {

namespace {

constexpr NSCompositingOperation kOver = NSCompositingOperation::sourceOver;

bool isEmpty(NSSize size) {
  return !(size.width > 0 && size.height > 0);
}

NSRect centeredRect(NSSize size, const NSRect &rect) {
  return {{rect.origin.x + (rect.size.width - size.width) / 2,
           rect.origin.y + (rect.size.height - size.height) / 2},
          size};
}

/// What both cover; without a size when that is nothing.
NSRect intersection(const NSRect &a, const NSRect &b) {
  const double left = std::max(a.origin.x, b.origin.x), bottom = std::max(a.origin.y, b.origin.y);
  const double right = std::min(a.origin.x + a.size.width, b.origin.x + b.size.width);
  const double top = std::min(a.origin.y + a.size.height, b.origin.y + b.size.height);
  if (!(right > left && top > bottom)) return {};
  return {{left, bottom}, {right - left, top - bottom}};
}

CGImage upsideDown(const CGImage &image) {
  const std::size_t bytesPerRow = image.bytesPerRow();
  auto pixels = std::make_unique<std::uint8_t[]>(bytesPerRow * image.height());
  for (std::uint32_t row = 0; row < image.height(); ++row)
    std::memcpy(pixels.get() + row * bytesPerRow, image.pixels() + (image.height() - 1 - row) * bytesPerRow,
                bytesPerRow);
  return CGImage::imageWithPixels(image.width(), image.height(), image.hasAlpha(), std::move(pixels));
}

/// The image drawn at a size on nothing, with a pixel a point; nil when it cannot be drawn.
CGImage drawnAtSize(const NSImage &image, NSSize size, NSGraphicsContext &context) {
  NSImage drawn = NSImage::imageWithSize(size);
  const auto draw = [&](NSGraphicsContext &focus) {
    focus.shouldAntialias = context.shouldAntialias;
    focus.imageInterpolation = context.imageInterpolation;
    image.drawInRect(focus, bounds(drawn), {}, kOver, 1.0);
  };
  NSError error;
  if (drawn && drawn.drawWithFocus(draw, context.deadline, &error))
    return cachedImageRep(drawn)->decodedImage();
  if (!context.failure) context.failure = error;
  return CGImage();
}

/// How many tiles cover a length.
std::uint32_t tileCount(double length, double tile) {
  constexpr double kMost = std::numeric_limits<std::uint32_t>::max();
  return static_cast<std::uint32_t>(std::min(std::ceil(length / tile), kMost));
}

}  // namespace

bool drawBestRepresentationInRect(const NSImage &image, NSGraphicsContext &context, const NSRect &rect,
                                  double fraction) {
  const SharedPointer<NSImageRep> best = image.bestRepresentationForDefaultDevice();
  return !best || best->drawInRect(context, rect, {}, kOver, fraction);
}

bool drawScaledInRect(const NSImage &image, NSGraphicsContext &context, const NSRect &rect, double fraction) {
  const NSSize size = image.size();
  if (isEmpty(size) || isEmpty(rect.size)) return true;
  const double factor = std::min(rect.size.width / size.width, rect.size.height / size.height);
  const NSRect target = centeredRect({size.width * factor, size.height * factor}, rect);
  return image.drawInRect(context, target, {}, kOver, fraction);
}

bool drawCenteredInRect(const NSImage &image, NSGraphicsContext &context, const NSRect &rect, double fraction) {
  const NSRect whole = centeredRect(image.size(), rect), visible = intersection(whole, rect);
  if (isEmpty(visible.size)) return true;
  const NSPoint corner = {visible.origin.x - whole.origin.x, visible.origin.y - whole.origin.y};
  return image.drawInRect(context, visible, {corner, visible.size}, kOver, fraction);
}

bool drawFlippedInRect(const NSImage &image, NSGraphicsContext &context, const NSRect &rect, double fraction) {
  if (!isReallyValid(image) || isEmpty(rect.size)) return true;
  const CGImage drawn = drawnAtSize(image, {std::ceil(rect.size.width), std::ceil(rect.size.height)}, context);
  if (!drawn) return false;
  const CGImage flipped = upsideDown(drawn);
  const NSRect all = {{0, 0}, {double(flipped.width()), double(flipped.height())}};
  context.CGContextToDraw().drawImage(rect, flipped, all, CGBlendMode::sourceOver, fraction);
  return true;
}

bool drawTiledInRect(const NSImage &image, NSGraphicsContext &context, const NSRect &rect, double fraction) {
  const NSSize size = image.size();
  if (!isReallyValid(image) || isEmpty(rect.size)) return true;
  // Decoded once, not once a tile.
  const CGImage drawn = drawnAtSize(image, size, context);
  if (!drawn) return false;
  const double right = rect.origin.x + rect.size.width, top = rect.origin.y + rect.size.height;
  const std::uint32_t columns = tileCount(rect.size.width, size.width);
  const std::uint32_t rows = tileCount(rect.size.height, size.height);
  for (std::uint32_t row = 0; row < rows; ++row)
    for (std::uint32_t column = 0; column < columns; ++column) {
      if (context.deadline.isOver()) {
        if (!context.failure) setError(&context.failure, ErrorCode::timeLimit, "drawing took too long");
        return false;
      }
      const NSPoint origin = {rect.origin.x + column * size.width, rect.origin.y + row * size.height};
      const NSSize visible = {std::min(size.width, right - origin.x), std::min(size.height, top - origin.y)};
      const NSSize pixels = {visible.width / size.width * drawn.width(),
                             visible.height / size.height * drawn.height()};
      context.CGContextToDraw().drawImage({origin, visible}, drawn, {{0, 0}, pixels}, CGBlendMode::sourceOver,
                                          fraction);
    }
  return true;
}

NSImage imageWithOverlay(const NSImage &image, const NSImage &overlay, const Deadline &deadline,
                         NSError *error) {
  NSImage drawn = imageWithSize(image, image.size(), false, deadline, error);
  if (!drawn) return drawn;
  const auto draw = [&](NSGraphicsContext &context) {
    overlay.drawInRect(context, {{0, 0}, drawn.size()}, {}, kOver, 1.0);
  };
  return drawn.drawWithFocus(draw, deadline, error) ? drawn : NSImage();
}

}  // namespace NSImageNimboExtensions
}  // namespace nimbo
