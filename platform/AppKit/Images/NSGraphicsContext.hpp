// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreGraphics/CGContext.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/System/Deadline.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The platform's numbers of the ways in which pixels between pixels are found.
enum class NSImageInterpolation { standard = 0, none = 1, low = 2, high = 3 };

/// The platform's numbers of the ways in which what is drawn joins what is there, as far as they are used.
enum class NSCompositingOperation { copy = 1, sourceOver = 2 };

/// What an image that has the focus is drawn with: its bitmap, a point being a pixel, and how to draw. One
/// thread uses it at a time.
///
///     NSGraphicsContext context{CGContext(256, 192)};
///     context.imageInterpolation = NSImageInterpolation::high;
///     context.CGContextToDraw().fillRect({{0, 0}, {256, 192}}, {1, 1, 1});
struct NSGraphicsContext {
  CGContext context;                                                         ///< Where it is drawn.
  bool shouldAntialias = true;                                               ///< Whether edges are smooth.
  NSImageInterpolation imageInterpolation = NSImageInterpolation::standard;  ///< How pixels are found.
  Deadline deadline = {};                                                    ///< By when drawing has to end.
  /// Why the first thing that should be drawn was not; nil when all was.
  NSError failure = {};

  /// The bitmap, which from now on is drawn into as the members above say.
  CGContext &CGContextToDraw() NIMBO_LIFETIMEBOUND {
    context.setShouldAntialias(shouldAntialias);
    context.setInterpolationQuality(qualityOfInterpolation());
    return context;
  }
  /// What `imageInterpolation` is to a bitmap.
  CGInterpolationQuality qualityOfInterpolation() const noexcept {
    static_assert(static_cast<int>(NSImageInterpolation::high) ==
                  static_cast<int>(CGInterpolationQuality::high));
    return static_cast<CGInterpolationQuality>(imageInterpolation);
  }
};

/// The blend mode that an operation is to a bitmap.
constexpr CGBlendMode blendModeOfOperation(NSCompositingOperation operation) noexcept {
  return operation == NSCompositingOperation::copy ? CGBlendMode::copy : CGBlendMode::sourceOver;
}

}  // namespace nimbo
