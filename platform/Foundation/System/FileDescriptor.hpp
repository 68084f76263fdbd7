// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <unistd.h>

#include <utility>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Owns a file descriptor and closes it; tests false when there is none. One thread uses it at a time.
///
///     const FileDescriptor file(::open("/etc/hosts", O_RDONLY | O_CLOEXEC));
///     char bytes[16];
///     if (file) ::read(file.get(), bytes, sizeof(bytes));
class FileDescriptor {
 public:
  FileDescriptor() noexcept = default;
  /// Takes the descriptor over; a negative one is none.
  explicit FileDescriptor(int descriptor) noexcept : descriptor_(descriptor) {}
  /// Takes the other's descriptor over.
  FileDescriptor(FileDescriptor &&other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  /// Exchanges the descriptors.
  FileDescriptor &operator=(FileDescriptor &&other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~FileDescriptor() { close(); }

  /// The descriptor, still owned here; negative when there is none.
  int get() const noexcept { return descriptor_; }
  /// Whether there is a descriptor.
  explicit operator bool() const noexcept { return descriptor_ >= 0; }
  /// Gives the descriptor away: it is the caller's to close.
  int release() noexcept { return std::exchange(descriptor_, -1); }
  /// Closes the descriptor, if there is one.
  void close() noexcept {
    if (descriptor_ >= 0) ::close(release());
  }

 private:
  int descriptor_ = -1;
};

}  // namespace nimbo
