// SPDX-License-Identifier: Apache-2.0
#include "platform/QTKit/QTMovie.hpp"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/FileReaders.hpp"
#include "tests/support/MovieSamples.hpp"
#include "tests/support/Pixels.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

std::unique_ptr<QTMovie> opened(const std::string &name) {
  NSError error;
  auto movie = QTMovie::movieWithFile(movieSample(name), Deadline::never(), &error);
  EXPECT_TRUE(movie) << name << error.localizedFailureReason.UTF8String();
  return movie;
}

TEST(QTMovie, FramesAreThoseOfTheirTimes) {
  for (const char *name : {"ten-seconds.mp4", "ten-seconds-streamed.mp4", "ten-seconds.webm", "ten-seconds.avi",
                           "ten-seconds.mpg", "ten-seconds.ts", "three-seconds.mov"}) {
    SCOPED_TRACE(name);
    const auto movie = opened(name);
    ASSERT_TRUE(movie);
    const int last = name[1] == 'h' ? 14 : 49;
    const double end = (last + 1) / 5.0;
    // The container of MPEG says of few frames when they are shown.
    EXPECT_NEAR(movie->duration().value_or(-1), end, name == std::string("ten-seconds.mpg") ? 1 : 0.05);
    EXPECT_EQ(movie->naturalSize(), (NSSize{64, 48}));
    // Forwards and backwards; beyond the end it is the last frame, before the start the first one.
    const std::pair<double, int> times[] = {{1.04, 5},  {0, 0},        {end - 0.1, last}, {2.3, 11},
                                            {2.24, 11}, {0.59, 2},     {1.44, 7},         {end + 100, last},
                                            {-5, 0},    {1e300, last}, {1.64, 8}};
    for (const auto &[seconds, number] : times) {
      NSError error;
      EXPECT_EQ(numberOfFrame(movie->frameImageAtTime(seconds, &error)), number) << seconds;
      EXPECT_FALSE(error);
    }
    EXPECT_EQ(numberOfFrame(movie->posterImage()), 0);
    EXPECT_FALSE(movie->coverImage());
  }
}

TEST(QTMovie, FramesOfUnevenAndLateTimesAreFound) {
  const struct {
    const char *name;
    std::vector<std::pair<double, int>> frames;
  } cases[] = {
      // Its clock begins late, and seeking there leads to the second key frame.
      {"two-groups.ts", {{7.04, 35}, {4.84, 24}, {0, 0}, {2.04, 10}}},
      // Seeking to its one key frame leads behind it.
      {"one-group.ts", {{0, 0}, {1.44, 7}, {2.9, 14}}},
      // Frames are shown for longer than they are said to be.
      {"uneven.mp4", {{1.2, 0}, {2.6, 7}, {1.65, 7}, {5.5, 21}, {1.5, 7}, {6.9, 28}}},
      // Nothing is shown for ten of its thirteen seconds.
      {"late.mp4", {{6, 0}, {10.04, 0}, {11, 5}, {12.04, 10}, {13, 14}, {0, 0}}},
      {"late.mkv", {{6, 0}, {10.04, 0}, {11, 5}, {12.04, 10}, {13, 14}, {0, 0}}},
      // Its header does not tell of the pictures, which come behind six seconds of sound.
      {"late-pictures.flv", {{7.15, 5}, {8.15, 10}, {0, 0}}},
      // Nor do these in what FFmpeg looks at by itself.
      {"late-pictures.mp4", {{9.05, 5}, {0, 0}}},
      {"late-pictures.mpg", {{9.1, 5}, {0, 0}}},
      // A piece of a longer movie, from its tenth second on.
      {"piece.mp4", {{2.05, 10}, {0, 0}}},
      // Nothing says when any frame is shown.
      {"untimed.h264", {{0, 0}, {9, 45}}},
  };
  for (const auto &[name, frames] : cases) {
    EXPECT_EQ(opened(name)->naturalSize(), (NSSize{64, 48})) << name;
    for (const auto &[seconds, number] : frames)
      EXPECT_EQ(numberOfFrame(opened(name)->frameImageAtTime(seconds)), number) << name << seconds;
    // Wherever it has been read before.
    const auto movie = opened(name);
    for (const auto &[seconds, number] : frames)
      EXPECT_EQ(numberOfFrame(movie->frameImageAtTime(seconds)), number) << name << seconds;
    for (auto frame = frames.rbegin(); frame != frames.rend(); ++frame)
      EXPECT_EQ(numberOfFrame(movie->frameImageAtTime(frame->first)), frame->second) << name << frame->first;
  }
  EXPECT_EQ(opened("piece.mp4")->duration(), 3.0);
}

