// SPDX-License-Identifier: Apache-2.0
//
// Bitmaps as files. Any thread may call.
//
//     const NSBitmapImageFileType type = NSBitmapImageFileType::JPEG;
//     const NSData data = representationUsingType(*bitmapImageRep(image), type, 0.9F, &error);
//     const NSString name = stringByAppendingPathExtension(u"photo"_ns,
//     pathExtensionForBitmapImageFileType(type));
#pragma once

#include "platform/AppKit/Images/NSBitmapImageRep.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSBitmapImageRepNimboExtensions {

/// The path extension of files of this type; nil for a number that is none.
NSString pathExtensionForBitmapImageFileType(NSBitmapImageFileType type);

/// A file of this type; the factor, from 0, the smallest, to 1, the best, is for types that lose something. Nil
/// when it cannot be made; `*error` says why.
NSData representationUsingType(const NSBitmapImageRep &bitmap, NSBitmapImageFileType type, float compression,
                               NSError *error = nullptr);

}  // namespace NSBitmapImageRepNimboExtensions
}  // namespace nimbo
