// SPDX-License-Identifier: Apache-2.0
//
// What a page refers to, in its head and its body: each URL once, normalised by `normalizedStringURL`, in the
// order of the page and not resolved. What is nil, empty or without memory to read it has none. Pointers to
// results may be null. Any thread may ask.
//
//     const NSString page = u"<base href=http://example.org/><a href='a b.html'>A b</a><img src=c.png>"_ns;
//     NSURL base;
//     const std::vector<NSString> links = htmlLinksBaseURL(page, &base);  // {"a%20b.html"}
//     const std::vector<NSString> images = htmlImages(page);  // {"c.png"}
#pragma once

#include <vector>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace HtmlExtensions {

// The base URL of these is the `baseURL` of the last "base" tag with a link; nil without one, and when that is
// no URL of the web.

/// The links of "a" and "area" tags; unless `containing` is nil or empty, those of "a" elements whose text
/// contains it, in the same case. `useRelNoFollow` leaves out links whose relation contains "nofollow".
std::vector<NSString> htmlLinksContaining(const NSString &page, const NSString &containing, Flag useRelNoFollow,
                                          NSURL *baseURL);
/// As `htmlLinksContaining`, without those for which `filterLink` is true.
std::vector<NSString> filteredHtmlLinksContaining(const NSString &page, const NSString &containing,
                                                  Flag useRelNoFollow, NSURL *baseURL);
/// All links of "a" and "area" tags.
std::vector<NSString> htmlLinksBaseURL(const NSString &page, NSURL *baseURL);
/// As `htmlLinksBaseURL`, without those for which `filterLink` is true.
std::vector<NSString> filteredHtmlLinksBaseURL(const NSString &page, NSURL *baseURL);

/// The frames of a page.
std::vector<NSString> htmlFramesBaseURL(const NSString &page, NSURL *baseURL);
/// The frames of a page; `*frameset` is always false.
std::vector<NSString> htmlFramesSet(const NSString &page, bool *frameset, NSURL *baseURL);
/// The frames of a page, and facts about all of it: the last icon (`getFavIcon`), the text of the last title,
/// the last "refresh", all "robots", joined by commas, and the last "revisit-after", as they stand. What there
/// is none of is nil, but of robots empty. `*isFeed` says whether the root of a feed comes first.
std::vector<NSString> htmlFramesSet(const NSString &page, bool *frameset, NSURL *baseURL, NSString *favIcon,
                                    NSString *title, NSString *refresh, NSString *robots, NSString *revisit,
                                    bool *isFeed);

/// As `htmlFramesBaseURL`, with the links.
std::vector<NSString> htmlLinksAndFramesBaseURL(const NSString &page, NSURL *baseURL);
/// As `htmlFramesSet` with three parameters, with the links.
std::vector<NSString> htmlLinksAndFramesSet(const NSString &page, bool *frameset, NSURL *baseURL);
/// As `htmlFramesSet` with nine parameters, with the links.
std::vector<NSString> htmlLinksAndFramesSet(const NSString &page, bool *frameset, NSURL *baseURL,
                                            NSString *favIcon, NSString *title, NSString *refresh,
                                            NSString *robots, NSString *revisit, bool *isFeed);

/// The sources of "img" tags, the background of the body, and the icons and images of "link" tags, which get
/// "/" in front (`normalizedRelLink`).
std::vector<NSString> htmlImages(const NSString &page);
/// The sources of "style" and "script" elements, or what they import in double quotes, and the style sheets and
/// scripts of "link" tags, which get "/" in front (`normalizedRelLink`).
std::vector<NSString> htmlStylesheetsAndScripts(const NSString &page);
/// The "HREF" of "embed" and "object" tags.
std::vector<NSString> htmlEmbeddedObjects(const NSString &page);

/// Whether a link, as it is written, is none to a page: `isFeedStringURL`, `isJavaScriptStringURL` or
/// `isAppleScriptStringURL`.
bool filterLink(const NSString &link);

}  // namespace HtmlExtensions
}  // namespace nimbo
