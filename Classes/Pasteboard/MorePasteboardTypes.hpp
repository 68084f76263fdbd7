// SPDX-License-Identifier: Apache-2.0
//
// Types of pasteboards that browsers write besides those of the platform.
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboPasteboardSupport {

/// A URL as a string.
inline const NSString URLFlavorPboardType = u"CorePasteboardFlavorType 0x75726C20"_ns;
/// The name of a URL.
inline const NSString URLNameFlavorPboardType = u"CorePasteboardFlavorType 0x75726C6E"_ns;
/// A URL as a string.
inline const NSString AppleURLPboardType = u"Apple URL pasteboard type"_ns;
/// A URL as a string.
inline const NSString PublicURLPboardType = u"public.url"_ns;
/// The name of a URL.
inline const NSString PublicURLNamePboardType = u"public.url-name"_ns;
/// URLs and their titles: a property list of two arrays.
inline const NSString URLsWithTitlesPboardType = u"WebURLsWithTitlesPboardType"_ns;
/// A picture as PNG.
inline const NSString PNGPboardType = u"Apple PNG pasteboard type"_ns;
/// A web archive.
inline const NSString WebArchivePboardType = u"Apple Web Archive pasteboard type"_ns;

}  // namespace NimboPasteboardSupport
}  // namespace nimbo
