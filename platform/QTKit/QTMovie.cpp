// SPDX-License-Identifier: Apache-2.0
#include "platform/QTKit/QTMovie.hpp"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/System/EngineLibrary.hpp"
#include "platform/Foundation/System/RegularFile.hpp"
#include "platform/QTKit/Engine/MovieEngine.hpp"

namespace nimbo {
namespace {

const detail::MovieEngine *engine(NSError *error) {
  return static_cast<const detail::MovieEngine *>(engineNamed("qtkit", error));
}

CGImage imageOfPicture(detail::MoviePicture picture) {
  return CGImage::imageWithPixels(picture.width, picture.height, picture.hasAlpha, std::move(picture.pixels));
}

NSDictionary attributesOfTrack(const QTTrack &track) {
  NSDictionary attributes;
  attributes.setObject(track.mediaType, u"QTTrackMediaTypeAttribute"_ns);
  attributes.setObject(track.codec, u"QTTrackFormatSummaryAttribute"_ns);
  if (track.size != NSSize())
    attributes.setObject(NSStringFromSize(track.size), u"QTTrackDimensionsAttribute"_ns);
  return attributes;
}

}  // namespace

struct QTMovie::Storage {
  std::unique_ptr<detail::EngineMovie> movie;
  NSString fileName;
  double currentTime = 0;
  NSDictionary settable = {{u"QTMovieLoopsAttribute"_ns, false},
                           {u"QTMovieLoopsBackAndForthAttribute"_ns, false},
                           {u"QTMovieMutedAttribute"_ns, false},
                           {u"QTMoviePlaysAllFramesAttribute"_ns, false},
                           {u"QTMoviePlaysSelectionOnlyAttribute"_ns, false}};
};

QTMovie::QTMovie(std::unique_ptr<Storage> storage) : storage_(std::move(storage)) {}
QTMovie::~QTMovie() = default;

std::unique_ptr<QTMovie> QTMovie::movieWithFile(const NSString &path, const Deadline &deadline,
                                                NSError *error) {
  std::uint64_t size = 0;
  FileDescriptor file = openRegularFile(path, &size, error);
  return file ? movieWithOpenFile(std::move(file), size, path, deadline, error) : nullptr;
}

std::unique_ptr<QTMovie> QTMovie::movieWithOpenFile(FileDescriptor file, std::uint64_t size,
                                                    const NSString &path, const Deadline &deadline,
                                                    NSError *error) {
  const detail::MovieEngine *const opener = engine(error);
  auto movie =
      opener ? opener->openFile(std::move(file), size, lastPathComponent(path), deadline, error) : nullptr;
  if (!movie) return nullptr;
  auto storage = std::make_unique<Storage>();
  storage->movie = std::move(movie);
  storage->fileName = path;
  return std::unique_ptr<QTMovie>(new QTMovie(std::move(storage)));
}

std::unique_ptr<QTMovie> QTMovie::movieWithData(const NSData &data, const Deadline &deadline, NSError *error) {
  const detail::MovieEngine *const opener = engine(error);
  auto movie = opener ? opener->openData(data, deadline, error) : nullptr;
  if (!movie) return nullptr;
  auto storage = std::make_unique<Storage>();
  storage->movie = std::move(movie);
  return std::unique_ptr<QTMovie>(new QTMovie(std::move(storage)));
}

std::optional<double> QTMovie::duration() const {
  return storage_->movie->facts().durationSeconds;
}

NSSize QTMovie::naturalSize() const {
  const detail::MovieFacts &facts = storage_->movie->facts();
  return facts.pictureTrack ? facts.tracks[*facts.pictureTrack].size : NSSize();
}

double QTMovie::currentTime() const {
  return storage_->currentTime;
}

void QTMovie::setCurrentTime(double seconds) {
  const double end = duration().value_or(HUGE_VAL);
  storage_->currentTime = std::isnan(seconds) ? 0 : std::max(std::min(seconds, end), 0.0);
}

CGImage QTMovie::frameImageAtTime(double seconds, NSError *error) {
  return imageOfPicture(storage_->movie->frameAtTime(seconds, error));
}

CGImage QTMovie::posterImage(NSError *error) {
  return frameImageAtTime(storage_->movie->facts().posterSeconds.value_or(0), error);
}

CGImage QTMovie::coverImage(NSError *error) {
  return imageOfPicture(storage_->movie->cover(error));
}

void QTMovie::play(double seconds) {
  storage_->movie->readOn(seconds);
}

const std::vector<QTTrack> &QTMovie::tracks() const {
  return storage_->movie->facts().tracks;
}

std::int64_t QTMovie::bitsPerSecond() const {
  return storage_->movie->facts().bitsPerSecond;
}

const NSDictionary &QTMovie::metadata() const {
  return storage_->movie->facts().metadata;
}

NSDictionary QTMovie::movieAttributes() const {
  const detail::MovieFacts &facts = storage_->movie->facts();
  NSDictionary attributes = storage_->settable;
  const id &title = facts.metadata.objectForKey(u"title"_ns);
  attributes.setObject(storage_->fileName, u"QTMovieFileNameAttribute"_ns);
  attributes.setObject(title ? title : id(lastPathComponent(storage_->fileName)),
                       u"QTMovieDisplayNameAttribute"_ns);
  attributes.setObject(facts.metadata.objectForKey(u"copyright"_ns), u"QTMovieCopyrightAttribute"_ns);
  const NSString size = NSStringFromSize(naturalSize());
  attributes.setObject(size, u"QTMovieNaturalSizeAttribute"_ns);
  attributes.setObject(size, u"QTMovieCurrentSizeAttribute"_ns);
  if (facts.durationSeconds) attributes.setObject(*facts.durationSeconds, u"QTMovieDurationAttribute"_ns);
  attributes.setObject(facts.durationSeconds.has_value(), u"QTMovieHasDurationAttribute"_ns);
  attributes.setObject(storage_->currentTime, u"QTMovieCurrentTimeAttribute"_ns);
  attributes.setObject(facts.posterSeconds.value_or(0), u"QTMoviePosterTimeAttribute"_ns);
  attributes.setObject(facts.pictureTrack.has_value(), u"QTMovieHasVideoAttribute"_ns);
  const auto isSound = [](const QTTrack &track) { return track.mediaType == u"soun"_ns; };
  attributes.setObject(std::ranges::any_of(facts.tracks, isSound), u"QTMovieHasAudioAttribute"_ns);
  NSArray tracks;
  for (const QTTrack &track : facts.tracks) tracks.addObject(attributesOfTrack(track));
  attributes.setObject(std::move(tracks), u"QTMovieTracks"_ns);
  return attributes;
}

id QTMovie::attributeForKey(const NSString &name) const {
  return movieAttributes().objectForKey(name);
}

void QTMovie::setAttribute(const id &value, const NSString &name) {
  if (value.isBoolean() && storage_->settable.objectForKey(name)) storage_->settable.setObject(value, name);
}

}  // namespace nimbo
