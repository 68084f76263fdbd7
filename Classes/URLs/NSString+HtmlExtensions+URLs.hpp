// SPDX-License-Identifier: Apache-2.0
//
// URLs as they are written in markup. Any thread may clean them.
//
//     normalizedStringURL(u" <page.html?a=1&amp;b=2#top> "_ns, true);  // "page.html?a=1&b=2"
//     normalizedStringURL(u"/?u=%2Fa%3Fb%26c"_ns, false, true);  // "/?u=/a%3Fb%26c"
//     normalizedRelLink(u"page.html"_ns);  // "/page.html"
//     normalizedStringURL(u"  "_ns);  // nil
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace HtmlExtensions {

/// The URL cleaned by `normalizeURLUnits` (Classes/URLs/URLNormalizing.hpp); with `trimAnchor` without its
/// anchor, and with `preservingMeaning` with its escapes where they mean something else than what they stand
/// for. The string itself when it is clean; up to 256 units nothing but a new result takes memory. Nil when
/// nothing usable is left, for nil, and above `kMaxNormalizedURLLength` units that are not clean.
NSString normalizedStringURL(const NSString &string, Flag trimAnchor, Flag preservingMeaning = false);
/// As above, with the anchor.
NSString normalizedStringURL(const NSString &string);

/// The normalised URL with "/" in front, unless it begins with "." or "/" or contains "://". Nil as above.
NSString normalizedRelLink(const NSString &string);
/// As above, with or without `preservingMeaning`.
NSString normalizedRelLink(const NSString &string, Flag preservingMeaning);

}  // namespace HtmlExtensions
}  // namespace nimbo
