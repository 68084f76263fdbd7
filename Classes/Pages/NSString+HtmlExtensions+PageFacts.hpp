// SPDX-License-Identifier: Apache-2.0
//
// Facts about a page, read out of its tags. All look at the head alone, which ends with the first "body" tag,
// where nothing else is said. Texts and URLs have their entities still, where nothing else is said. Of a page
// that is nil, empty or without memory to read it, nothing is known. Any thread may ask.
//
//     const NSString page = u"<title> Q&amp;A </title><meta name=Author content='A. B.'><body>"_ns;
//     normalizedHtmlTitle(page);  // "Q&A"
//     htmlMetaAuthor(page);  // "A. B."
//     stringByAddingBaseURL(u"<head></head>"_ns, u"http://example.org/"_ns);
#pragma once

#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace HtmlExtensions {

/// The text of the page's title behind the last tag in it, as it stands; empty when the page has none.
NSString htmlTitle(const NSString &page);
/// `htmlTitle` with its entities converted and without white characters around it.
NSString normalizedHtmlTitle(const NSString &page);

/// The `baseURL` of the first "base" tag with a link; nil when there is none, also when it is no URL of the web
/// and a later one is.
NSURL htmlBaseURL(const NSString &page);
/// The page's canonical URL, normalised; nil when it names none.
NSString htmlCanonicalURL(const NSString &page);
/// The page's date as it is written: the first content of a meta tag "date", "dc.date" or "last-modified". Nil
/// when there is none.
NSString htmlDate(const NSString &page);
/// The first "shortcut icon" of the whole page, by `normalizedRelLink`; nil when there is none.
NSString htmlFavIcon(const NSString &page);

/// The contents of all meta tags by their names in lower case, those of one name joined by spaces.
NSDictionary htmlMetaAttributes(const NSString &page);
/// As `htmlMetaAttributes`, but each content has its entities converted and white space joined; one that is
/// markup then becomes plain text.
NSDictionary htmlMetaAttributesByConvertingEntitiesToCharacters(const NSString &page);

/// The texts by which the whole page is indexed, each unless its pointer is null; nil for those that it has
/// not. Of "dc.keywords" and "keywords", and likewise of the others, the first one that there is counts. The
/// title is the first one of the meta tags "title" and the "title" elements, whose texts stay as they stand.
void htmlMetaKeywords(const NSString &page, NSString *keywords, NSString *description, NSString *title,
                      NSString *indexTitle);

// Each of these joins, by spaces, the contents of all meta tags of its names, in their order; nil without any.

/// "keywords" and "dc.keywords".
NSString htmlMetaKeywords(const NSString &page);
/// "description" and "dc.description".
NSString htmlMetaDescription(const NSString &page);
/// "title" and "dc.title".
NSString htmlMetaTitle(const NSString &page);
/// "author" and "dc.author".
NSString htmlMetaAuthor(const NSString &page);
/// "copyright" and "dc.rights".
NSString htmlMetaCopyright(const NSString &page);
/// "date" and "dc.date".
NSString htmlMetaDate(const NSString &page);
/// "IndexTitle".
NSString htmlMetaIndexTitle(const NSString &page);
/// The header field "refresh".
NSString htmlMetaRefresh(const NSString &page);
/// The header field of this name; nil for nil.
NSString htmlMetaHTTPEquiv(const NSString &page, const NSString &name);
/// The meta tags of this name; nil for nil.
NSString htmlMetaAttributeWithName(const NSString &page, const NSString &name);

/// The page with a "base" tag of this URL behind its "head" tag. The page itself when the URL is nil or empty,
/// when it has a "base" tag with a link, and when it has no "head" tag.
NSString stringByAddingBaseURL(const NSString &page, const NSString &url);
/// The page with a "base" tag of this URL in place of the one with a link that it has, or behind its "head"
/// tag; an empty URL removes the tag. The page itself when the URL is nil, and when it has neither tag.
NSString stringBySettingBaseURL(const NSString &page, const NSString &url);

}  // namespace HtmlExtensions
}  // namespace nimbo
