// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/CGImageDestination.hpp"

#include <gtest/gtest.h>

#include "platform/ImageIO/CGImageSource.hpp"
#include "tests/platform/ImageIO/QuarteredImage.hpp"

namespace nimbo {
namespace {

TEST(CGImageDestination, WritesWhatIsReadAgain) {
  const struct {
    NSString type;
    bool keepsAlpha, keepsResolution;
    int tolerance;
    bool usesLZW = true;
  } cases[] = {
      {u"public.tiff"_ns, true, true, 2},
      {u"public.tiff"_ns, true, true, 0, false},
      {u"public.png"_ns, true, true, 2},
      {u"public.jpeg"_ns, false, true, 12},
      {u"com.compuserve.gif"_ns, false, false, 12},
      {u"com.microsoft.bmp"_ns, false, true, 2},
      {u"public.jpeg-2000"_ns, true, false, 12},
      {u"org.webmproject.webp"_ns, true, false, 12},
      {u"public.heic"_ns, true, false, 12},
  };
  for (const auto &c : cases)
    for (const int alpha : {255, 100}) {
      NSError error;
      const CGImageDestinationOptions options = {
          .usesLZW = c.usesLZW, .compressionFactor = 0.95F, .dotsPerInch = 144};
      // Odd sides, as rows are padded by some, and so many rows that others make two strips of them.
      const NSData data = dataWithImage(quarteredImage(67, 149, alpha), c.type, options, &error);
      const auto source = CGImageSource::sourceWithData(data, &error);
      ASSERT_TRUE(source) << c.type.UTF8String() << ": " << error.localizedFailureReason.UTF8String();
      EXPECT_EQ(source->type(), c.type);
      if (c.keepsResolution) {
        EXPECT_NEAR(source->properties().objectForKey(u"DPIWidth"_ns).real().value_or(0), 144, 0.5)
            << c.type.UTF8String();
      }
      const CGImage image = source->createImageAtIndex(0, {}, &error);
      EXPECT_EQ(image.width(), 67u) << c.type.UTF8String();
      EXPECT_EQ(image.height(), 149u) << c.type.UTF8String();
      if (alpha != 255 && c.type == u"com.compuserve.gif"_ns) continue;
      Quarters expected = quartersOf(quarteredImage(67, 149, alpha));
      if (!c.keepsAlpha)
        for (auto &quarter : expected)
          for (int &part : quarter) part = part + 255 - alpha;
      EXPECT_LE(difference(quartersOf(image), expected), c.tolerance) << c.type.UTF8String() << " " << alpha;
    }
}

TEST(CGImageDestination, WritesSeveralImages) {
  for (const bool usesLZW : {false, true}) {
    const CGImageDestinationOptions options = {.usesLZW = usesLZW};
    const auto tiff = CGImageSource::sourceWithData(
        dataWithImages({quarteredImage(40, 30), quarteredImage(301, 201, 50), quarteredImage(7, 5)},
                       u"public.tiff"_ns, options));
    ASSERT_TRUE(tiff);
    ASSERT_EQ(tiff->count(), 3u);
    EXPECT_EQ(difference(quartersOf(tiff->createImageAtIndex(0, {})), kQuarters), 0);
    EXPECT_LE(difference(quartersOf(tiff->createImageAtIndex(1, {})), quartersOf(quarteredImage(8, 8, 50))), 1);
    EXPECT_EQ(tiff->createImageAtIndex(2, {}).width(), 7u);
    EXPECT_EQ(difference(quartersOf(tiff->createImageAtIndex(2, {})), kQuarters), 0);
  }
  const auto gif = CGImageSource::sourceWithData(
      dataWithImages({quarteredImage(40, 30), quarteredImage(40, 30, 0)}, u"com.compuserve.gif"_ns, {}));
  ASSERT_TRUE(gif);
  EXPECT_EQ(gif->count(), 2u);
}

TEST(CGImageDestination, SaysWhatItCannotWrite) {
  const CGImage image = quarteredImage(4, 4);
  const CGImage other = quarteredImage(5, 4);
  const struct {
    std::vector<CGImage> images;
    NSString type;
    ErrorCode code;
  } cases[] = {
      {{image}, u"public.svg-image"_ns, ErrorCode::unsupportedType},
      {{image}, NSString(), ErrorCode::unsupportedType},
      {{image, image}, u"public.png"_ns, ErrorCode::unsupportedType},
      {{image, other}, u"com.compuserve.gif"_ns, ErrorCode::unsupportedType},
      {{}, u"public.png"_ns, ErrorCode::incomplete},
      {{CGImage()}, u"public.png"_ns, ErrorCode::incomplete},
  };
  for (const auto &c : cases) {
    NSError error;
    EXPECT_FALSE(dataWithImages(c.images, c.type, {}, &error));
    EXPECT_EQ(error.errorCode(), c.code) << c.type.UTF8String();
  }
}

}  // namespace
}  // namespace nimbo
