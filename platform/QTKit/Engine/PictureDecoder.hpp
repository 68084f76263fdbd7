// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/System/Deadline.hpp"
#include "platform/QTKit/Engine/FFmpegHandles.hpp"

namespace nimbo::detail {

/// Decodes the pictures of one stream, without hardware.
class PictureDecoder {
 public:
  /// Null when no decoder takes the stream; `*error` says why.
  static std::unique_ptr<PictureDecoder> decoderForStream(const AVStream &stream, NSError *error);

  /// The still picture in one packet; null when it cannot be decoded.
  FFmpegPointer<AVFrame> pictureInPacket(const AVPacket &packet);

  /// How a search for a frame ended.
  enum class End { found, endOfFile, gaveUp, tooFar, deadline };
  struct Search {
    /// The last frame that begins no later than asked for, else the first one; null when there is none.
    FFmpegPointer<AVFrame> frame;
    /// Whether the frame begins later than asked for.
    bool isLate = false;
    /// When the frame is shown, in the stream's units.
    std::int64_t frameBegin = AV_NOPTS_VALUE;
    /// Whether one that was skipped may begin between the frame and the time.
    bool isBehindSkipped = false;
    End end = End::gaveUp;
    /// Where the first packet begins; AV_NOPTS_VALUE when it does not say.
    std::int64_t begin = AV_NOPTS_VALUE;
  };
  /// What is searched for.
  struct Target {
    /// When the frame is shown, in the stream's units.
    std::int64_t time = 0;
    /// Whether frames that no other needs are skipped on the way, by how long they are said to be shown.
    bool skips = true;
    /// The search ends as too far as soon as its pace would not get it there by then.
    Deadline budget = {};
  };
  /// Decodes from where the file is being read to the frame that is shown at a time.
  Search search(AVFormatContext &format, const Target &target, const Deadline &deadline);
  /// Forgets what was decoded, after the file's place of reading has changed.
  void flush();

 private:
  explicit PictureDecoder(const AVStream &stream, const AVCodec &decoder)
      : stream_(stream), decoder_(decoder) {}
  bool open(int threads);
  double framesPerSecond() const;
  /// When the frame is shown; the next moment behind `before`, or the first one, when it does not say.
  std::int64_t beginOfFrame(const AVFrame &frame, std::int64_t before) const;
  /// Whether decoding will not get from `begin` to the time within the budget at the pace of the `elapsed`
  /// seconds.
  bool isTooFar(const AVPacket &packet, std::int64_t begin, const Target &target, double elapsed) const;
  /// How many pixels are between two times.
  double pixelsBetween(std::int64_t begin, std::int64_t end) const;
  /// Gives the packet, null at the file's end, to the decoder and takes its frames; true when the one that was
  /// looked for is there.
  bool decode(const AVPacket *packet, Search &search, const Target &target);
  bool takeFrame(Search &search, const Target &target);

  const AVStream &stream_;
  const AVCodec &decoder_;
  FFmpegPointer<AVCodecContext> codec_;
  FFmpegPointer<AVFrame> frame_;
  FFmpegPointer<AVPacket> packet_;
  /// Of the search: how much has been decoded, and read without a frame in it.
  std::int64_t decodedPixels_ = 0;
  std::int64_t bytesWithoutFrame_ = 0;
  std::int64_t packetsWithoutFrame_ = 0;
  /// Of the search: when the last frame begins, and the last one that was skipped.
  std::int64_t lastBegin_ = AV_NOPTS_VALUE;
  std::int64_t lastSkipped_ = AV_NOPTS_VALUE;
  /// Whether a packet of the search did not say when it is shown.
  bool isUntimed_ = false;
};

}  // namespace nimbo::detail
