// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/AppKit/Images/NSImageRep.hpp"
#include "platform/CoreGraphics/CGImage.hpp"
#include "platform/ImageIO/CGImageSource.hpp"

namespace nimbo::detail {
struct BitmapSource;
}

namespace NIMBO_PUBLIC nimbo {

/// The platform's numbers of the types of files that bitmaps are encoded as.
enum class NSBitmapImageFileType { TIFF = 0, BMP = 1, GIF = 2, JPEG = 3, PNG = 4, JPEG2000 = 5 };

/// The platform's numbers of the ways in which TIFF is compressed, as far as they are used.
enum class NSTIFFCompression { none = 1, LZW = 5 };

/// Pixels: those of an image file, decoded when they are drawn and only as many as are drawn, or some that are
/// there already. They are turned as the file's orientation says, and so are its size and its sides.
///
///     const auto rep = NSBitmapImageRep::imageRepWithCGImage(image);
///     const NSData jpeg = rep->representationUsingType(NSBitmapImageFileType::JPEG, 0.9F, &error);
class NSBitmapImageRep final : public NSImageRep {
 public:
  /// One of pixels that are there; null when the image is nil. Without a size a point is a pixel.
  static SharedPointer<NSBitmapImageRep> imageRepWithCGImage(const CGImage &image, NSSize sizeInPoints = {});
  /// Those of an image file: each page of a TIFF file and each size of an icon up to
  /// `kMaximumRepresentations`, else the first image.
  static std::vector<SharedPointer<NSImageRep>> imageRepsWithSource(std::unique_ptr<CGImageSource> source,
                                                                    const Deadline &deadline);
  ~NSBitmapImageRep() override;

  const ClassDescription &classDescription() const override;
  /// `PICT` for a picture of QuickDraw, which is read as its pixels, else `bitmap`.
  NSImageRepClass representationClass() const override { return class_; }
  NSSize size() const override { return size_; }
  std::uint32_t pixelsWide() const override { return width_; }
  std::uint32_t pixelsHigh() const override { return height_; }
  /// Decodes the image of a file whose header does not say it.
  bool hasAlpha() const override;
  /// All pixels; nil when they cannot be decoded, `*error` says why.
  CGImage decodedImage(NSError *error = nullptr) const;
  /// A file of that type; the factor from 0, the smallest, to 1, the best, is for types that lose something.
  /// Nil when it cannot be made; `*error` says why.
  NSData representationUsingType(NSBitmapImageFileType type, std::optional<float> compressionFactor = {},
                                 NSError *error = nullptr) const;
  /// The same of several representations in one TIFF file, whose resolution is that of the first.
  static NSData TIFFRepresentationOfImageReps(const std::vector<SharedPointer<NSBitmapImageRep>> &reps,
                                              NSTIFFCompression compression, NSError *error = nullptr);

 private:
  NSBitmapImageRep();
  bool draw(NSGraphicsContext &context, const NSRect &rect, const NSRect &from,
            NSCompositingOperation operation, double fraction, NSError *error) const override;
  /// How many dots of it are an inch.
  double dotsPerInch() const { return width_ * 72 / size_.width; }

  /// The pixels, unless they are in a file.
  CGImage image_;
  std::shared_ptr<const detail::BitmapSource> source_;
  NSSize size_;
  std::uint32_t indexInSource_ = 0;
  std::uint32_t width_ = 0;
  std::uint32_t height_ = 0;
  NSImageRepClass class_ = NSImageRepClass::bitmap;
  /// What is known of a file.
  mutable std::optional<bool> hasAlpha_;
};

}  // namespace nimbo
