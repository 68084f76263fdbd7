// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSDate.hpp"

namespace nimbo {

/// Waits for a thread's input sources and serves them. One with nothing to do sleeps.
class NSRunLoop {
 public:
  /// The calling thread's own.
  static NSRunLoop &currentRunLoop();

  NSRunLoop(const NSRunLoop &) = delete;
  NSRunLoop &operator=(const NSRunLoop &) = delete;

  /// Serves input sources for ever, those that are added later too.
  [[noreturn]] void run();
  /// Serves input sources until that moment; what is being served then is served to its end.
  void runUntilDate(NSDate limitDate);

 private:
  NSRunLoop() = default;
};

}  // namespace nimbo
