// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/NSImage+NSImageNimboExtensions/Thumbnails.hpp"

#include <gtest/gtest.h>

#include "Classes/Images/NSImage+NSImageNimboExtensions/Redrawing.hpp"
#include "platform/ImageIO/CGImageDestination.hpp"
#include "tests/Classes/Images/ImageSamples.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

/// An orientation as Exif has it, to stand behind the first marker of a JPEG file.
std::string exifOrientation(char orientation) {
  using namespace std::string_literals;
  return "\xff\xe1\x00\x22"
         "Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0"s +
         orientation + "\0\0\0\0\0\0"s;
}

TEST(Thumbnails, AreMadeOfFiles) {
  const TemporaryFolder folder;
  const NSData png = dataWithImage(halves(600, 300, kRed, kBlue), u"public.png"_ns, {});
  const NSString path = folder.write("a.png", png.view());
  NSDictionary properties;
  NSError error;
  for (const bool always : {false, true}) {
    const NSImage thumbnail =
        thumbnailForFile(path, 100, always, true, &properties, Deadline::after(20), &error);
    ASSERT_TRUE(thumbnail) << error.localizedFailureReason.UTF8String();
    EXPECT_EQ(thumbnail.size(), (NSSize{100, 50}));
    EXPECT_EQ(pixelAt(drawnPixels(thumbnail), 50, 2), kRed);
    EXPECT_EQ(pixelAt(drawnPixels(thumbnail), 50, 47), kBlue);
    EXPECT_EQ(properties.objectForKey(u"PixelWidth"_ns).integer(), 600);
  }
  EXPECT_EQ(thumbnailForFile(path, 1000, false, true).size(), (NSSize{600, 300}));
  EXPECT_EQ(imageForFile(path, true, &properties).size(), (NSSize{600, 300}));
  EXPECT_EQ(properties.objectForKey(u"PixelHeight"_ns).integer(), 300);
}

TEST(Thumbnails, AreTurnedWhenAskedTo) {
  const TemporaryFolder folder;
  std::string jpeg(dataWithImage(halves(64, 32, kRed, kBlue), u"public.jpeg"_ns, {}).view());
  jpeg.insert(2, exifOrientation(6));  // To be turned clockwise.
  const NSString path = folder.write("a.jpg", jpeg);
  const NSSize lying = {64, 32}, standing = {32, 64};
  EXPECT_EQ(thumbnailForFile(path, 64, true, false).size(), lying);
  EXPECT_EQ(thumbnailForFile(path, 64, true, true).size(), standing);
  EXPECT_EQ(imageForFile(path, false).size(), lying);
  const NSImage turned = imageForFile(path, true);
  EXPECT_EQ(turned.size(), standing);
  const Pixel right = pixelAt(drawnPixels(turned), 30, 32);
  EXPECT_TRUE(right[0] > 200 && right[2] < 50) << int(right[0]) << ", " << int(right[2]);
}

TEST(Thumbnails, OfNoImagesAreNil) {
  const TemporaryFolder folder;
  const std::string png(dataWithImage(halves(600, 300, kRed, kBlue), u"public.png"_ns, {}).view());
  for (const NSString &path :
       {NSString(), u""_ns, folder.string("missing.png"), folder.string(""), folder.write("empty.png", ""),
        folder.write("text.png", "text"), folder.write("cut.png", png.substr(0, 20)),
        folder.write("page.pdf", "%PDF-1.4\n")}) {
    NSDictionary properties = {{u"old"_ns, 1}};
    NSError error;
    EXPECT_FALSE(thumbnailForFile(path, 256, false, true, &properties, Deadline::after(20), &error));
    EXPECT_FALSE(properties) << path.UTF8String();
    EXPECT_TRUE(error) << path.UTF8String();
    EXPECT_FALSE(imageForFile(path, true, &properties));
  }
  NSError error;
  const NSString whole = folder.write("whole.png", png);
  EXPECT_FALSE(thumbnailForFile(whole, 256, false, true, nullptr, Deadline::after(0), &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::timeLimit) << error.localizedFailureReason.UTF8String();
  EXPECT_FALSE(imageWithCGImageRef(CGImage()));
}

}  // namespace
}  // namespace nimbo
