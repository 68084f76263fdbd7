// SPDX-License-Identifier: Apache-2.0
//
// What stands for an image while it is dragged or copied. One thread uses an image at a time.
//
//     NSError error;
//     const NSImage icon = draggingIcon(image, Deadline::after(2), &error);
//     const NSData copied = pasteboardData(image, &error);
#pragma once

#include "platform/AppKit/Images/NSImage.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The longer side of an icon that is dragged, in points.
inline constexpr double kDraggingIconSide = 128;
/// The longer side of an icon of what is on a pasteboard, in points.
inline constexpr double kPasteboardIconSide = 32;

inline namespace NSImageNimboExtensions {

/// The image, made smaller if need be, through which one sees what is below it. Nil when it cannot be drawn;
/// `*error` says why.
NSImage draggingIcon(const NSImage &image, const Deadline &deadline = {}, NSError *error = nullptr);
/// The image, made smaller if need be; nil as above.
NSImage pasteboardIcon(const NSImage &image, const Deadline &deadline = {}, NSError *error = nullptr);
/// What pasteboards get of the image: TIFF, compressed by LZW. Nil when there is nothing; `*error` says why.
NSData pasteboardData(const NSImage &image, NSError *error = nullptr);

}  // namespace NSImageNimboExtensions
}  // namespace nimbo
