// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/SimplePlainTextHandler.hpp"

#include <algorithm>

#include "Classes/Entities/EntityConversion.hpp"
#include "Classes/Markup/TagScanner.hpp"
#include "Classes/PlainText/PlainTextTags.hpp"

namespace nimbo {

namespace {

/// Shorter texts keep their character references.
constexpr std::uint32_t kShortestDecoded = 4;

}  // namespace

int depthChangeOfTag(std::u16string_view tag) {
  if (tag.size() < 3 || tag[tag.size() - 2] == u'/') return 0;
  return tag[1] == u'/' ? -1 : 1;
}

bool SimplePlainTextHandler(const NSString &string, const unichar *characters, std::uint32_t nameLocation,
                            std::uint32_t nameLength, std::uint32_t tagLocation, std::uint32_t tagLength,
                            std::uint32_t textLocation, int, void *context) {
  PlainTextRecord &record = *static_cast<PlainTextRecord *>(context);
  if (record.bodyCounter >= 1 && textLocation < tagLocation) {
    const std::uint32_t length = tagLocation - textLocation;
    unichar *const run = record.writer.beginSimpleRun();
    if (length >= kShortestDecoded) {
      record.writer.endSimpleRun(
          convertEntities2Characters(characters, run, textLocation, length, true, false, false));
    } else {
      std::copy_n(characters + textLocation, length, run);
      record.writer.endSimpleRun(length);
    }
  }
  if (nameLength != 4 && nameLength != 8) return false;
  const detail::TagElement element =
      detail::ruleOfTag(detail::packedTagName(characters + nameLocation, nameLength)).element;
  const int change =
      depthChangeOfTag(string.view().substr(tagLocation, std::min(tagLength, string.length() - tagLocation)));
  if (element == detail::TagElement::kBody || element == detail::TagElement::kNoframes)
    record.bodyCounter += change;
  else if (element == detail::TagElement::kHead)
    record.bodyCounter -= change;
  return false;
}

}  // namespace nimbo
