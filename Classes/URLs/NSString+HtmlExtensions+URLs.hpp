// SPDX-License-Identifier: Apache-2.0
//
// URLs as they are written in markup. Any thread may clean them.
//
//     normalizedStringURL(u" <page.html?a=1&amp;b=2#top> "_ns, true);  // "page.html?a=1&b=2"
//     normalizedRelLink(u"page.html"_ns);  // "/page.html"
//     normalizedStringURL(u"  "_ns);  // nil
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace HtmlExtensions {

/// The URL cleaned by `normalizeURLUnits` (Classes/URLs/URLNormalizing.hpp); with `trimAnchor` without its
/// anchor. The string itself when it is clean; up to 256 units nothing but a new result takes memory. Nil when
/// nothing usable is left, for nil, and above `kMaxNormalizedURLLength` units that are not clean.
NSString normalizedStringURL(const NSString &string, Flag trimAnchor);
/// As above, with the anchor.
NSString normalizedStringURL(const NSString &string);

/// The normalised URL with "/" in front, unless it begins with "." or "/" or contains "://". Nil as above.
NSString normalizedRelLink(const NSString &string);

}  // namespace HtmlExtensions
}  // namespace nimbo
