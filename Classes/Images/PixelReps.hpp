// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/AppKit/Images/NSImageRep.hpp"

namespace nimbo {

/// Whether a representation has pixels: those of a file or those that were drawn.
inline bool isPixelRep(const NSImageRep &representation) {
  const NSImageRepClass kind = representation.representationClass();
  return kind == NSImageRepClass::bitmap || kind == NSImageRepClass::cached;
}

}  // namespace nimbo
