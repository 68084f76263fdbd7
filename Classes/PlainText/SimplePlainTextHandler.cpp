// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "Classes/Entities/EntityConversion.hpp"
#include "Classes/Markup/TagHandlers.hpp"
#include "Classes/PlainText/PlainTextConversion.hpp"
#include "Classes/PlainText/PlainTextHandler.hpp"

namespace nimbo {

namespace {

/// Shorter texts keep their character references.
constexpr std::uint32_t kShortestDecoded = 4;

void writeText(detail::PlainTextWriter &writer, std::u16string_view text) {
  const auto length = static_cast<std::uint32_t>(text.size());
  unichar *const run = writer.beginSimpleText();
  if (length >= kShortestDecoded) {
    writer.endSimpleText(convertEntities2Characters(text.data(), run, 0, length, true, false, false));
  } else {
    std::ranges::copy(text, run);
    writer.endSimpleText(length);
  }
}

void convertTag(const TagShape &tag, PlainTextRecord &record) {
  detail::PlainTextConversion &conversion = record.conversion();
  conversion.makeRoom(tag);
  if (conversion.place.isInBody() && !tag.text().empty()) writeText(conversion.writer, tag.text());
  switch (tag.tagName()) {
    case TagName::kBody:
    case TagName::kNoframes:
      return conversion.place.changeBodyDepth(tag.depthChange());
    case TagName::kHead:
      return conversion.place.changeBodyDepth(-tag.depthChange());
    default:
      return;
  }
}

}  // namespace

const TagHandler SimplePlainTextHandler = tagHandler<convertTag>;

}  // namespace nimbo
