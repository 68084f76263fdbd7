// SPDX-License-Identifier: Apache-2.0
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <algorithm>
#include <cstring>

#include "platform/Foundation/System/EngineLibrary.hpp"
#include "platform/ImageIO/Codec/ImageCodec.hpp"

namespace nimbo::detail {
namespace {

struct Free {
  void operator()(AVCodecContext *context) const { avcodec_free_context(&context); }
  void operator()(AVFrame *frame) const { av_frame_free(&frame); }
  void operator()(AVPacket *packet) const { av_packet_free(&packet); }
  void operator()(SwsContext *context) const { sws_freeContext(context); }
};

template <class Object>
using FFmpegPointer = std::unique_ptr<Object, Free>;

AVCodecID codecOfFormat(FFmpegFormat format) {
  switch (format) {
    case FFmpegFormat::BMP:
      return AV_CODEC_ID_BMP;
    case FFmpegFormat::DDS:
      return AV_CODEC_ID_DDS;
    case FFmpegFormat::PAM:
      return AV_CODEC_ID_PAM;
    case FFmpegFormat::PBM:
      return AV_CODEC_ID_PBM;
    case FFmpegFormat::PCX:
      return AV_CODEC_ID_PCX;
    case FFmpegFormat::PGM:
      return AV_CODEC_ID_PGM;
    case FFmpegFormat::PPM:
      return AV_CODEC_ID_PPM;
    case FFmpegFormat::QDraw:
      return AV_CODEC_ID_QDRAW;
    case FFmpegFormat::QOI:
      return AV_CODEC_ID_QOI;
    case FFmpegFormat::SGI:
      return AV_CODEC_ID_SGI;
    case FFmpegFormat::SunRaster:
      return AV_CODEC_ID_SUNRAST;
    case FFmpegFormat::TGA:
      return AV_CODEC_ID_TARGA;
    case FFmpegFormat::XBM:
      return AV_CODEC_ID_XBM;
    case FFmpegFormat::XPM:
      return AV_CODEC_ID_XPM;
    case FFmpegFormat::XWD:
      return AV_CODEC_ID_XWD;
  }
  return AV_CODEC_ID_NONE;
}

/// Null when it cannot be decoded.
FFmpegPointer<AVFrame> decodedFrame(AVCodecID codec, std::span<const std::uint8_t> file) {
  const AVCodec *decoder = avcodec_find_decoder(codec);
  FFmpegPointer<AVCodecContext> context(decoder ? avcodec_alloc_context3(decoder) : nullptr);
  FFmpegPointer<AVPacket> packet(av_packet_alloc());
  FFmpegPointer<AVFrame> frame(av_frame_alloc());
  if (!context || !packet || !frame) return nullptr;
  context->max_pixels = kMaximumFramePixels;
  context->thread_count = 1;
  // The copy has room at its end, which decoders read beyond.
  if (avcodec_open2(context.get(), decoder, nullptr) < 0 ||
      av_new_packet(packet.get(), static_cast<int>(file.size())) < 0)
    return nullptr;
  std::memcpy(packet->data, file.data(), file.size());
  if (avcodec_send_packet(context.get(), packet.get()) < 0) return nullptr;
  // Some give the frame only when there is nothing more to come.
  int result = avcodec_receive_frame(context.get(), frame.get());
  if (result == AVERROR(EAGAIN) && avcodec_send_packet(context.get(), nullptr) == 0)
    result = avcodec_receive_frame(context.get(), frame.get());
  return result == 0 && frame->width > 0 && frame->height > 0 ? std::move(frame) : nullptr;
}

bool mayHaveAlpha(const AVFrame &frame) {
  const AVPixFmtDescriptor *description = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
  return description && (description->flags & (AV_PIX_FMT_FLAG_ALPHA | AV_PIX_FMT_FLAG_PAL)) != 0;
}

/// Takes the alpha out when it says nothing: files have zeros there, too, when nothing is meant.
void dropIdleAlpha(DecodedSamples &samples) {
  const std::size_t count = static_cast<std::size_t>(samples.width) * static_cast<std::size_t>(samples.height);
  std::uint8_t *const bytes = samples.bytes.get();
  const std::uint8_t first = bytes[3];
  if (first != 0 && first != 255) return;
  for (std::size_t i = 0; i < count; ++i)
    if (bytes[i * 4 + 3] != first) return;
  for (std::size_t i = 0; i < count; ++i) std::memmove(bytes + i * 3, bytes + i * 4, 3);
  samples.bands = 3;
}

DecodedSamples decodedSamples(FFmpegFormat format, std::span<const std::uint8_t> file, bool saysAlpha) {
  const auto frame = decodedFrame(codecOfFormat(format), file);
  if (!frame) return {};
  DecodedSamples samples;
  samples.width = frame->width;
  samples.height = frame->height;
  samples.bands = mayHaveAlpha(*frame) ? 4 : 3;
  const FFmpegPointer<SwsContext> conversion(
      sws_getContext(frame->width, frame->height, static_cast<AVPixelFormat>(frame->format), frame->width,
                     frame->height, samples.bands == 4 ? AV_PIX_FMT_RGBA : AV_PIX_FMT_RGB24,
                     SWS_POINT | SWS_ACCURATE_RND, nullptr, nullptr, nullptr));
  if (!conversion) return {};
  const int rowLength = frame->width * samples.bands;
  const std::size_t length = static_cast<std::size_t>(rowLength) * static_cast<std::size_t>(frame->height);
  samples.bytes = std::make_unique_for_overwrite<std::uint8_t[]>(length);
  std::uint8_t *const rows[] = {samples.bytes.get(), nullptr, nullptr, nullptr};
  const int rowLengths[] = {rowLength, 0, 0, 0};
  if (sws_scale(conversion.get(), frame->data, frame->linesize, 0, frame->height, rows, rowLengths) !=
      frame->height)
    return {};
  if (samples.bands == 4 && !saysAlpha) dropIdleAlpha(samples);
  return samples;
}

class Codec final : public ImageCodec {
 public:
  DecodedSamples samples(FFmpegFormat format, std::span<const std::uint8_t> file,
                         bool saysAlpha) const override {
    return decodedSamples(format, file, saysAlpha);
  }
};

}  // namespace
}  // namespace nimbo::detail

/// The codec, for `nimbo::detail::imageCodec`.
NIMBO_ENGINE const void *nimboEngine();

const void *nimboEngine() {
  av_log_set_level(AV_LOG_QUIET);
  static const nimbo::detail::Codec codec;
  return static_cast<const nimbo::detail::ImageCodec *>(&codec);
}
