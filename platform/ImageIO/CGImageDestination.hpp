// SPDX-License-Identifier: Apache-2.0
//
// Pictures as files.
//
//     const NSData png = dataWithImage(image, u"public.png"_ns, {}, &error);
#pragma once

#include <vector>

#include "platform/CoreGraphics/CGImage.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// How a picture is written.
struct CGImageDestinationOptions {
  /// Whether TIFF is compressed by LZW; otherwise it is not compressed.
  bool usesLZW = false;
  /// From 0, the smallest, to 1, the best: of JPEG, JPEG 2000, WebP and HEIC, which NaN makes impossible.
  float compressionFactor = 0.8F;
  /// The resolution that is written down, where the format has one.
  double dotsPerInch = 72;
};

/// A file of the type ("public.tiff", "public.png", "public.jpeg", "com.compuserve.gif", "com.microsoft.bmp",
/// "public.jpeg-2000", "org.webmproject.webp"); nil when the type is another one or it cannot be made: `*error`
/// says which. Where the type knows no transparency, what is transparent becomes white.
NSData dataWithImage(const CGImage &image, const NSString &type, const CGImageDestinationOptions &options,
                     NSError *error = nullptr);
/// The same with several images in one TIFF or GIF file.
NSData dataWithImages(const std::vector<CGImage> &images, const NSString &type,
                      const CGImageDestinationOptions &options, NSError *error = nullptr);

}  // namespace nimbo
