// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Images/NSApplication.hpp"

#include "platform/Foundation/System/LargeBytes.hpp"

namespace nimbo {

NSApplication::NSApplication() {
  returnLargeBytesWhenFreed();
}

NSApplication &NSApplication::sharedApplication() {
  static NSApplication application;
  return application;
}

}  // namespace nimbo
