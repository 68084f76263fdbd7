// SPDX-License-Identifier: Apache-2.0
//
// Links of pages as URLs. Any thread may resolve them.
//
//     const NSURL page = NSURL::URLWithString(u"http://example.org/a/b.html"_ns);
//     URLRelativeTo(u"../c d"_ns, page).absoluteString();  // "http://example.org/c%20d"
//     URLRelativeTo(page, u"#top"_ns, true).absoluteString();  // "http://example.org/a/b.html"
#pragma once

#include "platform/CoreServices/TextEncodings/CFStringEncoding.hpp"
#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSURLNimboExtensions {

/// A link of a page, resolved against the page's URL, without a base of its own. `normalizedStringURL` comes
/// first where the link is as markup has it: character references and escapes are not looked at here.
///
/// - The link is cleaned and repaired (`cleanURLUnits`, `repairedStringURL`, `ASCIIStringURL`); what is not
/// ASCII in
///   its query is escaped in `encoding`, which is the page's.
/// - A link that is empty, or nothing but blanks and control characters, leads to the page itself.
/// - `trimAnchor` takes the anchor away; a link that is only an anchor is then the page itself.
/// - `standardize` takes "." and ".." out of the path of a link that is absolute as well.
/// - Links of other schemes than the web's (`isForeignLink`) keep what looks like an anchor or a dot; so does a
///   whole HTTP URL behind "feed:".
///
/// Nil when the link is nil or no URL, or when it is relative and there is no base with a scheme.
NSURL URLRelativeTo(const NSString &link, const NSURL &base, Flag trimAnchor = false,
                    NSStringEncoding encoding = NSUTF8StringEncoding, Flag standardize = false);
/// As above, asked of the page's URL.
NSURL URLRelativeTo(const NSURL &url, const NSString &link, Flag trimAnchor = false,
                    NSStringEncoding encoding = NSUTF8StringEncoding, Flag standardize = false);

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
