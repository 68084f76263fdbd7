// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Images/NSImageRep.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <string>

#include "platform/AppKit/Images/NSBitmapImageRep.hpp"
#include "platform/AppKit/Images/NSEPSImageRep.hpp"
#include "platform/AppKit/Images/NSImage.hpp"
#include "platform/AppKit/Images/NSPDFImageRep.hpp"
#include "platform/ImageIO/CGImageDestination.hpp"
#include "tests/support/PDFSamples.hpp"
#include "tests/support/Pixels.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

using std::string_literals::operator""s;

/// Red on the left, blue on the right.
CGImage halves(std::uint32_t width, std::uint32_t height) {
  return imageOf(width, height, [width](auto x, auto) { return x < width / 2 ? kRedPixel : kBluePixel; });
}

CGImage drawn(const NSImageRep &rep, std::uint32_t width, std::uint32_t height, const NSRect &from = {},
              NSError *error = nullptr) {
  NSGraphicsContext context{.context = CGContext(width, height)};
  context.imageInterpolation = NSImageInterpolation::high;
  const bool isDrawn = rep.drawInRect(context, {{0, 0}, {double(width), double(height)}}, from,
                                      NSCompositingOperation::sourceOver, 1, error);
  EXPECT_EQ(isDrawn, !context.failure);
  return isDrawn ? context.context.makeImage() : CGImage();
}

/// A JPEG with an orientation, which stands in a segment behind its start.
NSData turned(const NSData &jpeg, char orientation) {
  const std::string exif =
      "\xff\xe1\0\x22"s + "Exif\0\0MM\0*\0\0\0\x08\0\1\x01\x12\0\3\0\0\0\1\0"s + orientation + "\0\0\0\0\0\0"s;
  return dataOfString(std::string(jpeg.view().substr(0, 2)) + exif + std::string(jpeg.view().substr(2)));
}

TEST(NSBitmapImageRep, IsAsLargeAsItsResolutionSays) {
  const CGImage image = halves(40, 20);
  for (const NSString &type : {u"public.tiff"_ns, u"public.png"_ns}) {
    const NSData data = dataWithImage(image, type, {.dotsPerInch = 144});
    const auto reps = NSImageRep::imageRepsWithData(data, {});
    ASSERT_EQ(reps.size(), 1U) << type.UTF8String();
    EXPECT_NEAR(reps[0]->size().width, 20, 0.01);
    EXPECT_NEAR(reps[0]->size().height, 10, 0.01);
    EXPECT_EQ(reps[0]->pixelsWide(), 40U);
    EXPECT_FALSE(reps[0]->hasAlpha());
  }
}

