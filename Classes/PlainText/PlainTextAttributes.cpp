// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/PlainTextAttributes.hpp"

#include <algorithm>

#include "Classes/Markup/TagAttributes.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {

namespace {

constexpr std::u16string_view kBlanks = u" \t\n\r\f";

/// The end of an attribute's value, or the end of the tag.
std::size_t endOfValue(std::u16string_view tag, std::size_t start) {
  if (start >= tag.size()) return tag.size();
  if (tag[start] == u'"' || tag[start] == u'\'') return std::min(tag.find(tag[start], start + 1), tag.size());
  return std::min(tag.find_first_of(u" \t\n\r\f>", start), tag.size());
}

}  // namespace

NSString attributeOfTag(std::u16string_view tag, const char *name) {
  return _attributeOfTagCharactersWithName(tag.data(), 0, static_cast<std::uint32_t>(tag.size()), name, false);
}

bool hasBareAttribute(std::u16string_view tag, std::u16string_view name) {
  std::size_t i = std::min(tag.find_first_of(u" \t\n\r\f/"), tag.size());
  while (i < tag.size()) {
    const std::size_t start = std::min(tag.find_first_not_of(u" \t\n\r\f/>\"'", i), tag.size());
    const std::size_t end = std::min(tag.find_first_of(u" \t\n\r\f/>=", start), tag.size());
    if (end > start && equalsNoCase(tag.substr(start, end - start), name)) return true;
    i = std::min(tag.find_first_not_of(kBlanks, end), tag.size());
    if (i < tag.size() && tag[i] == u'=')
      i = endOfValue(tag, std::min(tag.find_first_not_of(kBlanks, i + 1), tag.size()));
  }
  return false;
}

bool equalsNoCase(std::u16string_view text, std::u16string_view lower) {
  return std::ranges::equal(text, lower, {}, toASCIILower<unichar>);
}

}  // namespace nimbo::detail
