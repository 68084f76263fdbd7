// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>

#include "platform/QTKit/QTMovie.hpp"
#include "tests/support/FileReaders.hpp"
#include "tests/support/MovieSamples.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

using namespace std::literals;

std::string sample(const std::string &name) {
  return contentsOfFile(QUIVERLEAF_TEST_DATA "/movies/" + name);
}

/// Opens a file and looks for all of its pictures.
id factsAndFrames(const NSString &path, NSError *error) {
  const auto movie = QTMovie::movieWithFile(path, Deadline::never(), error);
  if (!movie) return id();
  NSArray answer = {movie->movieAttributes(), movie->metadata()};
  for (const CGImage &image : {movie->frameImageAtTime(2), movie->posterImage(), movie->coverImage()})
    answer.addObject(image ? id(image.width()) : id(NSNull()));
  return answer;
}

FileReader reader(const char *name, const char *file) {
  return {name, file, sample(file), factsAndFrames};
}

INSTANTIATE_TEST_SUITE_P(Movies, FileReaders,
                         testing::Values(reader("MP4", "ten-seconds.mp4"),
                                         reader("StreamedMP4", "ten-seconds-streamed.mp4"),
                                         reader("WebM", "ten-seconds.webm"), reader("MPEG", "ten-seconds.mpg"),
                                         reader("MP3", "cover.mp3"), reader("Ogg", "sound.ogg")),
                         nameOfFileReader);

TEST(DamagedMovie, SaysWhyItIsNull) {
  const TemporaryFolder folder;
  const std::string whole = sample("ten-seconds.mp4");
  folder.write("movie.mp4", whole);
  const std::string withoutTracks =
      "\0\0\0\x14"
      "ftypqt  \0\0\0\0qt  \0\0\0\x74moov\0\0\0\x6cmvhd"s +
      std::string(100, '\0');
  const struct {
    const char *name;
    std::string bytes;
    ErrorCode code;
  } cases[] = {
      {"empty.mp4", "", ErrorCode::incomplete},
      {"text.mp4", "Only a text, whatever its name is.\n", ErrorCode::unsupportedType},
      {"picture.mov", contentsOfFile(EXAMPLES_FOLDER "/leaf.png"), ErrorCode::unsupportedType},
      {"document.avi", contentsOfFile(EXAMPLES_FOLDER "/article.pdf"), ErrorCode::unsupportedType},
      // The index stands at the end.
      {"cut.mp4", whole.substr(0, whole.size() / 2), ErrorCode::damaged},
      {"tracks.mov", withoutTracks, ErrorCode::incomplete},
      // Lists of other files, which are there.
      {"list.txt", "ffconcat version 1.0\nfile movie.mp4\n", ErrorCode::unsupportedType},
      {"list.m3u8", "#EXTM3U\n#EXT-X-TARGETDURATION:9\n#EXTINF:9,\nmovie.mp4\n#EXT-X-ENDLIST\n",
       ErrorCode::unsupportedType},
      {"list.sdp", "v=0\no=- 0 0 IN IP4 127.0.0.1\ns=x\nc=IN IP4 127.0.0.1\nm=video 9 RTP/AVP 96\n",
       ErrorCode::unsupportedType},
  };
  for (const auto &[name, bytes, code] : cases) {
    NSError error;
    EXPECT_FALSE(QTMovie::movieWithFile(folder.write(name, bytes), Deadline::never(), &error)) << name;
    EXPECT_EQ(error.errorCode(), code) << name << ": " << error.localizedFailureReason.UTF8String();
  }
  NSError error;
  EXPECT_FALSE(QTMovie::movieWithFile(folder.string("movie.mp4"), Deadline::after(0), &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::timeLimit);
  EXPECT_FALSE(QTMovie::movieWithData(NSData::dataWithBytes("", 0), Deadline::never(), &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::incomplete);
}

TEST(DamagedMovie, CoversThatAreNoPicturesAreRefused) {
  std::string bytes = sample("cover.mp3");
  const std::size_t cover = bytes.find("\xff\xd8\xff");
  ASSERT_LT(cover, bytes.size());
  bytes.replace(cover + 3, 200, std::string(200, '\0'));
  const auto movie =
      QTMovie::movieWithData(NSData::dataWithBytes(bytes.data(), bytes.size()), Deadline::never());
  ASSERT_TRUE(movie);
  NSError error;
  EXPECT_FALSE(movie->coverImage(&error));
  EXPECT_EQ(error.errorCode(), ErrorCode::damaged);
}

TEST(DamagedMovie, HeadersFarBehindThePicturesAreFound) {
  std::string bytes = sample("ten-seconds.mp4");
  const std::size_t header = bytes.find("moov") - 4;
  bytes.insert(header, "\0\x10\0\0free"s + std::string((1 << 20) - 8, '\xff'));
  const TemporaryFolder folder;
  const auto fromFile = QTMovie::movieWithFile(folder.write("a.mp4", bytes), Deadline::never());
  const auto fromData =
      QTMovie::movieWithData(NSData::dataWithBytes(bytes.data(), bytes.size()), Deadline::never());
  for (const auto *movie : {&fromFile, &fromData}) {
    ASSERT_TRUE(*movie);
    EXPECT_EQ(numberOfFrame((*movie)->frameImageAtTime(4.5)), 22);
    EXPECT_EQ(numberOfFrame((*movie)->frameImageAtTime(1.1)), 5);
  }
}

TEST(DamagedMovie, NamesDoNotMatter) {
  const TemporaryFolder folder;
  for (const char *file : {"ten-seconds.mp4", "ten-seconds.webm", "ten-seconds.mpg", "forty-seconds.mkv"}) {
    const auto movie = QTMovie::movieWithFile(folder.write("a.mp3", sample(file)), Deadline::never());
    EXPECT_TRUE(movie && movie->frameImageAtTime(1)) << file;
  }
}

TEST(DamagedMovie, MissingEndsGiveTheLastFrameThatIsThere) {
  std::string bytes = sample("ten-seconds-streamed.mp4");
  bytes.resize(bytes.size() * 9 / 10);
  const auto movie =
      QTMovie::movieWithData(NSData::dataWithBytes(bytes.data(), bytes.size()), Deadline::never());
  ASSERT_TRUE(movie);
  EXPECT_NEAR(movie->duration().value_or(0), 10, 0.01);
  const int last = numberOfFrame(movie->frameImageAtTime(9.9));
  EXPECT_GT(last, 10);
  EXPECT_LT(last, 49);
}

TEST(DamagedMovie, LyingSizesAreRefused) {
  // The picture of a track that says to have 65535 pixels by as many, in its sample description and in itself.
  std::string bytes = sample("quarters.mov");
  const std::size_t header = bytes.find("IHDR") + 4;
  bytes.replace(header, 8, "\0\0\xff\xff\0\0\xff\xff"s);
  const std::size_t description = bytes.find("stsd");
  const std::size_t size = bytes.find("png ", description) + 4 + 24;
  bytes.replace(size, 4, "\xff\xff\xff\xff");
  const auto movie =
      QTMovie::movieWithData(NSData::dataWithBytes(bytes.data(), bytes.size()), Deadline::never());
  NSError error;
  EXPECT_FALSE(movie && movie->frameImageAtTime(0, &error));
}

}  // namespace
}  // namespace nimbo
