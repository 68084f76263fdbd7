// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/AppKit/Pasteboard/NSPasteboard.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboPasteboardSupport {

/// Writes a string as `NSStringPboardType`. False when it is nil or the pasteboard takes nothing; `*error` says
/// why.
bool copyToPasteboard(const NSString &string, const NSPasteboard &pasteboard, NSError *error = nullptr);

/// The first of `NSStringPboardType`, `NSTabularTextPboardType` and `NSHTMLPboardType` that is there, as a
/// string. Nil without one; `*error` says why. What the platform raises is logged, and the answer is nil.
NSString stringFromPasteboard(const NSPasteboard &pasteboard, NSError *error = nullptr);

/// The extension of a file that holds what a pasteboard type holds; nil for an unknown type.
NSString fileTypeForPboardType(const NSString &type);

}  // namespace NimboPasteboardSupport
}  // namespace nimbo
