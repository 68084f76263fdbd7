// SPDX-License-Identifier: Apache-2.0
#include "platform/QTKit/Engine/MovieInput.hpp"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <utility>

namespace nimbo::detail {
namespace {

constexpr int kBufferLength = 64 << 10;

}  // namespace

MovieInput::MovieInput(FileDescriptor file, std::uint64_t size, const Deadline &deadline)
    : file_(std::move(file)),
      size_(static_cast<std::int64_t>(std::min<std::uint64_t>(size, INT64_MAX))),
      deadline_(deadline) {
  makeContext();
}

MovieInput::MovieInput(NSData data, const Deadline &deadline)
    : data_(std::move(data)), size_(data_.length()), deadline_(deadline) {
  makeContext();
}

void MovieInput::makeContext() {
  auto *buffer = static_cast<std::uint8_t *>(av_malloc(kBufferLength));
  if (!buffer) return;
  context_.reset(
      avio_alloc_context(buffer, kBufferLength, 0, this, &MovieInput::readPacket, nullptr, &MovieInput::seek));
  if (!context_) av_free(buffer);
}

int MovieInput::readPacket(void *opaque, std::uint8_t *buffer, int length) {
  MovieInput &self = *static_cast<MovieInput *>(opaque);
  if (self.deadline_.isOver()) return AVERROR_EXIT;
  const std::int64_t left = self.size_ - self.position_;
  if (left <= 0) return AVERROR_EOF;
  ssize_t got = std::min<std::int64_t>(left, length);
  if (self.file_) do
      got = ::pread(self.file_.get(), buffer, static_cast<std::size_t>(std::min<std::int64_t>(left, length)),
                    self.position_);
    while (got < 0 && errno == EINTR);
  else
    std::memcpy(buffer, self.data_.bytes() + self.position_, static_cast<std::size_t>(got));
  if (got < 0) return AVERROR(errno);
  if (got == 0) return AVERROR_EOF;
  self.position_ += got;
  return static_cast<int>(got);
}

std::int64_t MovieInput::seek(void *opaque, std::int64_t offset, int whence) {
  MovieInput &self = *static_cast<MovieInput *>(opaque);
  whence &= ~AVSEEK_FORCE;
  if (whence == AVSEEK_SIZE) return self.size_;
  const std::int64_t base = whence == SEEK_CUR ? self.position_ : whence == SEEK_END ? self.size_ : 0;
  std::int64_t position = 0;
  if (__builtin_add_overflow(base, offset, &position) || position < 0) return AVERROR(EINVAL);
  return self.position_ = position;
}

}  // namespace nimbo::detail
