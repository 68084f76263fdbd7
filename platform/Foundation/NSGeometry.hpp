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
  double x = 0;
  double y = 0;
  friend bool operator==(const NSPoint &, const NSPoint &) = default;
};

/// A width and a height.
struct NSSize {
  double width = 0;
  double height = 0;
  friend bool operator==(const NSSize &, const NSSize &) = default;
};

/// A rectangle: its corner of the lowest coordinates, and its size.
struct NSRect {
  NSPoint origin;
  NSSize size;
  friend bool operator==(const NSRect &, const NSRect &) = default;
};

/// A size as text: brace, width, comma and blank, height, brace, each number to six significant digits: "{612,
/// 792}".
NSString NSStringFromSize(NSSize size);

}  // namespace nimbo
