// SPDX-License-Identifier: Apache-2.0
#include <cstdint>

#include "Classes/Images/NSEPSImageRep+PDF.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions.hpp"
#include "Classes/Movies/QTMovie+NimboQTMovieExtensions.hpp"
#include "helper/QuiverleafHelper.hpp"
#include "platform/Foundation/ExceptionGuard.hpp"
#include "platform/Foundation/NSGeometry.hpp"
#include "platform/Foundation/NSUserDefaults.hpp"
#include "platform/Foundation/System/RegularFile.hpp"

namespace nimbo {
namespace {

/// The longer side of a thumbnail, in points, which are its pixels.
constexpr std::uint32_t kThumbnailSide = 256;
/// For opening, converting and drawing, and for the text besides. Callers wait little longer.
constexpr double kPictureSeconds = 8.0;
constexpr double kPictureAndTextSeconds = 12.0;
/// Of a file that is read as a whole.
constexpr std::uint32_t kMaximumFileBytes = 256 << 20;

/// How the platform numbers the compression of TIFF by LZW.
constexpr int kLZWCompression = 5;

NSData dataOfFile(const NSString &path, NSError *error) {
  std::uint64_t size = 0;
  const FileDescriptor file = openRegularFile(path, &size, error);
  return file ? readData(file.get(), size, kMaximumFileBytes, error) : NSData();
}

/// The image in a file, opened by reference, else out of the file's bytes; nil when there is no valid one.
NSImage imageInFile(const NSString &path, const Deadline &deadline, NSError *error) {
  const NSString file = pathToPDF(path);
  NSImage image = NSImage::imageByReferencingFile(file, deadline, error);
  if (isReallyValid(image)) return image;
  const NSData data = dataOfFile(file, error);
  image = data ? NSImage::imageWithData(data, deadline, error) : NSImage();
  return isReallyValid(image) ? image : NSImage();
}

struct PDFForm {
  NSData data = {};
  /// Whether the file itself is the PDF; otherwise it was made of PostScript.
  bool isOriginal = false;
};

/// The PDF that an image consists of, or that its PostScript becomes; without data when it has neither.
PDFForm PDFOfImage(const NSImage &image, const Deadline &deadline, NSError *error) {
  if (const auto original = PDFImageRep(image)) return {original->PDFRepresentation(error), true};
  const auto postScript = EPSImageRep(image);
  if (!postScript) return {};
  const auto converted = initPDFImageRep(*postScript, deadline, error);
  return {converted ? converted->PDFRepresentation(error) : NSData(), false};
}

/// Whether a PDF that is no image may still give its text.
bool readsPDFWithoutImage() {
  return NSUserDefaults::standardUserDefaults()
      .objectForKey(u"ReadsPDFWithoutImage"_ns)
      .boolean()
      .value_or(true);
}

}  // namespace

NSDictionary QuiverleafHelper::imageWithContentsOfFile(const NSString &path, bool stringFromPDF,
                                                       bool canUseSpotlight, NSError *error) {
  return guarded(error, [&] {
    const Deadline deadline = Deadline::after(kPictureSeconds);
    const Deadline textDeadline = Deadline::after(kPictureAndTextSeconds);
    if (!stringFromPDF) {
      NSDictionary properties;
      NSError failure;
      if (const NSImage thumbnail =
              thumbnailForFile(path, kThumbnailSide, false, true, &properties, deadline, &failure)) {
        NSDictionary answer = NSDictionary::dictionary();
        if (failure && error) *error = failure;
        // Nothing stands behind the first of them that is missing.
        if (!properties) return answer;
        answer.setObject(properties, u"Properties"_ns);
        answer.setObject(thumbnail.TIFFRepresentation(error), u"Thumbnail"_ns);
        return answer;
      }
    }
    NSError failure;
    NSImage image = imageInFile(path, deadline, &failure);
    if (!image) {
      if (stringFromPDF && readsPDFWithoutImage() && isRealPDFFile(path))
        if (const NSData data = dataOfFile(path, &failure)) {
          NSError textFailure;
          NSDictionary answer = _attributedStringWithPDF(false, data, canUseSpotlight ? path : NSString(), true,
                                                         textDeadline, &textFailure);
          if (error) *error = textFailure ? textFailure : failure;
          return answer;
        }
      if (error) *error = failure;
      return NSDictionary();
    }
    const NSSize size = image.size(), pixels = pixelSize(image);
    const PDFForm form = stringFromPDF ? PDFOfImage(image, deadline, error) : PDFForm();
    image.setScalesWhenResized(true);
    image.setSize(pixels);
    NSDictionary answer = {{u"Size"_ns, NSStringFromSize(size)},
                           {u"PixelSize"_ns, NSStringFromSize(pixels)},
                           {u"Alpha"_ns, hasAlpha(image)}};
    const NSSize thumbnailSize = thumbSize(image, {kThumbnailSide, kThumbnailSide});
    answer.setObject(TIFFRepresentationWithSize(image, thumbnailSize, true, NSImageInterpolation::high, false,
                                                deadline, error),
                     u"Thumbnail"_ns);
    if (form.data) {
      const NSString file = canUseSpotlight && form.isOriginal ? path : NSString();
      answer.addEntriesFromDictionary(
          _attributedStringWithPDF(false, form.data, file, false, textDeadline, error));
    }
    return answer;
  });
}

NSData QuiverleafHelper::PDFImageRepOfFile(const NSString &path, NSError *error) {
  return guarded(error, [&] {
    const Deadline deadline = Deadline::after(kPictureSeconds);
    const NSImage image = NSImage::imageByReferencingFile(pathToPDF(path), deadline, error);
    if (!isReallyValid(image)) return NSData();
    NSError failure;
    NSData pdf = PDFOfImage(image, deadline, &failure).data;
    if (!pdf && !failure) setError(&failure, ErrorCode::unsupportedType, "it is neither PDF nor PostScript");
    if (!pdf && error) *error = failure;
    return pdf;
  });
}

NSDictionary QuiverleafHelper::posterImageForMovieWithFile(const NSString &path, NSError *error) {
  NSDictionary attributes;
  const NSImage image =
      thumbnailImageForMovieWithFile(path, &attributes, Deadline::after(kPictureSeconds), error);
  const NSString size = attributes.objectForKey(u"QTMovieNaturalSizeAttribute"_ns).string();
  const auto seconds =
      static_cast<float>(attributes.objectForKey(u"QTMovieDurationAttribute"_ns).real().value_or(0));
  NSDictionary answer = {{u"Duration"_ns, seconds}, {u"Size"_ns, size ? size : NSStringFromSize({})}};
  if (image)
    answer.setObject(image.TIFFRepresentationUsingCompression(kLZWCompression, 1.0F, error), u"Thumbnail"_ns);
  return answer;
}

}  // namespace nimbo
