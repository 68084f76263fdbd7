// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "platform/Foundation/NSRange.hpp"

namespace nimbo::detail {

/// What a tag, start and end alike, puts between the texts in front of it and behind it.
enum class TagBreak : std::uint8_t {
  kNone,       ///< Nothing: the texts are one word when no blank stands between them.
  kSpace,      ///< A space, when text follows in the same line.
  kLine,       ///< The end of a line, when text follows.
  kLineFeed,   ///< Always a line feed.
  kEmptyLine,  ///< Always two.
  kCell,       ///< Always a space, unless white space stands there.
};

/// Elements that the plain text treats in a way of their own.
enum class TagElement : std::uint8_t {
  kOther,
  kVoid,  ///< Has no content and no end tag.
  kBody,
  kHead,
  kNoframes,
  kNoscript,
  kTitle,
  kLink,
  kHeading,
  kPre,
  kRawText,  ///< script and style.
  kTextarea,
  kXmp,
  kPlaintext,
  kImage,
  kInput,
  kSelect,
  kOption,
  kOptgroup,
  kParagraph,  ///< Ends where a block begins.
  kListItem,   ///< Ends where the next one begins, or its list ends; also cells, rows and terms.
  kList,       ///< Lists and tables.
};

struct TagRule {
  std::uint64_t name;
  TagBreak tagBreak = TagBreak::kNone;
  TagElement element = TagElement::kOther;
};

/// Ten letters or digits at most, six bits each, and the length; the case of ASCII letters is lost. Longer
/// names, and those with other characters in them, are all one.
constexpr std::uint64_t packedTagName(const unichar *name, std::uint32_t length) {
  constexpr std::uint32_t kMaximumLength = 10;
  if (length > kMaximumLength) return 0;
  std::uint64_t packed = length;
  for (std::uint32_t i = 0; i < length; ++i) {
    const unichar c = name[i];
    if (c < u'0' || c > u'z') return 0;
    packed = packed << 6 | ((c & 0x1fu) | (c & 0x40u) >> 1);
  }
  return packed;
}

/// The rule for a tag of this packed name; an unknown one breaks nothing.
const TagRule &ruleOfTag(std::uint64_t packedName);

}  // namespace nimbo::detail
