// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <initializer_list>

#include "tests/importers/ShippedImporters.hpp"

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
std::string taggedSound(std::initializer_list<std::string_view> entries) {
  // The comment header of a sound: each entry's length, its name and its text.
  std::string comments = std::string(4, '\0') + static_cast<char>(entries.size()) + std::string(3, '\0');
  for (const std::string_view entry : entries) {
    comments += static_cast<char>(entry.size()) + std::string(3, '\0');
    comments += entry;
  }
  const auto high = static_cast<char>(comments.size() >> 8), low = static_cast<char>(comments.size());
  // The first block is 34 bytes about the stream; the new one stands behind it.
  std::string sound = contentsOfSample("movies/sound.flac");
  return sound.insert(4 + 4 + 34, std::string("\4\0", 2) + high + low + comments);
}

TEST_F(Importers, TagsOfASong) {
  expectAttributes(
      metaDataOf("song.flac", taggedSound({"ARTIST=Iris Bowyer", "ARTIST=Jan Leaf", "LYRICS=Leaf by leaf",
                                           "TITLE=One",          "TITLE=Two",       "ALBUM= ",
                                           "ALBUM=Quivers",      "COMPOSER=C",      "LYRICIST=L",
                                           "GENRE=Folk",         "DATE=2004-10-31", "TRACKNUMBER=3/12",
                                           "BPM=92.5",           "INITIALKEY=Am",   "COMMENT=N",
                                           "DESCRIPTION=D",      "COPYRIGHT=R",     "LABEL=P",
                                           "KEYWORDS=leaf",      "KEYWORDS=quiver", "ENCODING=E"})),
      {{u"kMDItemAuthors"_ns, NSArray{u"Iris Bowyer"_ns, u"Jan Leaf"_ns}},
       {u"kMDItemTextContent"_ns, u"Leaf by leaf"_ns},
       {u"kMDItemTitle"_ns, u"One, Two"_ns},
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
       {u"kMDItemKeywords"_ns, NSArray{u"leaf"_ns, u"quiver"_ns}},
       {u"kMDItemEncodingApplications"_ns, NSArray{u"E"_ns}}});
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

TEST_F(Importers, Movies) {
  const NSDictionary found =
      metaData(NSString::stringWithUTF8String(QUIVERLEAF_TEST_DATA "/movies/quarters.mov"));
  expectAttributes(found, {{u"kMDItemPixelWidth"_ns, 144},
                           {u"kMDItemPixelHeight"_ns, 48},
                           {u"kMDItemCodecs"_ns, NSArray{u"PNG"_ns}},
                           {u"kMDItemMediaTypes"_ns, NSArray{u"Video"_ns}}});
  EXPECT_FALSE(found.objectForKey(u"kMDItemAudioChannelCount"_ns));
  EXPECT_FALSE(found.objectForKey(u"kMDItemLanguages"_ns));
  NSError error;
  EXPECT_EQ(metaData(folder.write("none.mp4", "no movie"), &error).count(), 0u);
  EXPECT_EQ(error.errorCode(), ErrorCode::unsupportedType);
}

}  // namespace
}  // namespace nimbo
