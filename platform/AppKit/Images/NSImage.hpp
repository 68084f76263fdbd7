// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <vector>

#include "platform/AppKit/Images/NSImageRep.hpp"
#include "platform/AppKit/NSColor.hpp"

namespace NIMBO_PUBLIC nimbo {

namespace detail {
struct NSImageStorage;
}
/// Ends what an image stands on.
template <>
NIMBO_PUBLIC void destroyShared<detail::NSImageStorage>(ReferenceCounted *storage) noexcept;

/// A picture with a size in points and one or more representations: a handle, one pointer wide. A default-made
/// one is nil. What changes an image changes this handle's, not that of its copies; nil is not changed. A
/// handle may be copied and read from any thread; one handle is changed by one.
///
///     NSImage image = NSImage::imageWithContentsOfFile(path, Deadline::after(8), &error);
///     if (image && !image.representations().empty()) NSLog(NSStringFromSize(image.size()));
class NSImage {
 public:
  NSImage() noexcept = default;
  /// An empty image of a size; nil when a side is not above 0 or above `CGImage::kMaximumSide`.
  static NSImage imageWithSize(NSSize sizeInPoints);
  /// Opens a file by reference: pixels are decoded when they are drawn. Images, PDF, PostScript, EPS and
  /// Illustrator files. Nil when it is none; `*error` says why. All that is done with it ends at `deadline`.
  static NSImage imageByReferencingFile(const NSString &path, const Deadline &deadline,
                                        NSError *error = nullptr);
  /// Reads data, as above.
  static NSImage imageWithData(const NSData &data, const Deadline &deadline, NSError *error = nullptr);
  /// The file name extensions, in lower and upper case, and the type codes (as "'PNGf'") of the files that can
  /// be read but for those of PostScript.
  static const std::vector<NSString> &imageFileTypes();

  /// In points; zero for nil.
  NSSize size() const;
  /// Sets it.
  void setSize(NSSize sizeInPoints);
  /// Whether representations are scaled to the image's size when drawn, once that has been set; otherwise they
  /// are drawn in their own sizes, from the lower left corner on. False at first.
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
  /// The one to draw on a screen of 72 dots an inch: the smallest of those with pixels that has as many of them
  /// as the image has points, else the largest of them; without pixels the first; null when there is none.
  SharedPointer<NSImageRep> bestRepresentationForDefaultDevice() const;

  /// Locks the focus on the image: `draw` draws, over what the image shows, into a bitmap of the image's size,
  /// a pixel a point, which then is the image's only (cached) representation. False when there can be no such
  /// bitmap or anything was not drawn, and then the image stays as it was; `*error` says why.
  bool drawWithFocus(const std::function<void(NSGraphicsContext &)> &draw, const Deadline &deadline = {},
                     NSError *error = nullptr);
  /// Draws the best representation's part `from` (in the image's points; an empty one is all) into `rect`; an
  /// image without representations draws nothing. False when it cannot be drawn; `*error` and the context's
  /// failure say why.
  bool drawInRect(NSGraphicsContext &context, const NSRect &rect, const NSRect &from,
                  NSCompositingOperation operation, double fraction, NSError *error = nullptr) const;

  /// The image as TIFF, uncompressed: each of the representations with pixels, or what is drawn on white of an
  /// image that has none. Nil when there is nothing; `*error` says why.
  NSData TIFFRepresentation(NSError *error = nullptr) const;
  /// The same; compression 1 is none, 5 LZW, every other one none; the factor is for lossy ones.
  NSData TIFFRepresentationUsingCompression(int compression, float factor, NSError *error = nullptr) const;

  /// Whether this is not nil.
  explicit operator bool() const noexcept { return static_cast<bool>(storage_); }

 private:
  static NSImage imageWithRepresentations(std::vector<SharedPointer<NSImageRep>> representations);
  detail::NSImageStorage *mutableStorage();

  SharedPointer<detail::NSImageStorage> storage_;
};

}  // namespace nimbo
