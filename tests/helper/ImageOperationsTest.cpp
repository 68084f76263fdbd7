// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>

#include "helper/QuiverleafHelper.hpp"
#include "platform/Foundation/NSUserDefaults.hpp"
#include "platform/ImageIO/CGImageDestination.hpp"
#include "platform/ImageIO/CGImageSource.hpp"
#include "platform/PDFKit/PDFDocument.hpp"
#include "tests/support/ImporterBundle.hpp"
#include "tests/support/PDFSamples.hpp"

namespace nimbo {
namespace {

constexpr const char *kPostScript =
    "%!PS\n<</PageSize [600 300]>> setpagedevice /Helvetica findfont 20 scalefont setfont\n"
    "100 100 moveto (Words of PostScript) show showpage\n";

/// A picture of one colour as a file of the type.
std::string picture(std::uint32_t width, std::uint32_t height, const NSString &type, double dotsPerInch = 72,
                    bool hasAlpha = false) {
  const std::size_t size = std::size_t{width} * height * CGImage::kBytesPerPixel;
  auto pixels = std::make_unique<std::uint8_t[]>(size);
  std::fill_n(pixels.get(), size, hasAlpha ? 128 : 255);
  const CGImage image = CGImage::imageWithPixels(width, height, hasAlpha, std::move(pixels));
  return std::string(dataWithImage(image, type, {.dotsPerInch = dotsPerInch}).view());
}

/// The names of an answer's values, in their order, each behind a blank.
std::string keys(const NSDictionary &answer) {
  if (!answer) return "nil";
  std::string names;
  for (const NSString &key : answer.allKeys()) names += " " + key.UTF8String();
  return names;
}

std::string text(const NSDictionary &answer, const char *key) {
  return answer.objectForKey(NSString::stringWithUTF8String(key)).string().UTF8String();
}

/// "width x height" of a TIFF thumbnail.
std::string thumbnailOf(const NSDictionary &answer) {
  const NSData data = answer.objectForKey(u"Thumbnail"_ns).data();
  const auto source = data ? CGImageSource::sourceWithData(data) : nullptr;
  if (!source || source->type() != u"public.tiff"_ns) return "none";
  const CGImage image = source->createImageAtIndex(0, {});
  return std::to_string(image.width()) + " x " + std::to_string(image.height());
}

/// A helper whose only importer takes PDFs, PostScript and pictures, and finds a text that is not theirs.
class ImageOperationsTest : public testing::Test {
 protected:
  ImageOperationsTest() {
    ImporterBundle{
        {"com.adobe.pdf", "com.adobe.postscript", "public.png"}, TEST_PLUGIN, {"makeEveryKindImporter"}}
        .writeTo(folder, "shipped/All.mdimporter");
  }

  MetaDataImporterLocations locations() {
    MetaDataImporterLocations result;
    result.importerTool = folder.string("no tool");
    result.shippedImporterFolder = folder.string("shipped");
    return result;
  }
  NSDictionary image(const NSString &path, bool stringFromPDF = false, bool canUseSpotlight = false) {
    error = NSError();
    return helper.imageWithContentsOfFile(path, stringFromPDF, canUseSpotlight, &error);
  }
  NSString sample(const char *name) { return folder.write(name, samplePDF(name).view()); }

