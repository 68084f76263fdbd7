// SPDX-License-Identifier: Apache-2.0
//
// The types of URLs and their names that browsers write besides `NSURLPboardType`.
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace nimbo {

inline const NSString kURLFlavor = u"CorePasteboardFlavorType 0x75726C20"_ns;
inline const NSString kURLNameFlavor = u"CorePasteboardFlavorType 0x75726C6E"_ns;
inline const NSString kAppleURLType = u"Apple URL pasteboard type"_ns;
inline const NSString kPublicURLType = u"public.url"_ns;
inline const NSString kPublicURLNameType = u"public.url-name"_ns;
inline const NSString kURLsWithTitlesType = u"WebURLsWithTitlesPboardType"_ns;

}  // namespace nimbo
