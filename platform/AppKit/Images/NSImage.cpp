// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Images/NSImage.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/AppKit/Images/NSBitmapImageRep.hpp"
#include "platform/AppKit/Images/NSCachedImageRep.hpp"

namespace nimbo {

struct detail::NSImageStorage : ReferenceCounted {
  std::vector<SharedPointer<NSImageRep>> representations;
  NSSize size;
  NSColor backgroundColor = {0, 0, 0, 0};
  bool scalesWhenResized = false;
  /// Whether the size is another one than that of the file.
  bool hasOwnSize = false;
};

template <>
void destroyShared<detail::NSImageStorage>(ReferenceCounted *storage) noexcept {
  delete static_cast<detail::NSImageStorage *>(storage);
}

namespace {

/// A copy of what has pixels, as a bitmap; null for others.
SharedPointer<NSBitmapImageRep> bitmapOfRep(const SharedPointer<NSImageRep> &rep) {
  if (auto *const cached = dynamic_cast<NSCachedImageRep *>(rep.get()))
    return NSBitmapImageRep::imageRepWithCGImage(cached->decodedImage(), cached->size());
  auto *const bitmap = dynamic_cast<NSBitmapImageRep *>(rep.get());
  if (!bitmap) return {};
  return SharedPointer<NSBitmapImageRep>::adopt(
      static_cast<NSBitmapImageRep *>(SharedPointer<NSImageRep>(rep).detach()));
}

}  // namespace

NSImage NSImage::imageWithSize(NSSize sizeInPoints) {
  NSImage image;
  const auto isPossible = [](double side) { return side > 0 && side <= CGImage::kMaximumSide; };
  if (!isPossible(sizeInPoints.width) || !isPossible(sizeInPoints.height)) return image;
  image.storage_ = makeShared<detail::NSImageStorage>();
  image.storage_->size = sizeInPoints;
  image.storage_->hasOwnSize = true;
  return image;
}

NSImage NSImage::imageWithRepresentations(std::vector<SharedPointer<NSImageRep>> representations) {
  NSImage image;
  if (representations.empty()) return image;
  image.storage_ = makeShared<detail::NSImageStorage>();
  image.storage_->size = representations.front()->size();
  image.storage_->representations = std::move(representations);
  return image;
}

NSImage NSImage::imageByReferencingFile(const NSString &path, const Deadline &deadline, NSError *error) {
  return imageWithRepresentations(NSImageRep::imageRepsWithContentsOfFile(path, deadline, error));
}

NSImage NSImage::imageWithData(const NSData &data, const Deadline &deadline, NSError *error) {
  return imageWithRepresentations(NSImageRep::imageRepsWithData(data, deadline, error));
}

NSSize NSImage::size() const {
  return storage_ ? storage_->size : NSSize();
}

void NSImage::setSize(NSSize sizeInPoints) {
  if (!storage_ || storage_->size == sizeInPoints) return;
  mutableStorage()->size = sizeInPoints;
  storage_->hasOwnSize = true;
}

bool NSImage::scalesWhenResized() const {
  return storage_ && storage_->scalesWhenResized;
}

void NSImage::setScalesWhenResized(bool scales) {
  if (storage_) mutableStorage()->scalesWhenResized = scales;
}

NSColor NSImage::backgroundColor() const {
  return storage_ ? storage_->backgroundColor : NSColor{0, 0, 0, 0};
}

void NSImage::setBackgroundColor(const NSColor &color) {
  if (storage_) mutableStorage()->backgroundColor = color;
}

const std::vector<SharedPointer<NSImageRep>> &NSImage::representations() const {
  static const std::vector<SharedPointer<NSImageRep>> none;
  return storage_ ? storage_->representations : none;
}

void NSImage::addRepresentation(const SharedPointer<NSImageRep> &representation) {
  if (storage_ && representation) mutableStorage()->representations.push_back(representation);
}

void NSImage::removeRepresentation(const SharedPointer<NSImageRep> &representation) {
  if (storage_) std::erase(mutableStorage()->representations, representation);
}

SharedPointer<NSImageRep> NSImage::bestRepresentationForDefaultDevice() const {
  SharedPointer<NSImageRep> best;
  const NSSize wanted = size();
  const auto isEnough = [&wanted](const NSImageRep &rep) {
    return rep.pixelsWide() >= wanted.width && rep.pixelsHigh() >= wanted.height;
  };
  for (const SharedPointer<NSImageRep> &rep : representations()) {
    if (!best) {
      best = rep;
      continue;
    }
    if (rep->pixelsWide() == 0) continue;
    const bool isLarger = rep->pixelsWide() > best->pixelsWide();
    if (isEnough(*best) ? isEnough(*rep) && !isLarger && rep->pixelsWide() < best->pixelsWide() : isLarger)
      best = rep;
  }
  return best;
}

bool NSImage::drawWithFocus(const std::function<void(NSGraphicsContext &)> &draw, const Deadline &deadline,
                            NSError *error) {
  const auto pixels = [](double points) {
    return static_cast<std::uint32_t>(std::clamp<double>(std::round(points), 1, CGImage::kMaximumSide + 1.0));
  };
  const NSSize points = size();
  NSGraphicsContext context{CGContext(pixels(points.width), pixels(points.height))};
  context.deadline = deadline;
  if (!storage_ || !context.context.isValid()) {
    setError(error, ErrorCode::tooLarge, "there is no bitmap of the size of the image");
    return false;
  }
  drawInRect(context, {{0, 0}, points}, {}, NSCompositingOperation::sourceOver, 1);
  draw(context);
  if (context.failure) {
    if (error) *error = context.failure;
    return false;
  }
  mutableStorage()->representations = {
      NSCachedImageRep::imageRepWithCGImage(context.context.makeImage(), points)};
  return true;
}

bool NSImage::drawInRect(NSGraphicsContext &context, const NSRect &rect, const NSRect &from,
                         NSCompositingOperation operation, double fraction, NSError *error) const {
  const SharedPointer<NSImageRep> rep = bestRepresentationForDefaultDevice();
  if (!rep) return true;
  const NSSize whole = size();
  const NSSize own = rep->size();
  // What the representation covers of the image, from the lower left corner on.
  const NSSize area = storage_->hasOwnSize && !storage_->scalesWhenResized ? own : whole;
  NSRect part = from.size.width > 0 && from.size.height > 0 ? from : NSRect{{0, 0}, whole};
  NSRect target = rect;
  if (area != whole) {
    const double right = std::min(part.origin.x + part.size.width, area.width);
    const double top = std::min(part.origin.y + part.size.height, area.height);
    if (right <= part.origin.x || top <= part.origin.y) return true;
    target.size = {rect.size.width * (right - part.origin.x) / part.size.width,
                   rect.size.height * (top - part.origin.y) / part.size.height};
    part.size = {right - part.origin.x, top - part.origin.y};
  }
  const double x = own.width / area.width;
  const double y = own.height / area.height;
  return rep->drawInRect(context, target,
                         {{part.origin.x * x, part.origin.y * y}, {part.size.width * x, part.size.height * y}},
                         operation, fraction, error);
}

NSData NSImage::TIFFRepresentation(NSError *error) const {
  return TIFFRepresentationUsingCompression(static_cast<int>(NSTIFFCompression::none), 0, error);
}

NSData NSImage::TIFFRepresentationUsingCompression(int compression, float, NSError *error) const {
  std::vector<SharedPointer<NSBitmapImageRep>> bitmaps;
  for (const SharedPointer<NSImageRep> &rep : representations())
    if (auto bitmap = bitmapOfRep(rep)) bitmaps.push_back(std::move(bitmap));
  if (bitmaps.empty() && !representations().empty()) {
    NSImage drawn = imageWithSize(size());
    const auto draw = [this](NSGraphicsContext &context) {
      context.CGContextToDraw().fillRect({{0, 0}, size()}, {1, 1, 1});
      drawInRect(context, {{0, 0}, size()}, {}, NSCompositingOperation::sourceOver, 1);
    };
    if (!drawn.drawWithFocus(draw, {}, error)) return {};
    bitmaps.push_back(bitmapOfRep(drawn.representations().front()));
  }
  const bool usesLZW = compression == static_cast<int>(NSTIFFCompression::LZW);
  return NSBitmapImageRep::TIFFRepresentationOfImageReps(
      bitmaps, usesLZW ? NSTIFFCompression::LZW : NSTIFFCompression::none, error);
}

detail::NSImageStorage *NSImage::mutableStorage() {
  if (!storage_.isUnique()) storage_ = makeShared<detail::NSImageStorage>(*storage_);
  return storage_.get();
}

}  // namespace nimbo
