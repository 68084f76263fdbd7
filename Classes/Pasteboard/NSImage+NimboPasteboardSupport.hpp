// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/AppKit/Images/NSImage.hpp"
#include "platform/AppKit/Pasteboard/NSPasteboard.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboPasteboardSupport {

/// Writes an image as `NSTIFFPboardType`, compressed by LZW. False, with the pasteboard as it was, when there
/// is no TIFF of it; `*error` says why.
bool copyToPasteboard(const NSImage &image, const NSPasteboard &pasteboard, NSError *error = nullptr);

}  // namespace NimboPasteboardSupport
}  // namespace nimbo
