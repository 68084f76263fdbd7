// SPDX-License-Identifier: Apache-2.0
#include "Classes/Stripping/StripBodiesHandlers.hpp"

#include <algorithm>

#include "Classes/Markup/TagHandlers.hpp"

namespace nimbo {

namespace {

/// Enters the element when the tag begins one of those that are named.
bool entersElement(const TagShape &tag, StripBodiesContext &context) {
  if (!tag.isStartTag() ||
      std::ranges::none_of(context.names, [&](std::u16string_view name) { return tag.beginsWith(name); }))
    return false;
  context.elementName = tag.name();
  context.depth = 1;
  return true;
}

/// Whether the tag ends the element that the scan is in. An empty-element tag counts as an end tag.
bool endsElement(const TagShape &tag, StripBodiesContext &context) {
  if (!tag.isNamed(context.elementName)) return false;
  if (tag.isStartTag())
    ++context.depth;
  else if (tag.tag().size() >= 4)
    --context.depth;
  return context.depth == 0;
}

void stripBodies(const TagShape &tag, StripBodiesContext &context) {
  if (context.depth > 0) {
    endsElement(tag, context);
    return;
  }
  const bool isBegun = context.result.has_value();
  const bool enters = entersElement(tag, context);
  if (isBegun)
    context.result->append(enters ? tag.text() : tag.textAndTag());
  else if (enters)
    context.result.emplace().append(tag.allBefore());
}

void stripAllButBodies(const TagShape &tag, StripBodiesContext &context) {
  if (context.depth > 0) {
    context.result->append(tag.textAndTag());
    if (endsElement(tag, context)) context.result->appendCharacter(u'\n');
  } else if (entersElement(tag, context)) {
    if (!context.result) context.result.emplace();
    context.result->append(tag.tag());
  }
}

}  // namespace

const TagHandler StripTagBodiesHandler = tagHandler<stripBodies>;
const TagHandler StripTagBodiesExceptHandler = tagHandler<stripAllButBodies>;

}  // namespace nimbo
