// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>

#include "platform/ImageIO/Codec/ImageCodec.hpp"
#include "platform/ImageIO/Engine/ImageReading.hpp"
#include "platform/ImageIO/Engine/VipsSession.hpp"

namespace nimbo::detail {

/// Larger images are not decoded at all.
constexpr std::int64_t kMaximumPixels = std::int64_t{1} << 29;
/// As much memory is used for an image whose decoder holds it whole.
constexpr std::int64_t kMaximumDecodedBytes = std::int64_t{1} << 30;

/// An image file of one kind of formats, while it is decoded. What it answers lives no longer than this and
/// the input.
class ImageReader {
 public:
  virtual ~ImageReader() = default;
  /// The header of the image of that number, and how many there are.
  virtual ImageHeader header(std::uint32_t index) = 0;
  /// The image of that number, to be read once from the top to the bottom. Null when the file is damaged or has
  /// no such image, or the image is too large, and `*error` says so.
  virtual VipsPointer<VipsImage> open(std::uint32_t index, NSError *error) = 0;
  /// The same with fewer pixels, as far as the format allows to leave some out, but no fewer than a `shrink`-th
  /// of each side. Takes over what `open` answered.
  virtual VipsPointer<VipsImage> openSmaller(std::uint32_t index, double shrink, VipsPointer<VipsImage> image);
  /// A smaller picture of the first image that stands in the file for this purpose, the smallest one with at
  /// least so many pixels on its longer side, or the largest at all if `maySmaller`. Null when there is none.
  virtual VipsPointer<VipsImage> openThumbnail(std::uint32_t longerSide, bool maySmaller);
};

/// An image of the samples, which must live as long; null when there are none.
VipsPointer<VipsImage> imageOfSamples(const DecodedSamples &samples);

/// A reader for the image, by its first bytes; null when it is of no known kind.
std::unique_ptr<ImageReader> readerOfInput(const ImageInput &input, const Deadline &deadline);

}  // namespace nimbo::detail
