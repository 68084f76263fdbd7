// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/ImageIO/CGImageDestination.hpp"
#include "platform/ImageIO/CGImageSource.hpp"
#include "tests/platform/ImageIO/QuarteredImage.hpp"
#include "tests/support/PeakMemory.hpp"
#include "tests/support/Pixels.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

using namespace std::literals;

/// What a bomb may take; the address sanitizer keeps freed memory back.
#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t kBombMemory = 800u << 20;
constexpr std::size_t kDotsMemory = 100u << 20;
#else
constexpr std::size_t kBombMemory = 300u << 20;
/// As floating-point numbers, the pixels of a strip take more.
constexpr std::size_t kDotsMemory = 13u << 20;
#endif

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

TEST(ImageDecoding, DrawsDrawingsAtTheSizeThatIsWanted) {
  // Two areas meet in the middle of a pixel at half the size: half of what each leaves is left.
  const CGImage small =
      thumbnail(dataWithBytes("<svg xmlns='http://www.w3.org/2000/svg' width='32' height='32'>"
                              "<rect width='15' height='32'/><rect x='15' width='17' "
                              "height='32'/></svg>"),
                kThumbnail);
  ASSERT_EQ(small.width(), 16u);
  EXPECT_EQ(pixelAt(small, 6, 8).alpha, 255);
  EXPECT_NEAR(pixelAt(small, 7, 8).alpha, 191, 8);
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
  // What ends before it did is not waited for.
  for (const char *name : {"plain.qoi", "icon.ico", "plain.dng"}) {
    const auto cut = CGImageSource::sourceWithContentsOfFile(folder.write("cut", testPicture(name).view()));
    ASSERT_TRUE(cut) << name;
    std::filesystem::resize_file(folder.path() / "cut", 40);
    cut->createImageAtIndex(0, {}, &error);
  }
  error = {};
  EXPECT_FALSE(source->createImageAtIndex(0, {}, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::unsupportedType);
}

TEST(ImageDecoding, TurnsAsTheFileSays) {
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
    const std::uint32_t width = stored.width(), height = stored.height();
    const bool isOnItsSide = orientation >= 5 && orientation <= 8;
    ASSERT_EQ(shown.width(), isOnItsSide ? height : width) << orientation;
    ASSERT_EQ(shown.height(), isOnItsSide ? width : height) << orientation;
    // Which side of what is stored is where the numbers of Exif say: 2, 3, 7 and 8 show its right where its
    // left would be, 3, 4, 6 and 7 its bottom where its top would be.
    const bool showsRight = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
    const bool showsBottom = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
    for (std::uint32_t y = 0; y < shown.height(); ++y)
      for (std::uint32_t x = 0; x < shown.width(); ++x) {
        const std::uint32_t column = isOnItsSide ? y : x, row = isOnItsSide ? x : y;
        ASSERT_EQ(pixelAt(shown, x, y), pixelAt(stored, showsRight ? width - 1 - column : column,
                                                showsBottom ? height - 1 - row : row))
            << orientation << ": " << x << " " << y;
      }
  }
}

