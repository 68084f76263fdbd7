// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreGraphics/CGContext.hpp"
#include "platform/Foundation/System/Deadline.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The platform's numbers of the ways in which pixels between pixels are found.
enum class NSImageInterpolation { standard = 0, none = 1, low = 2, high = 3 };

/// The platform's numbers of the ways in which what is drawn joins what is there, as far as they are used.
enum class NSCompositingOperation { copy = 1, sourceOver = 2 };

/// What an image that has the focus is drawn with: its bitmap, a point being a pixel, and how to draw. One
/// thread uses it at a time.
struct NSGraphicsContext {
  CGContext context;                                                         ///< Where it is drawn.
  bool shouldAntialias = true;                                               ///< Whether edges are smooth.
  NSImageInterpolation imageInterpolation = NSImageInterpolation::standard;  ///< How pixels are found.
  Deadline deadline = {};                                                    ///< By when drawing has to end.
};

}  // namespace nimbo
