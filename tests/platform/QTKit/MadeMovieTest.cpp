// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "platform/QTKit/QTMovie.hpp"
#include "tests/support/MovieBoxes.hpp"

namespace nimbo {
namespace {

using namespace std::literals;

std::unique_ptr<QTMovie> movieOf(const std::string &sample, const std::string &tracks) {
  const std::string bytes = madeMovie(sample, tracks);
  NSError error;
  auto movie =
      QTMovie::movieWithData(NSData::dataWithBytes(bytes.data(), bytes.size()), Deadline::never(), &error);
  EXPECT_TRUE(movie) << error.localizedFailureReason.UTF8String();
  return movie;
}

TEST(MadeMovie, BrightnessAndDifferencesBecomeColorsAsItSays) {
  constexpr int kBrightness = 180, kBlueness = 60, kRedness = 150;
  const auto nclc = [](int matrix) {
    return box("colr", "nclc" + number(1, 2) + number(1, 2) + number(static_cast<std::uint64_t>(matrix), 2));
  };
  const struct {
    const char *name;
    std::string color;
    std::uint32_t height;
    /// The parts of red and blue in the brightness.
    double red, blue;
    bool isFull = false;
  } cases[] = {
      {"high definition", nclc(1), 8, 0.2126, 0.0722},
      {"early", nclc(4), 8, 0.30, 0.11},
      {"television", nclc(6), 8, 0.299, 0.114},
      {"early high definition", nclc(7), 8, 0.212, 0.087},
      {"ultra high definition", nclc(9), 8, 0.2627, 0.0593},
      {"nothing said", "", 8, 0.299, 0.114},
      {"nothing said, many rows", "", 720, 0.2126, 0.0722},
      {"full", box("colr", "nclx" + number(1, 2) + number(1, 2) + number(1, 2) + "\x80"), 8, 0.2126, 0.0722,
       true},
  };
  for (const auto &c : cases) {
    std::string sample;
    for (std::uint32_t i = 0; i < kWidth / 2 * c.height; ++i)
      sample += number(kBlueness << 24 | kBrightness << 16 | kRedness << 8 | kBrightness, 4);
    const auto movie = movieOf(sample, track(1, "vide", pictures(c.height, c.color),
                                             static_cast<std::uint32_t>(sample.size()), c.height));
    ASSERT_TRUE(movie) << c.name;
    NSError error;
    const CGImage frame = movie->frameImageAtTime(0, &error);
    ASSERT_EQ(frame.width(), kWidth) << c.name << error.localizedFailureReason.UTF8String();
    const double brightness = c.isFull ? kBrightness : (kBrightness - 16) * 255 / 219.0;
    const double unit = c.isFull ? 1 : 255 / 224.0;
    const double red = brightness + 2 * (1 - c.red) * (kRedness - 128) * unit;
    const double blue = brightness + 2 * (1 - c.blue) * (kBlueness - 128) * unit;
    const double green = (brightness - c.red * red - c.blue * blue) / (1 - c.red - c.blue);
    const std::uint8_t *pixel = frame.pixels() + frame.bytesPerRow() * 4 + 8 * CGImage::kBytesPerPixel;
    EXPECT_NEAR(pixel[0], red, 1.2) << c.name;
    EXPECT_NEAR(pixel[1], green, 1.2) << c.name;
    EXPECT_NEAR(pixel[2], blue, 1.2) << c.name;
  }
}

TEST(MadeMovie, PicturesOfASideTooLongAreRefused) {
  for (const std::uint32_t height : {CGImage::kMaximumSide, CGImage::kMaximumSide + 1}) {
    const std::string sample(std::size_t{kWidth} * height * 2, '\x80');
    const auto movie = movieOf(
        sample, track(1, "vide", pictures(height, ""), static_cast<std::uint32_t>(sample.size()), height));
    ASSERT_TRUE(movie);
    NSError error;
    const bool isRight = height == CGImage::kMaximumSide;
    EXPECT_EQ(movie->frameImageAtTime(0, &error).height(), isRight ? height : 0);
    EXPECT_EQ(error.errorCode(), isRight ? ErrorCode::none : ErrorCode::tooLarge);
  }
}

TEST(MadeMovie, PixelsAreMadeSquare) {
  const std::string sample(kWidth * 8 * 2, '\x80');
  const struct {
    std::uint32_t across, down;
    std::uint32_t width;
  } cases[] = {{3, 2, 24}, {2, 3, 11}, {1, 16, 1}, {16, 1, 256}, {1, 17, kWidth}, {17, 1, kWidth}};
  for (const auto &[across, down, width] : cases) {
    const auto movie =
        movieOf(sample, track(1, "vide", pictures(8, box("pasp", number(across, 4) + number(down, 4))),
                              static_cast<std::uint32_t>(sample.size()), 8));
    ASSERT_TRUE(movie);
    EXPECT_EQ(movie->naturalSize(), (NSSize{static_cast<double>(width), 8})) << across;
    EXPECT_EQ(movie->frameImageAtTime(0).width(), width) << across;
    EXPECT_EQ(movie->frameImageAtTime(0).height(), 8u) << across;
  }
}

TEST(MadeMovie, FramesAreThoseOfTheLargestTrackThatIsShown) {
  const std::string sample(kWidth * 16 * 2, '\x80');
  const auto sized = [&](int trackNumber, std::uint32_t height, int flags) {
    return track(trackNumber, "vide", pictures(height, ""), kWidth * height * 2, height, flags);
  };
  const struct {
    std::uint32_t first, second;
    int firstFlags, secondFlags;
    double height;
  } cases[] = {{8, 16, kEnabled, kEnabled, 16},   {16, 8, kEnabled, kEnabled, 16},
               {8, 16, kEnabled, kDisabled, 8},   {16, 8, kDisabled, kEnabled, 8},
               {8, 16, kDisabled, kDisabled, 16}, {8, 8, kEnabled, kEnabled, 8}};
  for (const auto &c : cases) {
    const auto movie = movieOf(sample, sized(1, c.first, c.firstFlags) + sized(2, c.second, c.secondFlags));
    ASSERT_TRUE(movie);
    EXPECT_EQ(movie->naturalSize().height, c.height) << c.first << " " << c.firstFlags << " " << c.secondFlags;
    EXPECT_EQ(movie->frameImageAtTime(0).height(), c.height);
  }
}

TEST(MadeMovie, PicturesOfAnUnknownKindAreRefused) {
  const std::string sample(kWidth * 8 * 2, '\x80');
  std::string description = pictures(8, "");
  description.replace(description.find("2vuy"), 4, "zzzz");
  const auto movie =
      movieOf(sample, track(1, "vide", description, static_cast<std::uint32_t>(sample.size()), 8));
  ASSERT_TRUE(movie);
  NSError error;
  EXPECT_FALSE(movie->frameImageAtTime(0, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::unsupportedType);
}

TEST(MadeMovie, TellsOfItsTracks) {
  const std::string sample(kWidth * 8 * 2, '\x80');
  for (const int language : {kEnglish, kUndetermined}) {
    const auto movie = movieOf(sample, track(1, "vide", pictures(8, ""),
                                             static_cast<std::uint32_t>(sample.size()), 8, kEnabled, language));
    ASSERT_TRUE(movie);
    ASSERT_EQ(movie->tracks().size(), 1u);
    const QTTrack &told = movie->tracks()[0];
    EXPECT_EQ(told.language, language == kEnglish ? u"eng"_ns : NSString());
    EXPECT_EQ(told.framesPerSecond, 1);
    EXPECT_EQ(told.bitsPerSecond, kWidth * 8 * 2 * 8);
    EXPECT_EQ(told.size, (NSSize{kWidth, 8}));
    EXPECT_EQ(told.samplesPerSecond, 0);
    EXPECT_EQ(told.channels, 0u);
    EXPECT_FALSE(told.isCover);
    EXPECT_EQ(movie->duration(), 1.0);
    EXPECT_GT(movie->bitsPerSecond(), 0);
  }
}

TEST(MadeMovie, TellsOfItsTexts) {
  const std::string sample(kWidth * 8 * 2, '\x80');
  const std::string text = box("text", std::string(6, '\0') + number(1, 2) + std::string(43, '\0'));
  const auto movie =
      movieOf(sample, track(1, "vide", pictures(8, ""), static_cast<std::uint32_t>(sample.size()), 8) +
                          track(2, "text", text, 2, 0));
  ASSERT_TRUE(movie);
  ASSERT_EQ(movie->tracks().size(), 2u);
  EXPECT_EQ(movie->tracks()[0].mediaType, u"vide"_ns);
  EXPECT_EQ(movie->tracks()[1].mediaType, u"text"_ns);
}

}  // namespace
}  // namespace nimbo
