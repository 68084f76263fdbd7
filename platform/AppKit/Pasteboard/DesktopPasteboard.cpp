// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Pasteboard/PasteboardServer.hpp"

namespace nimbo::detail {

SharedPointer<PasteboardServer> desktopPasteboard() {
  return {};
}

}  // namespace nimbo::detail
