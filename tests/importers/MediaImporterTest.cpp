// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/importers/ShippedImporters.hpp"
#include "tests/support/MovieBoxes.hpp"

namespace nimbo {
namespace {

using namespace std::literals;

TEST_F(Importers, Sounds) {
  for (const auto &[name, rate] : {std::pair("cover.mp3", 22050.0),
                                   {"sound.m4a", 22050.0},
                                   {"sound.ogg", 22050.0},
                                   {"sound.flac", 8000.0},
                                   {"sound.wav", 8000.0}}) {
    SCOPED_TRACE(name);
    const NSDictionary found =
        metaData(NSString::stringWithUTF8String(QUIVERLEAF_TEST_DATA "/movies/"s + name));
    expectAttributes(found, {{u"kMDItemTitle"_ns, u"Lose Blätter"_ns},
                             {u"kMDItemAuthors"_ns, NSArray{u"Rowan Fletcher"_ns}},
                             {u"kMDItemAlbum"_ns, u"Quivers"_ns},
                             {u"kMDItemMusicalGenre"_ns, u"Folk"_ns},
                             {u"kMDItemRecordingYear"_ns, 2004},
                             {u"kMDItemComment"_ns, u"Recorded in the fletcher's loft"_ns},
                             {u"kMDItemAudioTrackNumber"_ns, 3},
                             {u"kMDItemMediaTypes"_ns, NSArray{u"Sound"_ns}},
                             {u"kMDItemAudioSampleRate"_ns, rate},
                             {u"kMDItemAudioChannelCount"_ns, 1}});
    EXPECT_GT(found.objectForKey(u"kMDItemDurationSeconds"_ns).real().value_or(0), 0.1);
    EXPECT_EQ(found.objectForKey(u"kMDItemCodecs"_ns).array().count(), 1u);
    EXPECT_FALSE(found.objectForKey(u"kMDItemPixelWidth"_ns));
  }
}

/// A sound with such tags in front of its own.
std::string taggedSound(const std::vector<std::string> &entries) {
  const auto length = [](std::size_t value) {
    std::string bytes = number(value, 4);
    std::ranges::reverse(bytes);
    return bytes;
  };
  // The comment header of a sound: each entry's length, its name and its text.
  std::string comments = length(0) + length(entries.size());
  for (const std::string &entry : entries) comments += length(entry.size()) + entry;
  // The first block is 34 bytes about the stream; the new one stands behind it.
  return contentsOfSample("movies/sound.flac").insert(4 + 4 + 34, "\4" + number(comments.size(), 3) + comments);
}

/// A movie with such tags in front of its own.
std::string taggedMovie(const std::vector<std::string> &entries) {
  std::string array = "\2" + number(10, 2) + "onMetaData\x08" + number(entries.size(), 4);
  for (const std::string &entry : entries) {
    const std::string name = entry.substr(0, entry.find('=')), text = entry.substr(name.size() + 1);
    array += number(name.size(), 2) + name + "\2" + number(text.size(), 2) + text;
  }
  const std::string tag = "\x12" + number(array.size() + 3, 3) + number(0, 7) + array + number(9, 3);
  return contentsOfSample("movies/late-pictures.flv").insert(9 + 4, tag + number(tag.size(), 4));
}

TEST_F(Importers, TagsOfSongsAndMovies) {
  const NSDictionary song = metaDataOf(
      "song.flac",
      taggedSound({"ARTIST=Iris Bowyer", "ARTIST=Jan Leaf", "LYRICS=Leaf by leaf", "TITLE=One",
                   "TITLE=Two",          "ALBUM= ",         "ALBUM=Quivers",       "COMPOSER=C",
                   "LYRICIST=L",         "GENRE=Folk",      "DATE=2004-10-31",     "TRACKNUMBER=3/12",
                   "BPM=92.5",           "INITIALKEY=Am",   "COMMENT=N",           "DESCRIPTION=D",
                   "COPYRIGHT=R",        "LABEL=P",         "KEYWORDS=leaf",       "KEYWORDS=quiver",
                   "ENCODING=E"}));
  const NSDictionary movie = metaDataOf(
      "movie.flv",
      taggedMovie({"Title=One", "artist=Iris Bowyer", "lyrics=Leaf by leaf", "album=Quivers", "composer=C",
                   "lyricist=L", "genre=Folk", "date=2004-10-31", "track=3/12", "bpm=92.5", "initialkey=Am",
                   "comment=N", "description=D", "copyright=R", "publisher=P", "keywords=leaf", "encoder=E",
                   "creation_time=2001-01-02T00:00:00Z"}));
  for (const NSDictionary &found : {song, movie})
    expectAttributes(found, {{u"kMDItemTextContent"_ns, u"Leaf by leaf"_ns},
                             {u"kMDItemAlbum"_ns, u"Quivers"_ns},
                             {u"kMDItemComposer"_ns, u"C"_ns},
                             {u"kMDItemLyricist"_ns, u"L"_ns},
                             {u"kMDItemMusicalGenre"_ns, u"Folk"_ns},
                             {u"kMDItemRecordingYear"_ns, 2004},
                             {u"kMDItemAudioTrackNumber"_ns, 3},
                             {u"kMDItemTempo"_ns, 92.5},
                             {u"kMDItemKeySignature"_ns, u"Am"_ns},
                             {u"kMDItemComment"_ns, u"N"_ns},
                             {u"kMDItemDescription"_ns, u"D"_ns},
                             {u"kMDItemCopyright"_ns, u"R"_ns},
                             {u"kMDItemPublishers"_ns, NSArray{u"P"_ns}},
                             {u"kMDItemEncodingApplications"_ns, NSArray{u"E"_ns}}});
  expectAttributes(song, {{u"kMDItemAuthors"_ns, NSArray{u"Iris Bowyer"_ns, u"Jan Leaf"_ns}},
                          {u"kMDItemTitle"_ns, u"One, Two"_ns},
                          {u"kMDItemKeywords"_ns, NSArray{u"leaf"_ns, u"quiver"_ns}}});
  expectAttributes(movie, {{u"kMDItemAuthors"_ns, NSArray{u"Iris Bowyer"_ns}},
                           {u"kMDItemTitle"_ns, u"One"_ns},
                           {u"kMDItemKeywords"_ns, NSArray{u"leaf"_ns}},
                           {u"kMDItemContentCreationDate"_ns, NSDate{86400}}});
  expectAttributes(metaDataOf("large.flac", taggedSound({"DATE=999999999", "TRACKNUMBER=-999999999"})),
                   {{u"kMDItemRecordingYear"_ns, 999999999}, {u"kMDItemAudioTrackNumber"_ns, -999999999}});
  // Numbers that are none, and too large ones.
  expectAttributes(
      metaDataOf("odd.flac", taggedSound({"DATE=1e9", "TRACKNUMBER=A3", "BPM=nan", "DESCRIPTION=\t "})),
      {{u"kMDItemRecordingYear"_ns, id()},
       {u"kMDItemAudioTrackNumber"_ns, id()},
       {u"kMDItemTempo"_ns, id()},
       {u"kMDItemDescription"_ns, id()}});
}

TEST_F(Importers, TagsHaveTheirLimits) {
  for (const auto &[name, tagged, limit] :
       {std::tuple("many.flac", &taggedSound, 1000), {"many.flv", &taggedMovie, 200}})
    for (const int count : {limit - 1, limit}) {
      std::vector<std::string> entries;
      for (int i = 0; i < count; ++i) entries.push_back("A" + std::to_string(1000 + i) + "=x");
      entries.emplace_back("TITLE=T");
      EXPECT_EQ(metaDataOf(name, tagged(entries)).objectForKey(u"kMDItemTitle"_ns),
                count < limit ? id(u"T"_ns) : id())
          << name;
    }
  std::vector<std::string> entries(1001, "ARTIST=A");
  entries.push_back("LYRICS=" + std::string((1 << 20) + 1, 'x'));
  const NSDictionary found = metaDataOf("long.flac", taggedSound(entries));
  EXPECT_EQ(found.objectForKey(u"kMDItemAuthors"_ns).array().count(), 1000u);
  EXPECT_EQ(found.objectForKey(u"kMDItemTextContent"_ns).string().length(), 1u << 20);
}

TEST_F(Importers, Movies) {
  const NSDictionary found =
      metaData(NSString::stringWithUTF8String(QUIVERLEAF_TEST_DATA "/movies/quarters.mov"));
  expectAttributes(found, {{u"kMDItemPixelWidth"_ns, 144},
                           {u"kMDItemPixelHeight"_ns, 48},
                           {u"kMDItemCodecs"_ns, NSArray{u"PNG"_ns}},
                           {u"kMDItemMediaTypes"_ns, NSArray{u"Video"_ns}}});
  EXPECT_FALSE(found.objectForKey(u"kMDItemAudioChannelCount"_ns));
  EXPECT_FALSE(found.objectForKey(u"kMDItemLanguages"_ns));
  // Without times nobody knows how many bits there are in a second.
  expectAttributes(metaDataOf("untimed.mp4", contentsOfSample("movies/untimed.h264")),
                   {{u"kMDItemMediaTypes"_ns, NSArray{u"Video"_ns}},
                    {u"kMDItemTotalBitRate"_ns, id()},
                    {u"kMDItemVideoBitRate"_ns, id()}});
  NSError error;
  EXPECT_EQ(metaData(folder.write("none.mp4", "no movie"), &error).count(), 0u);
  EXPECT_EQ(error.errorCode(), ErrorCode::unsupportedType);
}

TEST_F(Importers, TracksOfAMovie) {
  constexpr int kGerman = 4 << 10 | 5 << 5 | 21;
  constexpr std::uint32_t kBytes = kWidth * 8 * 2;
  const auto sound = [](std::uint64_t channels, std::uint64_t rate) {
    return box("sowt", std::string(6, '\0') + number(1, 2) + number(0, 8) + number(channels, 2) +
                           number(16, 2) + number(0, 4) + number(rate << 16, 4));
  };
  const std::string text = box("text", std::string(6, '\0') + number(1, 2) + std::string(43, '\0'));
  const NSDictionary found =
      metaDataOf("tracks.mov", madeMovie(std::string(kBytes, '\x80'),
                                         track(1, "vide", pictures(8, ""), kBytes, 8) +
                                             track(2, "vide", pictures(4, ""), kBytes / 2, 4) +
                                             track(3, "soun", sound(2, 8000), 4, 0, kEnabled, kGerman) +
                                             track(4, "soun", sound(1, 16000), 2, 0, kEnabled, kUndetermined) +
                                             track(5, "text", text, 2, 0)));
  expectAttributes(found, {{u"kMDItemMediaTypes"_ns, NSArray{u"Video"_ns, u"Sound"_ns, u"Text"_ns}},
                           {u"kMDItemLanguages"_ns, NSArray{u"eng"_ns, u"deu"_ns}},
                           {u"kMDItemPixelHeight"_ns, 8},
                           {u"kMDItemVideoBitRate"_ns, kBytes * 8},
                           {u"kMDItemAudioSampleRate"_ns, 8000.0},
                           {u"kMDItemAudioChannelCount"_ns, 2}});
  EXPECT_EQ(found.objectForKey(u"kMDItemCodecs"_ns).array().count(), 2u);
  EXPECT_GT(found.objectForKey(u"kMDItemTotalBitRate"_ns).integer().value_or(0), 0);
  EXPECT_GT(found.objectForKey(u"kMDItemAudioBitRate"_ns).integer().value_or(0), 0);
}

}  // namespace
}  // namespace nimbo
