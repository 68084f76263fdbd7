// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "Classes/Movies/QTMovie+NSMovieCompatibility.hpp"
#include "Classes/Movies/QTMovie+NimboQTMovieExtensions.hpp"
#include "platform/AppKit/Images/NSBitmapImageRep.hpp"
#include "tests/support/MovieSamples.hpp"

namespace nimbo {
namespace {

int numberOfFrame(const NSImage &image) {
  if (!image || image.representations().size() != 1) return -1;
  const auto *rep = dynamic_cast<const NSBitmapImageRep *>(image.representations()[0].get());
  return rep ? numberOfFrame(rep->decodedImage()) : -1;
}

TEST(MovieThumbnail, IsTheFrameAtHalfTheDurationInTheFirstSeconds) {
  const struct {
    const char *name;
    int number;
  } cases[] = {{"three-seconds.mov", 5}, {"ten-seconds.mp4", 25}, {"ten-seconds-streamed.mp4", 25},
               {"ten-seconds.webm", 25}, {"ten-seconds.avi", 25}, {"ten-seconds.ts", 25},
               {"forty-seconds.mkv", 15}};
  for (const auto &[name, number] : cases) {
    const NSString path = movieSample(name);
    NSDictionary attributes = {{u"Stale"_ns, true}};
    NSError error;
    const NSImage image = thumbnailImageForMovieWithFile(path, &attributes, Deadline::never(), &error);
    EXPECT_EQ(numberOfFrame(image), number) << name;
    EXPECT_FALSE(error) << name;
    EXPECT_EQ(image.size(), (NSSize{64, 48})) << name;
    EXPECT_EQ(attributes.objectForKey(u"QTMovieNaturalSizeAttribute"_ns), id(u"{64, 48}"_ns)) << name;
    EXPECT_FALSE(attributes.objectForKey(u"Stale"_ns));
    EXPECT_EQ(numberOfFrame(thumbnailImageForMovieWithFile(path, Deadline::never())), number) << name;
    EXPECT_EQ(numberOfFrame(middleImageForMovieWithFile(path, Deadline::never())), number) << name;
    EXPECT_EQ(numberOfFrame(posterImageForMovieWithFile(path, Deadline::never())), 0) << name;
  }
}

TEST(MovieThumbnail, SoundHasAttributesAlone) {
  NSDictionary attributes;
  NSError error;
  EXPECT_FALSE(
      thumbnailImageForMovieWithFile(movieSample("cover.mp3"), &attributes, Deadline::never(), &error));
  EXPECT_TRUE(error);
  EXPECT_NEAR(attributes.objectForKey(u"QTMovieDurationAttribute"_ns).real().value_or(0), 1, 0.1);
  EXPECT_FALSE(middleImageForMovieWithFile(movieSample("sound.wav"), Deadline::never()));
  EXPECT_FALSE(posterImageForMovieWithFile(movieSample("sound.wav"), Deadline::never()));

  attributes = {{u"Stale"_ns, true}};
  error = {};
  EXPECT_FALSE(
      thumbnailImageForMovieWithFile(movieSample("absent.mp4"), &attributes, Deadline::never(), &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::noSuchFile);
  EXPECT_FALSE(attributes);
}

TEST(MovieThumbnail, TimesAndSizesArePlain) {
  const auto movie = QTMovie::movieWithFile(movieSample("ten-seconds.mp4"), Deadline::never());
  ASSERT_TRUE(movie);
  EXPECT_EQ(movieDuration(*movie), 10);
  EXPECT_EQ(movieSize(*movie), (NSSize{64, 48}));
  EXPECT_EQ(movieTime(*movie), 0);
  setMovieTime(*movie, 2.5);
  EXPECT_EQ(movieTime(*movie), 2.5);
}

TEST(MovieThumbnail, LoopModesAreTwoAttributes) {
  const auto movie = QTMovie::movieWithFile(movieSample("ten-seconds.mp4"), Deadline::never());
  ASSERT_TRUE(movie);
  EXPECT_EQ(loopMode(*movie), 0);
  for (const auto &[set, mode, loops, backAndForth] : {std::tuple(1, 1, true, false),
                                                       {2, 2, false, true},
                                                       {3, 0, false, false},
                                                       {2, 2, false, true},
                                                       {0, 0, false, false}}) {
    setLoopMode(*movie, set);
    EXPECT_EQ(loopMode(*movie), mode);
    EXPECT_EQ(movie->attributeForKey(u"QTMovieLoopsAttribute"_ns), id(loops));
    EXPECT_EQ(movie->attributeForKey(u"QTMovieLoopsBackAndForthAttribute"_ns), id(backAndForth));
  }
  // Back and forth counts first.
  movie->setAttribute(true, u"QTMovieLoopsAttribute"_ns);
  movie->setAttribute(true, u"QTMovieLoopsBackAndForthAttribute"_ns);
  EXPECT_EQ(loopMode(*movie), 2);
}

}  // namespace
}  // namespace nimbo
