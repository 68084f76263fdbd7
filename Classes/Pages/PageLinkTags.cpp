// SPDX-License-Identifier: Apache-2.0
#include "Classes/Pages/PageLinkTags.hpp"

#include <initializer_list>

#include "Classes/Pages/PageFactTags.hpp"
#include "Classes/Pages/TagTests.hpp"
#include "Classes/URLs/NSString+HtmlExtensions+URLs.hpp"

namespace nimbo::detail {

namespace {

constexpr std::string_view kNoFollow = "nofollow", kImport = "@import";

/// The link of a "link" tag whose relation contains one of the words.
NSString linkWithRelation(const TagShape &tag, std::initializer_list<std::string_view> words,
                          Flag preservingMeaning) {
  const std::u16string_view relation = tag.attribute("REL");
  for (const std::string_view word : words)
    if (findNoCase(relation, word))
      return normalizedRelLink(stringUnlessEmpty(tag.attribute("HREF")), preservingMeaning);
  return {};
}

}  // namespace

NSString URLOfTag(const TagShape &tag, std::string_view attribute, Flag preservingMeaning) {
  return normalizedStringURL(stringUnlessEmpty(tag.attribute(attribute)), false, preservingMeaning);
}

bool isNoFollowTag(const TagShape &tag) {
  return findNoCase(tag.tag(), kNoFollow) && findNoCase(tag.attribute("REL"), kNoFollow);
}

NSString imageOfTag(const TagShape &tag, TagName name, Flag preservingMeaning) {
  switch (name) {
    case TagName::kImg:
      return URLOfTag(tag, "SRC", preservingMeaning);
    case TagName::kBody:
      return URLOfTag(tag, "BACKGROUND", preservingMeaning);
    case TagName::kLink:
      return linkWithRelation(tag, {"icon", "image"}, preservingMeaning);
    default:
      return {};
  }
}

NSString importOfElement(std::u16string_view element, Flag preservingMeaning) {
  const unichar *const import = findNoCase(element, kImport);
  if (!import) return {};
  element.remove_prefix(static_cast<std::size_t>(import - element.data()));
  const std::size_t open = element.find(u'"');
  const std::size_t close = open == element.npos ? open : element.find(u'"', open + 1);
  if (close == element.npos) return {};
  return normalizedStringURL(stringUnlessEmpty(element.substr(open + 1, close - open - 1)), false,
                             preservingMeaning);
}

NSString sheetOrScriptOfTag(const TagShape &tag, TagName name, Flag preservingMeaning) {
  if (name == TagName::kLink) return linkWithRelation(tag, {"style", "sheet", "script"}, preservingMeaning);
  if (name != TagName::kStyle && name != TagName::kScript) return {};
  if (NSString source = URLOfTag(tag, "SRC", preservingMeaning)) return source;
  return importOfElement(tag.tag(), preservingMeaning);
}

}  // namespace nimbo::detail
