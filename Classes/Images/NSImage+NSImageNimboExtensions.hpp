// SPDX-License-Identifier: Apache-2.0
//
// Work on images: their thumbnails, sizes, drawing, representations, and their files and types.
//
//     const NSSize size = thumbSize(image, {256, 256});
//     if (isImageFile(path)) NSLog(pathToPDF(path));
//     if (isReallyValid(image)) scaleToThumbSize(image, {256, 256});
#pragma once

#include "Classes/Images/NSImage+NSImageNimboExtensions/Drawing.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Encoding.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Icons.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Loading.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Redrawing.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Representations.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Sizes.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Thumbnails.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Types.hpp"
