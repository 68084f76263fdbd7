// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/CoreGraphics/CGImage.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NSGeometry.hpp"
#include "platform/Foundation/System/Deadline.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "platform/Foundation/id.hpp"
#include "platform/QTKit/QTTrack.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A movie or sound file. Used from one thread at a time.
///
///     const auto movie = QTMovie::movieWithFile(path, Deadline::after(8), &error);
///     const CGImage frame = movie ? movie->frameImageAtTime(15, &error) : CGImage();
///     const double seconds = movie->duration();
class QTMovie {
 public:
  /// Opens a file. Null when there is none or it is no movie or sound; `*error` says why. All that is done with
  /// it ends at `deadline`. Nothing but this file is ever read, whatever it refers to.
  static std::unique_ptr<QTMovie> movieWithFile(const NSString &path, const Deadline &deadline,
                                                NSError *error = nullptr);
  /// The same with a file that is open for reading, has `size` bytes, and stood at `path`.
  static std::unique_ptr<QTMovie> movieWithOpenFile(FileDescriptor file, std::uint64_t size,
                                                    const NSString &path, const Deadline &deadline,
                                                    NSError *error = nullptr);
  /// Opens data, as above.
  static std::unique_ptr<QTMovie> movieWithData(const NSData &data, const Deadline &deadline,
                                                NSError *error = nullptr);
  ~QTMovie();

  /// In seconds; nothing when the file does not say and it cannot be found out.
  std::optional<double> duration() const;
  /// In points: the coded size by the sample aspect, turned as it is shown. Zero without pictures.
  NSSize naturalSize() const;
  /// The time of the current frame, in seconds; 0 at first.
  double currentTime() const;
  /// Sets it, to no less than 0 and no more than the duration.
  void setCurrentTime(double seconds);
  /// The frame that is shown at a time, turned and with square pixels, in its natural size; behind the end the
  /// last one, in front of the first one that one. Nil when there is none, `*error` says why. Cover art is no
  /// frame. Where decoding would take more than 0.7 seconds to get there from the key frame before it, it is
  /// the nearest key frame.
  CGImage frameImageAtTime(double seconds, NSError *error = nullptr);
  /// The frame that the file names as its poster, else the first one that is there; nil as above.
  CGImage posterImage(NSError *error = nullptr);
  /// The picture that comes with a sound file; nil when there is none.
  CGImage coverImage(NSError *error = nullptr);
  /// Reads on for at most that long where the last search for a frame gave up because there was none in the
  /// part that it read; the frame that comes then is what the next search finds.
  void play(double seconds);

  /// In the order of the file.
  const std::vector<QTTrack> &tracks() const NIMBO_LIFETIMEBOUND;
  /// On the average, of all tracks together; 0 when it is unknown.
  std::int64_t bitsPerSecond() const;
  /// What the file says of itself: strings under the customary names in lower case, as "title", "artist",
  /// "album", "genre", "date", "comment", "copyright", "encoder".
  const NSDictionary &metadata() const NIMBO_LIFETIMEBOUND;
  /// The attributes under the platform's names: "QTMovieFileNameAttribute" (string; not of data),
  /// "QTMovieDisplayNameAttribute" (string: the title, else the file's name), "QTMovieDurationAttribute" (real,
  /// seconds; absent when unknown), "QTMovieNaturalSizeAttribute" and "QTMovieCurrentSizeAttribute" (string of
  /// the size), "QTMovieCurrentTimeAttribute", "QTMoviePosterTimeAttribute" (reals, seconds),
  /// "QTMovieHasVideoAttribute", "QTMovieHasAudioAttribute", "QTMovieHasDurationAttribute" (booleans),
  /// "QTMovieCopyrightAttribute" (string), those that can be set, and "QTMovieTracks", an array of dictionaries
  /// with "QTTrackMediaTypeAttribute", "QTTrackFormatSummaryAttribute" (strings) and
  /// "QTTrackDimensionsAttribute" (string of a size).
  NSDictionary movieAttributes() const;
  /// One of the attributes; nil when it is absent.
  id attributeForKey(const NSString &name) const;
  /// Sets one of the attributes that can be set: the booleans "QTMovieLoopsAttribute",
  /// "QTMovieLoopsBackAndForthAttribute", "QTMovieMutedAttribute", "QTMoviePlaysAllFramesAttribute" and
  /// "QTMoviePlaysSelectionOnlyAttribute", all false at first. Nothing happens for another name, and for a
  /// value of another kind.
  void setAttribute(const id &value, const NSString &name);
  /// The file name extensions and type codes (as "'MooV'") of the files that can be opened.
  static const std::vector<NSString> &movieFileTypes();

 private:
  struct Storage;
  explicit QTMovie(std::unique_ptr<Storage> storage);

  std::unique_ptr<Storage> storage_;
};

}  // namespace nimbo
