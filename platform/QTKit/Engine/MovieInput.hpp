// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/System/Deadline.hpp"
#include "platform/Foundation/System/FileDescriptor.hpp"
#include "platform/QTKit/Engine/FFmpegHandles.hpp"

namespace nimbo::detail {

/// The bytes of a movie, as FFmpeg reads them: of one opened file or of data, and of nothing else. Reading
/// fails once the deadline is over, which ends whatever FFmpeg is doing. It stays where it is, since FFmpeg
/// knows it.
class MovieInput {
 public:
  /// Takes over an open file, of which no more than `size` bytes are read.
  MovieInput(FileDescriptor file, std::uint64_t size, const Deadline &deadline);
  MovieInput(NSData data, const Deadline &deadline);
  MovieInput(const MovieInput &) = delete;

  /// Null when there is no memory.
  AVIOContext *context() const noexcept { return context_.get(); }
  const Deadline &deadline() const noexcept { return deadline_; }

 private:
  static int readPacket(void *opaque, std::uint8_t *buffer, int length);
  static std::int64_t seek(void *opaque, std::int64_t offset, int whence);
  void makeContext();

  FileDescriptor file_;
  NSData data_;
  std::int64_t size_;
  std::int64_t position_ = 0;
  Deadline deadline_;
  FFmpegPointer<AVIOContext> context_;
};

}  // namespace nimbo::detail
