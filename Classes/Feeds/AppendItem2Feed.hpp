// SPDX-License-Identifier: Apache-2.0
//
// Items of feeds as HTML, which is written by templates. Any thread may write.
//
//     NSMutableString page;
//     AppendItem2Feed(&page, u"News"_ns, NSString(), u"<p>Text"_ns, link, dateString, NSString(), {}, {});
#pragma once

#include <vector>

#include "Classes/Feeds/Feed.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Appends an item: its title, which links to its page, a line with author and date, its text and its files.
/// The text is the content, or else the description, without the tags of "IFRAME" and "SPAN" elements. Nil
/// stands for what there is none of. Everything is written as it is given, so that it must be markup. The tags
/// are not shown. Nothing happens without a buffer.
void AppendItem2Feed(NSMutableString *buffer, const NSString &title, const NSString &content,
                     const NSString &description, const NSString &link, const NSString &dateString,
                     const NSString &author, const std::vector<NSString> &tags,
                     const std::vector<FeedEnclosure> &enclosures);

}  // namespace nimbo
