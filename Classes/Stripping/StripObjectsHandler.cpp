// SPDX-License-Identifier: Apache-2.0
#include "Classes/Stripping/StripObjectsHandler.hpp"

#include <algorithm>
#include <array>
#include <span>

#include "Classes/Markup/NSString+XmlExtensions.hpp"
#include "Classes/Markup/TagShape.hpp"
#include "Classes/Stripping/WhiteSpaceJoining.hpp"

namespace nimbo {

namespace {

using detail::append;

constexpr std::array<std::string_view, 5> kElements = {"APPLET", "AUDIO", "IFRAME", "OBJECT", "VIDEO"};
/// They have neither content nor an end tag.
constexpr std::array<std::string_view, 4> kEmptyElements = {"BGSOUND", "EMBED", "IMAGE", "IMG"};
constexpr std::array<std::string_view, 3> kDetails = {"PARAM", "SOURCE", "TRACK"};

bool isOneOf(const detail::TagShape &shape, std::span<const std::string_view> names) {
  return std::ranges::any_of(names, [&](std::string_view name) { return shape.isNamed(name); });
}

NSString alternativeOf(const detail::TagShape &shape) {
  const auto length = static_cast<std::uint32_t>(shape.tag().size());
  const NSString text = attributeOfTagCharacters(shape.tag().data(), length, "ALT");
  return text ? text : attributeOfTagCharacters(shape.tag().data(), length, "TITLE");
}

void appendText(StripObjectsContext &context, std::u16string_view text) {
  if (text.empty()) return;
  if (context.isBehindObject && !whiteCharacterSetRep()->contains(text.front()))
    detail::appendSpaceIfNeeded(*context.result);
  context.isBehindObject = false;
  append(*context.result, text);
}

void appendAlternative(NSMutableString &result, std::u16string_view text) {
  detail::appendSpaceIfNeeded(result);
  for (const unichar c : text) c == u'<' ? append(result, u"&lt;") : result.appendCharacter(c);
}

void stripObject(const detail::TagShape &shape, bool hasContent, StripObjectsContext &context) {
  const NSString text = shape.isEndTag() ? NSString() : alternativeOf(shape);
  if (text) appendAlternative(*context.result, text.view());
  context.isBehindObject = true;
  if (context.depth > 0 && shape.isNamed(context.elementName)) {
    // An empty-element tag is complete in itself here.
    if (shape.isStartTag()) ++context.depth;
    if (shape.isEndTag() && --context.depth == 0) context.result->setLength(context.lengthBeforeContent);
  } else if (context.depth == 0 && text && hasContent && shape.isStartTag()) {
    context.elementName = shape.name();
    context.depth = 1;
    context.lengthBeforeContent = context.result->length();
  }
}

}  // namespace

bool StripObjectsHandler(const NSString &string, const unichar *characters, std::uint32_t nameLocation,
                         std::uint32_t nameLength, std::uint32_t tagLocation, std::uint32_t tagLength,
                         std::uint32_t textLocation, int kind, void *context) {
  const detail::TagShape shape(string, characters, nameLocation, nameLength, tagLocation, tagLength,
                               textLocation, kind);
  auto &record = *static_cast<StripObjectsContext *>(context);
  const bool hasContent = isOneOf(shape, kElements);
  const bool isObject = hasContent || isOneOf(shape, kEmptyElements);
  if (isObject || isOneOf(shape, kDetails)) {
    if (record.result)
      appendText(record, shape.text());
    else
      append(record.result.emplace(), shape.allBefore());
    if (isObject) stripObject(shape, hasContent, record);
  } else if (record.result) {
    appendText(record, shape.text());
    append(*record.result, shape.tag());
  }
  return false;
}

}  // namespace nimbo