TEST(ImageDecoding, ScalesToAnySize) {
  const auto source = CGImageSource::sourceWithData(testPicture("turned.jpg"));
  ASSERT_TRUE(source);
  for (const auto quality : {CGInterpolationQuality::standard, CGInterpolationQuality::none,
                             CGInterpolationQuality::low, CGInterpolationQuality::high})
    for (const auto &[width, height] :
         {std::pair(16u, 12u), {7u, 29u}, {100u, 60u}, {2u, 2u}, {1u, 5u}, {5u, 1u}}) {
      const CGImage image = source->createImageAtIndex(0, width, height, quality, {.withTransform = true});
      EXPECT_EQ(image.width(), width);
      EXPECT_EQ(image.height(), height);
      if (width > 2 && height > 2) {
        EXPECT_LE(difference(quartersOf(image), kQuarters), 40) << width;
      }
    }
  NSError error;
  EXPECT_FALSE(source->createImageAtIndex(0, 0, 5, CGInterpolationQuality::low, {}, &error));
  EXPECT_FALSE(
      source->createImageAtIndex(0, CGImage::kMaximumSide + 1, 5, CGInterpolationQuality::low, {}, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::tooLarge);
  // More than a gibibyte of pixels, whose sides are not too long.
  error = {};
  EXPECT_FALSE(
      source->createImageAtIndex(0, CGImage::kMaximumSide, 8193, CGInterpolationQuality::none, {}, &error));
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

TEST(ImageDecoding, TellsOfColorsAndTheirDepth) {
  const struct {
    const char *name;
    NSString model;
    std::optional<int> depth = 8;
    bool hasAlpha = false;
  } cases[] = {
      {"plain.jpg", u"RGB"_ns},          {"cmyk.jpg", u"CMYK"_ns},
      {"cmyk.tiff", u"CMYK"_ns},         {"deep.tiff", u"RGB"_ns, 16},
      {"lab.tiff", u"Lab"_ns, {}},       {"half.png", u"RGB"_ns, 16, true},
      {"deep.psd", u"RGB"_ns, 16},       {"half-deep.png", u"RGB"_ns, 16, true},
      {"icon.ico", u"RGB"_ns, {}, true}, {"plain.dng", u"RGB"_ns, {}},
      {"plain.bmp", u"RGB"_ns, {}},
  };
  for (const auto &[name, model, depth, hasAlpha] : cases) {
    const auto source = CGImageSource::sourceWithData(testPicture(name));
    ASSERT_TRUE(source) << name;
    EXPECT_EQ(source->properties().objectForKey(u"ColorModel"_ns), id(model)) << name;
    EXPECT_EQ(source->properties().objectForKey(u"HasAlpha"_ns), id(hasAlpha)) << name;
    if (depth) {
      EXPECT_EQ(source->properties().objectForKey(u"Depth"_ns), id(*depth)) << name;
    }
  }
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
  const std::string ppm = "P6 60000 60000 255\n", row = "P6 16384 8193 255\n";
  for (const std::string &bytes : {png, psd, bmp, ppm, row}) {
    NSError error;
    const std::size_t peak = peakMemoryOf([&] { return !thumbnail(dataWithBytes(bytes), kThumbnail, &error); });
    EXPECT_LT(peak, 200u << 20) << bytes.substr(0, 4);
    thumbnail(dataWithBytes(bytes), kThumbnail, &error);
    EXPECT_EQ(error.errorCode(), ErrorCode::tooLarge) << bytes.substr(0, 4);
  }
  // A raw picture is as large as it says, whatever there is of it.
  std::string dng(testPicture("plain.dng").view());
  for (const char tag : {'\0', '\1'}) {
    const std::size_t entry = dng.find(std::string{tag, 1, 4, 0, 1, 0, 0, 0, 64, 0, 0, 0});
    ASSERT_LT(entry, dng.size());
    dng.replace(entry + 8, 4, "\x10\x27\0\0"s);
  }
  NSError tooManyPixels;
  const auto raw = CGImageSource::sourceWithData(dataWithBytes(dng));
  ASSERT_TRUE(raw);
  EXPECT_EQ(raw->type(), u"public.camera-raw-image"_ns);
  EXPECT_FALSE(raw->createImageAtIndex(0, {}, &tooManyPixels));
  EXPECT_EQ(tooManyPixels.errorCode(), ErrorCode::tooLarge);
  // A row less is tried.
  NSError error;
  EXPECT_FALSE(thumbnail(dataWithBytes("P6 16384 8192 255\n"), kThumbnail, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::damaged);
}

TEST(ImageDecoding, TakesLongFilesForNoRawPictures) {
  const TemporaryFolder folder;
  const NSString path = folder.write("a.dng", testPicture("plain.dng").view());
  std::filesystem::resize_file(folder.path() / "a.dng", (std::uintmax_t{512} << 20) + 1);
  const auto source = CGImageSource::sourceWithContentsOfFile(path);
  ASSERT_TRUE(source);
  EXPECT_EQ(source->type(), u"public.tiff"_ns);
}

TEST(ImageDecoding, TellsOfPicturesWithoutTheirPixels) {
  std::string bytes(testPicture("plain.jp2").view());
  const std::size_t pixels = bytes.find("jp2c\xff\x4f");
  ASSERT_LT(pixels, bytes.size());
  bytes.replace(pixels + 4, 2, 2, '\0');
  NSError error;
  const auto source = CGImageSource::sourceWithData(dataWithBytes(bytes), &error);
  ASSERT_TRUE(source) << error.localizedFailureReason.UTF8String();
  EXPECT_EQ(source->type(), u"public.jpeg-2000"_ns);
  EXPECT_EQ(source->properties().objectForKey(u"PixelWidth"_ns), id(32));
  EXPECT_EQ(source->properties().objectForKey(u"PixelHeight"_ns), id(24));
}

TEST(ImageDecoding, EndsAtItsDeadline) {
  const NSData large = dataWithImage(quarteredImage(3000, 2000), u"public.png"_ns, {});
  auto options = kThumbnail;
  options.deadline = Deadline::after(0.001);
  NSError error;
  EXPECT_FALSE(thumbnail(large, options, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::timeLimit);
  // Whoever reads it, and however little there is to do.
  for (const char *name :
       {"plain.png", "plain.jpg", "plain.qoi", "icon.ico", "plain.psd", "plain.svg", "plain.dng"}) {
    const auto source = CGImageSource::sourceWithData(
        std::string_view(name) == "plain.png" ? dataWithImage(quarteredImage(8, 8), u"public.png"_ns, {})
                                              : testPicture(name));
    ASSERT_TRUE(source) << name;
    error = {};
    EXPECT_FALSE(source->createImageAtIndex(0, {.deadline = Deadline::after(0)}, &error)) << name;
    EXPECT_EQ(error.errorCode(), ErrorCode::timeLimit) << name;
  }
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
  // Each gradient takes its colours from the next one; they are no work.
  const auto gradients = [&](int count) {
    std::string parts = "<rect fill='url(#g0)' width='9' height='9'/>";
    for (int i = 0; i < count; ++i)
      parts += "<linearGradient id='g" + std::to_string(i) + "' href='#g" + std::to_string(i + 1) + "'/>";
    return drawing(parts);
  };
  const struct {
    const char *name;
    std::string svg;
    bool isDrawn;
  } kDrawings[] = {
      // The drawing, its rectangle and the gradients are in each other.
      {"gradients", gradients(999), true},
      {"a gradient too many", gradients(1000), false},
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
