// SPDX-License-Identifier: Apache-2.0
#include "Classes/Stripping/StripBodiesHandlers.hpp"

#include <algorithm>

#include "Classes/Markup/TagShape.hpp"
#include "Classes/Stripping/WhiteSpaceJoining.hpp"

namespace nimbo {

namespace {

void copy(StripBodiesContext &context, std::u16string_view units) {
  if (!context.result) context.result.emplace();
  detail::append(*context.result, units);
}

/// Enters the element when the tag begins one of those that are named.
bool entersElement(const detail::TagShape &shape, StripBodiesContext &context) {
  if (!shape.isStartTag() ||
      std::ranges::none_of(context.names, [&](std::u16string_view name) { return shape.beginsWith(name); }))
    return false;
  context.elementName = shape.name();
  context.depth = 1;
  return true;
}

/// Whether the tag ends the element that the scan is in.
bool endsElement(const detail::TagShape &shape, StripBodiesContext &context) {
  if (!shape.isNamed(context.elementName)) return false;
  context.depth += static_cast<std::uint32_t>(shape.depthChange());
  return context.depth == 0;
}

}  // namespace

bool StripTagBodiesHandler(const NSString &string, const unichar *characters, std::uint32_t nameLocation,
                           std::uint32_t nameLength, std::uint32_t tagLocation, std::uint32_t tagLength,
                           std::uint32_t textLocation, int kind, void *context) {
  const detail::TagShape shape(string, characters, nameLocation, nameLength, tagLocation, tagLength,
                               textLocation, kind);
  auto &record = *static_cast<StripBodiesContext *>(context);
  if (record.depth > 0)
    endsElement(shape, record);
  else
    copy(record, entersElement(shape, record) ? shape.text() : shape.textAndTag());
  return false;
}

bool StripTagBodiesExceptHandler(const NSString &string, const unichar *characters, std::uint32_t nameLocation,
                                 std::uint32_t nameLength, std::uint32_t tagLocation, std::uint32_t tagLength,
                                 std::uint32_t textLocation, int kind, void *context) {
  const detail::TagShape shape(string, characters, nameLocation, nameLength, tagLocation, tagLength,
                               textLocation, kind);
  auto &record = *static_cast<StripBodiesContext *>(context);
  if (record.depth > 0) {
    copy(record, shape.textAndTag());
    if (endsElement(shape, record)) record.result->appendCharacter(u'\n');
  } else if (entersElement(shape, record)) {
    copy(record, shape.tag());
  }
  return false;
}

}  // namespace nimbo
