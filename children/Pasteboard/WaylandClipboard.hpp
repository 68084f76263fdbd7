// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "children/Pasteboard/Clipboard.hpp"

namespace nimbo {

/// The clipboard of the Wayland compositor that WAYLAND_DISPLAY names. Raises `PasteboardError`;
/// `unsupportedType` when the compositor does not let programs without a window use it.
std::unique_ptr<Clipboard> openWaylandClipboard(const Patience &patience);

}  // namespace nimbo
