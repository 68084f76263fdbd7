// SPDX-License-Identifier: Apache-2.0
#include "platform/QTKit/Engine/PictureDecoder.hpp"

#include <algorithm>
#include <thread>
#include <utility>

#include "platform/QTKit/Engine/FramePixels.hpp"

namespace nimbo::detail {
namespace {

/// Times that are farther behind a key frame than so many pixels are not decoded to: 125 frames of 640 by 480,
/// or 18 of 1920 by 1080.
constexpr double kMaximumPixelsToTime = 40e6;
/// A search that decodes more goes no further, whatever the times in the file say.
constexpr std::int64_t kMaximumDecodedPixels = 400'000'000;
/// From so many pixels on, several threads are faster than one.
constexpr double kMinimumPixelsForThreads = 4e6;
constexpr unsigned int kMaximumThreads = 4;
/// What is assumed of movies that do not say.
constexpr double kDefaultFramesPerSecond = 30;
/// A search that finds nothing in so much gives up.
constexpr std::int64_t kMaximumBytesWithoutFrame = 64 << 20;
constexpr std::int64_t kMaximumPacketsWithoutFrame = 20'000;
/// Moments no farther apart than this are the same: containers round their clocks.
constexpr AVRational kSameMoment = {1, 1000};

/// The first one that is no hardware's and no experiment, in the library's order of preference.
const AVCodec *softwareDecoder(AVCodecID wanted) {
  void *state = nullptr;
  while (const AVCodec *codec = av_codec_iterate(&state)) {
    constexpr int kRefused = AV_CODEC_CAP_HARDWARE | AV_CODEC_CAP_HYBRID | AV_CODEC_CAP_EXPERIMENTAL;
    if (codec->id == wanted && av_codec_is_decoder(codec) && (codec->capabilities & kRefused) == 0)
      return codec;
  }
  return nullptr;
}

bool canHaveThreads(const AVCodec &decoder) {
  return (decoder.capabilities & (AV_CODEC_CAP_FRAME_THREADS | AV_CODEC_CAP_SLICE_THREADS)) != 0;
}

}  // namespace

std::unique_ptr<PictureDecoder> PictureDecoder::decoderForStream(const AVStream &stream, NSError *error) {
  const AVCodec *codec = softwareDecoder(stream.codecpar->codec_id);
  if (!codec) {
    setError(error, ErrorCode::unsupportedType, "nothing here decodes the pictures of the movie");
    return nullptr;
  }
  std::unique_ptr<PictureDecoder> decoder(new PictureDecoder(stream, *codec));
  decoder->frame_.reset(av_frame_alloc());
  decoder->packet_.reset(av_packet_alloc());
  if (!decoder->frame_ || !decoder->packet_) {
    setError(error, ErrorCode::memoryLimit, "there is no memory for the movie");
    return nullptr;
  }
  if (decoder->open(1)) return decoder;
  setError(error, ErrorCode::damaged, "the pictures of the movie are damaged");
  return nullptr;
}

bool PictureDecoder::open(int threads) {
  FFmpegPointer<AVCodecContext> codec(avcodec_alloc_context3(&decoder_));
  if (!codec || avcodec_parameters_to_context(codec.get(), stream_.codecpar) < 0) return false;
  codec->max_pixels = kMaximumFramePixels;
  codec->pkt_timebase = stream_.time_base;
  codec->thread_count = threads;
  if (avcodec_open2(codec.get(), &decoder_, nullptr) < 0) return false;
  codec_ = std::move(codec);
  return true;
}

FFmpegPointer<AVFrame> PictureDecoder::pictureInPacket(const AVPacket &packet) {
  if (avcodec_send_packet(codec_.get(), &packet) < 0) return nullptr;
  avcodec_send_packet(codec_.get(), nullptr);
  return avcodec_receive_frame(codec_.get(), frame_.get()) < 0 ? nullptr : std::move(frame_);
}

void PictureDecoder::flush() {
  avcodec_flush_buffers(codec_.get());
}

double PictureDecoder::pixelsBetween(std::int64_t begin, std::int64_t end) const {
  const AVCodecParameters &parameters = *stream_.codecpar;
  const double rate = stream_.avg_frame_rate.num > 0 && stream_.avg_frame_rate.den > 0
                          ? av_q2d(stream_.avg_frame_rate)
                          : kDefaultFramesPerSecond;
  const double seconds = (static_cast<double>(end) - static_cast<double>(begin)) * av_q2d(stream_.time_base);
  return seconds * rate * parameters.width * parameters.height;
}

bool PictureDecoder::takeFrame(Search &search, std::int64_t time) {
  packetsWithoutFrame_ = bytesWithoutFrame_ = 0;
  decodedPixels_ += std::int64_t{frame_->width} * frame_->height;
  const std::int64_t begin = frame_->best_effort_timestamp;
  const std::int64_t same = av_rescale_q(1, kSameMoment, stream_.time_base);
  const bool isLate = begin != AV_NOPTS_VALUE && begin > time && begin - time > same;
  if (isLate && search.frame) return true;
  search.isLate = isLate;
  if (!search.frame) search.frame.reset(av_frame_alloc());
  if (!search.frame) return true;
  std::swap(search.frame, frame_);
  // A frame without a time is where it stands in the file.
  if (isLate || begin == AV_NOPTS_VALUE) return isLate;
  const std::int64_t duration = search.frame->pkt_duration;
  return begin >= time || duration - same > time - begin;
}

bool PictureDecoder::decode(const AVPacket *packet, Search &search, std::int64_t time) {
  // Frames that no other needs, and that are over by then, are not decoded.
  const bool isOver = packet && packet->pts != AV_NOPTS_VALUE && packet->pts < time && packet->duration > 0 &&
                      packet->duration < time - packet->pts;
  codec_->skip_frame = isOver ? AVDISCARD_NONREF : AVDISCARD_DEFAULT;
  // What is damaged is passed over.
  avcodec_send_packet(codec_.get(), packet);
  while (avcodec_receive_frame(codec_.get(), frame_.get()) >= 0)
    if (takeFrame(search, time)) return true;
  return false;
}

PictureDecoder::Search PictureDecoder::search(AVFormatContext &format, std::int64_t time,
                                              const Deadline &deadline) {
  Search search;
  decodedPixels_ = packetsWithoutFrame_ = bytesWithoutFrame_ = 0;
  bool isFirst = true;
  while (decodedPixels_ <= kMaximumDecodedPixels && bytesWithoutFrame_ <= kMaximumBytesWithoutFrame &&
         packetsWithoutFrame_ <= kMaximumPacketsWithoutFrame && !deadline.isOver()) {
    AVPacket &packet = *packet_;
    if (av_read_frame(&format, &packet) < 0) {
      search.end = decode(nullptr, search, time) ? End::found : End::endOfFile;
      break;
    }
    ++packetsWithoutFrame_;
    bytesWithoutFrame_ += packet.size;
    const bool isWanted = packet.stream_index == stream_.index;
    if (isWanted && std::exchange(isFirst, false)) {
      search.begin = packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
      const double pixels = search.begin == AV_NOPTS_VALUE ? 0 : pixelsBetween(search.begin, time);
      if (pixels > kMaximumPixelsToTime) search.end = End::tooFar;
      if (pixels > kMinimumPixelsForThreads && codec_->thread_count == 1 && canHaveThreads(decoder_))
        open(static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1U, kMaximumThreads)));
    }
    if (isWanted && search.end != End::tooFar && decode(&packet, search, time)) search.end = End::found;
    av_packet_unref(&packet);
    if (search.end != End::gaveUp) break;
  }
  if (search.end != End::found && deadline.isOver()) search.end = End::deadline;
  return search;
}

}  // namespace nimbo::detail
