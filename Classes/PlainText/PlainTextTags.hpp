// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Classes/Markup/TagShape.hpp"

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
  kUnshown,    ///< Shows none of its content: an alternative to what is embedded, or a part for scripts.
  kParagraph,  ///< Ends where a block begins.
  kListItem,   ///< Ends where the next one begins, or its list ends; also cells, rows and terms.
  kList,       ///< Lists and tables.
};

struct TagRule {
  TagBreak tagBreak = TagBreak::kNone;
  TagElement element = TagElement::kOther;
};

/// The rule for the tags of each name.
extern const std::array<TagRule, kTagNames> kTagRules;

/// The rule for tags of a name; an unknown one breaks nothing.
inline const TagRule &ruleOfTag(TagName name) {
  return kTagRules[static_cast<std::size_t>(name)];
}

/// Whether elements of the kind have no content and no end tag.
constexpr bool isVoid(TagElement element) {
  return element == TagElement::kVoid || element == TagElement::kImage || element == TagElement::kInput;
}

/// What stands for a name that cannot be packed: that of "annotation" for "annotation-xml", else 0.
std::uint64_t packedNameOfOddTag(const TagShape &tag);

/// The name of the tag, packed.
inline std::uint64_t packedNameOfTag(const TagShape &tag) {
  const std::uint64_t packedName = packedTagName(tag.name());
  return packedName == 0 ? packedNameOfOddTag(tag) : packedName;
}

/// A tag with a name, and what is known of it. It borrows the shape.
struct PlainTextTag {
  explicit PlainTextTag(const TagShape &tagShape)
      : shape(tagShape),
        packedName(packedNameOfTag(tagShape)),
        name(tagNamed(packedName)),
        rule(ruleOfTag(name)),
        depthChange(tagShape.depthChange()) {}

  const TagShape &shape;
  /// Tells names apart that `name` does not know.
  std::uint64_t packedName;
  TagName name;
  const TagRule &rule;
  int depthChange;
};

}  // namespace nimbo::detail
