// SPDX-License-Identifier: Apache-2.0
//
// Owners of what FFmpeg allocates.
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

#include <memory>

namespace nimbo::detail {

struct FFmpegDeleter {
  void operator()(AVFormatContext *format) const { avformat_close_input(&format); }
  void operator()(AVIOContext *input) const {
    av_freep(&input->buffer);
    avio_context_free(&input);
  }
  void operator()(AVCodecContext *codec) const { avcodec_free_context(&codec); }
  void operator()(AVFrame *frame) const { av_frame_free(&frame); }
  void operator()(AVPacket *packet) const { av_packet_free(&packet); }
  void operator()(SwsContext *scaler) const { sws_freeContext(scaler); }
};

template <class T>
using FFmpegPointer = std::unique_ptr<T, FFmpegDeleter>;

}  // namespace nimbo::detail
