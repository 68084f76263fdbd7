// SPDX-License-Identifier: Apache-2.0
//
// Images drawn anew at another size. One thread uses an image at a time.
//
// - The target is as large as asked for, whatever the proportions; `thumbForSize` keeps these.
// - Behind what is no bitmap, as a PDF page, is white; behind a transparent bitmap the image's background.
// - An image without representations makes an empty one.
// - Every image has pixels of its own, so that `cachedSeparately` makes no difference.
// - Nil when the target has no width or height or is too large, the image is damaged, or it is not drawn by the
//   deadline: `*error` says which.
//
//     NSError error;
//     const NSSize size = thumbSize(image, {256, 256});
//     const NSData thumbnail = TIFFRepresentationWithSize(image, size, true, NSImageInterpolation::high, false,
//                                                         Deadline::after(8), &error);
//     if (!thumbnail) NSLog(error.localizedFailureReason);
#pragma once

#include "platform/AppKit/Images/NSImage.hpp"
#include "platform/Foundation/Flag.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSImageNimboExtensions {

/// The image as TIFF, drawn at the size.
NSData TIFFRepresentationWithSize(const NSImage &image, NSSize size, Flag shouldAntialias,
                                  NSImageInterpolation interpolation, Flag cachedSeparately,
                                  const Deadline &deadline = {}, NSError *error = nullptr);
/// The same, drawn as usual.
NSData TIFFRepresentationWithSize(const NSImage &image, NSSize size, Flag cachedSeparately = false,
                                  const Deadline &deadline = {}, NSError *error = nullptr);
/// The same of a part of the image, which is in points.
NSData TIFFRepresentationWithSize(const NSImage &image, NSSize size, const NSRect &fromRect,
                                  Flag cachedSeparately = false, const Deadline &deadline = {},
                                  NSError *error = nullptr);
/// A part of the image, which is in points, as TIFF at its own size.
NSData TIFFRepresentationFromRect(const NSImage &image, const NSRect &fromRect, const Deadline &deadline = {},
                                  NSError *error = nullptr);

/// The image drawn at the size: its representation is what was drawn.
NSImage imageWithSize(const NSImage &image, NSSize size, Flag shouldAntialias,
                      NSImageInterpolation interpolation, Flag cachedSeparately, const Deadline &deadline = {},
                      NSError *error = nullptr);
/// The same, drawn as usual.
NSImage imageWithSize(const NSImage &image, NSSize size, Flag cachedSeparately = false,
                      const Deadline &deadline = {}, NSError *error = nullptr);
/// The image drawn at the size, as one bitmap representation.
NSImage bitmapImageWithSize(const NSImage &image, NSSize size, Flag shouldAntialias,
                            NSImageInterpolation interpolation, Flag cachedSeparately,
                            const Deadline &deadline = {}, NSError *error = nullptr);
/// The same, drawn as usual.
NSImage bitmapImageWithSize(const NSImage &image, NSSize size, Flag cachedSeparately = false,
                            const Deadline &deadline = {}, NSError *error = nullptr);

/// `imageWithSize` at the image's `thumbSize`.
NSImage thumbForSize(const NSImage &image, NSSize maximum, Flag shouldAntialias,
                     NSImageInterpolation interpolation, Flag cachedSeparately, const Deadline &deadline = {},
                     NSError *error = nullptr);
/// The same, drawn as usual.
NSImage thumbForSize(const NSImage &image, NSSize maximum, Flag cachedSeparately = false,
                     const Deadline &deadline = {}, NSError *error = nullptr);

/// As `imageWithSize`, drawn as usual.
NSImage initWithImage(const NSImage &image, NSSize size, Flag cachedSeparately = false,
                      const Deadline &deadline = {}, NSError *error = nullptr);
/// The same of a part of the image, which is in points.
NSImage initWithImage(const NSImage &image, const NSRect &fromRect, NSSize size, Flag cachedSeparately = false,
                      const Deadline &deadline = {}, NSError *error = nullptr);

/// A new image from the image's TIFF data.
NSImage bitmapImageCachedSeparately(const NSImage &image, Flag cachedSeparately, const Deadline &deadline = {},
                                    NSError *error = nullptr);
/// The same.
NSImage copyOfBitmapImageCachedSeparately(const NSImage &image, Flag cachedSeparately,
                                          const Deadline &deadline = {}, NSError *error = nullptr);

}  // namespace NSImageNimboExtensions
}  // namespace nimbo
