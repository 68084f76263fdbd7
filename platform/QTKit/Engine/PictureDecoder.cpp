// SPDX-License-Identifier: Apache-2.0
#include "platform/QTKit/Engine/PictureDecoder.hpp"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "platform/QTKit/Engine/FramePixels.hpp"

namespace nimbo::detail {
namespace {

/// A search that decodes more goes no further, whatever the times in the file say.
constexpr std::int64_t kMaximumDecodedPixels = 2'000'000'000;
/// The pace of decoding is known after so long.
constexpr double kPaceInSeconds = 0.15;
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
  const double seconds = (static_cast<double>(end) - static_cast<double>(begin)) * av_q2d(stream_.time_base);
  return seconds * framesPerSecond() * parameters.width * parameters.height;
}

double PictureDecoder::framesPerSecond() const {
  const AVRational rate = stream_.avg_frame_rate;
  return rate.num > 0 && rate.den > 0 ? av_q2d(rate) : kDefaultFramesPerSecond;
}

std::int64_t PictureDecoder::beginOfFrame(const AVFrame &frame, std::int64_t before) const {
  if (frame.best_effort_timestamp != AV_NOPTS_VALUE) return frame.best_effort_timestamp;
  if (before == AV_NOPTS_VALUE) return stream_.start_time == AV_NOPTS_VALUE ? 0 : stream_.start_time;
  return before + static_cast<std::int64_t>(1 / (framesPerSecond() * av_q2d(stream_.time_base)));
}

bool PictureDecoder::takeFrame(Search &search, const Target &target) {
  packetsWithoutFrame_ = bytesWithoutFrame_ = 0;
  decodedPixels_ += std::int64_t{frame_->width} * frame_->height;
  const std::int64_t begin = lastBegin_ = beginOfFrame(*frame_, lastBegin_);
  const std::int64_t same = av_rescale_q(1, kSameMoment, stream_.time_base);
  const bool isLate = begin > target.time && begin - target.time > same;
  if (isLate && search.frame) return true;
  search.isLate = isLate;
  search.frameBegin = begin;
  if (!search.frame) search.frame.reset(av_frame_alloc());
  if (!search.frame) return true;
  std::swap(search.frame, frame_);
  // How long a frame is said to be shown is often wrong where frames are not in order or not evenly spaced.
  return begin >= target.time || target.time - begin <= same;
}

bool PictureDecoder::decode(const AVPacket *packet, Search &search, const Target &target) {
  // Frames that no other needs, and that are over by then, are not decoded.
  // Frames that do not say it themselves have their times from all those before them.
  isUntimed_ = isUntimed_ || (packet && packet->pts == AV_NOPTS_VALUE);
  const bool isOver = target.skips && !isUntimed_ && packet && packet->pts != AV_NOPTS_VALUE &&
                      packet->pts < target.time && packet->duration > 0 &&
                      packet->duration < target.time - packet->pts;
  codec_->skip_frame = isOver ? AVDISCARD_NONREF : AVDISCARD_DEFAULT;
  if (isOver) lastSkipped_ = std::max(lastSkipped_, packet->pts);
  // What is damaged is passed over.
  avcodec_send_packet(codec_.get(), packet);
  while (avcodec_receive_frame(codec_.get(), frame_.get()) >= 0)
    if (takeFrame(search, target)) return true;
  return false;
}

bool PictureDecoder::isTooFar(const AVPacket &packet, std::int64_t begin, const Target &target,
                              double elapsed) const {
  const std::int64_t reached = packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
  if (elapsed < kPaceInSeconds || begin == AV_NOPTS_VALUE || reached == AV_NOPTS_VALUE ||
      reached >= target.time)
    return false;
  const double done = std::max(static_cast<double>(reached) - static_cast<double>(begin), 0.0);
  const double all = static_cast<double>(target.time) - static_cast<double>(begin);
  return elapsed * (all - done) > target.budget.remaining() * done;
}

PictureDecoder::Search PictureDecoder::search(AVFormatContext &format, const Target &target,
                                              const Deadline &deadline) {
  Search search;
  decodedPixels_ = packetsWithoutFrame_ = bytesWithoutFrame_ = 0;
  lastBegin_ = lastSkipped_ = AV_NOPTS_VALUE;
  isUntimed_ = false;
  bool isFirst = true;
  const auto start = Deadline::Clock::now();
  while (decodedPixels_ <= kMaximumDecodedPixels && bytesWithoutFrame_ <= kMaximumBytesWithoutFrame &&
         packetsWithoutFrame_ <= kMaximumPacketsWithoutFrame && !deadline.isOver()) {
    AVPacket &packet = *packet_;
    if (av_read_frame(&format, &packet) < 0) {
      search.end = decode(nullptr, search, target) ? End::found : End::endOfFile;
      break;
    }
    ++packetsWithoutFrame_;
    bytesWithoutFrame_ += packet.size;
    const bool isWanted = packet.stream_index == stream_.index;
    if (isWanted && std::exchange(isFirst, false)) {
      search.begin = packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
      const double pixels = search.begin == AV_NOPTS_VALUE ? 0 : pixelsBetween(search.begin, target.time);
      if (pixels > kMinimumPixelsForThreads && codec_->thread_count == 1 && canHaveThreads(decoder_))
        open(static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1U, kMaximumThreads)));
    }
    const std::chrono::duration<double> elapsed = Deadline::Clock::now() - start;
    if (isWanted && isTooFar(packet, search.begin, target, elapsed.count()))
      search.end = End::tooFar;
    else if (isWanted && decode(&packet, search, target))
      search.end = End::found;
    av_packet_unref(&packet);
    if (search.end != End::gaveUp) break;
  }
  if (search.end != End::found && deadline.isOver()) search.end = End::deadline;
  search.isBehindSkipped = search.frame && lastSkipped_ > search.frameBegin;
  return search;
}

}  // namespace nimbo::detail
