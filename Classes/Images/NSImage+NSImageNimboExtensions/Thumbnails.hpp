// SPDX-License-Identifier: Apache-2.0
//
// Images and thumbnails straight from files of pixels, without any other representation. One thread makes one
// at a time.
//
//     NSDictionary properties;
//     const NSImage thumbnail = thumbnailForFile(path, 256, false, true, &properties, Deadline::after(8));
//     if (thumbnail) NSLog(properties.objectForKey(u"ColorModel"_ns).string());
#pragma once

#include "platform/AppKit/Images/NSImage.hpp"
#include "platform/Foundation/Flag.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSImageNimboExtensions {

/// A thumbnail of the file's first image, a point a pixel, whose longer side is at most `maxSize`. Without
/// `alwaysFromImage` one that is in the file will do; with `withTransform` it is turned as the file says. Sets
/// `*properties` to what `CGImageSource` tells of the image; nil without a thumbnail. Nil when the file cannot
/// be read, is no image or is damaged, or the deadline is over: `*error` says which.
NSImage thumbnailForFile(const NSString &path, std::uint32_t maxSize, Flag alwaysFromImage, Flag withTransform,
                         NSDictionary *properties = nullptr, const Deadline &deadline = {},
                         NSError *error = nullptr);

/// The file's first image, a point a pixel, as above.
NSImage imageForFile(const NSString &path, Flag withTransform, NSDictionary *properties = nullptr,
                     const Deadline &deadline = {}, NSError *error = nullptr);

/// An image of these pixels, a point a pixel; nil for nil.
NSImage imageWithCGImageRef(const CGImage &image);

}  // namespace NSImageNimboExtensions
}  // namespace nimbo
