// SPDX-License-Identifier: Apache-2.0
//
// Shorter forms of a URL that name the same resource: two URLs with the same simplified form are taken for one.
// The strings are URLs as `normalizedStringURL` gives them. Each function answers the string itself when it
// changes nothing, and nil for nil. docs/urls.md has examples; the names that are removed stand in
// Classes/URLs/URLParameters.tsv. Any thread may call them.
//
//     simplifiedStringURL(u"HTTP://Example.org:80/index.html?utm_source=x#top"_ns);  // "http://example.org/"
//     stringURLByRemovingSessionIDs(u"/a;jsessionid=1"_ns);  // "/a"
//     stringURLByRemovingEmptyParams(u"/a?b=&c=1"_ns);  // "/a?c=1"
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace URLUtilities {

/// Always writes the URL as RFC 3986, section 6.2, does with all that are equal: small letters in scheme and
/// host, the host in ASCII, no port of the scheme's own, capital digits in escapes and none where none is
/// needed, no "." and ".." in a path that begins with "/", which behind a host is not empty. Then removes what
/// is asked for, in the order of the functions below; an anchor that begins with "#!" or "#/" is a page of its
/// own and stays.
NSString simplifiedStringURLByRemovingSessionIDs(const NSString &string, Flag sessionIDs, Flag analytics,
                                                 Flag indexPages, Flag emptyParams, Flag anchors);
/// Simplifies as above with everything removed.
NSString simplifiedStringURL(const NSString &string);

/// Removes parameters of the query, and of path components (";jsessionid=1"), that name the session of a
/// visitor; also the path component "(S(...))". A name that may mean other things ("sid", "session") goes only
/// with a value that looks like the identifier of a session. A path without a host in front that would then
/// begin with "//" gets "/." in front.
NSString stringURLByRemovingSessionIDs(const NSString &string);
/// Removes parameters of the query that tell where a visitor came from.
NSString stringURLByRemovingAnalytics(const NSString &string);
/// Removes parameters of the query without a value ("a="), empty ones ("&&"), and a "?" with nothing behind
/// it. A name without "=" stays.
NSString stringURLByRemovingEmptyParams(const NSString &string);
/// Removes the path's last component when it is the name of an index page and no query follows.
NSString stringURLByRemovingIndexPages(const NSString &string);
/// Removes the first "#" and what follows it.
NSString stringURLWithoutAnchor(const NSString &string);

}  // namespace URLUtilities
}  // namespace nimbo
