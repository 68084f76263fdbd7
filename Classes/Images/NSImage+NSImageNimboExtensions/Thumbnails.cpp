// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/NSImage+NSImageNimboExtensions/Thumbnails.hpp"

#include "platform/AppKit/Images/NSBitmapImageRep.hpp"
#include "platform/ImageIO/CGImageSource.hpp"

namespace nimbo {
inline namespace NSImageNimboExtensions {

namespace {

/// The image that `decode` makes of the file's source, and the properties of the first image.
template <class Decode>
NSImage imageFromSource(const NSString &path, NSDictionary *properties, NSError *error, Decode decode) {
  if (properties) *properties = NSDictionary();
  const auto source = CGImageSource::sourceWithContentsOfFile(path, error);
  if (!source || source->count() == 0) return NSImage();
  const CGImage image = decode(*source);
  if (image && properties) *properties = source->copyPropertiesAtIndex(0);
  return imageWithCGImageRef(image);
}

}  // namespace

NSImage thumbnailForFile(const NSString &path, std::uint32_t maxSize, Flag alwaysFromImage, Flag withTransform,
                         NSDictionary *properties, const Deadline &deadline, NSError *error) {
  return imageFromSource(path, properties, error, [&](const CGImageSource &source) {
    return source.createThumbnailAtIndex(0,
                                         {.maxPixelSize = maxSize,
                                          .createFromImageIfAbsent = true,
                                          .createFromImageAlways = alwaysFromImage,
                                          .withTransform = withTransform,
                                          .deadline = deadline},
                                         error);
  });
}

NSImage imageForFile(const NSString &path, Flag withTransform, NSDictionary *properties,
                     const Deadline &deadline, NSError *error) {
  return imageFromSource(path, properties, error, [&](const CGImageSource &source) {
    return source.createImageAtIndex(0, {.withTransform = withTransform, .deadline = deadline}, error);
  });
}

NSImage imageWithCGImageRef(const CGImage &image) {
  if (!image) return NSImage();
  NSImage answer = NSImage::imageWithSize({double(image.width()), double(image.height())});
  if (answer) answer.addRepresentation(NSBitmapImageRep::imageRepWithCGImage(image));
  return answer;
}

}  // namespace NSImageNimboExtensions
}  // namespace nimbo
