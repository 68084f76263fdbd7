// SPDX-License-Identifier: Apache-2.0
#include "Classes/Encodings/MarkupEncoding.hpp"

#include <string_view>

#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "Classes/Markup/TagHandlers.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {
namespace {

constexpr std::size_t kShortestMetaTag = 3;
constexpr std::u16string_view kCharsetField = u"CHARSET";

/// The name in a meta tag: that of the content type in its "content", else its own "charset"; empty when none.
std::u16string_view charsetOfMetaTag(const TagShape &tag) {
  const std::u16string_view content = tag.attribute("CONTENT", QuotedValue::kMayHoldTags);
  const std::u16string_view charset = fieldOfHeader(content, kCharsetField);
  return charset.empty() ? tag.attribute("CHARSET") : charset;
}

bool isMetaTag(const TagShape &tag) {
  return tag.isNamed("meta") && tag.tag().size() >= kShortestMetaTag && !tag.isEndTag();
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
  if (tag.isNamed("xml") && tag.tag()[1] == u'?') return setUnlessEmpty(result, tag.attribute("ENCODING"));
  if (isMetaTag(tag)) return setUnlessEmpty(result, decoded(charsetOfMetaTag(tag)).view());
  return tag.isNamed("body");
}

}  // namespace

const TagHandler RetrieveEncodingHandler = tagHandler<retrieveEncoding>;

}  // namespace nimbo
