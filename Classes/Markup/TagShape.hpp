// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "Classes/Characters/FastComparisons.hpp"
#include "Classes/Markup/TagScanner.hpp"

namespace NIMBO_PUBLIC nimbo {
namespace detail {

/// What a `TagHandler` was told of a tag and the text in front of it, cut to the string's bounds.
class TagShape {
 public:
  TagShape(const NSString &string, const unichar *characters, std::uint32_t nameLocation,
           std::uint32_t nameLength, std::uint32_t tagLocation, std::uint32_t tagLength,
           std::uint32_t textLocation, int kind)
      : characters_(characters),
        textLocation_(std::min(textLocation, tagLocation)),
        tagLocation_(tagLocation),
        tagEnd_(tagLocation + std::min(tagLength, string.length() - tagLocation)),
        name_(nameLength == 0 ? characters : characters + nameLocation, nameLength),
        kind_(kind) {}

  std::uint32_t location() const { return tagLocation_; }
  std::u16string_view name() const { return name_; }
  std::u16string_view tag() const { return run(tagLocation_, tagEnd_); }
  std::u16string_view text() const { return run(textLocation_, tagLocation_); }
  std::u16string_view textAndTag() const { return run(textLocation_, tagEnd_); }
  std::u16string_view allBefore() const { return run(0, tagLocation_); }

  bool isOrdinary() const { return kind_ == kOrdinaryTag; }
  bool isEndTag() const { return isOrdinary() && characters_[tagLocation_ + 1] == u'/'; }
  bool isEmptyElementTag() const { return isOrdinary() && tag().size() > 3 && tag().ends_with(u"/>"); }
  bool isStartTag() const { return isOrdinary() && tag().size() >= 3 && !isEndTag() && !isEmptyElementTag(); }

  bool isNamed(std::u16string_view name) const {
    return isOrdinary() && name_.size() == name.size() &&
           fastCaseInsensitiveCompareUnichars(name_.data(), lengthOf(name_), name.data(), lengthOf(name)) == 0;
  }
  bool isNamed(std::string_view asciiName) const {
    return isOrdinary() && name_.size() == asciiName.size() &&
           fastCaseInsensitiveCompareUnicharsWithChars(name_.data(), lengthOf(name_), asciiName.data(),
                                                       lengthOf(name_)) == 0;
  }
  /// Whether the tag's text, its "<" included, begins so, in any case.
  bool beginsWith(std::u16string_view prefix) const {
    return tag().size() >= prefix.size() &&
           fastCaseInsensitiveCompareUnichars(tag().data(), lengthOf(prefix), prefix.data(),
                                              lengthOf(prefix)) == 0;
  }

  /// How the tag changes the depth of nested elements of its name: an empty-element tag counts as an end tag.
  int depthChange() const {
    if (isStartTag()) return 1;
    return (isEndTag() && tag().size() >= 4) || isEmptyElementTag() ? -1 : 0;
  }

 private:
  static std::uint32_t lengthOf(std::u16string_view units) { return static_cast<std::uint32_t>(units.size()); }
  std::u16string_view run(std::uint32_t first, std::uint32_t end) const {
    return {characters_ + first, end - first};
  }

  const unichar *characters_;
  std::uint32_t textLocation_, tagLocation_, tagEnd_;
  std::u16string_view name_;
  int kind_;
};

}  // namespace detail
}  // namespace nimbo
