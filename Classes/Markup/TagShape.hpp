// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "Classes/Characters/FastComparisons.hpp"
#include "Classes/Markup/TagAttributes.hpp"
#include "Classes/Markup/TagNames.hpp"
#include "Classes/Markup/TagScanner.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What a CDATA section begins with.
inline constexpr std::u16string_view kCDATAStart = u"<![CDATA[";
/// What it ends with.
inline constexpr std::u16string_view kCDATAEnd = u"]]>";

/// What the scanner has found: a tag, comment or marked section, and the text in front of it; or, as an empty
/// tag, the end of the markup. It borrows the markup, and so do its views. It never changes, and any thread may
/// read it.
///
///     if (tag.isStartTag() && tag.tagName() == TagName::kA) links.emplace_back(tag.attribute("HREF"));
///     if (tag.isEndTag() && tag.isNamed("my-title")) title = tag.text();
///     if (tag.kind() == kComment) comments += tag.tag().size();
class TagShape {
 public:
  /// The ranges are those that a `TagHandler` is told.
  TagShape(std::u16string_view markup, NSRange nameRange, NSRange tagRange, std::uint32_t textLocation,
           TagKind kind)
      : markup_(markup), nameRange_(nameRange), tagRange_(tagRange), textLocation_(textLocation), kind_(kind) {}

  /// What the scanner has met.
  TagKind kind() const { return kind_; }
  /// NSNotFound and 0 when the tag has no name.
  NSRange nameRange() const { return nameRange_; }
  /// It may end one unit behind the markup.
  NSRange tagRange() const { return tagRange_; }
  /// Where the text in front of the tag begins; it may be one unit behind the end of the markup.
  std::uint32_t textLocation() const { return textLocation_; }

  /// All units that are scanned.
  std::u16string_view markup() const { return markup_; }
  /// Empty when the tag has none.
  std::u16string_view name() const {
    return {markup_.data() + (nameRange_.length == 0 ? 0 : nameRange_.location), nameRange_.length};
  }
  /// From the "<" on, cut to the bounds of the markup.
  std::u16string_view tag() const { return part(tagRange_.location, tagEnd()); }
  /// The text between the last tag and this one.
  std::u16string_view text() const { return part(firstOfText(), tagRange_.location); }
  /// The text between the last tag and this one, and the tag.
  std::u16string_view textAndTag() const { return part(firstOfText(), tagEnd()); }
  /// All markup in front of the tag.
  std::u16string_view allBefore() const { return part(0, tagRange_.location); }

  /// Whether it is a tag, and no comment, marked section or the end.
  bool isOrdinary() const { return kind_ == kOrdinaryTag; }
  /// Whether it is a CDATA section, whose end may be missing.
  bool isCDATASection() const { return kind_ == kMarkedSection && tag().starts_with(kCDATAStart); }
  /// "</...>".
  bool isEndTag() const { return isOrdinary() && tag().size() > 1 && tag()[1] == u'/'; }
  /// "<.../>".
  bool isEmptyElementTag() const { return isOrdinary() && tag().size() > 3 && tag().ends_with(u"/>"); }
  /// Neither of both; at least 3 units, as "<p>" has.
  bool isStartTag() const { return isOrdinary() && tag().size() >= 3 && !isEndTag() && !isEmptyElementTag(); }
  /// How the tag changes the depth of nested elements: by 1 for a start tag, -1 for an end tag, 0 for one of
  /// less than 3 units or that ends in "/>".
  int depthChange() const {
    if (!isOrdinary() || tag().size() < 3 || tag()[tag().size() - 2] == u'/') return 0;
    return tag()[1] == u'/' ? -1 : 1;
  }

  /// The name that the tag has in any case; `kUnknown` when it has another or none. It is looked up each time.
  TagName tagName() const { return isOrdinary() ? tagNamed(name()) : TagName::kUnknown; }
  /// Whether the tag has the name, in any case.
  bool isNamed(std::u16string_view name) const {
    return isOrdinary() && nameRange_.length == name.size() &&
           fastCaseInsensitiveCompareUnichars(this->name().data(), nameRange_.length, name.data(),
                                              nameRange_.length) == 0;
  }
  /// The same for a name in ASCII.
  bool isNamed(std::string_view asciiName) const {
    return isOrdinary() && nameRange_.length == asciiName.size() &&
           fastCaseInsensitiveCompareUnicharsWithChars(name().data(), nameRange_.length, asciiName.data(),
                                                       nameRange_.length) == 0;
  }
  /// Whether the tag's text, its "<" included, begins so, in any case.
  bool beginsWith(std::u16string_view prefix) const {
    const auto length = static_cast<std::uint32_t>(prefix.size());
    return tag().size() >= prefix.size() &&
           fastCaseInsensitiveCompareUnichars(tag().data(), length, prefix.data(), length) == 0;
  }

  /// The value of an attribute, as `attributeOfTag` reads it; empty when the tag has none of that name.
  std::u16string_view attribute(std::string_view name, QuotedValue quoted = QuotedValue::kEndsWithTag) const {
    return attributeOfTag(tag(), name, quoted);
  }
  /// The value of the attribute of exactly this name, as `ownAttributeOfTag` reads it.
  std::u16string_view ownAttribute(std::string_view lowerCaseName) const {
    return ownAttributeOfTag(tag(), lowerCaseName);
  }
  /// Whether the tag has an attribute of the name, with or without a value.
  bool hasAttribute(std::string_view lowerCaseName) const { return nimbo::hasAttribute(tag(), lowerCaseName); }

 private:
  std::uint32_t tagEnd() const {
    const auto rest = static_cast<std::uint32_t>(markup_.size()) - tagRange_.location;
    return tagRange_.location + std::min(tagRange_.length, rest);
  }
  std::uint32_t firstOfText() const { return std::min(textLocation_, tagRange_.location); }
  std::u16string_view part(std::uint32_t first, std::uint32_t end) const {
    return {markup_.data() + first, end - first};
  }

  std::u16string_view markup_;
  NSRange nameRange_, tagRange_;
  std::uint32_t textLocation_;
  TagKind kind_;
};

}  // namespace nimbo