TEST(QTMovie, FramesAreTurnedAsTheFileSays) {
  const std::string whole = contentsOfFile(QUIVERLEAF_TEST_DATA "/movies/quarters.mov");
  const std::size_t matrix = whole.find("tkhd") + 4 + 40;
  // The first column of the matrix and the second, and what stands then above on the left, above on the right
  // and below on the left.
  const struct {
    std::array<int, 4> abcd;
    std::string corners;
  } cases[] = {{{1, 0, 0, 1}, "rgb"},  {{0, 1, -1, 0}, "brw"}, {{-1, 0, 0, -1}, "wbg"},
               {{0, -1, 1, 0}, "gwr"}, {{-1, 0, 0, 1}, "grw"}, {{1, 0, 0, -1}, "bwr"},
               {{0, 1, 1, 0}, "rbg"},  {{0, -1, -1, 0}, "wgb"}};
  // That of the first case.
  CGImage stored;
  for (const auto &[abcd, corners] : cases) {
    std::string turned = whole;
    for (std::size_t i = 0; i < 4; ++i) {
      const std::uint32_t fixed = static_cast<std::uint32_t>(abcd[i]) << 16;
      for (std::size_t byte = 0; byte < 4; ++byte)
        turned[matrix + (i / 2 * 3 + i % 2) * 4 + byte] = static_cast<char>(fixed >> (24 - 8 * byte));
    }
    const auto movie =
        QTMovie::movieWithData(NSData::dataWithBytes(turned.data(), turned.size()), Deadline::never());
    ASSERT_TRUE(movie) << corners;
    // 96 by 48 pixels, of which each is half again as wide as high.
    const NSSize size = abcd[0] != 0 ? NSSize{144, 48} : NSSize{48, 144};
    EXPECT_EQ(movie->naturalSize(), size) << corners;
    const CGImage frame = movie->frameImageAtTime(0);
    ASSERT_EQ((NSSize{double(frame.width()), double(frame.height())}), size) << corners;
    const auto colorAt = [&](std::uint32_t x, std::uint32_t y) {
      const std::uint8_t *pixel = frame.pixels() + frame.bytesPerRow() * y + x * CGImage::kBytesPerPixel;
      return pixel[0] > 200 ? (pixel[1] > 200 ? 'w' : 'r') : pixel[1] > 200 ? 'g' : pixel[2] > 200 ? 'b' : '?';
    };
    const std::uint32_t right = frame.width() - 2;
    const std::uint32_t bottom = frame.height() - 2;
    EXPECT_EQ((std::string{colorAt(1, 1), colorAt(right, 1), colorAt(1, bottom)}), corners);
    // Each pixel comes from one of what is stored, as the matrix says.
    if (!stored) stored = frame;
    const auto [a, b, c, d] = abcd;
    const auto along = [](int factor, std::uint32_t place, std::uint32_t length) {
      return factor > 0 ? place : length - 1 - place;
    };
    for (std::uint32_t y = 0; y < frame.height(); ++y)
      for (std::uint32_t x = 0; x < frame.width(); ++x)
        ASSERT_EQ(pixelAt(frame, x, y),
                  pixelAt(stored, a != 0 ? along(a, x, stored.width()) : along(b, y, stored.width()),
                          d != 0 ? along(d, y, stored.height()) : along(c, x, stored.height())))
            << corners << " " << x << " " << y;
    EXPECT_FALSE(frame.hasAlpha());
  }
}

