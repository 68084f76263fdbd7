// SPDX-License-Identifier: Apache-2.0
//
// Images as files. One thread uses an image at a time.
//
//     NSString extension;
//     const NSData file = bestRepresentationAndFileExtension(image, &extension, &error);
//     const NSData png = representationUsingType(image, NSBitmapImageFileType::PNG, 1.0F, &error);
//     if (!pathExtensionForData(data)) NSLog(u"the data is no image"_ns);
#pragma once

#include "platform/AppKit/Images/NSBitmapImageRep.hpp"
#include "platform/AppKit/Images/NSImage.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSImageNimboExtensions {

/// The image as the file that keeps most of it: its PDF, else its PostScript, else TIFF. Nil when there is
/// nothing, or it cannot be read any more; `*error` says why.
NSData bestRepresentation(const NSImage &image, NSError *error = nullptr);
/// The same, with the path extension of such a file; `*extension` gets nil with a nil answer.
NSData bestRepresentationAndFileExtension(const NSImage &image, NSString *extension, NSError *error = nullptr);
/// The path extension of `bestRepresentation`: "pdf", "eps", "ps" or "tiff"; nil when there is nothing.
NSString pathExtensionForBestRepresentation(const NSImage &image);
/// The path extension of what the data begins like: PDF, PostScript or an image of a known kind. Nil for
/// anything else.
NSString pathExtensionForData(const NSData &data);

/// The image's bitmap, or what is drawn of an image without one, as TIFF. Nil when there is nothing; `*error`
/// says why.
NSData bitmapImageRepData(const NSImage &image, NSError *error = nullptr);
/// The same as a file of a type; the factor, from 0, the smallest, to 1, the best, is for types that lose
/// something.
NSData representationUsingType(const NSImage &image, NSBitmapImageFileType type, float compression,
                               NSError *error = nullptr);

}  // namespace NSImageNimboExtensions
}  // namespace nimbo
