// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/UnmappedMIMETypes.hpp"

#include <algorithm>
#include <array>

#include "Classes/Images/NSImage+NSImageNimboExtensions/Types.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Comparing.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Types.hpp"
#include "platform/Foundation/NSStringJoining.hpp"

namespace nimbo {
namespace {

bool isJPEG(const NSString &extension) {
  return std::ranges::any_of(std::array{u"jpg"_ns, u"jpe"_ns, u"jpeg"_ns}, [&](const NSString &entry) {
    return rangeIsEqualToNoCase(entry, {0, entry.length()}, extension);
  });
}

}  // namespace

NSString MIMETypeForUnmappedExtension(const NSString &extension) {
  if (isPDFExtension(extension))
    return isRealPDFExtension(extension) ? u"application/pdf"_ns : u"application/postscript"_ns;
  const auto ofFamily = [&](std::u16string_view family) { return stringByConcatenating(family, extension); };
  if (isImageExtension(extension)) return isJPEG(extension) ? u"image/jpeg"_ns : ofFamily(u"image/");
  if (isMultimediaType(extension, true, false, false)) return ofFamily(u"audio/");
  if (isMultimediaType(extension, false, true, false)) return ofFamily(u"video/");
  if (isMultimediaType(extension, false, false, true)) return ofFamily(u"application/");
  return NSString();
}

}  // namespace nimbo
