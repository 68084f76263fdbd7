// SPDX-License-Identifier: Apache-2.0
#include "Classes/Stripping/StripObjectsHandler.hpp"

#include "Classes/Markup/TagHandlers.hpp"
#include "Classes/Stripping/WhiteSpaceJoining.hpp"

namespace nimbo {

namespace {

enum class ObjectPart { kNone, kElement, kEmptyElement, kDetail };

/// An empty element has neither content nor an end tag; a detail only tells about an object.
ObjectPart objectPartOf(const TagShape &tag) {
  switch (tag.tagName()) {
    case TagName::kApplet:
    case TagName::kAudio:
    case TagName::kIframe:
    case TagName::kObject:
    case TagName::kVideo:
      return ObjectPart::kElement;
    case TagName::kBgsound:
    case TagName::kEmbed:
    case TagName::kImage:
    case TagName::kImg:
      return ObjectPart::kEmptyElement;
    case TagName::kParam:
    case TagName::kSource:
    case TagName::kTrack:
      return ObjectPart::kDetail;
    default:
      return ObjectPart::kNone;
  }
}

/// The text that stands for an object; empty when it has none, and for an end tag.
std::u16string_view alternativeOf(const TagShape &tag) {
  if (tag.isEndTag()) return {};
  const std::u16string_view text = tag.ownAttribute("alt");
  return text.empty() ? tag.ownAttribute("title") : text;
}

void appendText(StripObjectsContext &context, std::u16string_view text) {
  if (text.empty()) return;
  if (context.isBehindObject && !whiteCharacterSetRep()->contains(text.front()))
    detail::appendSpaceIfNeeded(*context.result);
  context.isBehindObject = false;
  context.result->append(text);
}

void appendAlternative(NSMutableString &result, std::u16string_view text) {
  detail::appendSpaceIfNeeded(result);
  for (const unichar c : text) c == u'<' ? result.append(u"&lt;") : result.appendCharacter(c);
}

void stripObject(const TagShape &tag, bool hasContent, StripObjectsContext &context) {
  const std::u16string_view text = alternativeOf(tag);
  if (!text.empty()) appendAlternative(*context.result, text);
  context.isBehindObject = true;
  if (context.depth > 0 && tag.isNamed(context.elementName)) {
    // An empty-element tag is complete in itself here.
    if (tag.isStartTag()) ++context.depth;
    if (tag.isEndTag() && --context.depth == 0) context.result->setLength(context.lengthBeforeContent);
  } else if (context.depth == 0 && !text.empty() && hasContent && tag.isStartTag()) {
    context.elementName = tag.name();
    context.depth = 1;
    context.lengthBeforeContent = context.result->length();
  }
}

void stripObjects(const TagShape &tag, StripObjectsContext &context) {
  const ObjectPart part = objectPartOf(tag);
  if (part != ObjectPart::kNone) {
    if (context.result)
      appendText(context, tag.text());
    else
      context.result.emplace().append(tag.allBefore());
    if (part != ObjectPart::kDetail) stripObject(tag, part == ObjectPart::kElement, context);
  } else if (context.result) {
    appendText(context, tag.text());
    context.result->append(tag.tag());
  }
}

}  // namespace

const TagHandler StripObjectsHandler = tagHandler<stripObjects>;

}  // namespace nimbo
