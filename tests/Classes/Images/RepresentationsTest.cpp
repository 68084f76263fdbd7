// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/NSImage+NSImageNimboExtensions/Representations.hpp"

#include <gtest/gtest.h>

#include <vector>

#include "Classes/Images/NSBitmapImageRep+NSBitmapImageRepNimboExtensions.hpp"
#include "Classes/Images/NSEPSImageRep+PDF.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Encoding.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Sizes.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Types.hpp"
#include "tests/Classes/Images/ImageSamples.hpp"
#include "tests/support/PDFSamples.hpp"

namespace nimbo {
namespace {

using Reps = std::vector<SharedPointer<NSImageRep>>;

NSImage imageOf(const Reps &reps, NSSize size = {40, 20}) {
  NSImage image = NSImage::imageWithSize(size);
  for (const auto &rep : reps) image.addRepresentation(rep);
  return image;
}

Reps::value_type bitmapRep(std::uint32_t width, std::uint32_t height, const Pixel &lower = kBlue) {
  return NSBitmapImageRep::imageRepWithCGImage(halves(width, height, kRed, lower));
}

Reps::value_type cachedRep(std::uint32_t width, std::uint32_t height, const Pixel &lower = kBlue) {
  return NSCachedImageRep::imageRepWithCGImage(halves(width, height, kRed, lower), {10, 10});
}

Reps::value_type emptyRep(NSImageRepClass kind) {
  return makeShared<EmptyRep>(kind);
}

NSData postScript(std::string_view firstLine = "%!PS-Adobe-3.0 EPSF-3.0") {
  return dataOfString(std::string(firstLine) +
                      "\n%%BoundingBox: 0 0 30 60\n1 0 0 setrgbcolor 0 0 30 60 rectfill showpage\n%%EOF\n");
}

TEST(ImageRepresentations, TellPixelSizeAndTransparency) {
  struct Case {
    Reps reps;
    NSSize pixels;
    bool hasAlpha;
  };
  const Case cases[] = {
      {{}, {40, 20}, false},
      {{emptyRep(NSImageRepClass::PDF)}, {40, 20}, true},
      {{bitmapRep(100, 50)}, {100, 50}, false},
      {{bitmapRep(100, 50, kClear)}, {100, 50}, true},
      {{cachedRep(64, 64), bitmapRep(10, 10)}, {64, 64}, false},
      {{bitmapRep(10, 10, kClear), cachedRep(64, 64)}, {64, 64}, true},
      {{cachedRep(8, 8, kClear)}, {8, 8}, true},
      // The widest counts, not the largest; of equally wide ones the first.
      {{bitmapRep(50, 900), bitmapRep(60, 2), bitmapRep(60, 70)}, {60, 2}, false},
      {{bitmapRep(10, 10), emptyRep(NSImageRepClass::iconRef)}, {10, 10}, true},
  };
  for (const auto &[reps, pixels, alpha] : cases) {
    NSImage image = imageOf(reps);
    EXPECT_EQ(pixelSize(image), pixels) << reps.size();
    EXPECT_EQ(hasAlpha(image), alpha) << reps.size();
    EXPECT_EQ(isReallyValid(image), !reps.empty());
    EXPECT_EQ(thumbSize(image, {30, 30}), thumb({30, 30}, pixels));
    EXPECT_EQ(scaledSize(image, 0.3F), scale(0.3F, pixels));
    scaleToThumbSize(image, {30, 30});
    EXPECT_EQ(bounds(image).size, thumb({30, 30}, pixels));
    EXPECT_TRUE(image.scalesWhenResized());
  }
  EXPECT_FALSE(isReallyValid(NSImage()));
  EXPECT_EQ(aspectRatio(imageOf({})), 2.0F);
  EXPECT_EQ(aspectRatio(NSImage()), 0.0F);
}

TEST(ImageRepresentations, AreFoundByTheirClass) {
  const Reps reps = {emptyRep(NSImageRepClass::iconRef), cachedRep(1, 1), bitmapRep(2, 2), bitmapRep(3, 3),
                     emptyRep(NSImageRepClass::PICT)};
  NSImage image = imageOf(reps);
  EXPECT_EQ(iconRefBitmapImageRep(image), reps[0]);
  EXPECT_EQ(cachedImageRep(image)->pixelsWide(), 1U);
  EXPECT_EQ(bitmapImageRep(image)->pixelsWide(), 2U);
  EXPECT_EQ(PICTImageRep(image), reps[4]);
  EXPECT_FALSE(PDFImageRep(image));
  EXPECT_FALSE(EPSImageRep(image));
  EXPECT_TRUE(isBitmapImage(image) && isPICTImage(image) && isIconRefBitmapImage(image));
  EXPECT_FALSE(isPDFImage(image) || isEPSImage(image));
  EXPECT_TRUE(isScalableImage(image));
  const NSImage copy = image;
  removeAllRepresentations(image);
  EXPECT_TRUE(image.representations().empty());
  EXPECT_EQ(copy.representations().size(), reps.size());
  EXPECT_FALSE(isScalableImage(imageOf({bitmapRep(1, 1)})));
  EXPECT_FALSE(isScalableImage(NSImage()));
}

TEST(ImageRepresentations, OfPostScriptBecomePDF) {
  const NSImage image = NSImage::imageWithData(postScript(), Deadline::after(20));
  const auto rep = EPSImageRep(image);
  ASSERT_TRUE(rep);
  EXPECT_FALSE(PDFImageRep(*rep));
  EXPECT_FALSE(PDFRepresentation(*rep));
  NSError error;
  const auto converted = initPDFImageRep(*rep, Deadline::after(20), &error);
  ASSERT_TRUE(converted) << error.localizedFailureReason.UTF8String();
  EXPECT_EQ(PDFImageRep(*rep), converted);
  EXPECT_EQ(initPDFImageRep(*rep), converted);
  EXPECT_TRUE(PDFRepresentation(*rep).view().starts_with("%PDF-"));
  EXPECT_EQ(converted->size(), (NSSize{30, 60}));

  const auto damaged = NSEPSImageRep::imageRepWithData(
      dataOfString("%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 9 9\nno-such-operator\n"), Deadline::after(20));
  ASSERT_TRUE(damaged);
  EXPECT_FALSE(initPDFImageRep(*damaged, Deadline::after(20), &error));
  EXPECT_TRUE(error);
}

TEST(ImageFiles, HaveTheExtensionOfTheirContent) {
  const auto rep = NSBitmapImageRep::imageRepWithCGImage(halves(16, 16, kRed, kBlue));
  for (int number = 0; number <= 5; ++number) {
    const auto type = static_cast<NSBitmapImageFileType>(number);
    NSError error;
    const NSData data = representationUsingType(*rep, type, 0.9F, &error);
    ASSERT_TRUE(data) << number << ": " << error.localizedFailureReason.UTF8String();
    EXPECT_EQ(pathExtensionForData(data), pathExtensionForBitmapImageFileType(type)) << number;
  }
  for (const int number : {-1, 6}) {
    const auto type = static_cast<NSBitmapImageFileType>(number);
    EXPECT_FALSE(pathExtensionForBitmapImageFileType(type)) << number;
    NSError error;
    EXPECT_FALSE(representationUsingType(*rep, type, 0.9F, &error)) << number;
    EXPECT_TRUE(error);
  }
  EXPECT_EQ(pathExtensionForData(postScript()), u"eps"_ns);
  EXPECT_EQ(pathExtensionForData(postScript("%!PS-Adobe-3.0")), u"ps"_ns);
  EXPECT_EQ(pathExtensionForData(samplePDF("boxes.pdf")), u"pdf"_ns);
  EXPECT_FALSE(pathExtensionForData(dataOfString("text")));
  EXPECT_FALSE(pathExtensionForData(NSData()));
}

TEST(ImageFiles, KeepWhatTheImageConsistsOf) {
  const NSData PDF = samplePDF("boxes.pdf");
  struct Case {
    NSImage image;
    NSString extension;
    NSData data;
  };
  for (const auto &[image, extension, data] : {
           Case{NSImage::imageWithData(PDF, Deadline::after(20)), u"pdf"_ns, PDF},
           {NSImage::imageWithData(postScript(), Deadline::after(20)), u"eps"_ns, postScript()},
           {imageOf({bitmapRep(4, 4)}), u"tiff"_ns, imageOf({bitmapRep(4, 4)}).TIFFRepresentation()},
           {imageOf({}), NSString(), NSData()},
           {NSImage(), NSString(), NSData()},
       }) {
    NSString answered = u"?"_ns;
    EXPECT_EQ(bestRepresentation(image), data) << extension.UTF8String();
    EXPECT_EQ(bestRepresentationAndFileExtension(image, &answered), data) << extension.UTF8String();
    EXPECT_EQ(answered, extension);
    EXPECT_EQ(pathExtensionForBestRepresentation(image), extension);
    // As pixels, whatever it consists of.
    EXPECT_EQ(pathExtensionForData(bitmapImageRepData(image)), data ? u"tiff"_ns : NSString());
    EXPECT_EQ(pathExtensionForData(representationUsingType(image, NSBitmapImageFileType::PNG, 1.0F)),
              data ? u"png"_ns : NSString());
  }
}

}  // namespace
}  // namespace nimbo