TEST(NSBitmapImageRep, HasThatOfPointsForAResolutionThatNoPictureHas) {
  const std::pair<double, double> cases[] = {{0, 72},          {0.5, 72},          {1, 1},
                                             {99'999, 99'999}, {100'000, 100'000}, {100'001, 72}};
  for (const auto &[said, meant] : cases) {
    const NSData data = dataWithImage(halves(40, 20), u"public.tiff"_ns, {.dotsPerInch = said});
    const auto reps = NSImageRep::imageRepsWithData(data, {});
    ASSERT_EQ(reps.size(), 1U) << said;
    EXPECT_NEAR(reps[0]->size().width * meant / 72, 40, 0.01) << said;
    EXPECT_NEAR(reps[0]->size().height * meant / 72, 20, 0.01) << said;
  }
  // Pixels have a size of their own when both sides of it are there.
  const NSSize sizes[] = {{}, {5, 0}, {0, 5}, {-5, 5}};
  for (const NSSize &size : sizes)
    EXPECT_EQ(NSBitmapImageRep::imageRepWithCGImage(halves(4, 2), size)->size(), (NSSize{4, 2}));
  EXPECT_FALSE(NSBitmapImageRep::imageRepWithCGImage(CGImage(), {1, 1}));
}

// Two pixels in formats whose header may tell, or not, whether the fourth sample of a pixel means anything.
TEST(NSBitmapImageRep, HasTheAlphaOfItsHeaderOrOfItsPixels) {
  for (const bool isSeeThrough : {false, true}) {
    const std::string pixels = "\x10\x20\xff\xff\x10\x20\xff"s + (isSeeThrough ? '\x40' : '\xff');
    const auto PAM = [&](const std::string &kind) {
      return "P7\nWIDTH 2\nHEIGHT 1\nDEPTH 4\nMAXVAL 255\nTUPLTYPE " + kind + "\nENDHDR\n";
    };
    const struct {
      const char *name;
      std::string file;
      bool isTold = false;
    } files[] = {
        {"BMP", "BM\x3e\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\2\0\0\0\1\0\0\0\1\0\x20\0"s + std::string(24, '\0') +
                    pixels},
        {"BMP with masks",
         "BM\x82\0\0\0\0\0\0\0\x7a\0\0\0\x6c\0\0\0\2\0\0\0\1\0\0\0\1\0\x20\0\3\0\0\0"s + std::string(20, '\0') +
             "\0\0\xff\0\0\xff\0\0\xff\0\0\0\0\0\0\xff"s + std::string(52, '\0') + pixels,
         true},
        {"TGA", "\0\0\2\0\0\0\0\0\0\0\0\0\2\0\1\0\x20\0"s + pixels},
        {"TGA with alpha", "\0\0\2\0\0\0\0\0\0\0\0\0\2\0\1\0\x20\x08"s + pixels, true},
        {"QOI",
         "qoif\0\0\0\2\0\0\0\1\4\0\xff"s + pixels.substr(0, 4) + '\xff' + pixels.substr(4) +
             "\0\0\0\0\0\0\0\1"s,
         true},
        {"PAM", PAM("RGB_ALPHA") + pixels, true},
        {"PAM, wholly transparent", PAM("RGB_ALPHA") + std::string(8, '\0'), true},
        {"XPM", "/* XPM */\nstatic char *x[] = {\n\"2 1 2 1\",\n\"a c #1020ff\",\n\"b c "s +
                    (isSeeThrough ? "None" : "#102030") + "\",\n\"ab\"};\n"},
    };
    for (const auto &[name, file, isTold] : files) {
      const bool hasAlpha = isTold || isSeeThrough;
      const auto reps = NSImageRep::imageRepsWithData(dataOfString(file), {});
      ASSERT_EQ(reps.size(), 1U) << name;
      EXPECT_EQ(reps[0]->hasAlpha(), hasAlpha) << name;
      EXPECT_EQ(dynamic_cast<NSBitmapImageRep &>(*reps[0]).decodedImage().hasAlpha(), hasAlpha) << name;
    }
  }
}

TEST(NSBitmapImageRep, IsTurnedAsTheFileSays) {
  const NSData jpeg = dataWithImage(halves(64, 32), u"public.jpeg"_ns, {.compressionFactor = 1});
  const struct {
    char orientation;
    std::uint32_t width, height;
    bool isRedInUpperLeft, isRedInLowerRight;
  } cases[] = {{1, 64, 32, true, false},
               {2, 64, 32, false, true},
               {3, 64, 32, false, true},
               {6, 32, 64, true, false},
               {8, 32, 64, false, true}};
  for (const auto &c : cases) {
    SCOPED_TRACE(int{c.orientation});
    const auto reps = NSImageRep::imageRepsWithData(turned(jpeg, c.orientation), {});
    ASSERT_EQ(reps.size(), 1U);
    EXPECT_EQ(reps[0]->pixelsWide(), c.width);
    EXPECT_EQ(reps[0]->size(), (NSSize{double(c.width), double(c.height)}));
    // Both wholly decoded and reduced on the way.
    for (const std::uint32_t divisor : {1U, 4U}) {
      const CGImage image = drawn(*reps[0], c.width / divisor, c.height / divisor);
      ASSERT_TRUE(image);
      EXPECT_EQ(pixelAt(image, 1, 1).red > 200, c.isRedInUpperLeft);
      EXPECT_EQ(pixelAt(image, image.width() - 2, image.height() - 2).red > 200, c.isRedInLowerRight);
    }
  }
}

TEST(NSBitmapImageRep, DrawsPartsInPoints) {
  const NSData png = dataWithImage(halves(80, 40), u"public.png"_ns, {.dotsPerInch = 144});
  const auto reps = NSImageRep::imageRepsWithData(png, {});
  // The right half, smaller and larger than it is.
  for (const std::uint32_t side : {10U, 100U}) {
    const CGImage image = drawn(*reps.at(0), side, side, {{20, 0}, {20, 20}});
    // What is red beside it shows only as far as a kernel reaches that reduces while it decodes.
    EXPECT_NEAR(pixelAt(image, 0, side / 2).blue, 255, side < 20 ? 20 : 0);
    EXPECT_EQ(pixelAt(image, side - 1, side / 2), kBluePixel);
  }
}

TEST(NSBitmapImageRep, BecomesFilesOfEveryType) {
  const auto rep = NSBitmapImageRep::imageRepWithCGImage(halves(30, 10), {15, 5});
  EXPECT_EQ(rep->className(), u"NSBitmapImageRep"_ns);
  EXPECT_EQ(NSImageRep::imageRepClass().name, u"NSImageRep"_ns);
  for (int type = 0; type <= 5; ++type) {
    NSError error;
    const NSData data = rep->representationUsingType(static_cast<NSBitmapImageFileType>(type), 1.0F, &error);
    const auto reps = NSImageRep::imageRepsWithData(data, {}, &error);
    ASSERT_EQ(reps.size(), 1U) << type << error.localizedFailureReason.UTF8String();
    EXPECT_EQ(reps[0]->pixelsWide(), 30U);
    const CGImage image = drawn(*reps[0], 30, 10);
    EXPECT_NEAR(pixelAt(image, 3, 5).red, 255, 3) << type;
    EXPECT_NEAR(pixelAt(image, 27, 5).blue, 255, 3) << type;
  }
  const std::pair<NSBitmapImageFileType, std::string> starts[] = {
      {NSBitmapImageFileType::TIFF, "II*\0"s},     {NSBitmapImageFileType::BMP, "BM"},
      {NSBitmapImageFileType::GIF, "GIF8"},        {NSBitmapImageFileType::JPEG, "\xff\xd8\xff"},
      {NSBitmapImageFileType::PNG, "\x89PNG\r\n"}, {NSBitmapImageFileType::JPEG2000, "\0\0\0\x0cjP  "s}};
  for (const auto &[type, start] : starts)
    EXPECT_TRUE(rep->representationUsingType(type).view().starts_with(start)) << start;
  EXPECT_FALSE(rep->representationUsingType(static_cast<NSBitmapImageFileType>(6)));
  const NSData large = rep->representationUsingType(NSBitmapImageFileType::JPEG, 1.0F);
  EXPECT_LT(rep->representationUsingType(NSBitmapImageFileType::JPEG, 0.1F).length(), large.length());
  EXPECT_EQ(rep->representationUsingType(NSBitmapImageFileType::JPEG, INFINITY), large);
  EXPECT_FALSE(rep->representationUsingType(NSBitmapImageFileType::JPEG, NAN));
}

TEST(NSBitmapImageRep, TellsPicturesOfQuickDraw) {
  const std::string picture =
      std::string(514, '\0') + "\0\0\0\0\0\x14\0\x28\0\x11\2\xff\x0c\0"s + std::string(60, '\0');
  const auto reps = NSImageRep::imageRepsWithData(dataOfString(picture), {});
  ASSERT_EQ(reps.size(), 1U);
  EXPECT_EQ(reps[0]->representationClass(), NSImageRepClass::PICT);
  EXPECT_EQ(reps[0]->className(), u"NSPICTImageRep"_ns);
  EXPECT_EQ(reps[0]->size(), (NSSize{40, 20}));
}

TEST(NSImageRep, KeepsToItsLimitOfRepresentations) {
  const std::vector<CGImage> pages(NSImageRep::kMaximumRepresentations + 1, halves(2, 2));
  EXPECT_EQ(NSImageRep::imageRepsWithData(dataWithImages(pages, u"public.tiff"_ns, {}), {}).size(),
            NSImageRep::kMaximumRepresentations);
  EXPECT_EQ(NSImageRep::imageRepsWithData(dataWithImages(pages, u"com.compuserve.gif"_ns, {}), {}).size(), 1U);
}

const std::string kPage = "<</Type /Page /Parent 2 0 R /Contents 4 0 R /MediaBox [0 0 40 20] /Rotate 90>>";

NSData pagePDF() {
  return PDFOfObjects({"<</Type /Catalog /Pages 2 0 R>>", "<</Type /Pages /Kids [3 0 R] /Count 1>>", kPage,
                       PDFStream("", "1 0 0 rg 0 0 20 20 re f")});
}

TEST(NSPDFImageRep, DrawsItsFirstPage) {
  const TemporaryFolder folder;
  const NSString path = folder.write("page.ai", pagePDF().view());
  const auto fromFile = NSImageRep::imageRepsWithContentsOfFile(path, {});
  const auto fromData = NSImageRep::imageRepsWithData(pagePDF(), {});
  for (const auto &reps : {fromFile, fromData}) {
    ASSERT_EQ(reps.size(), 1U);
    EXPECT_EQ(reps[0]->className(), u"NSPDFImageRep"_ns);
    EXPECT_EQ(reps[0]->size(), (NSSize{20, 40}));
    EXPECT_EQ(reps[0]->pixelsWide(), 0U);
    EXPECT_EQ(reps[0]->pixelsHigh(), 0U);
    EXPECT_TRUE(reps[0]->hasAlpha());
    EXPECT_EQ(dynamic_cast<NSPDFImageRep &>(*reps[0]).pageCount(), 1U);
    const CGImage image = drawn(*reps[0], 60, 120);
    EXPECT_EQ(pixelAt(image, 30, 58), kRedPixel);
    EXPECT_EQ(pixelAt(image, 30, 61), kNoPixel);
    const CGImage part = drawn(*reps[0], 10, 10, {{5, 15}, {10, 10}});
    EXPECT_EQ(pixelAt(part, 5, 4), kRedPixel);
    EXPECT_EQ(pixelAt(part, 5, 5), kNoPixel);
    EXPECT_EQ(dynamic_cast<NSPDFImageRep &>(*reps[0]).PDFRepresentation(), pagePDF());
  }
  // Larger than any canvas.
  NSGraphicsContext context{.context = CGContext(4, 4)};
  EXPECT_TRUE(
      fromData[0]->drawInRect(context, {{-1e6, -1e6}, {3e6, 3e6}}, {}, NSCompositingOperation::copy, 1));
  std::filesystem::remove(path.UTF8String());
  NSError error;
  EXPECT_FALSE(dynamic_cast<NSPDFImageRep &>(*fromFile[0]).PDFRepresentation(&error));
  EXPECT_EQ(error.errorCode(), ErrorCode::noSuchFile);
}

std::string EPS(const std::string &comments, const std::string &program) {
  return "%!PS-Adobe-3.0 EPSF-3.0\n" + comments + "%%EndComments\n" + program + "\nshowpage\n%%Trailer\n";
}

TEST(NSEPSImageRep, IsAsLargeAsItsCommentsSay) {
  const std::string square = "1 0 0 setrgbcolor 100 100 20 10 rectfill";
  const struct {
    std::string file;
    NSRect box;
  } cases[] = {
      {EPS("%%BoundingBox: 100 100 140 120\n", square), {{100, 100}, {40, 20}}},
      {EPS("%%BoundingBox: 100 100 140 120\r%%HiResBoundingBox: 100.25 100 140 119.5\r", square),
       {{100.25, 100}, {39.75, 19.5}}},
      {EPS("%%BoundingBox: (atend)\n", square) + "%%BoundingBox: -100 +100 140 120\n",
       {{-100, 100}, {240, 20}}},
      // The end may begin inside a figure.
      {EPS("%%BoundingBox: (atend)\n%%BeginDocument: figure\n", square) + std::string(70'000, '\n') +
           "%%BoundingBox: 0 0 9 9\n%%EndDocument\n%%BoundingBox: 0 0 7 8\n",
       {{0, 0}, {7, 8}}},
      {"\x04" + EPS("%%BoundingBox: 1 2 3 4 \n", square), {{1, 2}, {2, 2}}},
      // The first one has no area, another one is part of a line.
      {EPS("%%BoundingBox: 5 5 5 9\n(%%BoundingBox: 0 0 9 9)\n%%BoundingBox: 0 0 7 8\n", square),
       {{0, 0}, {7, 8}}},
      {"\xc5\xd0\xd3\xc6\x20\0\0\0\xff\0\0\0"s + std::string(20, '\0') +
           EPS("%%BoundingBox: 0 0 6 5\n", square),
       {{0, 0}, {6, 5}}},
  };
  for (const auto &c : cases) {
    NSError error;
    const auto reps = NSImageRep::imageRepsWithData(dataOfString(c.file), {}, &error);
    ASSERT_EQ(reps.size(), 1U) << error.localizedFailureReason.UTF8String() << c.file;
    EXPECT_EQ(dynamic_cast<NSEPSImageRep &>(*reps[0]).boundingBox(), c.box) << c.file;
    EXPECT_FALSE(reps[0]->valueForKey(u"pdfImageRep"_ns));
  }
}

TEST(NSEPSImageRep, IsConvertedWhenItIsDrawn) {
  const std::string program = "1 0 0 setrgbcolor 100 100 20 20 rectfill";
  const std::string box = "%%BoundingBox: 100 100 140 120\n";
  // The box is cut out of files that say that they are EPS, unless the program chooses its page.
  for (const std::string &file :
       {"%!PS-Adobe-2.0\n" + box + program + " showpage\n",
        EPS(box, "<</PageSize [300 400]>> setpagedevice " + program), EPS(box, program),
        EPS("%%BoundingBox: 2 0 42 20\n", "<</PageSize [42 20]>> setpagedevice -98 -100 translate " + program),
        EPS("%%BoundingBox: 98 99 140 121\n%%HiResBoundingBox: (atend)\n", program) + "%%HiRes" + box.substr(2),
        EPS("%%BoundingBox: (atend)\n", program) + "%%BoundingBox: 99 99 141 121\n%%HiRes" + box.substr(2)}) {
    const auto reps = NSImageRep::imageRepsWithData(dataOfString(file), Deadline::after(60));
    ASSERT_EQ(reps.size(), 1U);
    EXPECT_EQ(reps[0]->className(), u"NSEPSImageRep"_ns);
    EXPECT_TRUE(reps[0]->hasAlpha());
    NSError error;
    const CGImage image = drawn(*reps[0], 80, 40, {}, &error);
    ASSERT_TRUE(image) << error.localizedFailureReason.UTF8String();
    EXPECT_EQ(pixelAt(image, 38, 20), kRedPixel) << file;
    EXPECT_EQ(pixelAt(image, 41, 20), kNoPixel) << file;
    EXPECT_EQ(pixelAt(drawn(*reps[0], 20, 20, {{10, 0}, {20, 20}}), 9, 10), kRedPixel) << file;
    const auto converted = reps[0]->valueForKey(u"pdfImageRep"_ns).object();
    ASSERT_TRUE(converted);
    EXPECT_EQ(converted->className(), u"NSPDFImageRep"_ns);
  }
  // Without a bounding box it is as large as its page.
  const auto page = NSImageRep::imageRepsWithData(
      dataOfString("%!PS\n<</PageSize [300 400]>> setpagedevice " + program + " showpage\n"),
      Deadline::after(60));
  ASSERT_EQ(page.size(), 1U);
  EXPECT_EQ(page[0]->size(), (NSSize{300, 400}));
}

TEST(NSEPSImageRep, SaysWhyItIsNotDrawn) {
  const auto reps = NSImageRep::imageRepsWithData(
      dataOfString(EPS("%%BoundingBox: 0 0 40 20\n", "nosuchoperator")), Deadline::after(60));
  ASSERT_EQ(reps.size(), 1U);
  NSError error;
  EXPECT_FALSE(drawn(*reps[0], 40, 20, {}, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::damaged) << error.localizedFailureReason.UTF8String();
  EXPECT_FALSE(reps[0]->valueForKey(u"pdfImageRep"_ns));
  EXPECT_FALSE(NSEPSImageRep::imageRepWithData(pagePDF(), {}, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::unsupportedType);
}

TEST(NSImageRep, SaysWhyThereIsNone) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.path() / "folder");
  ASSERT_EQ(::mkfifo((folder.path() / "fifo").c_str(), 0600), 0);
  const struct {
    NSString path;
    ErrorCode code;
  } cases[] = {
      {folder.string("none"), ErrorCode::noSuchFile},
      {folder.string("folder"), ErrorCode::unreadable},
      {folder.string("fifo"), ErrorCode::unreadable},
      {folder.write("empty.png", ""), ErrorCode::incomplete},
      {folder.write("text.png", "Some text.\n"), ErrorCode::unsupportedType},
      {folder.write("locked.pdf", samplePDF("locked.pdf").view()), ErrorCode::locked},
      {folder.write("no-pages.pdf", samplePDF("no-pages.pdf").view()), ErrorCode::incomplete},
      {folder.write("damaged.pdf", "%PDF-1.4\nnothing else"), ErrorCode::damaged},
      {folder.write("damaged.ps", "%!PS\nnosuchoperator showpage\n"), ErrorCode::damaged},
      {folder.write("short.eps", "\xc5\xd0\xd3\xc6\xff\xff\xff\xff\xff\xff\xff\xff"),
       ErrorCode::unsupportedType},
  };
  for (const auto &c : cases) {
    NSError error;
    EXPECT_FALSE(NSImage::imageByReferencingFile(c.path, Deadline::after(60), &error));
    EXPECT_EQ(error.errorCode(), c.code) << c.path.UTF8String() << error.localizedFailureReason.UTF8String();
    if (c.code == ErrorCode::noSuchFile || c.code == ErrorCode::unreadable) continue;
    const NSData data = NSData::dataWithContentsOfFile(c.path);
    EXPECT_FALSE(NSImage::imageWithData(data, Deadline::after(60), &error));
    EXPECT_EQ(error.errorCode(), c.code) << c.path.UTF8String();
  }
}

// Whatever is missing of a file, it is drawn or there is a reason.
TEST(NSImageRep, IsDrawnOrSaysWhyNotWhenItIsCutShort) {
  const NSData files[] = {dataWithImage(halves(64, 64), u"public.png"_ns, {}),
                          dataWithImage(halves(64, 64), u"public.jpeg"_ns, {}),
                          dataWithImage(halves(64, 64), u"public.tiff"_ns, {}),
                          dataWithImage(halves(64, 64), u"com.compuserve.gif"_ns, {}), samplePDF("rich.pdf")};
  constexpr std::uint32_t kCuts = 20;
  for (const NSData &file : files) {
    for (std::uint32_t cut = 0; cut < kCuts; ++cut) {
      NSError error;
      const NSData data = file.subdataWithRange({0, file.length() / kCuts * cut});
      const auto reps = NSImageRep::imageRepsWithData(data, {}, &error);
      const bool isDrawn = !reps.empty() && drawn(*reps[0], 32, 32, {}, &error);
      EXPECT_TRUE(isDrawn || error) << cut;
    }
  }
}

}  // namespace
}  // namespace nimbo
