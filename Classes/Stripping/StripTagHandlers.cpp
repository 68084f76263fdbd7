// SPDX-License-Identifier: Apache-2.0
#include "Classes/Stripping/StripTagHandlers.hpp"

#include "Classes/Markup/TagHandlers.hpp"
#include "Classes/Stripping/WhiteSpaceJoining.hpp"

namespace nimbo {

namespace {

/// Copies the text in front of the tag, and the tag unless it has the name of the context; answers whether it
/// has. The result begins with the first tag that has.
bool copyUnlessNamed(const TagShape &tag, StripTagContext &context) {
  if (!tag.isNamed(context.tagName)) {
    if (context.result) context.result->append(tag.textAndTag());
    return false;
  }
  if (context.result)
    context.result->append(tag.text());
  else
    context.result.emplace().append(tag.allBefore());
  return true;
}

void appendWithoutAttributes(NSMutableString &result, const TagShape &tag, std::string_view name) {
  if (tag.isEndTag()) {
    if (tag.tag().size() < 4) return;
    result.append(u"</");
    result.append(name);
    return result.append(u">");
  }
  std::u16string_view attribute = u" HREF=\"", value = tag.attribute("HREF");
  if (value.empty()) {
    attribute = u" SRC=\"";
    value = tag.attribute("SRC");
  }
  if (value.empty() && tag.isEmptyElementTag()) return;
  result.append(u"<");
  result.append(name);
  if (!value.empty()) {
    result.append(attribute);
    result.append(value);
    result.append(tag.isEmptyElementTag() ? u"\"/" : u"\"");
  }
  result.append(u">");
}

void stripTags(const TagShape &tag, NSMutableString &result) {
  if (tag.text().empty()) return;
  detail::appendSpaceIfNeeded(result);
  result.append(tag.text());
}

void stripTag(const TagShape &tag, StripTagContext &context) {
  copyUnlessNamed(tag, context);
}

void stripTagAttributes(const TagShape &tag, StripTagContext &context) {
  if (copyUnlessNamed(tag, context)) appendWithoutAttributes(*context.result, tag, context.tagName);
}

}  // namespace

const TagHandler StripTagsHandler = tagHandler<stripTags>;
const TagHandler StripTagHandler = tagHandler<stripTag>;
const TagHandler StripTagAttributesHandler = tagHandler<stripTagAttributes>;

}  // namespace nimbo
