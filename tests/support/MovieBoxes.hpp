// SPDX-License-Identifier: Apache-2.0
//
// Movies that are put together box by box.
#pragma once

#include <cstdint>
#include <string>

namespace nimbo {

inline constexpr std::uint32_t kWidth = 16;

inline std::string number(std::uint64_t value, int bytes) {
  std::string text;
  for (int i = bytes - 1; i >= 0; --i) text += static_cast<char>(value >> (8 * i));
  return text;
}

inline std::string box(const std::string &name, const std::string &content) {
  return number(content.size() + 8, 4) + name + content;
}

/// What the header of a track says that is to be shown, and of one that is not.
inline constexpr int kEnabled = 7, kDisabled = 6;
/// Three letters of ISO 639, five bits each from "`" on.
inline constexpr int kEnglish = 5 << 10 | 14 << 5 | 7, kUndetermined = 21 << 10 | 14 << 5 | 4;

/// A track of one sample, which stands behind the first eight bytes of the file.
inline std::string track(int trackNumber, const std::string &handler, const std::string &description,
                         std::uint32_t length, std::uint32_t height, int flags = kEnabled,
                         int language = kEnglish) {
  constexpr std::uint32_t kOne = 1 << 16;
  const std::string matrix =
      number(kOne, 4) + std::string(12, '\0') + number(kOne, 4) + std::string(12, '\0') + number(kOne << 14, 4);
  const std::string header = number(static_cast<std::uint64_t>(flags), 4) + std::string(8, '\0') +
                             number(static_cast<std::uint64_t>(trackNumber), 4) + number(0, 4) +
                             number(1000, 4) + std::string(16, '\0') + matrix + number(kWidth * kOne, 4) +
                             number(std::uint64_t{height} * kOne, 4);
  const std::string table =
      box("stsd", number(0, 4) + number(1, 4) + description) +
      box("stts", number(0, 4) + number(1, 4) + number(1, 4) + number(1000, 4)) +
      box("stsc", number(0, 4) + number(1, 4) + number(1, 4) + number(1, 4) + number(1, 4)) +
      box("stsz", number(0, 4) + number(length, 4) + number(1, 4)) +
      box("stco", number(0, 4) + number(1, 4) + number(8, 4));
  const std::string media = box("mdhd", std::string(12, '\0') + number(1000, 4) + number(1000, 4) +
                                            number(static_cast<std::uint64_t>(language), 2) + number(0, 2)) +
                            box("hdlr", std::string(4, '\0') + "mhlr" + handler + std::string(13, '\0')) +
                            box("minf", box("stbl", table));
  return box("trak", box("tkhd", header) + box("mdia", media));
}

/// The description of pictures whose pixels are a pair of Cb, Y, Cr and Y.
inline std::string pictures(std::uint32_t height, const std::string &color) {
  return box("2vuy", std::string(6, '\0') + number(1, 2) + std::string(16, '\0') + number(kWidth, 2) +
                         number(height, 2) + number(72 << 16, 4) + number(72 << 16, 4) + number(0, 4) +
                         number(1, 2) + std::string(32, '\0') + number(24, 2) + "\xff\xff" + color);
}

/// The whole movie, of one second.
inline std::string madeMovie(const std::string &sample, const std::string &tracks) {
  const std::string header =
      box("mvhd", std::string(12, '\0') + number(1000, 4) + number(1000, 4) + std::string(80, '\0'));
  return box("mdat", sample) + box("moov", header + tracks);
}

}  // namespace nimbo
