// SPDX-License-Identifier: Apache-2.0
//
// What QTMovie asks of its engine, the library nimbo-qtkit, which has FFmpeg.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/System/Deadline.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "platform/Foundation/id.hpp"
#include "platform/QTKit/QTTrack.hpp"

namespace nimbo::detail {

/// Rows of red, green, blue and alpha, as CGImage takes them; no pixels when there is none.
struct MoviePicture {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  bool hasAlpha = false;
  std::unique_ptr<std::uint8_t[]> pixels;
};

/// What the headers and the first packets of a file say.
struct MovieFacts {
  std::optional<double> durationSeconds;
  /// Where the file says that its poster is.
  std::optional<double> posterSeconds;
  std::int64_t bitsPerSecond = 0;
  std::vector<QTTrack> tracks;
  /// Which of the tracks the frames are of.
  std::optional<std::size_t> pictureTrack;
  /// What the file says of itself, strings under FFmpeg's names in lower case, as "title".
  NSDictionary metadata;
};

/// An opened file. Used from one thread at a time.
class EngineMovie {
 public:
  virtual ~EngineMovie() = default;
  /// Does not change.
  virtual const MovieFacts &facts() const = 0;
  /// The frame that is shown at a time, or what is nearest to it of what can be decoded.
  virtual MoviePicture frameAtTime(double seconds, NSError *error) = 0;
  /// The picture of the first track that is a cover.
  virtual MoviePicture cover(NSError *error) = 0;
  /// Lets the next search for a frame go on for that long where the last one gave up.
  virtual void readOn(double seconds) = 0;
};

/// What `nimboEngine` of nimbo-qtkit answers.
struct MovieEngine {
  /// Reads no more than `size` bytes of the file; its name says what to expect of it.
  std::unique_ptr<EngineMovie> (*openFile)(FileDescriptor file, std::uint64_t size, const NSString &name,
                                           const Deadline &deadline, NSError *error);
  std::unique_ptr<EngineMovie> (*openData)(const NSData &data, const Deadline &deadline, NSError *error);
};

}  // namespace nimbo::detail
