// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/CGImageDestination.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

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
      for (const NSString &name : {u"DPIWidth"_ns, u"DPIHeight"_ns})
        EXPECT_NEAR(source->properties().objectForKey(name).real().value_or(0), c.keepsResolution ? 144 : 72,
                    0.5)
            << c.type.UTF8String();
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

TEST(CGImageDestination, PutsTheFieldsOfTIFFInTheirOrder) {
  for (const std::uint32_t height : {1u, 128u, 129u, 300u}) {
    const NSData data = dataWithImage(quarteredImage(5, height), u"public.tiff"_ns, {.usesLZW = false});
    const auto number = [&](std::size_t place, std::size_t bytes) {
      std::uint32_t value = 0;
      for (std::size_t i = bytes; i-- > 0;) value = value << 8 | data.span()[place + i];
      return value;
    };
    const std::uint32_t directory = number(4, 4);
    std::map<std::uint32_t, std::pair<std::uint32_t, std::uint32_t>> fields;
    std::uint32_t last = 0;
    for (std::uint32_t i = 0; i < number(directory, 2); ++i) {
      const std::size_t entry = directory + 2 + 12 * i;
      const std::uint32_t tag = number(entry, 2);
      EXPECT_LT(last, tag);
      last = tag;
      fields[tag] = {number(entry + 4, 4), number(entry + 8, 4)};
    }
    const auto values = [&](std::uint32_t tag) {
      const auto &[count, value] = fields[tag];
      std::vector<std::uint32_t> all;
      for (std::uint32_t i = 0; i < count; ++i) all.push_back(count == 1 ? value : number(value + 4 * i, 4));
      return all;
    };
    // The strips stand one behind the other, up to the end of the file.
    const std::vector<std::uint32_t> places = values(273), lengths = values(279);
    ASSERT_EQ(places.size(), (height + 127) / 128);
    ASSERT_EQ(lengths.size(), places.size());
    std::uint32_t end = places[0], rows = 0;
    for (std::size_t i = 0; i < places.size(); ++i) {
      EXPECT_EQ(places[i], end);
      EXPECT_EQ(lengths[i], std::min(height - rows, 128u) * 5 * 3);
      end += lengths[i];
      rows += 128;
    }
    EXPECT_EQ(end, data.length());
    EXPECT_EQ(values(278), std::vector{128u});
    EXPECT_EQ(number(fields[282].second, 4), 7200u);
    EXPECT_EQ(number(fields[282].second + 4, 4), 100u);
    EXPECT_EQ(fields[283].second, fields[282].second);
  }
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
