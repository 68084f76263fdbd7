// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <vector>

#include "platform/AppKit/Images/NSImageRep.hpp"
#include "platform/AppKit/NSColor.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A picture with a size in points and one or more representations: a handle, one pointer wide. A default-made
/// one is nil. What changes an image changes this handle's, not that of its copies.
///
///     NSImage image = NSImage::imageWithContentsOfFile(path, Deadline::after(8), &error);
///     if (image && !image.representations().empty()) NSLog(NSStringFromSize(image.size()));
class NSImage {
 public:
  NSImage() noexcept = default;
  /// An empty image of a size; nil when a side is not above 0 or too large.
  static NSImage imageWithSize(NSSize sizeInPoints);
  /// Opens a file by reference: pixels are decoded when they are drawn. Images, PDF, PostScript, EPS and
  /// Illustrator files. Nil when it is none; `*error` says why. All that is done with it ends at `deadline`.
  static NSImage imageByReferencingFile(const NSString &path, const Deadline &deadline,
                                        NSError *error = nullptr);
  /// Reads data, as above.
  static NSImage imageWithData(const NSData &data, const Deadline &deadline, NSError *error = nullptr);
  /// The file name extensions and type codes (as "'PNGf'") of the files that can be read; in lower and upper
  /// case.
  static const std::vector<NSString> &imageFileTypes();

  /// In points; zero for nil.
  NSSize size() const;
  /// Sets it; the representations are scaled when drawn.
  void setSize(NSSize sizeInPoints);
  /// Whether representations are scaled to the image's size when drawn.
  bool scalesWhenResized() const;
  /// Sets it.
  void setScalesWhenResized(bool scales);
  /// What is behind transparent parts; transparent at first.
  NSColor backgroundColor() const;
  /// Sets it.
  void setBackgroundColor(const NSColor &color);
  /// In the order in which the file has them.
  const std::vector<SharedPointer<NSImageRep>> &representations() const NIMBO_LIFETIMEBOUND;
  /// Adds one at the end.
  void addRepresentation(const SharedPointer<NSImageRep> &representation);
  /// Takes one out.
  void removeRepresentation(const SharedPointer<NSImageRep> &representation);
  /// The one to draw on a screen of 72 dots an inch: the smallest bitmap that is as large as the image in
  /// points, else the largest; null when there is none.
  SharedPointer<NSImageRep> bestRepresentationForDefaultDevice() const;

  /// Locks the focus on the image: `draw` draws into a bitmap of the image's size, a pixel a point, which then
  /// is the image's only (cached) representation. False when there is no such bitmap.
  bool drawWithFocus(const std::function<void(NSGraphicsContext &)> &draw, const Deadline &deadline = {});
  /// Draws the best representation's part `from` (in the image's points; an empty one is all) into `rect`.
  bool drawInRect(NSGraphicsContext &context, const NSRect &rect, const NSRect &from,
                  NSCompositingOperation operation, double fraction, NSError *error = nullptr) const;

  /// The image as TIFF, uncompressed: each bitmap, or what is drawn of an image that has none. Nil when there
  /// is nothing.
  NSData TIFFRepresentation(NSError *error = nullptr) const;
  /// The same; compression 1 is none, 5 LZW; the factor is for lossy ones.
  NSData TIFFRepresentationUsingCompression(int compression, float factor, NSError *error = nullptr) const;

  /// Whether this is not nil.
  explicit operator bool() const noexcept;

 private:
  struct Storage;
};

}  // namespace nimbo
