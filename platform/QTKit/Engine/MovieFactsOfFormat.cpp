// SPDX-License-Identifier: Apache-2.0
#include "platform/QTKit/Engine/MovieFactsOfFormat.hpp"

#include <algorithm>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "platform/CoreServices/TextEncodings/NSStringEncodingDetection.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/QTKit/Engine/FramePixels.hpp"
#include "platform/QTKit/Engine/PictureOrientation.hpp"

namespace nimbo::detail {
namespace {

/// Longer texts, and more of them, are damage.
constexpr std::size_t kMaximumTextLengthInBytes = 64 << 10;
constexpr std::uint32_t kMaximumTexts = 200;

/// Nil for an empty text.
NSString stringWithText(std::string_view text) {
  text = text.substr(0, kMaximumTextLengthInBytes);
  if (text.find_first_not_of(" \t\r\n") == text.npos) return {};
  return stringWithDetectedEncoding(text, true).string;
}

void addTexts(const AVDictionary *texts, NSDictionary &metadata) {
  const AVDictionaryEntry *entry = nullptr;
  while ((entry = av_dict_get(texts, "", entry, AV_DICT_IGNORE_SUFFIX)) && metadata.count() < kMaximumTexts) {
    std::string name = entry->key;
    std::ranges::transform(name, name.begin(), toASCIILower<char>);
    const NSString key = NSString::stringWithLossyUTF8String(name);
    if (const NSString value = stringWithText(entry->value); value && !metadata.objectForKey(key))
      metadata.setObject(value, key);
  }
}

NSString mediaTypeOfStream(AVMediaType type) {
  switch (type) {
    case AVMEDIA_TYPE_VIDEO:
      return u"vide"_ns;
    case AVMEDIA_TYPE_AUDIO:
      return u"soun"_ns;
    case AVMEDIA_TYPE_SUBTITLE:
      return u"text"_ns;
    default:
      return {};
  }
}

/// The codec's name without what stands behind it in brackets or behind a slash: "H.264 / AVC / MPEG-4 AVC".
NSString nameOfCodec(AVCodecID codec) {
  const AVCodecDescriptor *description = avcodec_descriptor_get(codec);
  if (!description) return {};
  std::string_view name = description->long_name ? description->long_name : description->name;
  name = name.substr(0, std::min(name.find(" ("), name.find(" / ")));
  return NSString::stringWithLossyUTF8String(name);
}

QTTrack trackOfStream(AVFormatContext &format, AVStream &stream) {
  const AVCodecParameters &parameters = *stream.codecpar;
  QTTrack track;
  track.mediaType = mediaTypeOfStream(parameters.codec_type);
  track.codec = nameOfCodec(parameters.codec_id);
  if (const AVDictionaryEntry *language = av_dict_get(stream.metadata, "language", nullptr, 0))
    if (std::string_view(language->value) != "und") track.language = stringWithText(language->value);
  track.bitsPerSecond = std::max<std::int64_t>(parameters.bit_rate, 0);
  if (parameters.codec_type == AVMEDIA_TYPE_VIDEO) {
    track.isCover = (stream.disposition & (AV_DISPOSITION_ATTACHED_PIC | AV_DISPOSITION_TIMED_THUMBNAILS)) != 0;
    track.size = squarePixelSize(parameters.width, parameters.height,
                                 av_guess_sample_aspect_ratio(&format, &stream, nullptr));
    if (orientationOfStream(stream).isTransposed) std::swap(track.size.width, track.size.height);
    if (!track.isCover && stream.avg_frame_rate.den > 0) track.framesPerSecond = av_q2d(stream.avg_frame_rate);
  } else if (parameters.codec_type == AVMEDIA_TYPE_AUDIO) {
    track.samplesPerSecond = std::max(parameters.sample_rate, 0);
    track.channels = static_cast<std::uint32_t>(std::max(parameters.ch_layout.nb_channels, 0));
  }
  return track;
}

/// The track that players show: the one that the file prefers, else the largest.
std::optional<std::size_t> pictureTrack(const AVFormatContext &format, const std::vector<QTTrack> &tracks) {
  std::optional<std::size_t> best;
  const auto rank = [&](std::size_t index) {
    return std::tuple(format.streams[index]->codecpar->codec_id != AV_CODEC_ID_NONE,
                      (format.streams[index]->disposition & AV_DISPOSITION_DEFAULT) != 0,
                      tracks[index].size.width * tracks[index].size.height);
  };
  for (std::size_t index = 0; index < tracks.size(); ++index)
    if (tracks[index].mediaType == u"vide"_ns && !tracks[index].isCover && (!best || rank(index) > rank(*best)))
      best = index;
  return best;
}

}  // namespace

MovieFacts factsOfFormat(AVFormatContext &format) {
  MovieFacts facts;
  if (format.duration != AV_NOPTS_VALUE)
    facts.durationSeconds = static_cast<double>(format.duration) / AV_TIME_BASE;
  facts.bitsPerSecond = std::max<std::int64_t>(format.bit_rate, 0);
  addTexts(format.metadata, facts.metadata);
  const bool isSaid = facts.metadata.count() > 0;
  for (unsigned int i = 0; i < format.nb_streams; ++i) {
    facts.tracks.push_back(trackOfStream(format, *format.streams[i]));
    // Ogg has what is said of the file in its streams.
    if (!isSaid && !facts.tracks.back().isCover) addTexts(format.streams[i]->metadata, facts.metadata);
  }
  facts.pictureTrack = pictureTrack(format, facts.tracks);
  return facts;
}

}  // namespace nimbo::detail
