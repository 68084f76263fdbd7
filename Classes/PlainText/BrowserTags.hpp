// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Classes/Markup/TagShape.hpp"

namespace nimbo::detail {

/// What a browser sees in what the scanner took for a tag: mostly the same. But "< b<i>" is one tag to the
/// scanner; to a browser, which wants a letter behind "<", it is the text "< b" and the tag "<i>". And where a
/// script or style, `rawText`, is open, only its end tag is a tag to a browser. What stands in front of the tag
/// then is a part of its text; the tag is empty, and has no name, when there is none.
TagShape browserTag(const TagShape &tag, TagName rawText);

}  // namespace nimbo::detail
