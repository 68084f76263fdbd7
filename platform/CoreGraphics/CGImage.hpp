// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/Foundation/SharedPointer.hpp"

namespace NIMBO_PUBLIC nimbo {

namespace detail {
struct ImageStorage;
}
/// Ends what an image stands on.
template <>
NIMBO_PUBLIC void destroyShared<detail::ImageStorage>(ReferenceCounted *storage) noexcept;

/// A decoded picture: an immutable handle, one pointer wide, to pixels of sRGB. A default-made one is nil: it
/// tests false and has no pixels.
///
/// A pixel is four bytes, red, green, blue and alpha, the colours multiplied by alpha. Rows go from the top to
/// the bottom, without anything between them.
///
/// A handle may be copied and read from any thread; one handle is changed by one.
///
///     const CGImage image = source->createImageAtIndex(0, {}, &error);
///     const std::uint8_t *row = image.pixels() + y * image.bytesPerRow();
class CGImage {
 public:
  /// The most pixels that one side may have.
  static constexpr std::uint32_t kMaximumSide = 32'767;
  /// How many bytes a pixel has.
  static constexpr std::size_t kBytesPerPixel = 4;

  CGImage() noexcept = default;
  /// Takes over `width * height * 4` bytes. Nil when a side is 0 or above `kMaximumSide`. Without `hasAlpha`
  /// all alphas must be 255.
  static CGImage imageWithPixels(std::uint32_t width, std::uint32_t height, bool hasAlpha,
                                 std::unique_ptr<std::uint8_t[]> pixels);
  /// The same of pixels that are looked through: the image has alpha when one of them is not opaque.
  static CGImage imageWithPixels(std::uint32_t width, std::uint32_t height,
                                 std::unique_ptr<std::uint8_t[]> pixels);

  /// The number of columns; 0 for nil.
  std::uint32_t width() const noexcept;
  /// The number of rows; 0 for nil.
  std::uint32_t height() const noexcept;
  /// Whether the image can be transparent anywhere.
  bool hasAlpha() const noexcept;
  /// The first row; null for nil.
  const std::uint8_t *pixels() const noexcept NIMBO_LIFETIMEBOUND;
  /// From one row to the next.
  std::size_t bytesPerRow() const noexcept { return width() * kBytesPerPixel; }

  /// Whether this is not nil.
  explicit operator bool() const noexcept { return static_cast<bool>(storage_); }

 private:
  SharedPointer<detail::ImageStorage> storage_;
};

}  // namespace nimbo
