// SPDX-License-Identifier: Apache-2.0
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "platform/QTKit/QTMovie.hpp"

namespace {

constexpr double kSeconds = 20;

/// A byte that is not there, or a colour that is more than its alpha, ends the program.
void checkPixels(const nimbo::CGImage &image) {
  const std::size_t length = image.bytesPerRow() * image.height();
  const std::uint8_t *pixels = image.pixels();
  for (std::size_t i = 0; i < length; i += nimbo::CGImage::kBytesPerPixel)
    if (pixels[i] > pixels[i + 3] || (!image.hasAlpha() && pixels[i + 3] != 255)) std::abort();
}

}  // namespace

/// Whatever is taken for a movie ends in time, and its frames are whole.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace nimbo;
  NSError failure;
  const auto movie =
      QTMovie::movieWithData(NSData::dataWithBytes(data, size), Deadline::after(kSeconds), &failure);
  // Without the engine nothing would be fuzzed.
  if (failure.errorCode() == ErrorCode::other) std::abort();
  if (!movie) return 0;
  for (const double time : {2.0, 0.0, movie->duration().value_or(0)})
    checkPixels(movie->frameImageAtTime(time));
  movie->play(0.01);
  checkPixels(movie->posterImage());
  checkPixels(movie->coverImage());
  if (movie->movieAttributes().objectForKey(u"QTMovieTracks"_ns).array().count() == 0) std::abort();
  return 0;
}
