// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/CoreGraphics/CGImage.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NSGeometry.hpp"
#include "platform/Foundation/System/Deadline.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A movie or sound file. Used from one thread at a time.
///
///     const auto movie = QTMovie::movieWithFile(path, Deadline::after(8), &error);
///     const CGImage frame = movie ? movie->frameImageAtTime(15, &error) : CGImage();
///     const double seconds = movie->duration();
class QTMovie {
 public:
  /// Opens a file. Null when there is none or it is no movie or sound; `*error` says why. All that is done with
  /// it ends at `deadline`.
  static std::unique_ptr<QTMovie> movieWithFile(const NSString &path, const Deadline &deadline,
                                                NSError *error = nullptr);
  ~QTMovie();

  /// In seconds; nothing when the file does not say and it cannot be found out.
  std::optional<double> duration() const;
  /// In points: the coded size by the sample aspect, turned as it is shown. Zero without pictures.
  NSSize naturalSize() const;
  /// The time of the current frame, in seconds; 0 at first.
  double currentTime() const;
  /// Sets it.
  void setCurrentTime(double seconds);
  /// The frame at a time, turned and with square pixels, in its natural size; nil when there is none, `*error`
  /// says why. Cover art is no frame.
  CGImage frameImageAtTime(double seconds, NSError *error = nullptr);
  /// The frame that the file names as its poster, else the first one that is there; nil as above.
  CGImage posterImage(NSError *error = nullptr);
  /// The picture that comes with a sound file; nil when there is none.
  CGImage coverImage(NSError *error = nullptr);
  /// The attributes under the platform's names: "QTMovieDurationAttribute" (real, seconds),
  /// "QTMovieNaturalSizeAttribute" (string of the size), "QTMovieLoopsAttribute", ... and of each track.
  NSDictionary movieAttributes() const;
  /// Sets one of the attributes that can be set.
  void setAttribute(const id &value, const NSString &name);
  /// The file name extensions and type codes (as "'MooV'") of the files that can be opened.
  static const std::vector<NSString> &movieFileTypes();

 private:
  struct Storage;
  std::unique_ptr<Storage> storage_;
};

}  // namespace nimbo
