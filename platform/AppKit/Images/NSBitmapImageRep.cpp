// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Images/NSBitmapImageRep.hpp"

#include <algorithm>
#include <cmath>
#include <mutex>
#include <utility>

#include "platform/AppKit/Images/PixelDrawing.hpp"
#include "platform/ImageIO/CGImageDestination.hpp"

namespace nimbo {

/// A file that several representations may come from, one thread reading it at a time.
struct detail::BitmapSource {
  std::unique_ptr<CGImageSource> source;
  Deadline deadline;
  mutable std::mutex mutex;
};

namespace {

constexpr double kPointsPerInch = 72;

/// The resolution on one axis; that of points when the file names one that no picture has.
double resolution(const NSDictionary &properties, const NSString &key) {
  constexpr double kLowest = 1;
  constexpr double kHighest = 100'000;
  const double dotsPerInch = properties.objectForKey(key).real().value_or(kPointsPerInch);
  return dotsPerInch >= kLowest && dotsPerInch <= kHighest ? dotsPerInch : kPointsPerInch;
}

std::uint32_t side(const NSDictionary &properties, const NSString &key) {
  return static_cast<std::uint32_t>(
      std::clamp<std::int64_t>(properties.objectForKey(key).integer().value_or(0), 0, INT32_MAX));
}

/// Whether the images of such a file are one picture in several forms, or several pictures, and not the frames
/// of one that moves.
bool hasRepresentations(const NSString &type) {
  static const NSString kTypes[] = {u"public.tiff"_ns, u"com.microsoft.ico"_ns, u"com.microsoft.cur"_ns};
  return std::ranges::find(kTypes, type) != std::end(kTypes);
}

/// Nil when the number has no type.
NSString uniformTypeOfFileType(NSBitmapImageFileType type) {
  static const NSString kTypes[] = {u"public.tiff"_ns, u"com.microsoft.bmp"_ns, u"com.compuserve.gif"_ns,
                                    u"public.jpeg"_ns, u"public.png"_ns,        u"public.jpeg-2000"_ns};
  const auto number = static_cast<std::size_t>(type);
  return number < std::size(kTypes) ? kTypes[number] : NSString();
}

}  // namespace

NSBitmapImageRep::NSBitmapImageRep() = default;
NSBitmapImageRep::~NSBitmapImageRep() = default;

SharedPointer<NSBitmapImageRep> NSBitmapImageRep::imageRepWithCGImage(const CGImage &image,
                                                                      NSSize sizeInPoints) {
  if (!image) return {};
  auto rep = SharedPointer<NSBitmapImageRep>::adopt(new NSBitmapImageRep);
  const bool hasSize = sizeInPoints.width > 0 && sizeInPoints.height > 0;
  rep->image_ = image;
  rep->size_ = hasSize ? sizeInPoints : NSSize{double(image.width()), double(image.height())};
  rep->width_ = image.width();
  rep->height_ = image.height();
  return rep;
}

std::vector<SharedPointer<NSImageRep>> NSBitmapImageRep::imageRepsWithSource(
    std::unique_ptr<CGImageSource> source, const Deadline &deadline) {
  std::vector<SharedPointer<NSImageRep>> reps;
  const std::uint32_t count =
      hasRepresentations(source->type()) ? std::min(source->count(), kMaximumRepresentations) : 1;
  const bool isPicture = source->type() == u"com.apple.pict"_ns;
  auto shared = std::make_shared<detail::BitmapSource>();
  shared->source = std::move(source);
  shared->deadline = deadline;
  for (std::uint32_t index = 0; index < count && !(index > 0 && deadline.isOver()); ++index) {
    const NSDictionary properties = shared->source->copyPropertiesAtIndex(index);
    const auto rep = SharedPointer<NSBitmapImageRep>::adopt(new NSBitmapImageRep);
    rep->source_ = shared;
    rep->indexInSource_ = index;
    if (isPicture) rep->class_ = NSImageRepClass::PICT;
    rep->width_ = side(properties, u"PixelWidth"_ns);
    rep->height_ = side(properties, u"PixelHeight"_ns);
    if (rep->width_ == 0 || rep->height_ == 0) continue;
    rep->size_ = {rep->width_ * kPointsPerInch / resolution(properties, u"DPIWidth"_ns),
                  rep->height_ * kPointsPerInch / resolution(properties, u"DPIHeight"_ns)};
    rep->hasAlpha_ = properties.objectForKey(u"HasAlpha"_ns).boolean();
    // Exif's orientations from 5 on show columns as rows.
    if (properties.objectForKey(u"Orientation"_ns).integer().value_or(1) >= 5) {
      std::swap(rep->width_, rep->height_);
      std::swap(rep->size_.width, rep->size_.height);
    }
    reps.emplace_back(rep);
  }
  return reps;
}

const ClassDescription &NSBitmapImageRep::classDescription() const {
  static const ClassDescription bitmap{u"NSBitmapImageRep"_ns, &imageRepClass(), {}, {}, nullptr};
  static const ClassDescription picture{u"NSPICTImageRep"_ns, &imageRepClass(), {}, {}, nullptr};
  return class_ == NSImageRepClass::PICT ? picture : bitmap;
}

bool NSBitmapImageRep::hasAlpha() const {
  if (!source_) return image_.hasAlpha();
  const std::scoped_lock lock(source_->mutex);
  // What the header does not say, some pixel of the decoded image does.
  if (!hasAlpha_)
    hasAlpha_ = source_->source
                    ->createImageAtIndex(indexInSource_, 1, 1, CGInterpolationQuality::none,
                                         {.deadline = source_->deadline})
                    .hasAlpha();
  return *hasAlpha_;
}

CGImage NSBitmapImageRep::decodedImage(NSError *error) const {
  if (!source_) return image_;
  const std::scoped_lock lock(source_->mutex);
  return source_->source->createImageAtIndex(indexInSource_,
                                             {.withTransform = true, .deadline = source_->deadline}, error);
}

bool NSBitmapImageRep::draw(NSGraphicsContext &context, const NSRect &rect, const NSRect &from,
                            NSCompositingOperation operation, double fraction, NSError *error) const {
  CGImage image = image_;
  if (!image) {
    // As many pixels as they will be, so that the file is reduced while it is decoded. Sizes by a resolution
    // are not exact; they must not cost a pixel more.
    constexpr double kSliver = 1.0 / 16;
    const auto drawn = [](double canvas, double part, double whole, std::uint32_t pixels) {
      const double wanted = std::ceil(canvas * whole / part - kSliver);
      return wanted >= 1 && wanted < pixels ? static_cast<std::uint32_t>(wanted) : pixels;
    };
    const std::scoped_lock lock(source_->mutex);
    image = source_->source->createImageAtIndex(
        indexInSource_, drawn(rect.size.width, from.size.width, size_.width, width_),
        drawn(rect.size.height, from.size.height, size_.height, height_), context.qualityOfInterpolation(),
        {.withTransform = true, .deadline = earliest(context.deadline, source_->deadline)}, error);
  }
  if (!image) return false;
  detail::drawPixels(context, rect, image, size_, from, operation, fraction);
  return true;
}

NSData NSBitmapImageRep::representationUsingType(NSBitmapImageFileType type,
                                                 std::optional<float> compressionFactor, NSError *error) const {
  CGImageDestinationOptions options;
  if (compressionFactor) options.compressionFactor = *compressionFactor;
  options.dotsPerInch = dotsPerInch();
  const CGImage image = decodedImage(error);
  return image ? dataWithImage(image, uniformTypeOfFileType(type), options, error) : NSData();
}

NSData NSBitmapImageRep::TIFFRepresentationOfImageReps(const std::vector<SharedPointer<NSBitmapImageRep>> &reps,
                                                       NSTIFFCompression compression, NSError *error) {
  if (reps.empty()) {
    setError(error, ErrorCode::incomplete, "the image has no representations");
    return {};
  }
  std::vector<CGImage> images;
  for (const SharedPointer<NSBitmapImageRep> &rep : reps) {
    images.push_back(rep->decodedImage(error));
    if (!images.back()) return {};
  }
  CGImageDestinationOptions options;
  options.usesLZW = compression == NSTIFFCompression::LZW;
  options.dotsPerInch = reps.front()->dotsPerInch();
  return dataWithImages(images, u"public.tiff"_ns, options, error);
}

}  // namespace nimbo
