// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

struct NSPoint {
  double x = 0;
  double y = 0;
  friend bool operator==(const NSPoint &, const NSPoint &) = default;
};

struct NSSize {
  double width = 0;
  double height = 0;
  friend bool operator==(const NSSize &, const NSSize &) = default;
};

struct NSRect {
  NSPoint origin;
  NSSize size;
  friend bool operator==(const NSRect &, const NSRect &) = default;
};

/// A size as text: brace, width, comma and blank, height, brace, each number to six significant digits: "{612,
/// 792}".
NSString NSStringFromSize(NSSize size);

}  // namespace nimbo
