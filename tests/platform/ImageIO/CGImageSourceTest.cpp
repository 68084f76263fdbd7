// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/CGImageSource.hpp"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

using namespace std::literals;

NSString example(const char *name) {
  return NSString::stringWithUTF8String(std::string(EXAMPLES_FOLDER "/") + name);
}

NSData dataWithBytes(std::string_view bytes) {
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

TEST(CGImageSource, KnowsOtherFormats) {
  // A bitmap of 3 by 2 pixels, and a black and white animation of two frames.
  const std::string bmp =
      "BM\x4e\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\3\0\0\0\2\0\0\0\1\0\x18\0"s + std::string(48, '\0');
  const std::string frame = ",\0\0\0\0\2\0\1\0\0\2\2\x44\x0a\0"s;
  const std::string gif = "GIF89a\2\0\1\0\x80\0\0\0\0\0\xff\xff\xff"s + frame + frame + ";";
  const struct {
    const std::string &bytes;
    NSString type;
    int width, height;
    std::uint32_t count;
  } cases[] = {{bmp, u"com.microsoft.bmp"_ns, 3, 2, 1}, {gif, u"com.compuserve.gif"_ns, 2, 1, 2}};
  for (const auto &c : cases) {
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
  const TemporaryFolder folder;
  std::filesystem::create_directories(folder.path() / "http:/leaf.example");
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  for (const char *name : {"http://leaf.example/a.jpg", "leaf.jpg[page=2]", "-"}) {
    std::filesystem::copy_file(EXAMPLES_FOLDER "/leaf.jpg", name);
    EXPECT_TRUE(CGImageSource::sourceWithContentsOfFile(NSString::stringWithUTF8String(name))) << name;
  }
  std::filesystem::current_path(before);
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

}  // namespace
}  // namespace nimbo
