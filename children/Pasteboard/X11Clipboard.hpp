// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "children/Pasteboard/Clipboard.hpp"

namespace nimbo {

/// The clipboard of the X server that DISPLAY names. Raises `PasteboardError`.
std::unique_ptr<Clipboard> openX11Clipboard();

}  // namespace nimbo
