// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "platform/AppKit/Images/NSGraphicsContext.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NSGeometry.hpp"
#include "platform/Foundation/NSObject.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The kinds of representations.
enum class NSImageRepClass { bitmap, cached, PDF, EPS, PICT, iconRef };

/// One form of an image: immutable, shared by the images that have it. Any thread may use it.
///
///     for (const auto &rep : NSImageRep::imageRepsWithContentsOfFile(path, Deadline::after(8), &error))
///       rep->drawInRect(context, {{0, 0}, {256, 192}}, {}, NSCompositingOperation::sourceOver, 1.0, &error);
class NSImageRep : public NSObject {
 public:
  /// How many images of one file become representations.
  static constexpr std::uint32_t kMaximumRepresentations = 50;

  ~NSImageRep() override;
  /// The representations of a file by its content: those of an image (each page of a TIFF file and each size of
  /// an icon, else the first image), or one of PDF (also that of Illustrator files), PostScript or EPS. None
  /// when it is nothing of these; `*error` says why. All that is done with them ends at `deadline`.
  static std::vector<SharedPointer<NSImageRep>> imageRepsWithContentsOfFile(const NSString &path,
                                                                            const Deadline &deadline,
                                                                            NSError *error = nullptr);
  /// Reads data, as above.
  static std::vector<SharedPointer<NSImageRep>> imageRepsWithData(const NSData &data, const Deadline &deadline,
                                                                  NSError *error = nullptr);

  /// "NSImageRep", the class that those of all representations come from.
  static const ClassDescription &imageRepClass();
  const ClassDescription &classDescription() const override;
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
  /// Draws the part `from` (in the representation's points; all of it when empty) into the whole of `rect`.
  /// What is transparent in it leaves what is there. False when it cannot be drawn; `*error` then says why, and
  /// so does the context's failure. `*error` also says when a damaged one lacks a part.
  bool drawInRect(NSGraphicsContext &context, const NSRect &rect, const NSRect &from,
                  NSCompositingOperation operation, double fraction, NSError *error = nullptr) const;

 private:
  virtual bool draw(NSGraphicsContext &context, const NSRect &rect, const NSRect &from,
                    NSCompositingOperation operation, double fraction, NSError *error) const = 0;
};

}  // namespace nimbo
