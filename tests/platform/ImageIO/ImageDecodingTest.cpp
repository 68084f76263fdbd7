// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/ImageIO/CGImageDestination.hpp"
#include "platform/ImageIO/CGImageSource.hpp"
#include "tests/platform/ImageIO/QuarteredImage.hpp"
#include "tests/support/PeakMemory.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

using namespace std::literals;

constexpr CGImageThumbnailOptions kThumbnail = {
    .maxPixelSize = 16, .createFromImageIfAbsent = true, .withTransform = true};

/// What a bomb may take; the address sanitizer keeps freed memory back.
#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t kBombMemory = 800u << 20;
constexpr std::size_t kDotsMemory = 100u << 20;
#else
constexpr std::size_t kBombMemory = 300u << 20;
/// As floating-point numbers, the pixels of a strip take more.
constexpr std::size_t kDotsMemory = 13u << 20;
#endif

NSData dataWithBytes(std::string_view bytes) {
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

CGImage thumbnail(const NSData &data, const CGImageThumbnailOptions &options, NSError *error = nullptr) {
  const auto source = CGImageSource::sourceWithData(data, error);
  return source ? source->createThumbnailAtIndex(0, options, error) : CGImage();
}

TEST(ImageDecoding, ShowsTheSamePictureOfEveryFormat) {
  constexpr int kExact = 3, kLossy = 12, kInk = 150;
  const struct {
    const char *name;
    NSString type;
    std::uint32_t count;
    int tolerance;
  } cases[] = {
      {"plain.jpg", u"public.jpeg"_ns, 1, kLossy},
      {"progressive.jpg", u"public.jpeg"_ns, 1, kLossy},
      {"turned.jpg", u"public.jpeg"_ns, 1, kLossy},
      {"cmyk.jpg", u"public.jpeg"_ns, 1, kInk},
      {"interlaced.png", u"public.png"_ns, 1, kExact},
      {"palette.png", u"public.png"_ns, 1, kExact},
      {"plain.tiff", u"public.tiff"_ns, 1, kExact},
      {"deep.tiff", u"public.tiff"_ns, 1, kExact},
      {"lab.tiff", u"public.tiff"_ns, 1, kLossy},
      {"cmyk.tiff", u"public.tiff"_ns, 1, kInk},
      {"pages.tiff", u"public.tiff"_ns, 2, kExact},
      {"plain.gif", u"com.compuserve.gif"_ns, 1, kExact},
      {"frames.gif", u"com.compuserve.gif"_ns, 2, kExact},
      {"plain.webp", u"org.webmproject.webp"_ns, 1, kExact},
      {"plain.heic", u"public.heic"_ns, 1, kLossy},
      {"plain.avif", u"public.avif"_ns, 1, kLossy},
      {"plain.jp2", u"public.jpeg-2000"_ns, 1, kLossy},
      {"plain.jxl", u"public.jpeg-xl"_ns, 1, kExact},
      {"plain.svg", u"public.svg-image"_ns, 1, kExact},
      {"plain.bmp", u"com.microsoft.bmp"_ns, 1, kExact},
      {"palette.bmp", u"com.microsoft.bmp"_ns, 1, kExact},
      {"icon.ico", u"com.microsoft.ico"_ns, 2, kExact},
      {"plain.psd", u"com.adobe.photoshop-image"_ns, 1, kExact},
      {"deep.psd", u"com.adobe.photoshop-image"_ns, 1, kExact},
      {"palette.psd", u"com.adobe.photoshop-image"_ns, 1, kExact},
      {"lab.psd", u"com.adobe.photoshop-image"_ns, 1, kLossy},
      {"cmyk.psd", u"com.adobe.photoshop-image"_ns, 1, kInk},
      {"plain.dds", u"com.microsoft.dds"_ns, 1, kLossy},
      {"plain.pam", u"public.pbm"_ns, 1, kExact},
      {"plain.pcx", u"com.zsoft.pcx-image"_ns, 1, kExact},
      {"plain.pict", u"com.apple.pict"_ns, 1, kExact},
      {"plain.ppm", u"public.pbm"_ns, 1, kExact},
      {"plain.qoi", u"org.qoiformat.qoi"_ns, 1, kExact},
      {"plain.ras", u"com.sun.raster-image"_ns, 1, kExact},
      {"plain.sgi", u"com.sgi.sgi-image"_ns, 1, kExact},
      {"plain.tga", u"com.truevision.tga-image"_ns, 1, kExact},
      {"plain.xpm", u"public.xpixmap-image"_ns, 1, kExact},
      {"plain.xwd", u"public.xwindowdump-image"_ns, 1, kExact},
      {"plain.dng", u"public.camera-raw-image"_ns, 1, kLossy},
  };
  for (const auto &c : cases) {
    NSError error;
    const auto source = CGImageSource::sourceWithData(testPicture(c.name), &error);
    ASSERT_TRUE(source) << c.name << ": " << error.localizedFailureReason.UTF8String();
    EXPECT_EQ(source->type(), c.type) << c.name;
    EXPECT_EQ(source->count(), c.count) << c.name;
    const auto width = source->properties().objectForKey(u"PixelWidth"_ns).integer().value_or(0);
    const auto height = source->properties().objectForKey(u"PixelHeight"_ns).integer().value_or(0);
    const CGImage small = source->createThumbnailAtIndex(0, kThumbnail, &error);
    EXPECT_EQ(std::max(small.width(), small.height()), 16u) << c.name;
    EXPECT_LE(difference(quartersOf(small), kQuarters), c.tolerance) << c.name;
    const CGImage stored = source->createImageAtIndex(0, {}, &error);
    EXPECT_EQ(stored.width(), width) << c.name << ": " << error.localizedFailureReason.UTF8String();
    EXPECT_EQ(stored.height(), height) << c.name;
    const CGImage shown = source->createImageAtIndex(0, {.withTransform = true}, &error);
    EXPECT_LE(difference(quartersOf(shown), kQuarters), c.tolerance) << c.name;
    EXPECT_FALSE(source->createImageAtIndex(c.count, {}, &error)) << c.name;
  }
  // Without colours.
  for (const char *name : {"plain.pgm", "plain.pbm", "plain.xbm"}) {
    const Quarters quarters = quartersOf(thumbnail(testPicture(name), kThumbnail));
    EXPECT_LT(quarters[2][0], 60) << name;
    EXPECT_GT(quarters[3][0], 150) << name;
  }
}

TEST(ImageDecoding, UndoesThePackingOfRowsInPhotoshop) {
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
  };
  for (const auto &c : cases) {
    const std::string head = "8BPS\0\1\0\0\0\0\0\0\0\1\0\0\0\1\0\0\0\4\0\x08\0\1"s + std::string(12, '\0');
    const std::string counts = "\0\1\0"s + static_cast<char>(c.packed.size());
    const auto source = CGImageSource::sourceWithData(dataWithBytes(head + counts + c.packed));
    const CGImage image = source ? source->createImageAtIndex(0, {}) : CGImage();
    ASSERT_EQ(image.width(), 4u) << testing::PrintToString(c.packed);
    for (std::size_t x = 0; x < 4; ++x)
      EXPECT_NEAR(image.pixels()[x * CGImage::kBytesPerPixel], c.row[x], 1) << testing::PrintToString(c.packed);
  }
}

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

