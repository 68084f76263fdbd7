// SPDX-License-Identifier: Apache-2.0
#include "importers/HTML/PageProperties.hpp"

#include <optional>
#include <utility>

#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "Classes/Markup/ScanTags.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

/// Longer texts are cut.
constexpr std::size_t kMaximumLength = 64u << 10;

std::string textOfMarkup(std::u16string_view markup) {
  const NSString text = NSString::stringWithCharacters(markup.substr(0, kMaximumLength));
  return simplifiedText(stringByConvertingEntitiesToCharacters(text).UTF8String());
}

void setMeta(const TagShape &tag, DocumentProperties &properties) {
  const std::u16string_view name = tag.attribute("name");
  const std::u16string_view content = tag.attribute("content", QuotedValue::kMayHoldTags);
  if (equalsOneOfASCIINoCase(name, {"author", "dc.creator", "dcterms.creator"})) {
    if (std::string author = textOfMarkup(content); !author.empty() && properties.authors.empty())
      properties.authors.push_back(std::move(author));
  } else if (equalsASCIINoCase(name, "keywords")) {
    properties.keywords = listOfText(textOfMarkup(content), ",;");
  } else if (equalsASCIINoCase(name, "description")) {
    properties.description = textOfMarkup(content);
  } else if (equalsASCIINoCase(name, "generator")) {
    properties.application = textOfMarkup(content);
  }
}

}  // namespace

DocumentProperties propertiesOfPage(const NSString &markup) {
  DocumentProperties properties;
  std::optional<std::size_t> titleStart;
  scanTags(markup, [&](const TagShape &tag) {
    const TagName name = tag.tagName();
    if (name == TagName::kTitle && tag.isStartTag()) {
      titleStart = tag.tagRange().location + tag.tag().size();
    } else if (name == TagName::kTitle && titleStart && properties.title.empty()) {
      // What looks like a tag in a title is none.
      properties.title = textOfMarkup(tag.allBefore().substr(*titleStart));
    }
    if (name == TagName::kHtml && properties.language.empty())
      properties.language = textOfMarkup(tag.attribute("lang"));
    if (name == TagName::kMeta) setMeta(tag, properties);
    return name == TagName::kBody;
  });
  return properties;
}

}  // namespace nimbo
