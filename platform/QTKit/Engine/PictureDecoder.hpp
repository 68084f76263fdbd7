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
    End end = End::gaveUp;
    /// Where the first packet begins; AV_NOPTS_VALUE when it does not say.
    std::int64_t begin = AV_NOPTS_VALUE;
  };
  /// Decodes from where the file is being read to the frame that is shown at `time`, in the stream's units;
  /// nothing when that is too far away.
  Search search(AVFormatContext &format, std::int64_t time, const Deadline &deadline);
  /// Forgets what was decoded, after the file's place of reading has changed.
  void flush();

 private:
  explicit PictureDecoder(const AVStream &stream, const AVCodec &decoder)
      : stream_(stream), decoder_(decoder) {}
  bool open(int threads);
  /// How many pixels are between two times.
  double pixelsBetween(std::int64_t begin, std::int64_t end) const;
  /// Gives the packet, null at the file's end, to the decoder and takes its frames; true when the one that was
  /// looked for is there.
  bool decode(const AVPacket *packet, Search &search, std::int64_t time);
  bool takeFrame(Search &search, std::int64_t time);

  const AVStream &stream_;
  const AVCodec &decoder_;
  FFmpegPointer<AVCodecContext> codec_;
  FFmpegPointer<AVFrame> frame_;
  FFmpegPointer<AVPacket> packet_;
  /// Of the search: how much has been decoded, and read without a frame in it.
  std::int64_t decodedPixels_ = 0;
  std::int64_t bytesWithoutFrame_ = 0;
  std::int64_t packetsWithoutFrame_ = 0;
};

}  // namespace nimbo::detail