  TemporaryFolder folder;
  QuiverleafHelper helper{locations()};
  NSError error;
};

TEST_F(ImageOperationsTest, PhotosAnswerPropertiesOrSizes) {
  const NSString photo = folder.write("a.tiff", picture(2000, 1000, u"public.tiff"_ns, 144));
  const NSDictionary quick = image(photo);
  EXPECT_EQ(keys(quick), " Properties Thumbnail");
  EXPECT_EQ(quick.objectForKey(u"Properties"_ns).dictionary().objectForKey(u"PixelWidth"_ns).integer(), 2000);
  EXPECT_EQ(thumbnailOf(quick), "256 x 128");
  const NSDictionary slow = image(photo, true, true);
  EXPECT_EQ(keys(slow), " Size PixelSize Alpha Thumbnail");
  EXPECT_EQ(text(slow, "Size") + text(slow, "PixelSize"), "{1000, 500}{2000, 1000}");
  EXPECT_EQ(slow.objectForKey(u"Alpha"_ns).boolean(), false);
  EXPECT_EQ(thumbnailOf(slow), "256 x 128");
  EXPECT_FALSE(error);

  const NSString small = folder.write("b.png", picture(30, 20, u"public.png"_ns, 72, true));
  EXPECT_EQ(thumbnailOf(image(small)), "30 x 20") << "nothing is enlarged";
  EXPECT_EQ(image(small, true).objectForKey(u"Alpha"_ns).boolean(), true);
  EXPECT_EQ(thumbnailOf(image(folder.write("no name", picture(300, 75, u"public.tiff"_ns)))), "256 x 64");
}

TEST_F(ImageOperationsTest, PDFAnswersItsTextAndThePicturesSize) {
  const NSString path = sample("columns.pdf");
  const NSDictionary drawn = image(path);
  EXPECT_EQ(keys(drawn), " Size PixelSize Alpha Thumbnail");
  EXPECT_EQ(text(drawn, "Size") + text(drawn, "PixelSize"), "{420, 300}{420, 300}");
  EXPECT_EQ(thumbnailOf(drawn), "256 x 182");
  const NSDictionary read = image(path, true);
  EXPECT_EQ(keys(read).find(" Size PixelSize Alpha Thumbnail String PageCount"), 0u) << keys(read);
  EXPECT_EQ(text(read, "String").find("A catalogue of documents"), 0u);
  EXPECT_EQ(text(image(path, true, true), "String").find("A catalogue"), std::string::npos)
      << "the importer is asked first";

  folder.write("b.pdfd/inner.pdf", samplePDF("columns.pdf").view());
  EXPECT_EQ(text(image(folder.string("b.pdfd"), true), "String").find("A catalogue"), 0u);
}

TEST_F(ImageOperationsTest, PostScriptAnswersTheTextOfItsPDF) {
  const NSString path = folder.write("a.ps", kPostScript);
  const NSDictionary answer = image(path, true, true);
  if (!answer) GTEST_SKIP() << error.localizedFailureReason.UTF8String();
  EXPECT_EQ(text(answer, "String").find("Words of PostScript"), 0u) << "the importer is not asked";
  EXPECT_EQ(text(answer, "Size"), "{600, 300}");
  EXPECT_EQ(thumbnailOf(answer), "256 x 128");
  EXPECT_EQ(answer.objectForKey(u"PageCount"_ns).integer(), 1);
  const auto pdf = PDFDocument::documentWithData(helper.PDFImageRepOfFile(path));
  ASSERT_TRUE(pdf);
  EXPECT_EQ(pdf->pageCount(), 1u);
}

TEST_F(ImageOperationsTest, PDFThatNobodyCanDrawStillGivesItsFacts) {
  EXPECT_EQ(image(sample("no-pages.pdf")), NSDictionary());
  EXPECT_EQ(image(sample("no-pages.pdf"), true).objectForKey(u"PageCount"_ns).integer(), 0);
  EXPECT_EQ(image(sample("locked.pdf"), true).objectForKey(u"Locked"_ns).boolean(), true);
  EXPECT_EQ(error.errorCode(), ErrorCode::locked);
  EXPECT_FALSE(image(folder.write("broken.pdf", "%PDF-1.4 and no more"), true));
  std::string headless(samplePDF("columns.pdf").view());
  headless.replace(0, 5, "%----");
  const NSDictionary read = image(folder.write("headless.pdf", headless), true);
  EXPECT_EQ(text(read, "String").find("A catalogue of documents"), 0u) << keys(read);
  EXPECT_EQ(error.errorCode(), ErrorCode::unsupportedType) << "why there is no thumbnail";

  NSUserDefaults &defaults = NSUserDefaults::standardUserDefaults();
  defaults.setObject(false, u"ReadsPDFWithoutImage"_ns);
  EXPECT_FALSE(image(sample("no-pages.pdf"), true));
  EXPECT_TRUE(error);
  defaults.removeObjectForKey(u"ReadsPDFWithoutImage"_ns);
}

TEST_F(ImageOperationsTest, GivesPDFForms) {
  EXPECT_EQ(helper.PDFImageRepOfFile(sample("columns.pdf")), samplePDF("columns.pdf"));
  const auto errorOf = [&](const NSString &path) {
    NSError why;
    EXPECT_FALSE(helper.PDFImageRepOfFile(path, &why));
    return why.errorCode();
  };
  EXPECT_EQ(errorOf(folder.write("a.png", picture(3, 2, u"public.png"_ns))), ErrorCode::unsupportedType);
  EXPECT_EQ(errorOf(folder.write("faulty.ps", "%!PS\nfoo")), ErrorCode::damaged);
  EXPECT_EQ(errorOf(folder.string("missing")), ErrorCode::noSuchFile);
}

TEST_F(ImageOperationsTest, TakesEachArgumentOfTheContract) {
  const NSString path = sample("columns.pdf");
  for (const auto &[isRead, isImporterAsked] : {std::pair(false, true), {true, false}, {true, true}})
    EXPECT_EQ(helper.perform(u"imageWithContentsOfFile:stringFromPDF:canUseSpotlight:"_ns,
                             {{u"imageWithContentsOfFile"_ns, path},
                              {u"stringFromPDF"_ns, isRead},
                              {u"canUseSpotlight"_ns, isImporterAsked}}),
              image(path, isRead, isImporterAsked));
  EXPECT_EQ(helper.perform(u"PDFImageRepOfFile:"_ns, {{u"PDFImageRepOfFile"_ns, path}}),
            samplePDF("columns.pdf"));
}

TEST_F(ImageOperationsTest, SaysWhyThereIsNoPicture) {
  const auto errorOf = [&](const NSString &path) {
    EXPECT_EQ(keys(image(path, true)), "nil");
    const ErrorCode withText = error.errorCode();
    EXPECT_EQ(keys(image(path)), "nil");
    EXPECT_EQ(withText, error.errorCode());
    return withText;
  };
  EXPECT_EQ(errorOf(folder.string("missing")), ErrorCode::noSuchFile);
  EXPECT_EQ(errorOf(folder.write("a.txt", "only text")), ErrorCode::unsupportedType);
  EXPECT_EQ(errorOf(folder.write("text.png", "only text")), ErrorCode::unsupportedType);
  EXPECT_EQ(errorOf(folder.string("")), ErrorCode::unreadable) << "a folder";
  // The header of a picture of a hundred thousand pixels a side, and no more.
  const std::string bomb("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\1\x86\xa0\0\1\x86\xa0\x08\2\0\0\0", 29);
  image(folder.write("bomb.png", bomb));
  EXPECT_TRUE(error);
  EXPECT_EQ(image(folder.write("after.png", picture(3, 2, u"public.png"_ns))).count(), 2u) << "it goes on";
}

TEST_F(ImageOperationsTest, PostersOfWhatIsNoMovieSayNoMore) {
  for (const NSString &path : {folder.string("missing"), folder.write("a.mp4", "no movie")}) {
    error = NSError();
    EXPECT_EQ(helper.posterImageForMovieWithFile(path, &error),
              (NSDictionary{{u"Duration"_ns, 0.0}, {u"Size"_ns, u"{0, 0}"_ns}}));
    EXPECT_TRUE(error);
  }
}

}  // namespace
}  // namespace nimbo
