// SPDX-License-Identifier: Apache-2.0
//
// Images and titles of what a page links to. Any thread may ask.
//
//     NSDictionary thumbs, titles;
//     getLinkThumbs(u"<a href=/a>An <b>article</b> <img src=a.png></a>"_ns, &thumbs, &titles, NSURL(), false);
//     titles.objectForKey(u"/a"_ns).string();  // "An article"
//     stringByExtractingJavaScriptURL(u"javascript:open('a.html', 1)"_ns);  // "a.html"
#pragma once

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace HtmlLinkThumbsAndTitles {

/// Sets the dictionaries, unless their pointers are null, to the images and titles of the page's links, by the
/// rules of `IconsHandler` (Classes/Pages/IconsHandler.hpp). The keys are the links, resolved against the base
/// URL and the page's own one, or without any only normalised; the page itself is one of them when its base URL
/// is given and its icon known. `googleTags` follows the comments that hide texts from search engines. A page
/// that is nil or empty has no links.
void getLinkThumbs(const NSString &page, NSDictionary *thumbs, NSDictionary *titles, const NSURL &baseURL,
                   Flag googleTags);

/// What a link to a script opens: in "javascript:imageViewall('...'" and "javascript:open('...'", in any case,
/// the text up to the next "'". Nil for any other link, and without the "'".
NSString stringByExtractingJavaScriptURL(const NSString &string);

}  // namespace HtmlLinkThumbsAndTitles
}  // namespace nimbo
