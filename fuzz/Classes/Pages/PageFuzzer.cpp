// SPDX-License-Identifier: Apache-2.0
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>

#include "Classes/Pages/NSString+HtmlExtensions.hpp"
#include "Classes/Pages/NSString+HtmlLinkThumbsAndTitles.hpp"
#include "Classes/Pages/PageContents.hpp"
#include "fuzz/FuzzedText.hpp"
#include "platform/Foundation/id.hpp"
#include "tests/support/StringSamples.hpp"

namespace {

using namespace nimbo;

void require(bool good) {
  if (!good) std::abort();
}

std::set<std::u16string> setOf(const std::vector<NSString> &strings) {
  std::set<std::u16string> result;
  for (const NSString &each : strings) require(each.length() > 0 && result.emplace(each.view()).second);
  return result;
}

std::set<std::u16string> linksOfKind(const PageContents &contents, PageLinkKind kind) {
  std::set<std::u16string> result;
  for (const PageLink &link : contents.links)
    if (link.kind == kind) result.emplace(link.URL.view());
  return result;
}

/// One pass finds what the functions find in a pass each.
void checkContents(const NSString &page) {
  const PageContents contents = contentsOfPage(page);
  require(contents.facts.title == htmlTitle(page));
  require(contents.facts.baseURL == htmlBaseURL(page));
  require(contents.facts.canonicalURL == htmlCanonicalURL(page));
  require(contents.facts.date == htmlDate(page));
  require(contents.facts.favIcon == htmlFavIcon(page));
  require(contents.facts.author == htmlMetaAuthor(page));
  require(contents.facts.metaAttributes == htmlMetaAttributesByConvertingEntitiesToCharacters(page));
  NSString title;
  htmlMetaKeywords(page, nullptr, nullptr, &title, nullptr);
  require(contents.facts.indexedTitle == title);
  NSURL base;
  require(linksOfKind(contents, PageLinkKind::kLink) == setOf(htmlLinksBaseURL(page, &base)));
  require(contents.linksBaseURL == base);
  require(linksOfKind(contents, PageLinkKind::kFrame) == setOf(htmlFramesBaseURL(page, nullptr)));
  require(linksOfKind(contents, PageLinkKind::kImage) == setOf(htmlImages(page)));
  require(linksOfKind(contents, PageLinkKind::kObject) == setOf(htmlEmbeddedObjects(page)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const NSString page = exactString(fuzzedText(data, size));
  checkContents(page);
  const NSString based = stringBySettingBaseURL(page, u"http://e.org/"_ns);
  require(based.identicalTo(page) ||
          based.view().find(u"<BASE href=\"http://e.org/\"/>\n") != std::u16string_view::npos);
  require(setOf(htmlLinksContaining(page, u"a"_ns, true, nullptr)).size() <=
          setOf(htmlLinksBaseURL(page, nullptr)).size());
  static_cast<void>(htmlStylesheetsAndScripts(page));
  for (const PageLink &link : contentsOfPage(page, {.preservingMeaning = true, .withDetails = true}).links)
    require(link.URL.length() > 0 && link.place.location < page.length());
  NSDictionary thumbs, titles;
  getLinkThumbs(page, &thumbs, &titles, NSURL::URLWithString(u"http://e.org/a"_ns), true);
  for (const auto &[link, title] : titles) require(title.string().length() > 0);
  return 0;
}
