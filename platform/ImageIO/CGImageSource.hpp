// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>

#include "platform/CoreGraphics/CGContext.hpp"
#include "platform/CoreGraphics/CGImage.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/System/Deadline.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// How a thumbnail is made.
struct CGImageThumbnailOptions {
  /// The most pixels of its longer side; images are never enlarged. 0 is as large as the image.
  std::uint32_t maxPixelSize = 0;
  /// Whether it is made from the image when the file has no thumbnail of its own that is large enough.
  bool createFromImageIfAbsent = false;
  /// Whether it is always made from the image.
  bool createFromImageAlways = false;
  /// Whether it is turned as the file's orientation says.
  bool withTransform = false;
  /// By when it has to be there.
  Deadline deadline = {};
};

/// How an image is decoded.
struct CGImageOptions {
  /// Whether it is turned as the file's orientation says.
  bool withTransform = false;
  /// By when it has to be there.
  Deadline deadline = {};
};

/// An image file: what its header and its metadata say, and its pixels. Used from one thread at a time.
///
///     NSError error;
///     const auto source = CGImageSource::sourceWithContentsOfFile(path, &error);
///     if (!source) return NSLog(error.localizedFailureReason);
///     const auto width = source->properties().objectForKey(u"PixelWidth"_ns).integer();
class CGImageSource {
 public:
  /// Reads a file. Null when there is no such regular file, or no image of a known kind that it could begin
  /// with; `*error` says why. It also says when the image's metadata cannot be read, which is then left out.
  static std::unique_ptr<CGImageSource> sourceWithContentsOfFile(const NSString &path,
                                                                 NSError *error = nullptr);
  /// Reads data, as above.
  static std::unique_ptr<CGImageSource> sourceWithData(const NSData &data, NSError *error = nullptr);
  CGImageSource(const CGImageSource &) = delete;
  CGImageSource &operator=(const CGImageSource &) = delete;
  ~CGImageSource();

  /// The number of images (pages, frames) that the file says it has, at least 1.
  std::uint32_t count() const;
  /// The uniform type identifier of the file's format, as "public.jpeg"; never nil.
  const NSString &type() const NIMBO_LIFETIMEBOUND;
  /// The facts of the first image under the platform's names, as far as they are known:
  /// "PixelWidth", "PixelHeight" (integers, as stored, before the orientation is applied; always there);
  /// "DPIWidth", "DPIHeight" (reals; 72 when the file does not say); "Depth" (integer, bits of one sample);
  /// "ColorModel" ("RGB", "Gray", "CMYK" or "Lab"); "HasAlpha" (boolean); "Orientation" (integer 1 to 8, of
  /// Exif); "ProfileName" (string); and the dictionaries "{Exif}", "{TIFF}", "{GPS}" and "{IPTC}". Exif
  /// rationals are reals, dates the strings that stand in the file; "Latitude", "Longitude" (degrees) and
  /// "Altitude" (metres) have no sign, which stands in "LatitudeRef" ("N", "S"), "LongitudeRef" ("E", "W") and
  /// "AltitudeRef" (1 is below the sea). What only XMP says about title, authors, keywords and copyright stands
  /// in "{IPTC}" too. What a format alone says stands in "{PNG}" ("InterlaceType"), "{JFIF}" ("IsProgressive")
  /// and "{GIF}" ("LoopCount", and "DelayTime" in seconds).
  const NSDictionary &properties() const NIMBO_LIFETIMEBOUND;
  /// The facts of one image; nil when there is no such image. Those of the first are those above; the others
  /// have no metadata.
  NSDictionary copyPropertiesAtIndex(std::uint32_t index) const;
  /// A thumbnail; nil when there is none, or the image is damaged from the start, too large, or not decoded by
  /// the deadline: `*error` says which. Of an image whose end is missing the part that is there.
  CGImage createThumbnailAtIndex(std::uint32_t index, const CGImageThumbnailOptions &options,
                                 NSError *error = nullptr) const;
  /// All pixels; nil as above.
  CGImage createImageAtIndex(std::uint32_t index, const CGImageOptions &options,
                             NSError *error = nullptr) const;
  /// The image scaled to exactly that many pixels while it is decoded, which takes less time and memory than
  /// afterwards; nil as above.
  CGImage createImageAtIndex(std::uint32_t index, std::uint32_t width, std::uint32_t height,
                             CGInterpolationQuality quality, const CGImageOptions &options,
                             NSError *error = nullptr) const;

 private:
  struct Storage;

  explicit CGImageSource(std::unique_ptr<Storage> storage);
  static std::unique_ptr<CGImageSource> sourceWithStorage(std::unique_ptr<Storage> storage, NSError *error);

  std::unique_ptr<Storage> storage_;
};

}  // namespace nimbo
