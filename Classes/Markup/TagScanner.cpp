// SPDX-License-Identifier: Apache-2.0
#include "Classes/Markup/TagScanner.hpp"

#include <algorithm>
#include <memory>
#include <new>

#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Markup/TagScan.hpp"

namespace nimbo {

namespace {

/// The longest string that is copied for a scan: one more unit, and its size in bytes would not fit 31 bits.
constexpr std::uint32_t kMaximumCopiedLength = 0x3fffffff;

/// Scans the units, which are those of the string or a copy.
void scan(const NSString &string, const unichar *characters, TagHandler handler, void *context,
          detail::SectionEnd sectionEnd) {
  const auto call = [&](const TagShape &tag) {
    return handler(string, characters, tag.nameRange().location, tag.nameRange().length,
                   tag.tagRange().location, tag.tagRange().length, tag.textLocation(), tag.kind(), context);
  };
  detail::TagScan({characters, string.length()}, call, sectionEnd).run();
}

}  // namespace

bool GetTagsOfString(const NSString &string, TagHandler handler, void *context, Flag isMutable) {
  const std::uint32_t length = string.length();
  if (length == 0) return false;
  initLowerCharsTable();
  initUpperCharsTable();

  const unichar *characters = string.characters();
  std::unique_ptr<unichar[]> copy;
  if (isMutable) {
    if (length > kMaximumCopiedLength) return false;
    copy.reset(new (std::nothrow) unichar[length]);
    if (!copy) return false;
    std::copy_n(characters, length, copy.get());
    characters = copy.get();
  }
  scan(string, characters, handler, context, detail::SectionEnd::kOfAnySection);
  return true;
}

bool GetTagsOfXML(const NSString &string, TagHandler handler, void *context) {
  if (string.length() == 0) return false;
  scan(string, string.characters(), handler, context, detail::SectionEnd::kOfXML);
  return true;
}

}  // namespace nimbo
