// SPDX-License-Identifier: Apache-2.0
//
// What one tag refers to. The name of the tag is its `tagName`, which has been looked up already. A URL is nil
// when the tag has none of the kind, or nothing usable is left of it; with `preservingMeaning` it is normalised
// so.
#pragma once

#include <string_view>

#include "Classes/Markup/TagShape.hpp"
#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace nimbo::detail {

/// The attribute of the tag as a normalised URL.
NSString URLOfTag(const TagShape &tag, std::string_view attribute, Flag preservingMeaning);
/// Whether the relation of a tag forbids to follow its link.
bool isNoFollowTag(const TagShape &tag);
/// The image that an opening tag shows, or refers to as an icon.
NSString imageOfTag(const TagShape &tag, TagName name, Flag preservingMeaning);
/// The sheet that the first "@import" in a raw-text element names in double quotes.
NSString importOfElement(std::u16string_view element, Flag preservingMeaning);
/// The style sheet or script that an opening tag refers to. The "SRC" of a raw-text element may stand anywhere
/// in it.
NSString sheetOrScriptOfTag(const TagShape &tag, TagName name, Flag preservingMeaning);

}  // namespace nimbo::detail