TEST(QTMovie, PostersAreWhereTheFileSays) {
  std::string bytes = contentsOfFile(QUIVERLEAF_TEST_DATA "/movies/three-seconds.mov");
  // The header's times are thousandths of a second; that of the poster stands near its end.
  const std::size_t header = bytes.find("mvhd") + 4;
  bytes.replace(header + 80, 4, std::string("\0\0\x09\x60", 4));
  const auto movie =
      QTMovie::movieWithData(NSData::dataWithBytes(bytes.data(), bytes.size()), Deadline::never());
  ASSERT_TRUE(movie);
  EXPECT_EQ(movie->attributeForKey(u"QTMoviePosterTimeAttribute"_ns), id(2.4));
  EXPECT_EQ(numberOfFrame(movie->posterImage()), 12);
  // Behind many empty atoms nobody looks for it.
  const std::size_t place = bytes.find("moov") - 4;
  for (const auto &[atoms, poster] : {std::pair(90, id(2.4)), {110, id(0.0)}}) {
    std::string longer = bytes;
    for (int i = 0; i < atoms; ++i)
      longer.insert(place, std::string("\0\0\0\x08"
                                       "free",
                                       8));
    const auto other =
        QTMovie::movieWithData(NSData::dataWithBytes(longer.data(), longer.size()), Deadline::never());
    ASSERT_TRUE(other) << atoms;
    EXPECT_EQ(other->attributeForKey(u"QTMoviePosterTimeAttribute"_ns), poster) << atoms;
  }
}

TEST(QTMovie, TransparentColorsAreMultiplied) {
  const CGImage frame = opened("see-through.mov")->frameImageAtTime(0);
  ASSERT_TRUE(frame.hasAlpha());
  EXPECT_NEAR(frame.pixels()[3], 127, 2);
  EXPECT_NEAR(frame.pixels()[0], 127, 3);
}

