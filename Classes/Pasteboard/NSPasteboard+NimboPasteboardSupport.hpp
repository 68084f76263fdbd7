// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/AppKit/Pasteboard/NSPasteboard.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboPasteboardSupport {

/// The string of the first type of a URL, in the order of who wrote the pasteboard: `NSURLPboardType`,
/// "CorePasteboardFlavorType 0x75726C20", "Apple URL pasteboard type" or "public.url". Nil when there is none.
NSString URL(const NSPasteboard &pasteboard);
/// Whether there is a type of a URL.
bool containsURL(const NSPasteboard &pasteboard);

/// The string of the first type of a URL's name: "CorePasteboardFlavorType 0x75726C6E", then "public.url-name".
/// Nil when there is none.
NSString URLName(const NSPasteboard &pasteboard);
/// Whether there is a type of a URL's name.
bool containsURLName(const NSPasteboard &pasteboard);

}  // namespace NimboPasteboardSupport
}  // namespace nimbo
