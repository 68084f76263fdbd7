// SPDX-License-Identifier: Apache-2.0
#include "children/Pictures/Picture.hpp"

#include <algorithm>
#include <cmath>

#include "platform/AppKit/Images/NSImage.hpp"
#include "platform/CoreGraphics/CGContext.hpp"
#include "platform/ImageIO/CGImageSource.hpp"
#include "platform/QTKit/QTMovie.hpp"

namespace nimbo {
namespace {

/// What a size becomes whose longer side is to be `side`.
NSSize scaledSize(NSSize size, double side) {
  const double factor = side > 0 ? side / std::max(size.width, size.height) : 1;
  return {std::max(std::round(size.width * factor), 1.0), std::max(std::round(size.height * factor), 1.0)};
}

CGContext contextOfSize(NSSize size) {
  return {static_cast<std::uint32_t>(size.width), static_cast<std::uint32_t>(size.height)};
}

/// What has no pixels of its own, on white.
CGImage drawnPicture(const NSString &path, std::uint32_t side, const Deadline &deadline, NSError *error) {
  NSImage image = NSImage::imageByReferencingFile(path, deadline, error);
  if (!image) return {};
  const NSSize size = scaledSize(image.size(), side);
  const NSRect all = {{0, 0}, size};
  image.setScalesWhenResized(true);
  image.setSize(size);
  NSGraphicsContext context{contextOfSize(size)};
  context.imageInterpolation = NSImageInterpolation::high;
  context.deadline = deadline;
  if (!context.context.isValid()) {
    setError(error, ErrorCode::tooLarge, "the picture is too large");
    return {};
  }
  context.context.fillRect(all, {1, 1, 1});
  const bool isDrawn = image.drawInRect(context, all, {}, NSCompositingOperation::sourceOver, 1, error);
  return isDrawn ? context.context.makeImage() : CGImage();
}

}  // namespace

CGImage pictureInFile(const NSString &path, std::uint32_t side, const Deadline &deadline, NSError *error) {
  const auto source = CGImageSource::sourceWithContentsOfFile(path);
  if (!source) return drawnPicture(path, side, deadline, error);
  return source->createThumbnailAtIndex(
      0, {.maxPixelSize = side, .createFromImageAlways = true, .withTransform = true, .deadline = deadline},
      error);
}

CGImage coverInFile(const NSString &path, std::uint32_t side, const Deadline &deadline, NSError *error) {
  const auto movie = QTMovie::movieWithFile(path, deadline, error);
  if (!movie) return {};
  CGImage cover = movie->coverImage(error);
  if (!cover) {
    setError(error, ErrorCode::incomplete, "no cover comes with it");
    return {};
  }
  if (side == 0 || std::max(cover.width(), cover.height()) <= side) return cover;
  const NSSize whole = {double(cover.width()), double(cover.height())}, size = scaledSize(whole, side);
  CGContext context = contextOfSize(size);
  context.setInterpolationQuality(CGInterpolationQuality::high);
  context.drawImage({{0, 0}, size}, cover, {{0, 0}, whole}, CGBlendMode::copy);
  return context.makeImage();
}

}  // namespace nimbo
