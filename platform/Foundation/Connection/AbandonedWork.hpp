// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/System/FileDescriptor.hpp"

namespace nimbo {

/// While it lives, ends the process when the caller of the work under way has gone: the connection's other side
/// is closed after that many seconds, or at some time after them. Nobody misses the answer, and all the others
/// wait. One at a time.
class AbandonedWork {
 public:
  /// Looks at nothing when `seconds` is 0. The socket is borrowed.
  AbandonedWork(const FileDescriptor &socket, double seconds);
  ~AbandonedWork();
  AbandonedWork(const AbandonedWork &) = delete;
  AbandonedWork &operator=(const AbandonedWork &) = delete;

 private:
  bool isWatching_ = false;
};

}  // namespace nimbo
