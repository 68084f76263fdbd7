// SPDX-License-Identifier: Apache-2.0
#include "Classes/Markup/ScanTags.hpp"

#include "Classes/Markup/TagScan.hpp"

namespace nimbo::detail {

namespace {

void scan(std::u16string_view markup, TagVisitor visitor, SectionEnd sectionEnd) {
  if (markup.empty()) return;
  const auto call = [&](const TagShape &tag) { return visitor.visit(tag, visitor.callable); };
  TagScan(markup, call, sectionEnd).run();
}

}  // namespace

void scanTagsWithVisitor(std::u16string_view markup, TagVisitor visitor) {
  scan(markup, visitor, SectionEnd::kOfAnySection);
}

void scanXMLTagsWithVisitor(std::u16string_view markup, TagVisitor visitor) {
  scan(markup, visitor, SectionEnd::kOfXML);
}

}  // namespace nimbo::detail
