// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/Foundation/NSString.hpp"

namespace nimbo::detail {

/// The string, or the empty one in place of nil.
inline NSString orEmpty(const NSString &string) {
  return string ? string : NSString::string();
}

/// The units from one position up to another.
inline std::u16string_view between(const unichar *start, const unichar *end) {
  return {start, static_cast<std::size_t>(end - start)};
}

/// The position behind the units.
inline const unichar *endOf(std::u16string_view units) {
  return units.data() + units.size();
}

/// How the text of an element is written down, by its attributes.
enum class TextForm : std::uint8_t {
  kUnknown,
  kPlain,   ///< It is no markup once its references are decoded.
  kMarkup,  ///< It is markup once its references are decoded.
  kInline,  ///< It is markup as it stands.
  kBase64,
};

/// The form that the "type" and "mode" attributes of an element's start tag tell.
TextForm textFormOfTag(std::u16string_view tag);

/// Which character references in a text are decoded.
enum class Decoding : std::uint8_t {
  kNone,
  /// All that `convertEntities2Characters` knows, in CDATA sections, too.
  kEntities,
  /// "&quot;", "&amp;", "&lt;" and "&gt;", in CDATA sections, too.
  kStandardEntities,
  /// Those of XML and HTML, and all numbers, but none in CDATA sections.
  kReferences,
};

/// What stands between the tags of an element, without the white space at both ends and the marks of CDATA
/// sections. It is never nil.
NSString feedText(std::u16string_view units, Decoding decoding);

/// The same of markup that stands there as it is: the text of CDATA sections is written as markup.
NSString inlineText(std::u16string_view units);

/// Without a "div" element around all of it.
std::u16string_view withoutEnclosingDiv(std::u16string_view markup);

/// The text of an element that holds others, without their tags.
NSString textWithoutTags(std::u16string_view units);

/// The same of the first element in one that has nothing but elements; other texts are taken as they are.
NSString firstText(std::u16string_view units);

/// A text that is markup, or plain, as people read it: without tags, references and white space at its ends.
NSString plainText(const NSString &text, bool isPlain);

/// The text without the units of the white set at both ends.
std::u16string_view withoutWhiteEnds(std::u16string_view text);

}  // namespace nimbo::detail