TEST(ImageDecoding, ReadsTheKindsOfPhotoshop) {
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

TEST(ImageDecoding, KeepsTheProfileOfWhatIsMadeMuchSmaller) {
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

TEST(ImageDecoding, AnswersNoImageOfASideTooLong) {
  for (const std::uint32_t width : {CGImage::kMaximumSide, CGImage::kMaximumSide + 1}) {
    const auto source = CGImageSource::sourceWithData(
        dataWithBytes(photoshop(1, 1, width, 8, 1, bigEndian(0, 8) + "\0\0"s + std::string(width, '\x40'))));
    ASSERT_TRUE(source);
    NSError error;
    const bool isRight = width == CGImage::kMaximumSide;
    EXPECT_EQ(source->createImageAtIndex(0, {}, &error).width(), isRight ? width : 0);
    EXPECT_EQ(error.errorCode(), isRight ? ErrorCode::none : ErrorCode::tooLarge);
    EXPECT_EQ(source->createThumbnailAtIndex(0, kThumbnail).width(), 16u);
  }
}

TEST(ImageDecoding, ReadsIconsThatHoldWholeFiles) {
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

TEST(ImageDecoding, SkipsCommentsInFrontOfNumbers) {
  const auto source =
      CGImageSource::sourceWithData(dataWithBytes("P6\n# 7 8\n#\n2 # 6\n1\n255\n\xff\0\0\0\0\xff"s));
  ASSERT_TRUE(source);
  EXPECT_EQ(source->properties().objectForKey(u"PixelWidth"_ns), id(2));
  EXPECT_EQ(source->properties().objectForKey(u"PixelHeight"_ns), id(1));
  EXPECT_EQ(samplesOf(source->createImageAtIndex(0, {}), 2), (std::vector{255, 0, 0, 255, 0, 0, 255, 255}));
}

/// A TIFF of one row.
std::string tiff(std::uint32_t width, int samples, int depth, int photometric, int format,
                 std::vector<int> extraSamples, const std::string &row) {
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
  add(257, {1});
  add(258, std::vector(each, depth));
  add(259, {1});
  add(262, {photometric});
  const std::size_t strip = entries.size();
  add(273, {0});
  add(277, {samples});
  add(278, {1});
  add(279, {static_cast<int>(row.size())});
  add(284, {1});
  if (!extraSamples.empty()) add(338, extraSamples);
  add(339, std::vector(each, format));
  entries[strip].replace(8, 2, littleEndian(place + behind.size(), 2));
  std::string file = "II*\0\x08\0\0\0"s + littleEndian(entries.size(), 2);
  for (const std::string &entry : entries) file += entry;
  return file + littleEndian(0, 4) + behind + row;
}

TEST(ImageDecoding, ReadsTheSamplesOfAnyTIFF) {
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

TEST(ImageDecoding, ReadsRawPicturesBehindASmallOne) {
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
}

TEST(ImageDecoding, ReadsFilesAsItReadsData) {
  const TemporaryFolder folder;
  for (const char *name : {"plain.dng", "plain.qoi", "icon.ico", "plain.svg", "plain.psd"}) {
    const NSString path = folder.write("picture", testPicture(name).view());
    const auto source = CGImageSource::sourceWithContentsOfFile(path);
    ASSERT_TRUE(source) << name;
    const CGImage image = source->createThumbnailAtIndex(0, kThumbnail),
                  other = thumbnail(testPicture(name), kThumbnail);
    EXPECT_EQ(image.width(), other.width()) << name;
    EXPECT_EQ(difference(quartersOf(image), quartersOf(other)), 0) << name;
  }
  const auto source =
      CGImageSource::sourceWithContentsOfFile(folder.write("picture", testPicture("plain.psd").view()));
  folder.write("picture", "no picture any more");
  NSError error;
  EXPECT_FALSE(source->createImageAtIndex(0, {}, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::unsupportedType);
}

TEST(ImageDecoding, TurnsAsTheFileSays) {
  // The upper left quarter's places by the numbers of Exif.
  const std::size_t places[] = {0, 1, 3, 2, 0, 1, 3, 2};
  const std::string turned(testPicture("turned.jpg").view());
  const std::size_t value = turned.find("\x12\x01\x03\0\x01\0\0\0\x06"s) + 8;
  const auto plain = CGImageSource::sourceWithData(testPicture("turned.jpg"));
  ASSERT_TRUE(plain);
  ASSERT_LT(value, turned.size());
  for (int orientation = 0; orientation <= 9; ++orientation) {
    std::string bytes = turned;
    bytes[value] = static_cast<char>(orientation);
    const auto source = CGImageSource::sourceWithData(dataWithBytes(bytes));
    ASSERT_TRUE(source) << orientation;
    const CGImage stored = source->createImageAtIndex(0, {});
    const CGImage shown = source->createImageAtIndex(0, {.withTransform = true});
    const bool isKnown = orientation >= 1 && orientation <= 8;
    const bool isOnItsSide = isKnown && orientation >= 5;
    EXPECT_EQ(shown.width(), isOnItsSide ? stored.height() : stored.width()) << orientation;
    const Quarters before = quartersOf(stored);
    const Quarters after = quartersOf(shown);
    const std::size_t place = isKnown ? places[orientation - 1] : 0;
    EXPECT_EQ(before[0], after[place]) << orientation;
    EXPECT_EQ(before[1] == after[place ^ 2], isOnItsSide) << orientation;
  }
}

TEST(ImageDecoding, ScalesToAnySize) {
  const auto source = CGImageSource::sourceWithData(testPicture("turned.jpg"));
  ASSERT_TRUE(source);
  for (const auto quality : {CGInterpolationQuality::standard, CGInterpolationQuality::none,
                             CGInterpolationQuality::low, CGInterpolationQuality::high})
    for (const auto &[width, height] : {std::pair(16u, 12u), {7u, 29u}, {100u, 60u}, {2u, 2u}}) {
      const CGImage image = source->createImageAtIndex(0, width, height, quality, {.withTransform = true});
      EXPECT_EQ(image.width(), width);
      EXPECT_EQ(image.height(), height);
      if (width > 2) {
        EXPECT_LE(difference(quartersOf(image), kQuarters), 40) << width;
      }
    }
  NSError error;
  EXPECT_FALSE(source->createImageAtIndex(0, 0, 5, CGInterpolationQuality::low, {}, &error));
  EXPECT_FALSE(
      source->createImageAtIndex(0, CGImage::kMaximumSide + 1, 5, CGInterpolationQuality::low, {}, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::tooLarge);
  // Nothing is enlarged to be a thumbnail, and no side vanishes.
  EXPECT_EQ(source->createThumbnailAtIndex(0, {.maxPixelSize = 999, .createFromImageAlways = true}).height(),
            32u);
  EXPECT_EQ(source->createThumbnailAtIndex(0, {.maxPixelSize = 1, .createFromImageAlways = true}).width(), 1u);
}

TEST(ImageDecoding, MultipliesByAlpha) {
  const Quarters half = {{{128, 0, 0, 128}, {0, 128, 0, 128}, {0, 0, 128, 128}, {128, 128, 128, 128}}};
  for (const char *name : {"half.png", "half-deep.png"}) {
    const CGImage image = thumbnail(testPicture(name), kThumbnail);
    EXPECT_TRUE(image.hasAlpha()) << name;
    EXPECT_LE(difference(quartersOf(image), half), 3) << name;
  }
  // Every second pixel is red, and what does not show between them has no colour.
  constexpr std::uint32_t kSide = 3000;
  std::unique_ptr<std::uint8_t[]> pixels(new std::uint8_t[kSide * kSide * 4]());
  for (std::size_t i = 0; i < kSide * kSide; i += 2) pixels[i * 4] = pixels[i * 4 + 3] = 255;
  const NSData dots =
      dataWithImage(CGImage::imageWithPixels(kSide, kSide, true, std::move(pixels)), u"public.png"_ns, {});
  EXPECT_LT(peakMemoryOf([&] { return static_cast<bool>(thumbnail(dots, kThumbnail)); }), kDotsMemory);
  Quarters red;
  red.fill({128, 0, 0, 128});
  EXPECT_LE(difference(quartersOf(thumbnail(dots, kThumbnail)), red), 3);
}

TEST(ImageDecoding, TakesTheFilesOwnThumbnailWhenItWillDo) {
  // It has 16 by 12 pixels, and its left is the image's right.
  const NSData data = testPicture("thumbnail.jpg");
  const auto isEmbedded = [&](const CGImageThumbnailOptions &options) {
    const Quarters quarters = quartersOf(thumbnail(data, options));
    return quarters[0][1] > 128 && quarters[0][0] < 128;
  };
  EXPECT_TRUE(isEmbedded({.maxPixelSize = 16, .createFromImageIfAbsent = true}));
  EXPECT_TRUE(isEmbedded({.maxPixelSize = 10, .createFromImageIfAbsent = true}));
  EXPECT_TRUE(isEmbedded({.maxPixelSize = 64}));
  EXPECT_FALSE(isEmbedded({.maxPixelSize = 64, .createFromImageIfAbsent = true}));
  EXPECT_FALSE(isEmbedded({.maxPixelSize = 16, .createFromImageAlways = true}));
  NSError error;
  EXPECT_FALSE(thumbnail(testPicture("plain.jpg"), {.maxPixelSize = 16}, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::incomplete);
}

TEST(ImageDecoding, CountsImages) {
  const auto pages = CGImageSource::sourceWithData(testPicture("pages.tiff"));
  EXPECT_EQ(pages->createImageAtIndex(1, {}).width(), 16u);
  EXPECT_EQ(pages->copyPropertiesAtIndex(1).objectForKey(u"PixelWidth"_ns), id(16));
  EXPECT_FALSE(pages->copyPropertiesAtIndex(2));
  // Whatever their order in the file is.
  const auto icon = CGImageSource::sourceWithData(testPicture("icon.ico"));
  EXPECT_EQ(icon->createImageAtIndex(0, {}).width(), 32u);
  EXPECT_EQ(icon->createImageAtIndex(1, {}).width(), 16u);
  const auto frames = CGImageSource::sourceWithData(testPicture("frames.gif"));
  EXPECT_EQ(quartersOf(frames->createImageAtIndex(1, {}))[3][0], 0);
}

TEST(ImageDecoding, TellsWhatTheFormatSays) {
  const auto fact = [](const char *picture, std::uint32_t index, const NSString &format, const NSString &name) {
    const auto source = CGImageSource::sourceWithData(testPicture(picture));
    return source->copyPropertiesAtIndex(index).objectForKey(format).dictionary().objectForKey(name);
  };
  EXPECT_EQ(fact("interlaced.png", 0, u"{PNG}"_ns, u"InterlaceType"_ns), id(1));
  EXPECT_EQ(fact("half.png", 0, u"{PNG}"_ns, u"InterlaceType"_ns), id(0));
  EXPECT_EQ(fact("progressive.jpg", 0, u"{JFIF}"_ns, u"IsProgressive"_ns), id(true));
  EXPECT_EQ(fact("plain.jpg", 0, u"{JFIF}"_ns, u"IsProgressive"_ns), id(false));
  EXPECT_EQ(fact("frames.gif", 1, u"{GIF}"_ns, u"DelayTime"_ns), id(0.1));
  EXPECT_EQ(fact("turned.jpg", 0, u"{TIFF}"_ns, u"Orientation"_ns), id(6));
}

TEST(ImageDecoding, LivesThroughCutFiles) {
  for (const auto &entry : std::filesystem::directory_iterator(TEST_FILES "/image-thumbnail")) {
    const NSData whole = testPicture(entry.path().filename());
    for (std::uint32_t part = 0; part < 20; ++part) {
      NSError error;
      const NSData cut = whole.subdataWithRange({0, whole.length() * part / 20});
      const CGImage image = thumbnail(cut, kThumbnail, &error);
      EXPECT_TRUE(image || error) << entry.path() << " " << part;
      EXPECT_LE(image.width(), 16u) << entry.path() << " " << part;
    }
  }
}

TEST(ImageDecoding, RefusesWhatIsTooLarge) {
  std::string png(testPicture("interlaced.png").view());
  png.replace(16, 8, "\0\1\x86\xa0\0\1\x86\xa0"s);
  // The check sum of the header with these sides.
  const std::string header = png.substr(12, 17);
  std::uint32_t crc = ~0u;
  for (const char c : header) {
    crc ^= static_cast<unsigned char>(c);
    for (int i = 0; i < 8; ++i) crc = crc >> 1 ^ (crc & 1 ? 0xedb88320u : 0);
  }
  for (int i = 0; i < 4; ++i) png[29 + static_cast<std::size_t>(i)] = static_cast<char>(~crc >> (24 - 8 * i));
  std::string psd(testPicture("plain.psd").view());
  psd.replace(14, 8, "\0\4\0\0\0\4\0\0"s);
  std::string bmp(testPicture("plain.bmp").view());
  bmp.replace(18, 8, "\0\0\1\0\0\0\1\0"s);
  const std::string ppm = "P6 60000 60000 255\n";
  for (const std::string &bytes : {png, psd, bmp, ppm}) {
    NSError error;
    const std::size_t peak = peakMemoryOf([&] { return !thumbnail(dataWithBytes(bytes), kThumbnail, &error); });
    EXPECT_LT(peak, 200u << 20) << bytes.substr(0, 4);
    thumbnail(dataWithBytes(bytes), kThumbnail, &error);
    EXPECT_EQ(error.errorCode(), ErrorCode::tooLarge) << bytes.substr(0, 4);
  }
}

TEST(ImageDecoding, EndsAtItsDeadline) {
  const NSData large = dataWithImage(quarteredImage(3000, 2000), u"public.png"_ns, {});
  auto options = kThumbnail;
  options.deadline = Deadline::after(0.001);
  NSError error;
  EXPECT_FALSE(thumbnail(large, options, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::timeLimit);
}

TEST(ImageDecoding, LoadsNothingThatDrawingsName) {
  const TemporaryFolder folder;
  folder.write("red.png", testPicture("plain.svg").view());
  const std::string path = (folder.path() / "red.png").native();
  for (const std::string &address : {path, "file://" + path, "red.png"s}) {
    const std::string svg =
        "<!DOCTYPE svg [<!ENTITY other SYSTEM '" + address +
        "'>]>\n<svg xmlns='http://www.w3.org/2000/svg' width='32' height='24'><image href='" + address +
        "' width='32' height='24'/><text>&other;</text></svg>";
    const auto source = CGImageSource::sourceWithContentsOfFile(folder.write("a.svg", svg));
    const CGImage image = source ? source->createImageAtIndex(0, {}) : CGImage();
    EXPECT_EQ(difference(quartersOf(image), Quarters()), 0) << address;
  }
}

TEST(ImageDecoding, IsNotOverwhelmedByBombs) {
  std::string entities = "<!DOCTYPE svg [<!ENTITY a0 'x'>";
  for (int i = 1; i < 30; ++i) {
    const std::string before = "&a" + std::to_string(i - 1) + ";";
    entities += "<!ENTITY a" + std::to_string(i) + " '" + before + before + "'>";
  }
  entities += "]><svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><text>&a29;</text></svg>";
  const std::string frame = ",\0\0\0\0\2\0\1\0\0\2\2\x44\x0a\0"s;
  std::string frames = "GIF89a\2\0\1\0\x80\0\0\0\0\0\xff\xff\xff"s;
  for (int i = 0; i < 10'000; ++i) frames += frame;
  for (const std::string &bytes : {entities, frames + ";"}) {
    NSError error;
    const std::size_t peak =
        peakMemoryOf([&] { return thumbnail(dataWithBytes(bytes), kThumbnail, &error) || error; });
    EXPECT_LT(peak, kBombMemory) << bytes.substr(0, 8);
  }
}

TEST(ImageDecoding, RefusesDrawingsThatDoNotComeToAnEnd) {
  const auto drawing = [](const std::string &parts) {
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='9' "
           "height='9'>" +
           parts + "</svg>";
  };
  // Each part refers to the one before, `times` times.
  const auto nested = [&](int depth, int times, const std::string &before, const std::string &behind) {
    std::string parts = "<defs><g id='a0'><rect width='1' height='1'/></g>";
    for (int i = 1; i <= depth; ++i) {
      parts += "<g id='a" + std::to_string(i) + "'>";
      for (int j = 0; j < times; ++j) parts += before + "#a" + std::to_string(i - 1) + behind;
      parts += "</g>";
    }
    return drawing(parts + "</defs>" + before + "#a" + std::to_string(depth) + behind);
  };
  std::string shapes =
      "<defs><linearGradient id='c'><stop/><stop/><stop/></linearGradient><path id='p' d='M0 0'/></defs>";
  for (int i = 0; i < 5000; ++i) shapes += "<use href='#p' fill='url(#c)'/>";
  const struct {
    const char *name;
    std::string svg;
    bool isDrawn;
  } kDrawings[] = {
      {"shapes", drawing(shapes), true},
      {"few", nested(3, 10, "<use href='", "'/>"), true},
      {"itself", drawing("<g id='a'><use href='#a'/></g>"), true},
      {"uses", nested(7, 10, "<use xlink:href='", "'/>"), false},
      {"masks", nested(20, 2, "<rect mask='url(", ")' width='1' height='1'/>"), false},
      {"chain", nested(1500, 1, "<use href='", "'/>"), false},
      {"noise", drawing("<filter id='f'><feTurbulence numOctaves='1000'/></filter>"), false},
  };
  for (const auto &each : kDrawings) {
    NSError error;
    EXPECT_EQ(static_cast<bool>(thumbnail(dataWithBytes(each.svg), kThumbnail, &error)), each.isDrawn)
        << each.name;
    EXPECT_EQ(error.errorCode(), each.isDrawn ? ErrorCode::none : ErrorCode::tooLarge) << each.name;
  }
}

}  // namespace
}  // namespace nimbo
