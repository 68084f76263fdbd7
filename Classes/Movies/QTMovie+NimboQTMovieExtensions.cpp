// SPDX-License-Identifier: Apache-2.0
#include "Classes/Movies/QTMovie+NimboQTMovieExtensions.hpp"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "platform/AppKit/Images/NSBitmapImageRep.hpp"
#include "platform/Foundation/NSException.hpp"

namespace nimbo {
inline namespace NimboQTMovieExtensions {
namespace {

/// Titles and black frames are over by then.
constexpr double kLatestMiddleInSeconds = 15;
/// How long what comes late is waited for.
constexpr double kPlayingSeconds = 0.25;

NSImage imageWithFrame(const CGImage &frame) {
  const auto rep = NSBitmapImageRep::imageRepWithCGImage(frame);
  if (!rep) return {};
  NSImage image = NSImage::imageWithSize(rep->size());
  image.addRepresentation(rep);
  return image;
}

/// What `imageOfMovie` answers for the movie of a file. What it raises is logged under the method's name.
template <class ImageOfMovie>
NSImage imageForMovieWithFile(std::string_view method, const NSString &path, const Deadline &deadline,
                              NSError *error, ImageOfMovie &&imageOfMovie) {
  try {
    const auto movie = QTMovie::movieWithFile(path, deadline, error);
    return movie ? imageOfMovie(*movie) : NSImage();
  } catch (const NSException &exception) {
    logException(method, "QTMovie", exception);
    return {};
  }
}

}  // namespace

NSImage thumbnailImageForMovieWithFile(const NSString &path, NSDictionary *attributes, const Deadline &deadline,
                                       NSError *error) {
  if (attributes) *attributes = {};
  const auto thumbnail = [&](QTMovie &movie) {
    NSImage image = thumbnailImage(movie);
    if (!image) {
      movie.play(kPlayingSeconds);
      image = thumbnailImage(movie, error);
    }
    if (attributes) *attributes = movie.movieAttributes();
    return image;
  };
  return imageForMovieWithFile("thumbnailImageForMovieWithFile:attributes:", path, deadline, error, thumbnail);
}

NSImage thumbnailImageForMovieWithFile(const NSString &path, const Deadline &deadline, NSError *error) {
  return thumbnailImageForMovieWithFile(path, nullptr, deadline, error);
}

NSImage middleImageForMovieWithFile(const NSString &path, const Deadline &deadline, NSError *error) {
  return imageForMovieWithFile("middleImageForMovieWithFile:", path, deadline, error,
                               [&](QTMovie &movie) { return middleImage(movie, error); });
}

NSImage posterImageForMovieWithFile(const NSString &path, const Deadline &deadline, NSError *error) {
  return imageForMovieWithFile("posterImageForMovieWithFile:", path, deadline, error,
                               [&](QTMovie &movie) { return imageWithFrame(movie.posterImage(error)); });
}

NSImage thumbnailImage(QTMovie &movie, NSError *error) {
  const NSImage middle = middleImage(movie);
  return middle ? middle : imageWithFrame(movie.posterImage(error));
}

NSImage middleImage(QTMovie &movie, NSError *error) {
  const double middle = std::clamp(movieDuration(movie) * 0.5, 0.0, kLatestMiddleInSeconds);
  return imageWithFrame(movie.frameImageAtTime(std::floor(middle), error));
}

double movieTime(const QTMovie &movie) {
  return movie.currentTime();
}

void setMovieTime(QTMovie &movie, double seconds) {
  movie.setCurrentTime(seconds);
}

double movieDuration(const QTMovie &movie) {
  return movie.duration().value_or(0);
}

NSSize movieSize(const QTMovie &movie) {
  return movie.naturalSize();
}

}  // namespace NimboQTMovieExtensions
}  // namespace nimbo
