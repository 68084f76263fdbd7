// SPDX-License-Identifier: Apache-2.0
#include "platform/QTKit/Engine/QuickTimeHeader.hpp"

#include <cstdint>

namespace nimbo::detail {
namespace {

/// The movie's header comes after fewer atoms than this.
constexpr int kMaximumAtoms = 100;

constexpr std::uint32_t kMovie = 0x6d6f6f76;        // "moov"
constexpr std::uint32_t kMovieHeader = 0x6d766864;  // "mvhd"

/// Goes to the content of the first atom of a type between the place of reading and `end`, and answers its end.
std::optional<std::int64_t> enterAtom(AVIOContext &input, std::uint32_t type, std::int64_t end) {
  constexpr std::int64_t kHeaderLength = 8;
  for (int i = 0; i < kMaximumAtoms; ++i) {
    const std::int64_t begin = avio_tell(&input);
    if (begin < 0 || end - begin < kHeaderLength) return std::nullopt;
    std::int64_t length = avio_rb32(&input);
    const std::uint32_t found = avio_rb32(&input);
    // 0 is up to the end, and 1 says that the length comes behind the type.
    if (length == 1) length = static_cast<std::int64_t>(avio_rb64(&input));
    if (length == 0) length = end - begin;
    if (length < kHeaderLength || length > end - begin) return std::nullopt;
    if (found == type) return begin + length;
    if (avio_seek(&input, begin + length, SEEK_SET) < 0) return std::nullopt;
  }
  return std::nullopt;
}

QuickTimeHeader headerInMovie(AVIOContext &input) {
  // Between the duration and the poster's time: rate, volume, matrix, the time of the preview and its duration.
  constexpr std::int64_t kBetween = 4 + 2 + 10 + 36 + 4 + 4;
  const auto movie = enterAtom(input, kMovie, avio_size(&input));
  if (!movie || !enterAtom(input, kMovieHeader, *movie)) return {};
  const bool isLong = avio_rb32(&input) >> 24 == 1;
  avio_skip(&input, isLong ? 16 : 8);
  const std::uint32_t scale = avio_rb32(&input);
  QuickTimeHeader header;
  header.tellsDuration = (isLong ? avio_rb64(&input) : avio_rb32(&input)) != 0;
  avio_skip(&input, kBetween);
  const std::uint32_t time = avio_rb32(&input);
  if (scale != 0 && time != 0 && !avio_feof(&input)) header.posterSeconds = static_cast<double>(time) / scale;
  return header;
}

}  // namespace

QuickTimeHeader headerOfQuickTimeMovie(AVIOContext &input) {
  const QuickTimeHeader header = headerInMovie(input);
  avio_seek(&input, 0, SEEK_SET);
  return header;
}

}  // namespace nimbo::detail
