// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/AppKit/Pasteboard/NSPasteboard.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboPasteboardSupport {

/// Writes a URL as `NSURLPboardType`, and as `NSStringPboardType` the same or the path of a file. False when it
/// is nil or the pasteboard takes nothing; `*error` says why.
bool copyToPasteboard(const NSURL &url, const NSPasteboard &pasteboard, NSError *error = nullptr);

/// Writes a URL with a title in the types of browsers; nil or an empty title stands for the absolute string.
/// The name of the URL is the title as the name of a file may be. False as above.
bool copyToPasteboardWithTitle(const NSURL &url, const NSPasteboard &pasteboard, const NSString &title,
                               NSError *error = nullptr);

}  // namespace NimboPasteboardSupport
}  // namespace nimbo
