// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "Classes/Markup/TagShape.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {

/// What a browser sees in what the scanner took for a tag: mostly the same. But "< b<i>" is one tag to the
/// scanner; to a browser, which wants a letter behind "<", it is the text "< b" and the tag "<i>". And where a
/// script or style, `rawText`, is open, only its end tag is a tag to a browser. What stands in front of the tag
/// then is a part of its text; the tag is empty, and has no name, when there is none.
TagShape browserTag(const TagShape &tag, TagName rawText);

/// Whether it is known at a glance that `browserTag` is the tag itself.
inline bool isBrowserTag(const TagShape &tag, TagName rawText) {
  const std::u16string_view units = tag.tag();
  return rawText == TagName::kUnknown && units.size() > 1 && (units[1] == u'/' || isASCIILetter(units[1]));
}

}  // namespace nimbo::detail
