// SPDX-License-Identifier: Apache-2.0
#include "Classes/Encodings/MarkupEncoding.hpp"

#include <string_view>

#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "Classes/Markup/TagHandlers.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {
namespace {

constexpr std::u16string_view kCharsetField = u"CHARSET";

/// The name in a meta tag: that of the content type in its "content", else its own "charset"; empty when none.
std::u16string_view charsetOfMetaTag(const TagShape &tag) {
  const std::u16string_view content = tag.attribute("CONTENT", QuotedValue::kMayHoldTags);
  const std::u16string_view charset = fieldOfHeader(content, kCharsetField);
  return charset.empty() ? tag.attribute("CHARSET") : charset;
}

/// Sets the result unless the name is empty, and answers whether it has.
bool setUnlessEmpty(NSMutableString &result, std::u16string_view charset) {
  if (charset.empty()) return false;
  result.replaceCharactersInRange({0, NSNotFound}, charset);
  return true;
}

NSString decoded(std::u16string_view charset) {
  return stringByConvertingEntitiesToCharacters(NSString::stringWithCharacters(charset));
}

bool retrieveEncoding(const TagShape &tag, NSMutableString &result) {
  switch (tag.tagName()) {
    case TagName::kXml:
      return tag.tag()[1] == u'?' && setUnlessEmpty(result, tag.attribute("ENCODING"));
    case TagName::kMeta:
      return !tag.isEndTag() && setUnlessEmpty(result, decoded(charsetOfMetaTag(tag)).view());
    case TagName::kBody:
      return true;
    default:
      return false;
  }
}

}  // namespace

const TagHandler RetrieveEncodingHandler = tagHandler<retrieveEncoding>;

}  // namespace nimbo
