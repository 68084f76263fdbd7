// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The shared application object: what a process does once that lives for long and uses the engines of images,
/// PDF, web pages and movies. It has no event loop. The engines themselves are loaded, and made ready, when the
/// first file asks for them, so that a process which never meets one starts without.
///
///     NSApplication::sharedApplication();
class NSApplication {
 public:
  /// Makes it at the first call, which must come before the process has other threads: from then on the memory
  /// of pictures goes back to the system when they are done with.
  static NSApplication &sharedApplication();
  NSApplication(const NSApplication &) = delete;
  NSApplication &operator=(const NSApplication &) = delete;

 private:
  NSApplication();
};

}  // namespace nimbo
