// SPDX-License-Identifier: Apache-2.0
//
// Values of attributes, as views of the markup and as strings. Any thread may read them.
//
//     const std::u16string_view link = attributeOfTag(u"<a class=x HREF='page.html'>", "href");
//     if (!link.empty()) follow(link);
//     const NSString charset = headerCharset(u"text/html; charset=utf-8"_ns);  // NSString+XmlExtensions.hpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The white space between attributes, and around the properties of a style.
inline constexpr std::u16string_view kMarkupWhiteSpace = u" \t\n\r\f";

/// What ends a value in quotes beside the second quote.
enum class QuotedValue : std::uint8_t {
  kEndsWithTag,  ///< A ">".
  kMayHoldTags,  ///< A ">" without a "<" in front of it in the value, and "<meta"; for contents of meta tags.
};

/// The value of an attribute of the tag, whose units are given from its "<" on; `name` is ASCII in any case.
/// The name must not follow a letter or a digit nor stand in quotes, and "=" comes behind it. A quoted value
/// ends as `quoted` says, any other at white space or ">". White space at its end is trimmed; entities stay as
/// they are. The view is a part of the tag; it is empty when the tag has no such attribute or the value is
/// empty, and when the tag is not at least 6 units longer than the name.
std::u16string_view attributeOfTag(std::u16string_view tag NIMBO_LIFETIMEBOUND, std::string_view name,
                                   QuotedValue quoted = QuotedValue::kEndsWithTag);

/// An attribute as browsers read it: its name is all in front of white space, "=", "/" or ">", and a value in
/// quotes ends with the second quote alone.
struct TagAttribute {
  /// In the case that it is written in; never empty.
  std::u16string_view name;
  /// Empty, too, when the attribute has none. Entities stay as they are.
  std::u16string_view value;
};

/// Reads the attributes of a tag, whose units are given from its "<" on, from the first to the last; what a
/// raw-text element has behind its start tag has none.
///
///     TagAttributeReader attributes(u"<option value=a selected>");
///     while (const std::optional<TagAttribute> attribute = attributes.next())
///       count += attribute->value.size();
class TagAttributeReader {
 public:
  /// It borrows the units.
  explicit TagAttributeReader(std::u16string_view tag);

  /// The next attribute, as views of the tag; nothing behind the last one.
  std::optional<TagAttribute> next();

 private:
  std::u16string_view tag_;
  std::size_t position_;
};

/// The value of the first attribute of the tag whose whole name, as browsers read it, is the name, which is
/// ASCII in lower case: "alt" is not found in "<img data-alt=x>". Empty when there is none.
std::u16string_view ownAttributeOfTag(std::u16string_view tag NIMBO_LIFETIMEBOUND,
                                      std::string_view lowerCaseName);

/// Whether the tag has an attribute of the name, which is ASCII in lower case, with or without a value:
/// "<option selected>".
bool hasAttribute(std::u16string_view tag, std::string_view lowerCaseName);

/// As `attributeOfTag` for the tag that has `length` units from `offset` on, but as a string, which is nil
/// where the view is empty; `name` ends with a zero byte, and `isTolerant` stands for `kMayHoldTags`.
NSString _attributeOfTagCharactersWithName(const unichar *characters, std::uint32_t offset,
                                           std::uint32_t length, const char *name, Flag isTolerant);

/// As `attributeOfTag` in a range of a string, which is cut to its bounds. `separator` stands for the "=",
/// `terminator` for the ">", and the range must have more than `slack` units besides the name. Nil, too, when
/// the string or the name is nil or empty, or the range begins behind the string.
NSString _attributeOfStringWithName(const NSString &string, std::uint32_t location, std::uint32_t length,
                                    const NSString &name, std::uint32_t slack, unichar separator,
                                    unichar terminator);

/// How strictly the value of a header's field is read.
enum class HeaderValue : std::uint8_t {
  kStrict,   ///< It begins behind the "=", and one without quotes ends at ";".
  kLenient,  ///< White space in front of it is skipped, and ends one without quotes, too.
};

/// The value of a field in a header's text, "name=value; ...", as a view of the header. The text is compared in
/// upper case with the name, which is not folded and may follow any unit. A value that begins with `quote` ends
/// at the next one or with the text, and is passed over when it is empty; any other has at least one unit. The
/// view is empty when there is no such field, and when the text is not longer than the name.
std::u16string_view fieldOfHeader(std::u16string_view header NIMBO_LIFETIMEBOUND,
                                  std::u16string_view upperCaseName, unichar quote = u'\'',
                                  HeaderValue value = HeaderValue::kLenient);

/// As `fieldOfHeader`, but as a string, which is nil where the view is empty.
NSString _copyOfAttributeOfString(const NSString &string, const unichar *name, std::uint32_t nameLength,
                                  unichar quote, Flag isLenient);

}  // namespace nimbo
