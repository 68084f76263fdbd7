// SPDX-License-Identifier: Apache-2.0
//
// Work on pictures: their thumbnails, sizes and types.
//
//     const NSSize size = thumbSize(image, {256, 256});
//     if (isImageFile(path)) NSLog(pathToPDF(path));
//     if (isReallyValid(image)) scaleToThumbSize(image, {256, 256});
#pragma once

#include "Classes/Images/NSImage+NSImageNimboExtensions/Sizes.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Types.hpp"
