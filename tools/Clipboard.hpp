// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/AppKit/Pasteboard/NSPasteboard.hpp"

namespace nimbo {

/// What messages call the clipboard.
inline const std::string kClipboardName = "the clipboard";

/// The clipboard, which has these seconds from now on for all that is asked of it.
inline NSPasteboard clipboardWithin(double seconds) {
  NSPasteboard clipboard = NSPasteboard::generalPasteboard();
  clipboard.setDeadline(Deadline::after(seconds));
  return clipboard;
}

}  // namespace nimbo
