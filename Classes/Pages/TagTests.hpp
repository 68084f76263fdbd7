// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

#include "Classes/Characters/FastComparisons.hpp"
#include "Classes/Characters/FastSearches.hpp"
#include "Classes/Markup/TagShape.hpp"

namespace nimbo::detail {

/// Whether it is a tag of at least 3 units and no end tag; "<br/>" is one.
inline bool isOpeningTag(const TagShape &tag) {
  return tag.isOrdinary() && tag.tag().size() >= 3 && !tag.isEndTag();
}

/// Whether the tag ends an element of the name that it has; "<title/>" does.
inline bool endsElement(const TagShape &tag) {
  return tag.isEndTag() || tag.isEmptyElementTag();
}

/// Whether the value is the word, in any case.
inline bool equalsNoCase(std::u16string_view value, std::string_view word) {
  const auto length = static_cast<std::uint32_t>(word.size());
  return value.size() == word.size() &&
         fastCaseInsensitiveCompareUnicharsWithChars(value.data(), length, word.data(), length) == 0;
}
/// The same for a word that is not ASCII.
inline bool equalsNoCase(std::u16string_view value, std::u16string_view word) {
  const auto length = static_cast<std::uint32_t>(word.size());
  return value.size() == word.size() &&
         fastCaseInsensitiveCompareUnichars(value.data(), length, word.data(), length) == 0;
}

/// Where the word stands in the text, in any case; null when it does not.
inline const unichar *findNoCase(std::u16string_view text, std::string_view word) {
  return fastCaseInsensitiveUnicharsContainChars(text.data(), static_cast<std::uint32_t>(text.size()),
                                                 word.data(), static_cast<std::uint32_t>(word.size()));
}

/// The "CONTENT" of a meta tag, whose quotes may be broken; empty when it has none.
inline std::u16string_view readMetaContent(const TagShape &tag) {
  return tag.attribute("CONTENT", QuotedValue::kMayHoldTags);
}

}  // namespace nimbo::detail
