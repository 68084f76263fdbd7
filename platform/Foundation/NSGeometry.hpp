// SPDX-License-Identifier: Apache-2.0
//
// Points, sizes and rectangles: plain values, in whatever unit their owner says.
//
//     const NSRect page = {{0, 0}, {612, 792}};
//     NSStringFromSize(page.size);  // "{612, 792}"
//     const bool isWide = page.size.width > page.size.height;  // false
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A point of a plane.
struct NSPoint {
  /// From left to right.
  double x = 0;
  /// At right angles to `x`.
  double y = 0;
  /// Whether both are the same point.
  friend bool operator==(const NSPoint &, const NSPoint &) = default;
};

/// A width and a height.
struct NSSize {
  /// The extent in x.
  double width = 0;
  /// The extent in y.
  double height = 0;
  /// Whether both are equally wide and high.
  friend bool operator==(const NSSize &, const NSSize &) = default;
};

/// A rectangle: its corner of the lowest coordinates, and its size.
struct NSRect {
  /// The corner.
  NSPoint origin;
  /// The size.
  NSSize size;
  /// Whether corners and sizes are equal.
  friend bool operator==(const NSRect &, const NSRect &) = default;
};

/// A size as text: brace, width, comma and blank, height, brace, each number to six significant digits: "{612,
/// 792}".
NSString NSStringFromSize(NSSize size);

}  // namespace nimbo
