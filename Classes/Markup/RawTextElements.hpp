// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/Foundation/NSRange.hpp"

namespace nimbo::detail {

/// Finds the end tags of the "script" and "style" elements of a text. Every search remembers its last match, so
/// that the elements of a text together cost one pass for each thing that is searched for, however broken they
/// are.
class RawTextElements {
 public:
  /// The units are borrowed; those behind the last tag that was asked about must not change.
  RawTextElements(const unichar *units, std::uint32_t length) : units_(units), length_(length) {}

  /// The length of the element that the tag begins, from its "<" through the ">" of its end tag; when the end
  /// tag has no ">", one more than there are units. It is the tag's own length when the tag begins no raw text
  /// or the element has no end tag. Tags must be asked about in their order.
  std::uint32_t lengthOfElement(NSRange tag, NSRange name) {
    if (name.length != kScript.name.size() && name.length != kStyle.name.size()) return tag.length;
    return lengthOfNamedElement(tag, name);
  }

 private:
  /// The last match of a search that goes forward.
  struct LastMatch {
    std::uint32_t from = NSNotFound;
    std::uint32_t location = 0;

    /// Whether a search from the position would find the same.
    bool answers(std::uint32_t position) const { return from <= position && position <= location; }
  };

  /// What is searched for, in lower case.
  struct Element {
    std::u16string_view name, endTag;
  };
  static constexpr Element kScript{u"script", u"</script"};
  static constexpr Element kStyle{u"style", u"</style"};

  /// The end tags behind start tags, and those behind comments. The second search is far in front of the first.
  struct EndTags {
    const Element &element;
    LastMatch afterStartTag, afterComment;
  };

  /// As `lengthOfElement`, for a name of the right length.
  std::uint32_t lengthOfNamedElement(NSRange tag, NSRange name);
  /// Whether the units at the location are the name, in any case.
  bool isNameAt(std::uint32_t location, std::u16string_view name) const;
  /// Where the next end tag begins, at `from` or behind it; NSNotFound when there is none.
  std::uint32_t nextEndTag(std::uint32_t from, const Element &element, LastMatch &last) const;
  /// Where the next "-->" begins, at `from` or behind it; NSNotFound when there is none.
  std::uint32_t nextCommentEnd(std::uint32_t from);
  /// How many units "</" and the name have at the location; 0 when they are not there.
  std::uint32_t lengthOfEndTagAt(std::uint32_t location, const Element &element) const;

  const unichar *const units_;
  const std::uint32_t length_;
  EndTags scriptEnds_{kScript, {}, {}}, styleEnds_{kStyle, {}, {}};
  LastMatch commentEnd_;
};

}  // namespace nimbo::detail
