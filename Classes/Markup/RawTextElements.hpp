// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/Foundation/NSRange.hpp"

namespace NIMBO_PUBLIC nimbo {
namespace detail {

/// Finds where the "script" and "style" elements of a text end. Each search remembers what it found, so that
/// all the elements of a text together cost one pass for each thing that is looked for, however broken they
/// are.
class RawTextElements {
 public:
  /// The units must live, and stay as they are behind the last tag asked about, as long as this.
  RawTextElements(const unichar *units, std::uint32_t length) : units_(units), length_(length) {}

  /// The length from the tag's "<" through the ">" of its end tag, when the tag begins an element of raw text;
  /// one more than there are units when the end tag has no ">". `tagLength` in all other cases. No call may ask
  /// about a tag in front of an earlier one's.
  std::uint32_t lengthOfElement(std::uint32_t tagLocation, std::uint32_t tagLength, std::uint32_t nameLocation,
                                std::uint32_t nameLength) {
    if (nameLength != kScript.name.size() && nameLength != kStyle.name.size()) return tagLength;
    return lengthOfNamedElement(tagLocation, tagLength, nameLocation, nameLength);
  }

 private:
  /// The last answer of a search that goes from front to back.
  struct Memory {
    std::uint32_t from = NSNotFound;
    std::uint32_t found = 0;

    bool knows(std::uint32_t position) const { return from <= position && position <= found; }
  };

  /// A kind of element: its name and how its end tag begins, in lower case.
  struct Element {
    std::u16string_view name, endTag;
  };
  static constexpr Element kScript{u"script", u"</script"};
  static constexpr Element kStyle{u"style", u"</style"};

  /// The end tags of a kind of element: behind its start tags, and behind the comments in it. Each goes from
  /// front to back, but the second far in front of the first.
  struct EndTags {
    const Element &element;
    Memory afterStart, afterComment;
  };

  std::uint32_t lengthOfNamedElement(std::uint32_t tagLocation, std::uint32_t tagLength,
                                     std::uint32_t nameLocation, std::uint32_t nameLength);
  bool isNameAt(std::uint32_t location, std::u16string_view name) const;
  /// NSNotFound when there is none at or behind `from`.
  std::uint32_t nextEndTag(std::uint32_t from, const Element &element, Memory &memory) const;
  std::uint32_t nextCommentEnd(std::uint32_t from);
  /// How many units the beginning of the element's end tag takes there; 0 when it does not stand there.
  std::uint32_t lengthOfEndTagAt(std::uint32_t location, const Element &element) const;

  const unichar *const units_;
  const std::uint32_t length_;
  EndTags scriptEnds_{kScript, {}, {}}, styleEnds_{kStyle, {}, {}};
  Memory commentEnd_;
};

}  // namespace detail
}  // namespace nimbo
