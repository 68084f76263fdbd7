// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/AppKit/NSAttributedString.hpp"
#include "platform/AppKit/Pasteboard/NSPasteboard.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboPasteboardSupport {

/// Writes rich text as `NSRTFDPboardType` when it has attachments, else as `NSRTFPboardType`. False, with the
/// pasteboard as it was, when no data comes of it; `*error` says why.
bool copyToPasteboard(const NSAttributedString &text, const NSPasteboard &pasteboard, NSError *error = nullptr);

/// The first of `NSRTFDPboardType` and `NSRTFPboardType` that is there, read. Nil without one, or when it
/// cannot be read; `*error` says why. What the platform raises is logged, and the answer is nil.
NSAttributedString attributedStringFromPasteboard(const NSPasteboard &pasteboard, NSError *error = nullptr);

}  // namespace NimboPasteboardSupport
}  // namespace nimbo
