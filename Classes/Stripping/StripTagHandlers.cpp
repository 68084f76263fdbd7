// SPDX-License-Identifier: Apache-2.0
#include "Classes/Stripping/StripTagHandlers.hpp"

#include "Classes/Markup/NSString+XmlExtensions.hpp"
#include "Classes/Markup/TagShape.hpp"
#include "Classes/Stripping/WhiteSpaceJoining.hpp"

namespace nimbo {

namespace {

using detail::append;

void appendAscii(NSMutableString &text, std::string_view ascii) {
  for (const char c : ascii) text.appendCharacter(static_cast<unsigned char>(c));
}

/// Copies the tag, or what is in front of it when it has the name of the context; tells whether it has.
bool stripTag(const detail::TagShape &shape, StripTagContext &context) {
  if (!shape.isNamed(context.tagName)) {
    if (context.result) append(*context.result, shape.textAndTag());
    return false;
  }
  if (context.result)
    append(*context.result, shape.text());
  else
    append(context.result.emplace(), shape.allBefore());
  return true;
}

void appendWithoutAttributes(NSMutableString &result, const detail::TagShape &shape, std::string_view name) {
  if (shape.isEndTag()) {
    if (shape.tag().size() < 4) return;
    append(result, u"</");
    appendAscii(result, name);
    return append(result, u">");
  }
  const auto length = static_cast<std::uint32_t>(shape.tag().size());
  std::u16string_view attribute = u" HREF=\"";
  NSString value = attributeOfTagCharacters(shape.tag().data(), length, "HREF");
  if (!value) {
    attribute = u" SRC=\"";
    value = attributeOfTagCharacters(shape.tag().data(), length, "SRC");
  }
  if (!value && shape.isEmptyElementTag()) return;
  append(result, u"<");
  appendAscii(result, name);
  if (value) {
    append(result, attribute);
    result.appendString(value);
    append(result, shape.isEmptyElementTag() ? u"\"/" : u"\"");
  }
  append(result, u">");
}

}  // namespace

bool StripTagsHandler(const NSString &string, const unichar *characters, std::uint32_t nameLocation,
                      std::uint32_t nameLength, std::uint32_t tagLocation, std::uint32_t tagLength,
                      std::uint32_t textLocation, int kind, void *context) {
  const detail::TagShape shape(string, characters, nameLocation, nameLength, tagLocation, tagLength,
                               textLocation, kind);
  if (shape.text().empty()) return false;
  auto &result = *static_cast<NSMutableString *>(context);
  detail::appendSpaceIfNeeded(result);
  append(result, shape.text());
  return false;
}

bool StripTagHandler(const NSString &string, const unichar *characters, std::uint32_t nameLocation,
                     std::uint32_t nameLength, std::uint32_t tagLocation, std::uint32_t tagLength,
                     std::uint32_t textLocation, int kind, void *context) {
  const detail::TagShape shape(string, characters, nameLocation, nameLength, tagLocation, tagLength,
                               textLocation, kind);
  stripTag(shape, *static_cast<StripTagContext *>(context));
  return false;
}

bool StripTagAttributesHandler(const NSString &string, const unichar *characters, std::uint32_t nameLocation,
                               std::uint32_t nameLength, std::uint32_t tagLocation, std::uint32_t tagLength,
                               std::uint32_t textLocation, int kind, void *context) {
  const detail::TagShape shape(string, characters, nameLocation, nameLength, tagLocation, tagLength,
                               textLocation, kind);
  auto &record = *static_cast<StripTagContext *>(context);
  if (stripTag(shape, record)) appendWithoutAttributes(*record.result, shape, record.tagName);
  return false;
}

}  // namespace nimbo
