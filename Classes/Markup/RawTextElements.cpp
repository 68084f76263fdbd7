// SPDX-License-Identifier: Apache-2.0
#include "Classes/Markup/RawTextElements.hpp"

#include <string_view>

#include "Classes/Characters/FastSearches.hpp"
#include "Classes/Characters/UnicharKernels.hpp"
#include "platform/Foundation/NSStringSearch.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {

namespace {

constexpr std::u16string_view kCommentStart = u"<!-", kCommentEnd = u"-->";

/// Where `pattern` begins between `from` and `end`; NSNotFound when nowhere.
std::uint32_t locationOf(std::u16string_view pattern, const unichar *units, std::uint32_t from,
                         std::uint32_t end) {
  const unichar *const found = fastContainsUnichars(units + from, end - from, pattern.data(),
                                                    static_cast<std::uint32_t>(pattern.size()));
  return found ? static_cast<std::uint32_t>(found - units) : NSNotFound;
}

}  // namespace

std::uint32_t RawTextElements::lengthOfNamedElement(NSRange tag, NSRange name) {
  EndTags &ends = name.length == kScript.name.size() ? scriptEnds_ : styleEnds_;
  const Element &element = ends.element;
  const unichar *const units = units_ + tag.location;
  if (!isNameAt(name.location, element.name) || units[1] == u'/' || units[tag.length - 2] == u'/')
    return tag.length;

  std::uint32_t endTag = nextEndTag(tag.location + 1, element, ends.afterStartTag);
  if (endTag == NSNotFound) return tag.length;
  // A script inside a comment may hold the text of an end tag.
  const std::uint32_t comment = locationOf(kCommentStart, units_, tag.location, endTag);
  if (comment != NSNotFound) {
    const std::uint32_t commentEnd = nextCommentEnd(comment);
    const std::uint32_t later =
        commentEnd == NSNotFound ? NSNotFound : nextEndTag(commentEnd, element, ends.afterComment);
    if (later != NSNotFound) endTag = later;
  }
  const std::uint32_t afterName = endTag + lengthOfEndTagAt(endTag, element);
  const std::uint32_t rest = length_ - afterName;
  return afterName +
         static_cast<std::uint32_t>(findOneOfChoice(units_ + afterName, rest, UnicharChoice::only(u'>'))) + 1 -
         tag.location;
}

bool RawTextElements::isNameAt(std::uint32_t location, std::u16string_view name) const {
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (toASCIILower(units_[location + i]) != name[i]) return false;
  }
  return true;
}

std::uint32_t RawTextElements::nextEndTag(std::uint32_t from, const Element &element, LastMatch &last) const {
  if (last.answers(from)) return last.location;
  struct Search {
    const RawTextElements &elements;
    const Element &element;
  } search{*this, element};
  const UnicharVerifier verifier{[](void *context, const unichar *place) {
                                   const auto &[elements, wanted] = *static_cast<const Search *>(context);
                                   const auto location = static_cast<std::uint32_t>(place - elements.units_);
                                   return elements.lengthOfEndTagAt(location, wanted) > 0;
                                 },
                                 &search};
  const std::uint32_t places = length_ - from - 1;
  const std::size_t place =
      findAnchors(units_ + from, places, {UnicharChoice::only(u'<'), UnicharChoice::only(u'/'), 1}, verifier);
  last = {from, place < places ? from + static_cast<std::uint32_t>(place) : NSNotFound};
  return last.location;
}

std::uint32_t RawTextElements::nextCommentEnd(std::uint32_t from) {
  if (!commentEnd_.answers(from)) commentEnd_ = {from, locationOf(kCommentEnd, units_, from, length_)};
  return commentEnd_.location;
}

std::uint32_t RawTextElements::lengthOfEndTagAt(std::uint32_t location, const Element &element) const {
  const std::u16string_view rest(units_ + location, length_ - location);
  for (std::size_t i = 0; i < element.endTag.size(); ++i) {
    if (i == rest.size()) return 0;
    if (toASCIILower(rest[i]) == element.endTag[i]) continue;
    if (rest[i] < 0x80) return 0;
    // Few letters beyond ASCII fold to those of the name, but some do.
    return rangeOfString(rest, element.endTag, NSCaseInsensitiveSearch | NSAnchoredSearch).length;
  }
  return static_cast<std::uint32_t>(element.endTag.size());
}

}  // namespace nimbo::detail
