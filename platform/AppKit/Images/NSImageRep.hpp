// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/AppKit/Images/NSGraphicsContext.hpp"
#include "platform/CoreGraphics/CGImage.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NSGeometry.hpp"
#include "platform/Foundation/NSObject.hpp"
#include "platform/Foundation/id.hpp"
#include "platform/ImageIO/CGImageSource.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The kinds of representations.
enum class NSImageRepClass { bitmap, cached, PDF, EPS, PICT, iconRef };

/// One form of an image: immutable, shared by the images that have it.
class NSImageRep : public NSObject {
 public:
  ~NSImageRep() override;
  /// What kind of representation it is.
  virtual NSImageRepClass representationClass() const = 0;
  /// The size in points, by the resolution that the file names; 72 dots an inch where it names none.
  virtual NSSize size() const = 0;
  /// The number of columns; 0 when it has no pixels of its own.
  virtual std::uint32_t pixelsWide() const { return 0; }
  /// The number of rows; 0 when it has no pixels of its own.
  virtual std::uint32_t pixelsHigh() const { return 0; }
  /// Whether it can be transparent anywhere.
  virtual bool hasAlpha() const = 0;
  /// Draws the part `from` (in the representation's points) into the whole of `rect`. False when it cannot be
  /// drawn; `*error` says why.
  virtual bool drawInRect(NSGraphicsContext &context, const NSRect &rect, const NSRect &from,
                          NSCompositingOperation operation, double fraction, NSError *error) const = 0;
};

}  // namespace nimbo
