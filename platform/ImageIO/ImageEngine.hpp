// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "platform/CoreGraphics/CGContext.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/System/Deadline.hpp"
#include "platform/Foundation/id.hpp"
#include "platform/ImageIO/CGImageDestination.hpp"

namespace nimbo::detail {

/// Where an image is read from: the open file, or the data when there is none. A file counts as as large as it
/// was when it was opened.
struct ImageInput {
  /// The open file, borrowed; negative when the image is data.
  int descriptor = -1;
  /// The size of the file in bytes when it was opened.
  std::uint64_t fileSize = 0;
  /// The data, when there is no file.
  NSData data;

  /// The size in bytes, wherever it is read from.
  std::uint64_t size() const { return descriptor < 0 ? data.length() : fileSize; }
};

/// What a reader found out about an image.
struct ImageHeader {
  /// Nil when the reader does not know the format, or cannot read the header.
  NSString type;
  /// Whether the file begins like an image of a known format.
  bool isKnown = false;
  /// The number of images in the file.
  std::uint32_t count = 1;
  /// The facts, by the names of `CGImageSource::properties`.
  NSDictionary properties;
};

/// Which pixels are wanted, and how.
struct ImageRequest {
  std::uint32_t index = 0;
  /// The most pixels of the longer side; 0 is as many as there are.
  std::uint32_t maxPixelSize = 0;
  /// Exactly so many columns and rows, as the image is shown; 0 leaves it to `maxPixelSize`.
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  CGInterpolationQuality quality = CGInterpolationQuality::standard;
  /// Whether the orientation is applied.
  bool withTransform = false;
  /// Whether the file's own thumbnail will do.
  bool mayBeEmbedded = false;
  /// Whether the image itself will do.
  bool mayBeDecoded = true;
  Deadline deadline;
};

/// Pixels as those of `CGImage`, owned.
struct ImagePixels {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  bool hasAlpha = false;
  /// Null when there are none.
  std::unique_ptr<std::uint8_t[]> bytes;
};

/// Pixels as those of `CGImage`, borrowed.
struct ImageView {
  std::uint32_t width;
  std::uint32_t height;
  bool hasAlpha;
  const std::uint8_t *bytes;
};

/// What the library libnimbo-imageio does. It knows nothing of the classes in front of it, and nothing that it
/// calls throws. All answers are owned by the caller.
class ImageEngine {
 public:
  /// The header of the first image and the metadata; its type is nil when there is none, `*error` says why.
  virtual ImageHeader header(const ImageInput &input, NSError *error) const = 0;
  /// The facts of an image; nil when there is none.
  virtual NSDictionary properties(const ImageInput &input, std::uint32_t index) const = 0;
  /// No bytes when there is no such image, `*error` says why.
  virtual ImagePixels pixels(const ImageInput &input, const ImageRequest &request, NSError *error) const = 0;
  /// A file of the images, of which there is at least one; nil when it cannot be made, `*error` says why.
  virtual NSData file(std::span<const ImageView> images, const NSString &type,
                      const CGImageDestinationOptions &options, NSError *error) const = 0;
  /// A line of text; no bytes when it cannot be drawn, `*error` says why.
  virtual ImagePixels textLine(const NSString &text, double pointSize, std::uint32_t maximumWidth,
                               const CGColor &color, NSError *error) const = 0;

 protected:
  ~ImageEngine() = default;
};

/// The engine; null when it cannot be loaded, `*error` says why.
const ImageEngine *imageEngine(NSError *error);

}  // namespace nimbo::detail
