// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>

#include "platform/Foundation/NSDate.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Waits for a thread's input sources and serves them. One with nothing to do sleeps. No other thread uses it.
///
///     NSRunLoop &loop = NSRunLoop::currentRunLoop();
///     const NSRunLoop::Timer timer = loop.performAfterDelay(60, [] { NSLog("a minute is over"); });
///     loop.runUntilDate(NSDate::date());
///     loop.cancel(timer);
class NSRunLoop {
 public:
  /// The calling thread's own loop.
  static NSRunLoop &currentRunLoop();

  NSRunLoop(const NSRunLoop &) = delete;
  NSRunLoop &operator=(const NSRunLoop &) = delete;

  /// Serves input sources for ever, those that are added later too.
  [[noreturn]] void run();
  /// Serves input sources until that moment; what is being served then is served to its end.
  void runUntilDate(NSDate limitDate);

  /// The number of a function that waits to be called.
  using Timer = std::uint32_t;
  /// Calls `function` once, from the loop, when so many seconds are over (at once when none); answers the
  /// timer's number, which is never 0. What `function` raises is logged and goes no further.
  Timer performAfterDelay(double seconds, std::function<void()> function);
  /// Takes a timer back: its function is freed and not called any more. Not for a timer that has ended.
  void cancel(Timer timer);

 private:
  NSRunLoop() = default;
};

}  // namespace nimbo