TEST(QTMovie, SoundHasACoverButNoFrame) {
  const auto movie = opened("cover.mp3");
  NSError error;
  EXPECT_FALSE(movie->frameImageAtTime(0, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::unsupportedType);
  EXPECT_FALSE(movie->posterImage());
  movie->play(0.01);
  EXPECT_FALSE(movie->posterImage());
  const CGImage cover = movie->coverImage();
  EXPECT_EQ(cover.width(), 32u);
  EXPECT_EQ(cover.height(), 20u);
  EXPECT_GT(cover.pixels()[2], 200);
  EXPECT_EQ(movie->naturalSize(), NSSize());
  ASSERT_EQ(movie->tracks().size(), 2u);
  EXPECT_EQ(movie->tracks()[0].mediaType, u"soun"_ns);
  EXPECT_EQ(movie->tracks()[0].codec, u"MP3"_ns);
  EXPECT_EQ(movie->tracks()[0].samplesPerSecond, 22050);
  EXPECT_EQ(movie->tracks()[0].channels, 1u);
  EXPECT_TRUE(movie->tracks()[1].isCover);
  EXPECT_FALSE(opened("sound.wav")->coverImage());
}

TEST(QTMovie, TellsWhatTheFileSays) {
  for (const char *name : {"cover.mp3", "sound.m4a", "sound.ogg", "sound.flac", "sound.wav"}) {
    const NSDictionary metadata = opened(name)->metadata();
    EXPECT_EQ(metadata.objectForKey(u"title"_ns), id(u"Lose Blätter"_ns)) << name;
    EXPECT_EQ(metadata.objectForKey(u"artist"_ns), id(u"Rowan Fletcher"_ns)) << name;
  }
  // A blank text says nothing.
  std::string blank = contentsOfFile(QUIVERLEAF_TEST_DATA "/movies/sound.flac");
  const std::string title = "Lose Bl\u00e4tter";
  ASSERT_NE(blank.find(title), blank.npos);
  blank.replace(blank.find(title), title.size(), title.size(), ' ');
  const auto untitled =
      QTMovie::movieWithData(NSData::dataWithBytes(blank.data(), blank.size()), Deadline::never());
  ASSERT_TRUE(untitled);
  EXPECT_EQ(untitled->metadata().objectForKey(u"title"_ns), id());
  EXPECT_EQ(untitled->metadata().objectForKey(u"artist"_ns), id(u"Rowan Fletcher"_ns));
  const auto sound = opened("sound.m4a");
  const NSDictionary attributes = sound->movieAttributes();
  const std::pair<NSString, id> expected[] = {
      {u"QTMovieFileNameAttribute"_ns, movieSample("sound.m4a")},
      {u"QTMovieDisplayNameAttribute"_ns, u"Lose Blätter"_ns},
      {u"QTMovieCopyrightAttribute"_ns, u"2004 The Archers"_ns},
      {u"QTMovieNaturalSizeAttribute"_ns, u"{0, 0}"_ns},
      {u"QTMovieCurrentSizeAttribute"_ns, u"{0, 0}"_ns},
      {u"QTMovieCurrentTimeAttribute"_ns, 0.0},
      {u"QTMovieHasDurationAttribute"_ns, true},
      {u"QTMovieLoopsAttribute"_ns, false},
      {u"QTMovieHasVideoAttribute"_ns, false},
      {u"QTMovieHasAudioAttribute"_ns, true},
      {u"QTMovieDurationAttribute"_ns, 1.0},
      {u"QTMovieTracks"_ns, NSArray{NSDictionary{{u"QTTrackMediaTypeAttribute"_ns, u"soun"_ns},
                                                 {u"QTTrackFormatSummaryAttribute"_ns, u"AAC"_ns}}}}};
  for (const auto &[name, value] : expected)
    EXPECT_EQ(attributes.objectForKey(name), value) << name.UTF8String();
  const NSDictionary ofPictures = opened("quarters.mov")->movieAttributes();
  EXPECT_EQ(ofPictures.objectForKey(u"QTMovieDisplayNameAttribute"_ns), id(u"quarters.mov"_ns));
  EXPECT_EQ(ofPictures.objectForKey(u"QTMovieCurrentSizeAttribute"_ns), id(u"{144, 48}"_ns));
  EXPECT_EQ(ofPictures.objectForKey(u"QTMovieHasAudioAttribute"_ns), id(false));
  EXPECT_EQ(ofPictures.objectForKey(u"QTMovieTracks"_ns),
            id(NSArray{NSDictionary{{u"QTTrackMediaTypeAttribute"_ns, u"vide"_ns},
                                    {u"QTTrackFormatSummaryAttribute"_ns, u"PNG"_ns},
                                    {u"QTTrackDimensionsAttribute"_ns, u"{144, 48}"_ns}}}));
}

TEST(QTMovie, TimeAndAttributesCanBeSet) {
  const auto movie = opened("ten-seconds.mp4");
  for (const auto &[set, stays] : {std::pair(4.5, 4.5), {-1.0, 0.0}, {99.0, 10.0}, {std::nan(""), 0.0}}) {
    movie->setCurrentTime(set);
    EXPECT_EQ(movie->currentTime(), stays);
  }
  const NSString muted = u"QTMovieMutedAttribute"_ns;
  movie->setAttribute(true, muted);
  EXPECT_EQ(movie->attributeForKey(muted), id(true));
  movie->setAttribute(1, muted);
  movie->setAttribute(u"no"_ns, muted);
  movie->setAttribute(id(), muted);
  movie->setAttribute(true, u"QTMovieOwnAttribute"_ns);
  EXPECT_EQ(movie->attributeForKey(u"QTMovieOwnAttribute"_ns), id());
  movie->setAttribute(false, u"QTMovieHasVideoAttribute"_ns);
  EXPECT_EQ(movie->attributeForKey(muted), id(true));
  EXPECT_EQ(movie->attributeForKey(u"QTMovieHasVideoAttribute"_ns), id(true));
}

}  // namespace
}  // namespace nimbo
