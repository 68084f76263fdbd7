// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>

#include "platform/CoreGraphics/CGImage.hpp"
#include "platform/Foundation/NSGeometry.hpp"

namespace NIMBO_PUBLIC nimbo {

/// How pixels between pixels are found.
enum class CGInterpolationQuality { standard, none, low, high };

/// How what is drawn joins what is there.
enum class CGBlendMode { copy, sourceOver };

/// A colour of sRGB, each component from 0 to 1, not multiplied by alpha.
struct CGColor {
  double red = 0;    ///< From none to all of red.
  double green = 0;  ///< From none to all of green.
  double blue = 0;   ///< From none to all of blue.
  double alpha = 1;  ///< From transparent to opaque.
};

/// A bitmap to draw into, transparent at first. Coordinates are pixels from the lower left corner. One thread
/// uses it at a time.
///
///     CGContext context(256, 192);
///     context.fillRect({{0, 0}, {256, 192}}, {1, 1, 1});
///     context.drawImage({{0, 0}, {256, 192}}, photo, {{0, 0}, {4000, 3000}});
///     const CGImage thumbnail = context.makeImage();
class CGContext {
 public:
  /// The most pixels that a bitmap may have.
  static constexpr std::uint64_t kMaximumPixels = std::uint64_t{1} << 28;

  /// A bitmap of that many pixels; `isValid` tells whether it could be made.
  CGContext(std::uint32_t width, std::uint32_t height);
  ~CGContext();
  /// Takes over the other's bitmap; the other can only be assigned to.
  CGContext(CGContext &&) noexcept;
  /// Takes over the other's bitmap, as above.
  CGContext &operator=(CGContext &&) noexcept;

  /// Whether there is a bitmap: its sides are in the range that images may have, and so is the number of its
  /// pixels. Nothing is drawn otherwise.
  bool isValid() const noexcept;
  /// The number of columns; 0 when not valid.
  std::uint32_t width() const noexcept;
  /// The number of rows; 0 when not valid.
  std::uint32_t height() const noexcept;
  /// Whether edges that fall between pixels are smooth; true at first.
  bool shouldAntialias() const noexcept;
  /// Sets it.
  void setShouldAntialias(bool shouldAntialias) noexcept;
  /// `standard` at first.
  CGInterpolationQuality interpolationQuality() const noexcept;
  /// Sets it.
  void setInterpolationQuality(CGInterpolationQuality quality) noexcept;

  /// Fills a rectangle.
  void fillRect(const NSRect &rect, const CGColor &color, CGBlendMode mode = CGBlendMode::sourceOver);
  /// Draws the part `from` of an image (in its own pixels, from its lower left corner) into the whole of
  /// `rect`. The image's alpha is multiplied by `fraction`.
  void drawImage(const NSRect &rect, const CGImage &image, const NSRect &from,
                 CGBlendMode mode = CGBlendMode::sourceOver, double fraction = 1.0);
  /// What has been drawn, as it is now; it has alpha when a pixel of it is not opaque. Nil when not valid.
  CGImage makeImage() const;

 private:
  struct Storage;
  std::unique_ptr<Storage> storage_;
};

}  // namespace nimbo
