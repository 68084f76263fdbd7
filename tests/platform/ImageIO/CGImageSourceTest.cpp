// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/CGImageSource.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace nimbo {
namespace {

using namespace std::literals;

NSString example(const char *name) {
  return NSString::stringWithUTF8String(std::string(EXAMPLES_FOLDER "/") + name);
}

NSData dataWithBytes(std::string_view bytes) {
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

TEST(CGImageSource, GivesTypedProperties) {
  const auto source = CGImageSource::sourceWithContentsOfFile(example("leaf.jpg"));
  ASSERT_TRUE(source);
  EXPECT_EQ(source->type(), u"public.jpeg"_ns);
  EXPECT_EQ(source->count(), 1u);
  const NSDictionary &properties = source->properties();
  EXPECT_EQ(properties.objectForKey(u"PixelWidth"_ns), id(480));
  EXPECT_EQ(properties.objectForKey(u"DPIHeight"_ns), id(300.0));
  EXPECT_EQ(properties.objectForKey(u"Orientation"_ns), id(6));
  EXPECT_EQ(properties.objectForKey(u"ProfileName"_ns), id(u"sRGB"_ns));
  const NSDictionary exif = properties.objectForKey(u"{Exif}"_ns).dictionary();
  EXPECT_EQ(exif.objectForKey(u"ExposureTime"_ns), id(0.008));
  EXPECT_EQ(exif.objectForKey(u"ISOSpeedRatings"_ns), id(NSArray{200}));
  const NSDictionary gps = properties.objectForKey(u"{GPS}"_ns).dictionary();
  EXPECT_NEAR(gps.objectForKey(u"Latitude"_ns).real().value_or(0), 33.86, 1e-9);
  EXPECT_EQ(gps.objectForKey(u"LatitudeRef"_ns), id(u"S"_ns));
}

TEST(CGImageSource, ReadsFromMemoryWhatItReadsFromTheFile) {
  for (const char *name : {"leaf.jpg", "leaf.png"}) {
    const auto file = CGImageSource::sourceWithContentsOfFile(example(name));
    const auto data = CGImageSource::sourceWithData(NSData::dataWithContentsOfFile(example(name)));
    ASSERT_TRUE(file && data) << name;
    EXPECT_EQ(file->properties(), data->properties()) << name;
    EXPECT_EQ(file->type(), data->type()) << name;
  }
}

TEST(CGImageSource, KnowsOtherFormats) {
  // A bitmap of 3 by 2 pixels, and a black and white animation of two frames.
  const std::string bmp =
      "BM\x4e\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\3\0\0\0\2\0\0\0\1\0\x18\0"s + std::string(48, '\0');
  const std::string frame = ",\0\0\0\0\2\0\1\0\0\2\2\x44\x0a\0"s;
  const std::string gif = "GIF89a\2\0\1\0\x80\0\0\0\0\0\xff\xff\xff"s + frame + frame + ";";
  struct Case {
    const std::string &bytes;
    NSString type;
    int width;
    int height;
    std::uint32_t count;
  };
  for (const Case &c :
       {Case{bmp, u"com.microsoft.bmp"_ns, 3, 2, 1}, {gif, u"com.compuserve.gif"_ns, 2, 1, 2}}) {
    const auto source = CGImageSource::sourceWithData(dataWithBytes(c.bytes));
    ASSERT_TRUE(source) << c.type.UTF8String();
    EXPECT_EQ(source->type(), c.type);
    EXPECT_EQ(source->count(), c.count);
    EXPECT_EQ(source->properties().objectForKey(u"PixelWidth"_ns), id(c.width));
    EXPECT_EQ(source->properties().objectForKey(u"PixelHeight"_ns), id(c.height));
  }
}

TEST(CGImageSource, WhatIsNoImageIsNull) {
  for (const std::string_view bytes :
       {""sv, "x"sv, "2 2\n1 2\n3 4\n"sv, "<svg xmlns='http://www.w3.org/2000/svg'/>"sv, "%PDF-1.4\n"sv,
        "P6 1 1 255\nabc"sv, "\xff\xd8\xff"sv, "BM"sv})
    EXPECT_FALSE(CGImageSource::sourceWithData(dataWithBytes(bytes))) << bytes;
  for (const char *name : {"", "missing.jpg", "article.pdf", "quiver.c"})
    EXPECT_FALSE(CGImageSource::sourceWithContentsOfFile(example(name))) << name;
  EXPECT_FALSE(CGImageSource::sourceWithContentsOfFile(NSString()));
}

TEST(CGImageSource, TakesNoNameForAnythingButAFile) {
  const auto folder = std::filesystem::path(testing::TempDir()) / "http:";
  std::filesystem::create_directories(folder / "leaf.example");
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(testing::TempDir());
  for (const char *name : {"http://leaf.example/a.jpg", "leaf.jpg[page=2]", "-"}) {
    std::filesystem::copy_file(EXAMPLES_FOLDER "/leaf.jpg", name,
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_TRUE(CGImageSource::sourceWithContentsOfFile(NSString::stringWithUTF8String(name))) << name;
    std::filesystem::remove(name);
  }
  std::filesystem::current_path(before);
  std::filesystem::remove_all(folder);
}

TEST(CGImageSource, SurvivesDamage) {
  for (const char *name : {"leaf.jpg", "leaf.png"}) {
    const NSData whole = NSData::dataWithContentsOfFile(example(name));
    for (std::uint32_t length = 1; length < whole.length(); length += 1 + length / 16) {
      CGImageSource::sourceWithData(dataWithBytes(whole.view().substr(0, length)));
      std::string changed(whole.view());
      changed[length] = static_cast<char>(~changed[length]);
      CGImageSource::sourceWithData(dataWithBytes(changed));
    }
    EXPECT_TRUE(CGImageSource::sourceWithData(whole)) << name;
  }
}

}  // namespace
}  // namespace nimbo
