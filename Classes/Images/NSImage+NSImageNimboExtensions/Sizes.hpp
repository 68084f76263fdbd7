// SPDX-License-Identifier: Apache-2.0
//
// Sizes of pictures and of their thumbnails. They are reckoned in single precision, so that a thumbnail has the
// same size wherever it is made. Any thread may call.
//
//     thumb({256, 256}, {1000, 10});  // {256, 2}
//     scale(0.5F, {75, 50});  // {37, 25}
//     const NSSize pixels = pixelSize(image);
#pragma once

#include "platform/AppKit/Images/NSImage.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSImageNimboExtensions {

/// The largest size of the same proportions that is not above the maximum, in whole units of at least 1. A
/// picture that is smaller keeps its size.
NSSize thumb(NSSize maximum, NSSize forSize);
/// The size times the factor, in whole units, rounded down; the size itself when the factor is not above 0.
NSSize scale(float factor, NSSize forSize);

/// The pixels of the representation that is the widest in pixels; when none has any, the image's size in
/// points.
NSSize pixelSize(const NSImage &image);
/// `thumb` of the image's `pixelSize`.
NSSize thumbSize(const NSImage &image, NSSize maximum);
/// `scale` of the image's `pixelSize`.
NSSize scaledSize(const NSImage &image, float factor);
/// Sets the image's size to its `thumbSize`, to which its representations are scaled from now on.
void scaleToThumbSize(NSImage &image, NSSize maximum);
/// The image's size, from the origin on, in points.
NSRect bounds(const NSImage &image);
/// The image's width by its height, in points; 0 for an image without a height.
float aspectRatio(const NSImage &image);

}  // namespace NSImageNimboExtensions
}  // namespace nimbo
