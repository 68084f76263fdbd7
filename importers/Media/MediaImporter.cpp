// SPDX-License-Identifier: Apache-2.0
#include <fcntl.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "importers/ImporterPlugIn.hpp"
#include "importers/Media/SoundTags.hpp"
#include "importers/Packages/DocumentProperties.hpp"
#include "platform/Foundation/NSStringJoining.hpp"
#include "platform/Foundation/System/RegularFile.hpp"
#include "platform/QTKit/QTMovie.hpp"

namespace nimbo {
namespace {

constexpr double kReadingSeconds = 6;

/// What becomes of the texts of a tag.
enum class Kind { text, list, integer, real };

/// An attribute, and what it is called in the tags of sounds and in those of movies.
struct Tag {
  const char *attribute;
  NSString soundName;
  NSString movieName;
  Kind kind = Kind::text;
};

/// The number at the beginning of a text, as of "3/12" and "2004-10-31"; nil without one.
id numberOfText(const NSString &text, Kind kind) {
  const std::string bytes = text.UTF8String();
  char *end = nullptr;
  const double number = std::strtod(bytes.c_str(), &end);
  constexpr double kLargest = 1e9;
  if (end == bytes.c_str() || !(std::abs(number) < kLargest)) return {};
  return kind == Kind::real ? id(number) : id(static_cast<std::int64_t>(number));
}

id valueOfTexts(const NSArray &texts, Kind kind) {
  if (texts.count() == 0) return {};
  if (kind == Kind::list) return texts;
  if (kind != Kind::text) return numberOfText(texts[0].string(), kind);
  std::vector<NSString> pieces;
  for (const id &text : texts) pieces.push_back(text.string());
  return stringByJoining(pieces, u", ");
}

void setTags(const NSDictionary &ofSound, const NSDictionary &ofMovie, Attributes &attributes) {
  static const Tag kTags[] = {
      {"kMDItemTitle", u"TITLE"_ns, u"title"_ns},
      {"kMDItemAuthors", u"ARTIST"_ns, u"artist"_ns, Kind::list},
      {"kMDItemAlbum", u"ALBUM"_ns, u"album"_ns},
      {"kMDItemComposer", u"COMPOSER"_ns, u"composer"_ns},
      {"kMDItemLyricist", u"LYRICIST"_ns, u"lyricist"_ns},
      {"kMDItemMusicalGenre", u"GENRE"_ns, u"genre"_ns},
      {"kMDItemRecordingYear", u"DATE"_ns, u"date"_ns, Kind::integer},
      {"kMDItemAudioTrackNumber", u"TRACKNUMBER"_ns, u"track"_ns, Kind::integer},
      {"kMDItemTempo", u"BPM"_ns, u"bpm"_ns, Kind::real},
      {"kMDItemKeySignature", u"INITIALKEY"_ns, u"initialkey"_ns},
      {"kMDItemComment", u"COMMENT"_ns, u"comment"_ns},
      {"kMDItemDescription", u"DESCRIPTION"_ns, u"description"_ns},
      {"kMDItemCopyright", u"COPYRIGHT"_ns, u"copyright"_ns},
      {"kMDItemPublishers", u"LABEL"_ns, u"publisher"_ns, Kind::list},
      {"kMDItemKeywords", u"KEYWORDS"_ns, u"keywords"_ns, Kind::list},
      {"kMDItemEncodingApplications", u"ENCODING"_ns, u"encoder"_ns, Kind::list},
      {"kMDItemTextContent", u"LYRICS"_ns, u"lyrics"_ns},
  };
  for (const Tag &tag : kTags) {
    NSArray texts = ofSound.objectForKey(tag.soundName).array();
    if (const NSString text = ofMovie.objectForKey(tag.movieName).string(); texts.count() == 0 && text)
      texts = {text};
    attributes.set(tag.attribute, valueOfTexts(texts, tag.kind));
  }
  const NSString created = ofMovie.objectForKey(u"creation_time"_ns).string();
  if (const auto date = dateOfText(created.UTF8String())) attributes.set("kMDItemContentCreationDate", *date);
}

void addOnce(const NSString &text, NSArray &array) {
  if (text && std::ranges::find(array, id(text)) == array.end()) array.addObject(text);
}

/// What kinds of tracks there are, and how they are coded; covers do not count.
void setTracks(const QTMovie &movie, Attributes &attributes) {
  NSArray codecs;
  NSArray kinds;
  NSArray languages;
  const QTTrack *sound = nullptr;
  const QTTrack *pictures = nullptr;
  for (const QTTrack &track : movie.tracks()) {
    if (track.isCover) continue;
    const bool isSound = track.mediaType == u"soun"_ns;
    const bool isPictures = track.mediaType == u"vide"_ns;
    if (isSound && !sound) sound = &track;
    if (isPictures && !pictures) pictures = &track;
    if (isSound || isPictures) addOnce(track.codec, codecs);
    addOnce(isSound           ? u"Sound"_ns
            : isPictures      ? u"Video"_ns
            : track.mediaType ? u"Text"_ns
                              : NSString(),
            kinds);
    addOnce(track.language, languages);
  }
  if (codecs.count() > 0) attributes.set("kMDItemCodecs", codecs);
  if (kinds.count() > 0) attributes.set("kMDItemMediaTypes", kinds);
  if (languages.count() > 0) attributes.set("kMDItemLanguages", languages);
  if (const auto rate = movie.bitsPerSecond(); rate > 0) attributes.set("kMDItemTotalBitRate", rate);
  if (sound) {
    if (sound->bitsPerSecond > 0) attributes.set("kMDItemAudioBitRate", sound->bitsPerSecond);
    attributes.set("kMDItemAudioSampleRate", sound->samplesPerSecond);
    attributes.set("kMDItemAudioChannelCount", sound->channels);
  }
  if (pictures) {
    if (pictures->bitsPerSecond > 0) attributes.set("kMDItemVideoBitRate", pictures->bitsPerSecond);
    attributes.set("kMDItemPixelWidth", static_cast<std::int64_t>(movie.naturalSize().width));
    attributes.set("kMDItemPixelHeight", static_cast<std::int64_t>(movie.naturalSize().height));
  }
}

void importMedia(const NSString &path, Attributes &attributes) {
  const Deadline deadline = Deadline::after(kReadingSeconds);
  NSError error;
  // Both read one file, whatever is put in its place meanwhile.
  std::uint64_t size = 0;
  FileDescriptor file = openRegularFile(path, &size, &error);
  if (!file) return attributes.setReason(error);
  FileDescriptor sameFile(::fcntl(file.get(), F_DUPFD_CLOEXEC, 0));
  const auto movie = QTMovie::movieWithOpenFile(std::move(file), size, path, deadline, &error);
  const NSDictionary tags = tagsOfSoundFile(std::move(sameFile), path, deadline);
  setTags(tags, movie ? movie->metadata() : NSDictionary(), attributes);
  if (!movie) {
    attributes.setReason(error);
    return;
  }
  if (const auto duration = movie->duration()) attributes.set("kMDItemDurationSeconds", *duration);
  setTracks(*movie, attributes);
}

}  // namespace
}  // namespace nimbo

QUIVERLEAF_IMPORTER_FACTORY void *MediaImporterFactory(void *, const std::uint8_t *typeID) {
  return nimbo::makeMetaDataImporter(typeID, nimbo::importMedia);
}
