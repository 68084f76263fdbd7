// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/CGImageSource.hpp"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/Foundation/System/EngineLibrary.hpp"
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
    EXPECT_EQ(source->properties().objectForKey(u"HasAlpha"_ns), id(false));
  }
}

TEST(CGImageSource, SaysWhyItIsNull) {
  const TemporaryFolder folder;
  // Its header alone, with no sides.
  const std::string photoshop = "8BPS\0\1"s + std::string(200, '\0');
  const std::pair<std::string_view, ErrorCode> contents[] = {
      {""sv, ErrorCode::incomplete},
      {"x"sv, ErrorCode::unsupportedType},
      {"2 2\n1 2\n3 4\n"sv, ErrorCode::unsupportedType},
      {"<svg xmlns='http://www.w3.org/2000/svg'>"sv, ErrorCode::damaged},
      {"%PDF-1.4\n"sv, ErrorCode::unsupportedType},
      {"%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 9 9\n"sv, ErrorCode::unsupportedType},
      {"P6 picture"sv, ErrorCode::unsupportedType},
      {"P6\n2"sv, ErrorCode::unsupportedType},
      {"P6\n2 0 255\n"sv, ErrorCode::unsupportedType},
      {"P62 2 255\n"sv, ErrorCode::unsupportedType},
      {"P6"sv, ErrorCode::unsupportedType},
      {"\x01\xda\0\1\0\3\0\0\0\0\0\0"sv, ErrorCode::unsupportedType},
      {"\0\0\0\x64\0\0\0\7\0\0\0\2\0\0\0\x18\0\0\0\0\0\0\0\0"sv, ErrorCode::unsupportedType},
      {"#define a 5\n"sv, ErrorCode::unsupportedType},
      {"qoif\0\0\0\0\0\0\0\1\4\0"sv, ErrorCode::damaged},
      {"DDS \x7c\0\0\0"sv, ErrorCode::damaged},
      {"\xff\x0a"sv, ErrorCode::damaged},
      {"\0\0\1\0\1\0\0\0\0\0\0\0\0\0\0\0\0\0\x16\0\0\0"sv, ErrorCode::damaged},
      {"\0\0\1\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x16\0\0\0"sv, ErrorCode::unsupportedType},
      {"\0\0\1\0\1\0\0\0\0\1\0\0\0\0\0\0\0\0\x16\0\0\0"sv, ErrorCode::unsupportedType},
      {"\0\0\1\0\1\0\0\0\0\0\0\0\0\0\0\0\0\0\x15\0\0\0"sv, ErrorCode::unsupportedType},
      {"\0\0\3\0\1\0\0\0\0\0\0\0\0\0\0\0\0\0\x16\0\0\0"sv, ErrorCode::unsupportedType},
      {"\0\0\0\x18\x66typisom\0\0\2\0isomiso2"sv, ErrorCode::unsupportedType},
      {"BM"sv, ErrorCode::unsupportedType},
      {"BM\x4e\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\0\0\0\0\2\0\0\0"sv, ErrorCode::damaged},
      {"\xff\xd8\xff"sv, ErrorCode::damaged},
      {"\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0"sv, ErrorCode::damaged},
      {photoshop, ErrorCode::damaged},
  };
  for (const auto &[bytes, code] : contents) {
    NSError error;
    EXPECT_FALSE(CGImageSource::sourceWithData(dataWithBytes(bytes), &error)) << bytes;
    EXPECT_EQ(error.errorCode(), code) << bytes << ": " << error.localizedFailureReason.UTF8String();
    NSError errorOfFile;
    EXPECT_FALSE(CGImageSource::sourceWithContentsOfFile(folder.write("image", bytes), &errorOfFile)) << bytes;
    EXPECT_EQ(errorOfFile, error) << bytes;
  }
  const std::pair<NSString, ErrorCode> files[] = {
      {example(""), ErrorCode::unreadable},
      {example("missing.jpg"), ErrorCode::noSuchFile},
      {example("quiver.c"), ErrorCode::unsupportedType},
      {NSString(), ErrorCode::noSuchFile},
  };
  for (const auto &[path, code] : files) {
    NSError error;
    EXPECT_FALSE(CGImageSource::sourceWithContentsOfFile(path, &error)) << path.UTF8String();
    EXPECT_EQ(error.errorCode(), code) << path.UTF8String();
  }
  NSError error;
  EXPECT_FALSE(CGImageSource::sourceWithData(NSData(), &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::incomplete);
}

TEST(CGImageSource, KnowsFormatsWithoutSignaturesByAllThatTheySay) {
  const std::string TGA = "\0\0\2\0\0\0\0\0\0\0\0\0\2\0\1\0\x20\0"s;
  std::string PCX = "\x0a\5\1\x08\0\0\0\0\1\0\0\0"s + std::string(116, '\0');
  using Changes = std::vector<std::pair<std::size_t, int>>;
  const struct {
    const std::string &file;
    Changes changes;
    bool isKnown;
  } cases[] = {
      {TGA, {}, true},
      {TGA, {{2, 10}}, true},
      {TGA, {{2, 0}}, false},
      {TGA, {{2, 4}}, false},
      {TGA, {{2, 18}}, false},
      {TGA, {{1, 2}, {7, 24}}, false},
      {TGA, {{1, 1}, {7, 24}}, true},
      {TGA, {{1, 1}, {7, 15}}, true},
      {TGA, {{1, 1}, {7, 16}}, true},
      {TGA, {{1, 1}, {7, 32}}, true},
      {TGA, {{1, 1}}, false},
      {TGA, {{1, 1}, {7, 8}}, false},
      {TGA, {{3, 1}}, false},
      {TGA, {{4, 1}}, false},
      {TGA, {{5, 1}}, false},
      {TGA, {{6, 1}}, false},
      {TGA, {{7, 1}}, false},
      {TGA, {{16, 15}}, true},
      {TGA, {{16, 16}}, true},
      {TGA, {{16, 24}}, true},
      {TGA, {{16, 8}}, false},
      {TGA, {{2, 3}, {16, 8}}, true},
      {TGA, {{2, 3}}, false},
      {TGA, {{2, 1}, {16, 8}}, false},
      {TGA, {{1, 1}, {2, 1}, {7, 24}, {16, 8}}, true},
      {TGA, {{1, 1}, {2, 9}, {7, 24}, {16, 8}}, true},
      {TGA, {{1, 1}, {2, 1}, {7, 24}, {16, 16}}, false},
      {TGA, {{17, 0x3f}}, true},
      {TGA, {{17, 0x40}}, false},
      {TGA, {{17, 0x80}}, false},
      {TGA, {{12, 0}}, false},
      {TGA, {{14, 0}}, false},
      {PCX, {}, true},
      {PCX, {{0, 11}}, false},
      {PCX, {{1, 6}}, false},
      {PCX, {{2, 0}}, true},
      {PCX, {{2, 2}}, false},
      {PCX, {{3, 1}}, true},
      {PCX, {{3, 2}}, true},
      {PCX, {{3, 4}}, true},
      {PCX, {{3, 3}}, false},
      {PCX, {{3, 0}}, false},
      {PCX, {{64, 1}}, false},
      {PCX, {{4, 2}}, false},
      {PCX, {{6, 1}}, false},
  };
  for (const auto &[file, changes, isKnown] : cases) {
    std::string bytes = file;
    for (const auto &[place, value] : changes) bytes[place] = static_cast<char>(value);
    NSError error;
    const auto source = CGImageSource::sourceWithData(dataWithBytes(bytes), &error);
    EXPECT_EQ(static_cast<bool>(source), isKnown) << testing::PrintToString(changes) << file.size();
    EXPECT_EQ(error.errorCode(), isKnown ? ErrorCode::none : ErrorCode::unsupportedType)
        << testing::PrintToString(changes) << file.size();
    if (!source) continue;
    EXPECT_EQ(source->type(), &file == &TGA ? u"com.truevision.tga-image"_ns : u"com.zsoft.pcx-image"_ns);
    EXPECT_EQ(source->properties().objectForKey(u"PixelWidth"_ns), id(2));
    EXPECT_EQ(source->properties().objectForKey(u"PixelHeight"_ns), id(1));
  }
  for (const std::string &file : {TGA, PCX})
    EXPECT_FALSE(CGImageSource::sourceWithData(dataWithBytes(file.substr(0, file.size() - 1))));
}

TEST(CGImageSource, KnowsDrawingsBehindWhatMayStandInFront) {
  const std::string svg = "<svg xmlns='http://www.w3.org/2000/svg' width='3' height='2'/>";
  const std::pair<std::string, bool> cases[] = {
      {svg, true},
      {"\xef\xbb\xbf" + svg, true},
      {" \t\r\n" + svg, true},
      {"<?xml version='1.0'?>\n<!-- <a> --><!DOCTYPE svg>\n" + svg, true},
      {"<s:svg xmlns:s='http://www.w3.org/2000/svg' width='3' height='2'/>", false},
      {"<svg:svg xmlns:svg='http://www.w3.org/2000/svg' width='3' height='2'/>", true},
      {"<!-- " + svg, false},
      {"<!DOCTYPE html>" + svg, false},
      {"text" + svg, false},
  };
  for (const auto &[bytes, isKnown] : cases) {
    NSError error;
    const auto source = CGImageSource::sourceWithData(dataWithBytes(bytes), &error);
    EXPECT_EQ(source ? source->type() : NSString(), isKnown ? u"public.svg-image"_ns : NSString()) << bytes;
    EXPECT_EQ(error.errorCode(), isKnown ? ErrorCode::none : ErrorCode::unsupportedType) << bytes;
    if (source) {
      EXPECT_EQ(source->properties().objectForKey(u"PixelWidth"_ns), id(3)) << bytes;
    }
  }
}

TEST(CGImageSource, SaysThatMetadataIsMissing) {
  NSError error;
  const NSData png = NSData::dataWithContentsOfFile(example("leaf.png"));
  EXPECT_TRUE(CGImageSource::sourceWithData(png, &error));
  EXPECT_FALSE(error);
  EXPECT_TRUE(CGImageSource::sourceWithData(png.subdataWithRange({0, png.length() / 2}), &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::damaged);

  // A TIFF of one pixel with a maker's name, and then of a size at which nobody wants it in memory.
  const auto entry = [](char tag, char value) { return std::string{tag, 1, 3, 0, 1, 0, 0, 0, value, 0, 0, 0}; };
  const std::string tiff = "II*\0\x08\0\0\0\x09\0"s + entry(0, 1) + entry(1, 1) + entry(2, 8) + entry(3, 1) +
                           entry(6, 1) + "\x0f\1\2\0\4\0\0\0Oak\0"s + entry(17, 122) + entry(22, 1) +
                           entry(23, 1) + std::string(20, '\0');
  const TemporaryFolder folder;
  const NSString path = folder.write("a.tiff", tiff);
  for (const bool isLarge : {false, true}) {
    if (isLarge) std::filesystem::resize_file(folder.path() / "a.tiff", std::uintmax_t{3} << 30);
    error = {};
    const auto source = CGImageSource::sourceWithContentsOfFile(path, &error);
    ASSERT_TRUE(source) << error.localizedFailureReason.UTF8String();
    EXPECT_FALSE(error) << error.localizedFailureReason.UTF8String();
    EXPECT_EQ(source->properties().objectForKey(u"{TIFF}"_ns).dictionary().objectForKey(u"Make"_ns),
              id(u"Oak"_ns));
  }
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

TEST(EngineLibrary, IsOneAndTheSame) {
  NSError error;
  const void *engine = engineNamed("imageio", &error);
  EXPECT_TRUE(engine) << error.localizedFailureReason.UTF8String();
  EXPECT_EQ(engineNamed("imageio"), engine);
  EXPECT_FALSE(error);
  EXPECT_FALSE(engineNamed("none", &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::other);
}

}  // namespace
}  // namespace nimbo
