// SPDX-License-Identifier: Apache-2.0
//
// What an image consists of. One thread uses an image at a time.
//
//     if (!isReallyValid(image)) return;
//     if (isScalableImage(image)) NSLog(pathExtensionForBestRepresentation(image));
//     const NSData file = bestRepresentation(image);
#pragma once

#include "platform/AppKit/Images/NSBitmapImageRep.hpp"
#include "platform/AppKit/Images/NSCachedImageRep.hpp"
#include "platform/AppKit/Images/NSEPSImageRep.hpp"
#include "platform/AppKit/Images/NSImage.hpp"
#include "platform/AppKit/Images/NSPDFImageRep.hpp"
#include "platform/Foundation/Flag.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSImageNimboExtensions {

/// Whether the image has a width, a height and a representation.
bool isReallyValid(const NSImage &image);
/// Whether the image can be transparent anywhere: a bitmap that is, or anything but bitmaps.
bool hasAlpha(const NSImage &image);

/// The first representation of the kind; null when there is none.
SharedPointer<NSImageRep> imageRepOfClass(const NSImage &image, NSImageRepClass kind);
/// The first bitmap that came from a file or data.
SharedPointer<NSBitmapImageRep> bitmapImageRep(const NSImage &image);
/// The first bitmap that was drawn into.
SharedPointer<NSCachedImageRep> cachedImageRep(const NSImage &image);
/// The first PDF page.
SharedPointer<NSPDFImageRep> PDFImageRep(const NSImage &image);
/// The first PostScript picture.
SharedPointer<NSEPSImageRep> EPSImageRep(const NSImage &image);
/// The first picture of drawing commands.
SharedPointer<NSImageRep> PICTImageRep(const NSImage &image);
/// The first icon.
SharedPointer<NSImageRep> iconRefBitmapImageRep(const NSImage &image);
/// Takes all representations out.
void removeAllRepresentations(NSImage &image);

/// Whether there is a `bitmapImageRep`.
bool isBitmapImage(const NSImage &image);
/// Whether there is a `PDFImageRep`.
bool isPDFImage(const NSImage &image);
/// Whether there is an `EPSImageRep`.
bool isEPSImage(const NSImage &image);
/// Whether there is a `PICTImageRep`.
bool isPICTImage(const NSImage &image);
/// Whether there is an `iconRefBitmapImageRep`.
bool isIconRefBitmapImage(const NSImage &image);
/// Whether the image is sharp at any size: PDF, PostScript or drawing commands.
bool isScalableImage(const NSImage &image);

}  // namespace NSImageNimboExtensions
}  // namespace nimbo
