// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/NSImage+NSImageNimboExtensions/Encoding.hpp"

#include <string_view>

#include "Classes/Images/NSBitmapImageRep+NSBitmapImageRepNimboExtensions.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Redrawing.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Representations.hpp"
#include "Classes/Images/TypeStrings.hpp"
#include "platform/CoreServices/ContentTypes.hpp"
#include "platform/ImageIO/CGImageSource.hpp"

namespace nimbo {
inline namespace NSImageNimboExtensions {

namespace {

/// The image's bitmap, else what is drawn of it.
SharedPointer<NSBitmapImageRep> bitmapOfImage(const NSImage &image, NSError *error) {
  if (auto bitmap = bitmapImageRep(image)) return bitmap;
  if (image.representations().empty()) return {};
  return bitmapImageRep(bitmapImageWithSize(image, image.size(), false, {}, error));
}

}  // namespace

NSData bestRepresentation(const NSImage &image, NSError *error) {
  if (const auto PDF = PDFImageRep(image)) return PDF->PDFRepresentation(error);
  if (const auto EPS = EPSImageRep(image)) return EPS->EPSRepresentation();
  return image.TIFFRepresentation(error);
}

NSData bestRepresentationAndFileExtension(const NSImage &image, NSString *extension, NSError *error) {
  NSData data = bestRepresentation(image, error);
  *extension = data ? pathExtensionForBestRepresentation(image) : NSString();
  return data;
}

NSString pathExtensionForBestRepresentation(const NSImage &image) {
  if (isPDFImage(image)) return u"pdf"_ns;
  if (const auto EPS = EPSImageRep(image)) return pathExtensionForData(EPS->EPSRepresentation());
  return image.representations().empty() ? NSString()
                                         : pathExtensionForBitmapImageFileType(NSBitmapImageFileType::TIFF);
}

NSString pathExtensionForData(const NSData &data) {
  const std::string_view bytes = data.view();
  if (NSEPSImageRep::canInitWithFirstBytes(bytes))
    return NSEPSImageRep::isEncapsulated(bytes) ? u"eps"_ns : u"ps"_ns;
  if (beginsLikePDF(bytes)) return u"pdf"_ns;
  const auto source = CGImageSource::sourceWithData(data);
  return source ? pathExtensionForUniformType(source->type()) : NSString();
}

NSData bitmapImageRepData(const NSImage &image, NSError *error) {
  const auto bitmap = bitmapOfImage(image, error);
  return bitmap ? bitmap->representationUsingType(NSBitmapImageFileType::TIFF, {}, error) : NSData();
}

NSData representationUsingType(const NSImage &image, NSBitmapImageFileType type, float compression,
                               NSError *error) {
  const auto bitmap = bitmapOfImage(image, error);
  return bitmap ? representationUsingType(*bitmap, type, compression, error) : NSData();
}

}  // namespace NSImageNimboExtensions
}  // namespace nimbo
