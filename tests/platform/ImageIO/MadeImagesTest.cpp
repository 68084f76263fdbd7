// SPDX-License-Identifier: Apache-2.0
// Pictures that no program at hand writes: each is made by hand from its format's description.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <string>
#include <vector>

#include "platform/ImageIO/CGImageDestination.hpp"
#include "platform/ImageIO/CGImageSource.hpp"
#include "tests/platform/ImageIO/QuarteredImage.hpp"

namespace nimbo {
namespace {

using namespace std::literals;
std::string bigEndian(std::uint64_t number, int bytes) {
  std::string text;
  for (int i = bytes - 1; i >= 0; --i) text += static_cast<char>(number >> (8 * i));
  return text;
}

std::string littleEndian(std::uint64_t number, int bytes) {
  std::string text = bigEndian(number, bytes);
  std::ranges::reverse(text);
  return text;
}

/// The samples of the image's first pixels.
std::vector<int> samplesOf(const CGImage &image, std::size_t pixels) {
  if (image.width() < pixels) return {};
  return {image.pixels(), image.pixels() + pixels * CGImage::kBytesPerPixel};
}

/// What is wanted of an image without colours that hides nothing.
std::vector<int> grays(std::initializer_list<int> values) {
  std::vector<int> samples;
  for (const int value : values) samples.insert(samples.end(), {value, value, value, 255});
  return samples;
}

std::string photoshop(int version, int channels, std::uint32_t width, int depth, int mode,
                      const std::string &behind) {
  return "8BPS" + bigEndian(version, 2) + std::string(6, '\0') + bigEndian(channels, 2) + bigEndian(1, 4) +
         bigEndian(width, 4) + bigEndian(depth, 2) + bigEndian(mode, 2) + bigEndian(0, 4) + behind;
}

TEST(MadeImages, UndoesThePackingOfRowsInPhotoshop) {
  const struct {
    std::string packed;
    std::array<int, 4> row;
  } cases[] = {
      {"\3\x10\x80\x90\xf0"s, {0x10, 0x80, 0x90, 0xf0}},
      {"\xfd\x40"s, {0x40, 0x40, 0x40, 0x40}},
      {"\x80\xff\x20\x80\1\x30\x50"s, {0x20, 0x20, 0x30, 0x50}},
      {"\7\x10\x80"s, {0x10, 0x80, 0, 0}},
      {"\x82\x70"s, {0x70, 0x70, 0x70, 0x70}},
      {"\1\x10\x80\xff"s, {0x10, 0x80, 0, 0}},
      {std::string(100, '\x80') + "\xfd\x40", {0x40, 0x40, 0x40, 0x40}},
  };
  for (const auto &c : cases) {
    const std::string behind =
        std::string(8, '\0') + bigEndian(1, 2) + bigEndian(c.packed.size(), 2) + c.packed;
    const auto source = CGImageSource::sourceWithData(dataWithBytes(photoshop(1, 1, 4, 8, 1, behind)));
    const CGImage image = source ? source->createImageAtIndex(0, {}) : CGImage();
    ASSERT_EQ(image.width(), 4u) << testing::PrintToString(c.packed);
    for (std::size_t x = 0; x < 4; ++x)
      EXPECT_NEAR(image.pixels()[x * CGImage::kBytesPerPixel], c.row[x], 1) << testing::PrintToString(c.packed);
  }
}

TEST(MadeImages, ReadsTheKindsOfPhotoshop) {
  const std::string noResources = bigEndian(0, 4), noLayers = bigEndian(0, 4), plain = "\0\0"s;
  // Of a large document, lengths have 8 bytes, and those of packed rows have 4. It has a negative number of
  // layers.
  const std::string largeLayers = bigEndian(12, 8) + bigEndian(2, 8) + "\xff\xff\0\0"s;
  const struct {
    std::string name, bytes;
    std::vector<int> samples;
  } cases[] = {
      // A bit that is set is black.
      {"bitmap", photoshop(1, 1, 10, 1, 0, noResources + noLayers + plain + "\xa0\x40"),
       grays({0, 255, 0, 255, 255, 255, 255, 255, 255, 0})},
      {"cut", photoshop(1, 1, 3, 8, 1, noResources + noLayers + plain + "\x33\x66"), grays({0x33, 0x66, 0})},
      {"Lab", photoshop(1, 3, 2, 8, 9, noResources + noLayers + plain + "\xff\0\x80\x80\x80\x80"s),
       grays({255, 0})},
      {"deep Lab",
       photoshop(1, 3, 2, 16, 9,
                 noResources + noLayers + plain + "\xff\xff\0\0\x80\x80\x80\x80\x80\x80\x80\x80"s),
       grays({255, 0})},
      {"large",
       photoshop(2, 2, 2, 8, 1,
                 noResources + largeLayers + "\0\1"s + bigEndian(2, 4) + bigEndian(3, 4) +
                     "\xff\xf0"
                     "\1\x80\xff"),
       {120, 120, 120, 128, 240, 240, 240, 255}},
  };
  for (const auto &c : cases) {
    NSError error;
    const auto source = CGImageSource::sourceWithData(dataWithBytes(c.bytes), &error);
    const std::vector<int> samples =
        samplesOf(source ? source->createImageAtIndex(0, {}, &error) : CGImage(), c.samples.size() / 4);
    ASSERT_EQ(samples.size(), c.samples.size()) << c.name << error.localizedFailureReason.UTF8String();
    for (std::size_t i = 0; i < samples.size(); ++i)
      EXPECT_NEAR(samples[i], c.samples[i], 2) << c.name << " " << i;
  }
}

TEST(MadeImages, TellsOfKindsOfPhotoshopThatAreNotRead) {
  constexpr int kBitmap = 0, kGray = 1, kIndexed = 2, kRGB = 3, kMultichannel = 7;
  const std::string behind = bigEndian(0, 8) + "\0\0"s + std::string(1024, '\x40');
  const std::pair<const char *, std::string> cases[] = {
      {"no palette", photoshop(1, 1, 4, 8, kIndexed, behind)},
      {"a bitmap of bytes", photoshop(1, 1, 4, 8, kBitmap, behind)},
      {"bits of gray", photoshop(1, 1, 4, 1, kGray, behind)},
      {"floats", photoshop(1, 1, 4, 32, kGray, behind)},
      {"a missing channel", photoshop(1, 2, 4, 8, kRGB, behind)},
      {"channels without a meaning", photoshop(1, 3, 4, 8, kMultichannel, behind)},
  };
  for (const auto &[name, bytes] : cases) {
    NSError error;
    const auto source = CGImageSource::sourceWithData(dataWithBytes(bytes), &error);
    ASSERT_TRUE(source) << name << error.localizedFailureReason.UTF8String();
    EXPECT_EQ(source->type(), u"com.adobe.photoshop-image"_ns) << name;
    EXPECT_EQ(source->properties().objectForKey(u"PixelWidth"_ns), id(4)) << name;
    EXPECT_EQ(source->properties().objectForKey(u"PixelHeight"_ns), id(1)) << name;
    EXPECT_FALSE(source->createImageAtIndex(0, {}, &error)) << name;
    EXPECT_EQ(error.errorCode(), ErrorCode::damaged) << name;
  }
}

TEST(MadeImages, TellsOfPhotoshopWhatItsHeaderSays) {
  // The horizontal resolution, its unit and another one, and the vertical one; behind a resource with a name.
  const std::string content =
      bigEndian(300 << 16, 4) + bigEndian(1, 4) + bigEndian(150 << 16, 4) + bigEndian(1, 4);
  const std::string resources = "8BIM" + bigEndian(1000, 2) + "\4name\0"s + bigEndian(3, 4) + "odd\0"s +
                                "8BIM" + bigEndian(1005, 2) + "\0\0"s + bigEndian(content.size(), 4) + content;
  const std::string behind = bigEndian(resources.size(), 4) + resources + bigEndian(0, 4) + "\0\0"s;
  const struct {
    int channels;
    std::uint32_t width;
    int mode;
    NSString model;
    bool isRead = true;
  } cases[] = {
      {56, 4, 1, u"Gray"_ns}, {57, 4, 1, u"Gray"_ns, false},      {1, 300'000, 1, u"Gray"_ns},
      {3, 4, 3, u"RGB"_ns},   {1, 300'001, 1, u"Gray"_ns, false}, {2, 4, 3, u"RGB"_ns, false},
      {4, 4, 4, u"CMYK"_ns},  {3, 4, 4, u"CMYK"_ns, false},       {3, 4, 9, u"Lab"_ns},
      {1, 4, 8, u"Gray"_ns},  {1, 4, 5, NSString(), false},       {1, 0, 1, u"Gray"_ns, false},
  };
  for (const auto &[channels, width, mode, model, isRead] : cases) {
    const auto source =
        CGImageSource::sourceWithData(dataWithBytes(photoshop(1, channels, width, 8, mode, behind)));
    // Who reads metadata alone knows the sides of others, too.
    const NSDictionary facts = source ? source->properties() : NSDictionary();
    EXPECT_EQ(facts.objectForKey(u"Depth"_ns), isRead ? id(8) : id())
        << channels << " " << width << " " << mode;
    if (!isRead) continue;
    EXPECT_EQ(facts.objectForKey(u"ColorModel"_ns), id(model)) << mode;
    EXPECT_EQ(facts.objectForKey(u"DPIWidth"_ns), id(300.0));
    EXPECT_EQ(facts.objectForKey(u"DPIHeight"_ns), id(150.0));
    EXPECT_EQ(facts.objectForKey(u"HasAlpha"_ns), id(false));
  }
}

/// A colour profile of linear samples whose red is the blue of sRGB, and whose blue is its red.
std::string swappingProfile() {
  const auto fixed = [](double number) {
    return bigEndian(static_cast<std::uint32_t>(static_cast<std::int32_t>(number * 65536)), 4);
  };
  const auto xyz = [&](double x, double y, double z) {
    return "XYZ \0\0\0\0"s + fixed(x) + fixed(y) + fixed(z);
  };
  const std::pair<const char *, std::string> tags[] = {
      {"desc", "desc\0\0\0\0"s + bigEndian(8, 4) + "swapped\0"s + std::string(80, '\0')},
      {"wtpt", xyz(0.9642, 1, 0.8249)},
      {"rXYZ", xyz(0.1431, 0.0606, 0.7141)},
      {"gXYZ", xyz(0.3851, 0.7169, 0.0971)},
      {"bXYZ", xyz(0.4361, 0.2225, 0.0139)},
      {"rTRC", "curv"s + std::string(8, '\0')},
      {"gTRC", "curv"s + std::string(8, '\0')},
      {"bTRC", "curv"s + std::string(8, '\0')},
      {"cprt", "text\0\0\0\0none\0\0\0\0"s}};
  std::string table = bigEndian(std::size(tags), 4), contents;
  const std::size_t start = 128 + 4 + 12 * std::size(tags);
  for (const auto &[name, content] : tags) {
    table += name + bigEndian(start + contents.size(), 4) + bigEndian(content.size(), 4);
    contents += content;
  }
  const std::string header = std::string(8, '\0') + "\2\x10\0\0mntrRGB XYZ \x07\xd0\0\1\0\1\0\0\0\0\0\0"s +
                             "acsp" + std::string(28, '\0') + fixed(0.9642) + fixed(1) + fixed(0.8249) +
                             std::string(48, '\0');
  return bigEndian(start + contents.size(), 4) + header.substr(4) + table + contents;
}

TEST(MadeImages, KeepsTheProfileOfWhatIsMadeMuchSmaller) {
  constexpr std::uint32_t kWidth = 64;
  const std::string profile = swappingProfile();
  const std::string resource = "8BIM" + bigEndian(1039, 2) + "\0\0"s + bigEndian(profile.size(), 4) + profile +
                               std::string(profile.size() % 2, '\0');
  const std::string layers = bigEndian(8, 4) + bigEndian(2, 4) + "\xff\xff\0\0"s;
  std::string bytes =
      photoshop(1, 4, kWidth, 8, 3, bigEndian(resource.size(), 4) + resource + layers + "\0\0"s);
  bytes.replace(14, 4, bigEndian(kWidth, 4));
  for (const char sample : {'\xff', '\0', '\0', '\x80'}) bytes += std::string(kWidth * kWidth, sample);
  for (const std::uint32_t side : {kWidth, 4u}) {
    const CGImage image =
        thumbnail(dataWithBytes(bytes), {.maxPixelSize = side, .createFromImageAlways = true});
    EXPECT_EQ(image.width(), side);
    EXPECT_LE(difference(quartersOf(image),
                         {{{0, 0, 128, 128}, {0, 0, 128, 128}, {0, 0, 128, 128}, {0, 0, 128, 128}}}),
              3)
        << side;
  }
}

TEST(MadeImages, AnswersNoImageOfASideTooLong) {
  for (const std::uint32_t width : {CGImage::kMaximumSide, CGImage::kMaximumSide + 1}) {
    const auto source = CGImageSource::sourceWithData(
        dataWithBytes(photoshop(1, 1, width, 8, 1, bigEndian(0, 8) + "\0\0"s + std::string(width, '\x40'))));
    ASSERT_TRUE(source);
    NSError error;
    const bool isRight = width == CGImage::kMaximumSide;
    EXPECT_EQ(source->createImageAtIndex(0, {}, &error).width(), isRight ? width : 0);
    EXPECT_EQ(error.errorCode(), isRight ? ErrorCode::none : ErrorCode::tooLarge);
    EXPECT_EQ(source->createThumbnailAtIndex(0, kThumbnail).width(), 16u);
    // A column of as many pixels.
    std::string column = photoshop(1, 1, 1, 8, 1, bigEndian(0, 8) + "\0\0"s + std::string(width, '\x40'));
    column.replace(14, 4, bigEndian(width, 4));
    const auto high = CGImageSource::sourceWithData(dataWithBytes(column));
    ASSERT_TRUE(high);
    error = {};
    EXPECT_EQ(high->createImageAtIndex(0, {}, &error).height(), isRight ? width : 0);
    EXPECT_EQ(error.errorCode(), isRight ? ErrorCode::none : ErrorCode::tooLarge);
    EXPECT_EQ(high->createThumbnailAtIndex(0, kThumbnail).height(), 16u);
  }
}

TEST(MadeImages, ReadsIconsThatHoldWholeFiles) {
  const std::string small(dataWithImage(quarteredImage(8, 6), u"public.png"_ns, {}).view());
  const std::string large(dataWithImage(quarteredImage(300, 200, 128), u"public.png"_ns, {}).view());
  std::string icon = "\0\0\2\0\2\0"s, files;
  for (const std::string &file : {small, large}) {
    icon += std::string(8, '\0') + littleEndian(file.size(), 4) + littleEndian(6 + 2 * 16 + files.size(), 4);
    files += file;
  }
  const auto source = CGImageSource::sourceWithData(dataWithBytes(icon + files));
  ASSERT_TRUE(source);
  EXPECT_EQ(source->type(), u"com.microsoft.cur"_ns);
  EXPECT_EQ(source->count(), 2u);
  EXPECT_EQ(source->properties().objectForKey(u"PixelWidth"_ns), id(300));
  EXPECT_EQ(source->properties().objectForKey(u"PixelHeight"_ns), id(200));
  EXPECT_TRUE(source->createImageAtIndex(0, {}).hasAlpha());
  const CGImage second = source->createImageAtIndex(1, {});
  EXPECT_EQ(second.width(), 8u);
  EXPECT_EQ(difference(quartersOf(second), kQuarters), 0);
}

TEST(MadeImages, ReadsIconsThatHoldBitmaps) {
  // A red pixel and a blue one, which the mask hides. Rows have multiples of four bytes.
  const auto bitmap = [](int bits, int colors, const std::string &behind) {
    return littleEndian(40, 4) + littleEndian(2, 4) + littleEndian(2, 4) + littleEndian(1, 2) +
           littleEndian(static_cast<std::uint64_t>(bits), 2) + std::string(16, '\0') +
           littleEndian(static_cast<std::uint64_t>(colors), 4) + std::string(4, '\0') + behind;
  };
  const std::string direct = "\0\0\xff\xff\0\0\0\0"s, palette = "\0\0\xff\0\xff\0\0\0"s, mask = "\x40\0\0\0"s;
  const std::vector<int> hidden = {255, 0, 0, 255, 0, 0, 0, 0}, shown = {255, 0, 0, 255, 0, 0, 255, 255};
  const struct {
    const char *name;
    std::string bitmap;
    const std::vector<int> &samples;
  } cases[] = {
      {"24 bits", bitmap(24, 0, direct + mask), hidden},
      {"no mask", bitmap(24, 0, direct), shown},
      {"half a mask", bitmap(24, 0, direct + mask.substr(0, 3)), shown},
      {"two colours of 256", bitmap(8, 2, palette + "\0\1\0\0"s + mask), hidden},
      {"a bit", bitmap(1, 0, palette + "\x40\0\0\0"s + mask), hidden},
      {"alpha", bitmap(32, 0, "\0\0\xff\xff\xff\0\0\0"s), hidden},
  };
  for (const auto &c : cases) {
    const std::string icon =
        "\0\0\1\0\1\0"s + std::string(8, '\0') + littleEndian(c.bitmap.size(), 4) + littleEndian(22, 4);
    const auto source = CGImageSource::sourceWithData(dataWithBytes(icon + c.bitmap));
    ASSERT_TRUE(source) << c.name;
    EXPECT_EQ(samplesOf(source->createImageAtIndex(0, {}), 2), c.samples) << c.name;
  }
  // Of bitmaps of one size that with most bits comes first.
  const std::string few = bitmap(8, 2, palette + "\1\0\0\0"s + mask), many = bitmap(24, 0, direct + mask);
  const std::string both = "\0\0\1\0\2\0"s + std::string(8, '\0') + littleEndian(few.size(), 4) +
                           littleEndian(38, 4) + std::string(8, '\0') + littleEndian(many.size(), 4) +
                           littleEndian(38 + few.size(), 4);
  const auto source = CGImageSource::sourceWithData(dataWithBytes(both + few + many));
  ASSERT_TRUE(source);
  ASSERT_EQ(source->count(), 2u);
  EXPECT_EQ(samplesOf(source->createImageAtIndex(0, {}), 2), hidden);
  EXPECT_EQ(samplesOf(source->createImageAtIndex(1, {}), 1), (std::vector{0, 0, 255, 255}));
}

TEST(MadeImages, SkipsCommentsInFrontOfNumbers) {
  const auto source =
      CGImageSource::sourceWithData(dataWithBytes("P6\n# 7 8\n#\n2 # 6\n1\n255\n\xff\0\0\0\0\xff"s));
  ASSERT_TRUE(source);
  EXPECT_EQ(source->properties().objectForKey(u"PixelWidth"_ns), id(2));
  EXPECT_EQ(source->properties().objectForKey(u"PixelHeight"_ns), id(1));
  EXPECT_EQ(samplesOf(source->createImageAtIndex(0, {}), 2), (std::vector{255, 0, 0, 255, 0, 0, 255, 255}));
}

/// A TIFF of as many rows of that width as there are samples for.
std::string tiff(std::uint32_t width, int samples, int depth, int photometric, int format,
                 std::vector<int> extraSamples, const std::string &rows) {
  const int height = static_cast<int>(rows.size() * 8 / width) / (samples * depth);
  std::vector<std::string> entries;
  std::string behind;
  const std::size_t count = 11 + (extraSamples.empty() ? 0 : 1);
  const std::size_t place = 8 + 2 + count * 12 + 4;
  const auto add = [&](int tag, const std::vector<int> &values) {
    std::string content;
    for (const int value : values) content += littleEndian(static_cast<std::uint64_t>(value), 2);
    if (content.size() > 4) {
      behind += content;
      content = littleEndian(place + behind.size() - content.size(), 4);
    }
    content.resize(4);
    entries.push_back(littleEndian(static_cast<std::uint64_t>(tag), 2) + littleEndian(3, 2) +
                      littleEndian(values.size(), 4) + content);
  };
  const auto each = static_cast<std::size_t>(samples);
  add(256, {static_cast<int>(width)});
  add(257, {height});
  add(258, std::vector(each, depth));
  add(259, {1});
  add(262, {photometric});
  const std::size_t strip = entries.size();
  add(273, {0});
  add(277, {samples});
  add(278, {height});
  add(279, {static_cast<int>(rows.size())});
  add(284, {1});
  if (!extraSamples.empty()) add(338, extraSamples);
  add(339, std::vector(each, format));
  entries[strip].replace(8, 2, littleEndian(place + behind.size(), 2));
  std::string file = "II*\0\x08\0\0\0"s + littleEndian(entries.size(), 2);
  for (const std::string &entry : entries) file += entry;
  return file + littleEndian(0, 4) + behind + rows;
}

TEST(MadeImages, ReadsTheSamplesOfAnyTIFF) {
  constexpr int kGray = 1, kRGB = 2, kIntegers = 1, kFloats = 3, kOther = 0, kAlpha = 2;
  const auto floats = [](std::initializer_list<float> numbers) {
    std::string bytes;
    for (const float number : numbers) bytes += littleEndian(std::bit_cast<std::uint32_t>(number), 4);
    return bytes;
  };
  const struct {
    const char *name;
    std::string bytes;
    std::vector<int> samples;
  } cases[] = {
      {"floats with alpha",
       tiff(2, 4, 32, kRGB, kFloats, {kAlpha}, floats({1, 0, 0, 1, 0, 1, 0, 0.6f})),
       {255, 0, 0, 255, 0, 153, 0, 153}},
      {"alpha and more",
       tiff(1, 5, 8, kRGB, kIntegers, {kAlpha, kOther}, "\xff\0\0\x7f\xff"s),
       {127, 0, 0, 127}},
      {"gray and more", tiff(1, 3, 8, kGray, kIntegers, {kOther, kOther}, "\x40\xff\xff"s), grays({64})},
  };
  for (const auto &c : cases) {
    NSError error;
    const auto source = CGImageSource::sourceWithData(dataWithBytes(c.bytes), &error);
    const std::vector<int> samples =
        samplesOf(source ? source->createImageAtIndex(0, {}, &error) : CGImage(), c.samples.size() / 4);
    EXPECT_EQ(samples, c.samples) << c.name << " " << error.localizedFailureReason.UTF8String();
  }
}

TEST(MadeImages, MakesAnySamplesWithAlphaMuchSmaller) {
  constexpr std::uint32_t kSide = 32;
  constexpr int kRGB = 2, kIntegers = 1, kFloats = 3, kAlpha = 2;
  // Wholly red ones, of which every other one is wholly transparent and would be green.
  const auto pixels = [](const std::string &red, const std::string &green) {
    std::string rows;
    for (std::uint32_t i = 0; i < kSide * kSide / 2; ++i) rows += red + green;
    return rows;
  };
  const auto floats = [](std::initializer_list<float> numbers) {
    std::string bytes;
    for (const float number : numbers) bytes += littleEndian(std::bit_cast<std::uint32_t>(number), 4);
    return bytes;
  };
  const std::pair<const char *, std::string> cases[] = {
      {"8 bits", tiff(kSide, 4, 8, kRGB, kIntegers, {kAlpha}, pixels("\xff\0\0\xff"s, "\0\xff\0\0"s))},
      {"16 bits", tiff(kSide, 4, 16, kRGB, kIntegers, {kAlpha},
                       pixels("\xff\xff\0\0\0\0\xff\xff"s, "\0\0\xff\xff\0\0\0\0"s))},
      {"floats",
       tiff(kSide, 4, 32, kRGB, kFloats, {kAlpha}, pixels(floats({1, 0, 0, 1}), floats({0, 1, 0, 0})))},
  };
  for (const auto &[name, bytes] : cases)
    for (const std::uint32_t side : {2u, 8u, 9u}) {
      NSError error;
      const CGImage small =
          thumbnail(dataWithBytes(bytes), {.maxPixelSize = side, .createFromImageAlways = true}, &error);
      ASSERT_EQ(small.width(), side) << name << error.localizedFailureReason.UTF8String();
      EXPECT_EQ(small.height(), side) << name;
      Quarters half;
      half.fill({128, 0, 0, 128});
      EXPECT_LE(difference(quartersOf(small), half), 8) << name << " " << side;
    }
}

TEST(MadeImages, ReadsRawPicturesBehindASmallOne) {
  std::string file(testPicture("plain.dng").view());
  const auto numberOf = [&](std::size_t place) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;) number = number << 8 | static_cast<unsigned char>(file[place + i]);
    return number;
  };
  // The directory of the raw picture stays where it is. In front of it stands that of a white one.
  const std::uint32_t raw = numberOf(4);
  const std::uint32_t maker = numberOf(raw + 2 + 6 * 12 + 8), model = numberOf(raw + 2 + 7 * 12 + 8);
  auto pixels = std::make_unique<std::uint8_t[]>(32 * 32 * CGImage::kBytesPerPixel);
  std::fill_n(pixels.get(), 32 * 32 * CGImage::kBytesPerPixel, 255);
  const CGImage white = CGImage::imageWithPixels(32, 32, false, std::move(pixels));
  const NSData small = dataWithImage(white, u"public.jpeg"_ns, {});
  const auto place = static_cast<std::uint32_t>(file.size());
  file += small.view();
  file += std::string(file.size() % 2, '\0');
  constexpr int kText = 2, kShort = 3, kLong = 4;
  const struct {
    int tag, type;
    std::uint32_t count, value;
  } entries[] = {{254, kLong, 1, 1},
                 {256, kLong, 1, 32},
                 {257, kLong, 1, 32},
                 {258, kShort, 1, 8},
                 {259, kShort, 1, 7},
                 {262, kShort, 1, 6},
                 {271, kText, 11, maker},
                 {272, kText, 9, model},
                 {273, kLong, 1, place},
                 {274, kShort, 1, 1},
                 {277, kShort, 1, 3},
                 {278, kLong, 1, 32},
                 {279, kLong, 1, small.length()},
                 {330, kLong, 1, raw}};
  file.replace(4, 4, littleEndian(file.size(), 4));
  file += littleEndian(std::size(entries), 2);
  for (const auto &[tag, type, count, value] : entries)
    file += littleEndian(static_cast<std::uint64_t>(tag), 2) +
            littleEndian(static_cast<std::uint64_t>(type), 2) + littleEndian(count, 4) + littleEndian(value, 4);
  file += littleEndian(0, 4);
  NSError error;
  const auto source = CGImageSource::sourceWithData(dataWithBytes(file), &error);
  ASSERT_TRUE(source) << error.localizedFailureReason.UTF8String();
  EXPECT_EQ(source->type(), u"public.camera-raw-image"_ns);
  EXPECT_EQ(source->properties().objectForKey(u"PixelWidth"_ns), id(64));
  EXPECT_LE(difference(quartersOf(source->createImageAtIndex(0, {})), kQuarters), 12);
  EXPECT_EQ(samplesOf(source->createThumbnailAtIndex(0, kThumbnail), 2), grays({255, 255}));
  // No small picture, no maker or nothing behind: then it is what TIFF says.
  const std::size_t directory = file.size() - 4 - 12 * std::size(entries);
  for (const std::size_t at : {directory + 8, directory + 6 * 12, directory + 13 * 12}) {
    std::string other = file;
    other[at] = static_cast<char>(other[at] ^ 1);
    const auto plain = CGImageSource::sourceWithData(dataWithBytes(other));
    EXPECT_TRUE(!plain || plain->type() != u"public.camera-raw-image"_ns) << at - directory;
  }
}

}  // namespace
}  // namespace nimbo
