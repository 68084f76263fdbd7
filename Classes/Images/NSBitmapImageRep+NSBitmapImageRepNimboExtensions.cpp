// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/NSBitmapImageRep+NSBitmapImageRepNimboExtensions.hpp"

namespace nimbo {
inline namespace NSBitmapImageRepNimboExtensions {

NSString pathExtensionForBitmapImageFileType(NSBitmapImageFileType type) {
  switch (type) {
    case NSBitmapImageFileType::TIFF:
      return u"tiff"_ns;
    case NSBitmapImageFileType::BMP:
      return u"bmp"_ns;
    case NSBitmapImageFileType::GIF:
      return u"gif"_ns;
    case NSBitmapImageFileType::JPEG:
      return u"jpg"_ns;
    case NSBitmapImageFileType::PNG:
      return u"png"_ns;
    case NSBitmapImageFileType::JPEG2000:
      return u"jp2"_ns;
  }
  return NSString();
}

NSData representationUsingType(const NSBitmapImageRep &bitmap, NSBitmapImageFileType type, float compression,
                               NSError *error) {
  return bitmap.representationUsingType(type, compression, error);
}

}  // namespace NSBitmapImageRepNimboExtensions
}  // namespace nimbo
