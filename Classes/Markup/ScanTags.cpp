// SPDX-License-Identifier: Apache-2.0
#include "Classes/Markup/ScanTags.hpp"

#include "Classes/Markup/TagScan.hpp"

namespace nimbo::detail {

void scanTagsWithVisitor(std::u16string_view markup, TagVisitor visitor) {
  if (markup.empty()) return;
  const auto call = [&](const TagShape &tag) { return visitor.visit(tag, visitor.callable); };
  TagScan(markup, call).run();
}

}  // namespace nimbo::detail
