// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/BrowserTags.hpp"

#include <algorithm>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {

namespace {

/// Whether a tag begins at the "<" for a browser: "a < b" is text.
bool beginsTag(std::u16string_view page, std::size_t less) {
  if (less + 1 >= page.size()) return false;
  const unichar c = page[less + 1];
  return c == u'/' || c == u'!' || c == u'?' || isASCIILetter(c);
}

/// Where a tag begins inside one that is text to a browser; its end when there is none.
std::size_t innerTag(std::u16string_view page, std::size_t tag, std::size_t end) {
  while ((tag = std::min(page.find(u'<', tag + 1), end)) < end && !beginsTag(page, tag)) continue;
  return tag;
}

/// The name of a tag that begins with "<" and, if at all, "/".
NSRange nameOfTag(std::u16string_view page, std::size_t tag) {
  const std::size_t start = tag + 1 + (page[tag + 1] == u'/');
  const auto isPart = [](unichar c) { return c > u' ' && c != u'/' && c != u'>'; };
  std::size_t end = start;
  while (end < page.size() && isPart(page[end])) ++end;
  return {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end - start)};
}

/// Where the end tag of the script or style begins in what the scanner took for one tag; the end of that when
/// there is none.
std::size_t rawTextEnd(std::u16string_view page, std::size_t tag, std::size_t end, TagName rawText) {
  const std::u16string_view part = page.substr(0, end);
  while ((tag = std::min(part.find(u"</", tag), end)) < end) {
    const NSRange name = nameOfTag(part, tag);
    if (tagNamed(part.substr(name.location, name.length)) == rawText) break;
    ++tag;
  }
  return tag;
}

/// The tag that begins inside of what the scanner took for one, at its end when there is none.
TagShape tagInside(const TagShape &tag, std::size_t start, std::size_t end) {
  const std::u16string_view page = tag.markup();
  const NSRange range{static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end - start)};
  if (page.substr(start, range.length).starts_with(u"<!-"))
    return {page, {NSNotFound, 0}, range, tag.textLocation(), kComment};
  const NSRange name = start < end ? nameOfTag(page, start) : NSRange{NSNotFound, 0};
  return {page, name, range, tag.textLocation(), kOrdinaryTag};
}

}  // namespace

TagShape browserTag(const TagShape &tag, TagName rawText) {
  const std::u16string_view page = tag.markup();
  const std::size_t start = tag.tagRange().location, end = start + tag.tag().size();
  std::size_t inner = rawText != TagName::kUnknown ? rawTextEnd(page, start, end, rawText) : end;
  if (inner == end) inner = tag.isOrdinary() && !beginsTag(page, start) ? innerTag(page, start, end) : start;
  return inner > start ? tagInside(tag, inner, end) : tag;
}

}  // namespace nimbo::detail
