// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/NSGeometry.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What a movie's file says of one of its tracks; 0 or nil where it says nothing.
///
///     for (const QTTrack &track : movie->tracks())
///       if (track.mediaType == u"soun"_ns) NSLog(u"%@", track.codec);
struct QTTrack {
  NSString mediaType;              ///< "vide", "soun" or "text" (subtitles); nil for others.
  NSString codec;                  ///< The codec's name for people, as "H.264" or "AAC".
  NSString language;               ///< As the file writes it, mostly three letters of ISO 639.
  std::int64_t bitsPerSecond = 0;  ///< On the average.
  NSSize size;                     ///< Of pictures, in points: by the sample aspect, turned as shown.
  double framesPerSecond = 0;      ///< Of pictures, on the average.
  double samplesPerSecond = 0;     ///< Of sound.
  std::uint32_t channels = 0;      ///< Of sound.
  bool isCover = false;            ///< Whether it is one still picture that comes with the file.
};

}  // namespace nimbo
