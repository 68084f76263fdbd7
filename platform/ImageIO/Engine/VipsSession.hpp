// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vips/vips.h>

#include <memory>

#include "platform/ImageIO/Engine/ImageReading.hpp"

namespace nimbo::detail {

/// Gives up an object of libvips.
struct Unreference {
  void operator()(void *object) const { g_object_unref(object); }
};

/// Owns an object of libvips.
template <class Object>
using VipsPointer = std::unique_ptr<Object, Unreference>;

/// Starts libvips once in the process. False when it cannot be started.
bool startVips();

/// Loads libvips' module of that name ("heif", "jxl") if there is one and it is not there yet.
void loadVipsModule(const char *name);

/// What libvips reads an image through: by itself it maps files, and who cuts a mapped file short ends the
/// process. Behind the deadline there is nothing more to read. The input must live as long.
class VipsInput {
 public:
  VipsInput(const ImageInput &input, const Deadline &deadline);
  VipsInput(const VipsInput &) = delete;
  VipsInput &operator=(const VipsInput &) = delete;

  /// Borrowed; it lives as long as this.
  VipsSource *source() const { return source_.get(); }

 private:
  /// Reads as read(2) does.
  std::int64_t read(void *buffer, std::int64_t length);
  /// Seeks as lseek(2) does.
  std::int64_t seek(std::int64_t offset, int whence);

  const ImageInput &input_;
  const Deadline deadline_;
  std::int64_t position_ = 0;
  VipsPointer<VipsSource> source_;
};

}  // namespace nimbo::detail
