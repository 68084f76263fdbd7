// SPDX-License-Identifier: Apache-2.0
//
// What one tag tells about its page.
#pragma once

#include <string_view>

#include "Classes/Markup/TagShape.hpp"
#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {

/// A string of the units; nil when there are none.
inline NSString stringUnlessEmpty(std::u16string_view units) {
  return units.empty() ? NSString() : NSString::stringWithCharacters(units);
}

/// The link of a "base" tag; empty when it has none, or is an end tag.
std::u16string_view linkOfBaseTag(const TagShape &tag);
/// The canonical URL that a "link" tag names, normalised, with or without its meaning preserved; nil when it
/// names none.
NSString canonicalURLOfLinkTag(const TagShape &tag, Flag preservingMeaning = false);
/// The icon that a "link" tag names, as `getFavIcon` has it, with or without its meaning preserved; nil when it
/// names none.
NSString favIconOfLinkTag(const TagShape &tag, Flag preservingMeaning = false);
/// Whether a meta tag of this name, or for this header field, tells the page's date.
bool isDateMeta(std::u16string_view name, std::u16string_view headerField);
/// Whether the tag, of unknown name, is the root of a feed.
inline bool isFeedRoot(const TagShape &tag) {
  return tag.isOrdinary() && equalsOneOfASCIINoCase(tag.name(), {"rss", "feed", "rdf:rdf"});
}
/// The content of a meta tag as a person reads it.
NSString convertedMetaContent(std::u16string_view content);

}  // namespace nimbo::detail
