// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/AppKit/Pasteboard/NSPasteboard.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboPasteboardSupport {

/// The string of the first type of a URL, in the order of who wrote the pasteboard: `NSURLPboardType`,
/// "CorePasteboardFlavorType 0x75726C20", "Apple URL pasteboard type" or "public.url". Nil when there is none;
/// `*error` says so when the pasteboard does.
NSString URL(const NSPasteboard &pasteboard, NSError *error = nullptr);
/// Whether there is a type of a URL.
bool containsURL(const NSPasteboard &pasteboard, NSError *error = nullptr);

/// The string of the first type of a URL's name: "CorePasteboardFlavorType 0x75726C6E", then "public.url-name".
/// Nil as above.
NSString URLName(const NSPasteboard &pasteboard, NSError *error = nullptr);
/// Whether there is a type of a URL's name.
bool containsURLName(const NSPasteboard &pasteboard, NSError *error = nullptr);

}  // namespace NimboPasteboardSupport
}  // namespace nimbo
