// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "Classes/Feeds/Feed.hpp"
#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/NSURL.hpp"

namespace nimbo::detail {

/// What every page begins with.
inline constexpr std::u16string_view kPageStart =
    u"<html>\n<head>\n<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\"/>\n";
/// What stands between the head and the body of a page.
inline constexpr std::u16string_view kBodyStart = u"</head>\n<body>\n";
/// What a page ends with.
inline constexpr std::u16string_view kPageEnd = u"\n</body>\n</html>";
/// What a page ends with that has no body.
inline constexpr std::u16string_view kHeadEnd = u"\n</head>\n</html>";

/// Ends the head with the title of the feed, which may be empty, and begins the body.
void appendPageTitle(NSMutableString &page, const NSString &title);

/// Appends the style sheet that the user default `linkableFeedStyleSheet` names, as a link or with its text;
/// nothing when there is none, or none that can be read.
void appendStyleSheet(NSMutableString &page, Flag isLinked);

/// The text of the style sheet in a "style" element; nil when there is none that can be read.
NSString styleElement();

/// Appends an item with all its fields.
void appendItem(NSMutableString &page, const FeedItem &item);

/// The item as it can be shown without a script in it: markup by `safeMarkup`, everything else as text. Links
/// in markup are made absolute against the base, which may be nil; a title that is one has none in it.
FeedItem safeItem(const FeedItem &item, const NSURL &baseURL = NSURL());

/// The same of an item by names of tags, whose enclosures stand there with the references of their attributes.
FeedItem safeItemByName(FeedItem item);

}  // namespace nimbo::detail
