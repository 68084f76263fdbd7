// SPDX-License-Identifier: Apache-2.0
#include "Classes/Encodings/MarkupEncoding.hpp"

#include <string_view>

#include "Classes/Characters/FastComparisons.hpp"
#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "Classes/Markup/NSString+XmlExtensions.hpp"
#include "Classes/Markup/TagAttributes.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {
namespace {

constexpr std::uint32_t kShortestMetaTag = 3;
constexpr std::u16string_view kCharsetField = u"CHARSET";

/// The name in a meta tag: that of the content type in its "content", else its own "charset"; nil when none.
NSString charsetOfMetaTag(const unichar *characters, std::uint32_t location, std::uint32_t length) {
  const NSString content = _attributeOfTagCharactersWithName(characters, location, length, "CONTENT", true);
  const NSString charset =
      _copyOfAttributeOfString(content, kCharsetField.data(), kCharsetField.size(), u'\'', true);
  return charset ? charset : attributeOfTagCharacters(characters, NSRange{location, length}, "CHARSET");
}

}  // namespace

bool RetrieveEncodingHandler(const NSString &, const unichar *characters, std::uint32_t nameLocation,
                             std::uint32_t nameLength, std::uint32_t tagLocation, std::uint32_t tagLength,
                             std::uint32_t, int kind, void *context) {
  if (kind != kOrdinaryTag || nameLength == 0) return false;
  const auto isNamed = [&](std::string_view name) {
    return nameLength == name.size() &&
           fastCaseInsensitiveCompareUnicharsWithChars(characters + nameLocation, nameLength, name.data(),
                                                       nameLength) == 0;
  };
  const unichar second = characters[tagLocation + 1];
  NSString charset;
  if (isNamed("xml") && second == u'?')
    charset = attributeOfTagCharacters(characters, NSRange{tagLocation, tagLength}, "ENCODING");
  else if (isNamed("body"))
    return true;
  else if (isNamed("meta") && tagLength >= kShortestMetaTag && second != u'/')
    charset = stringByConvertingEntitiesToCharacters(charsetOfMetaTag(characters, tagLocation, tagLength));
  if (!charset) return false;
  static_cast<NSMutableString *>(context)->replaceCharactersInRange({0, NSNotFound}, charset.view());
  return true;
}

}  // namespace nimbo
