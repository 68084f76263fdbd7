// SPDX-License-Identifier: Apache-2.0
#include "tools/PageCommands.hpp"

#include <unordered_set>
#include <utility>

#include "Classes/Characters/FastSearches.hpp"
#include "Classes/Pages/NSString+HtmlExtensions+PageLinks.hpp"
#include "Classes/Pages/PageContents.hpp"
#include "platform/Foundation/NSArray.hpp"
#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/id.hpp"
#include "tools/ExitCode.hpp"
#include "tools/InputText.hpp"
#include "tools/LongResult.hpp"
#include "tools/Output.hpp"

namespace nimbo {

namespace {

struct LinksOptions : CommonOptions {
  std::optional<std::string> containing;
  bool noFollow = false;
  bool filtered = false;
  bool details = false;
};

int runPage(const CommonOptions &options, const Operands &operands) {
  const NSString page = textOfInput(operands.front(), options.timeoutSeconds);
  const PageFacts facts = contentsOfPage(page, {.preservingMeaning = true}).facts;
  writeResult(NSDictionary{{u"Title"_ns, facts.title},
                           {u"NormalizedTitle"_ns, facts.normalizedTitle},
                           {u"BaseURL"_ns, facts.baseURL.absoluteString()},
                           {u"CanonicalURL"_ns, facts.canonicalURL},
                           {u"Date"_ns, facts.date},
                           {u"FavIcon"_ns, facts.favIcon},
                           {u"IndexedTitle"_ns, facts.indexedTitle},
                           {u"IndexTitle"_ns, facts.indexTitle},
                           {u"Keywords"_ns, facts.indexedKeywords},
                           {u"Description"_ns, facts.indexedDescription},
                           {u"Author"_ns, facts.author},
                           {u"Copyright"_ns, facts.copyright},
                           {u"Refresh"_ns, facts.refresh},
                           {u"Robots"_ns, facts.robots},
                           {u"RevisitAfter"_ns, facts.revisit},
                           {u"Feed"_ns, facts.isFeed},
                           {u"MetaAttributes"_ns, facts.metaAttributes}},
              options);
  return kExitAnswered;
}

bool isWanted(const PageLink &link, const LinksOptions &options, const NSString &containing) {
  if (link.kind != PageLinkKind::kLink) return true;
  if ((options.noFollow && link.isNoFollow) || (options.filtered && filterLink(link.URL))) return false;
  return containing.length() == 0 || fastContainsUnichars(link.text.characters(), link.text.length(),
                                                          containing.characters(), containing.length());
}

NSDictionary detailsOf(const PageLink &link) {
  NSDictionary details = {{u"URL"_ns, link.URL},
                          {u"Text"_ns, link.text},
                          {u"Tag"_ns, NSArray{link.place.location, link.place.length}}};
  if (link.isNoFollow) details.setObject(true, u"NoFollow"_ns);
  return details;
}

int runLinks(const LinksOptions &options, const Operands &operands) {
  const NSString page = textOfInput(operands.front(), options.timeoutSeconds);
  const NSString containing =
      options.containing ? NSString::stringWithLossyUTF8String(*options.containing) : NSString();
  const PageContents contents =
      contentsOfPage(page, {.preservingMeaning = true,
                            .withDetails = options.details || options.noFollow || containing.length() > 0});
  LongResult result(options);
  result.setObject(contents.linksBaseURL.absoluteString(), u"BaseURL"_ns);
  const std::pair<PageLinkKind, NSString> kinds[] = {
      {PageLinkKind::kLink, u"Links"_ns},
      {PageLinkKind::kFrame, u"Frames"_ns},
      {PageLinkKind::kImage, u"Images"_ns},
      {PageLinkKind::kSheetOrScript, u"StylesheetsAndScripts"_ns},
      {PageLinkKind::kObject, u"EmbeddedObjects"_ns}};
  for (const auto &[kind, name] : kinds) {
    result.beginList(name);
    std::unordered_set<NSString, NSStringHash> known;
    for (const PageLink &link : contents.links) {
      if (link.kind != kind || !isWanted(link, options, containing)) continue;
      if (options.details)
        result.addObject(detailsOf(link));
      else if (known.insert(link.URL).second)
        result.addObject(link.URL);
    }
    result.endList();
  }
  result.end();
  return kExitAnswered;
}

}  // namespace

const std::vector<Command> &pageCommands() {
  static const std::vector<Command> commands = {
      {{.name = "page",
        .operands = "FILE",
        .summary = "what a page says about itself",
        .description = R"(
Prints an object with the page's title, its base and canonical URL, its date, icon, keywords,
description, author and so on, as they are written; "MetaAttributes" has all its meta tags by their
names, cleaned. What the page does not say is left out, but for the title, which is empty then. FILE "-"
is standard input.)",
        .minimumOperands = 1,
        .maximumOperands = 1,
        .asksHelper = false},
       runPage},
      {{.name = "links",
        .operands = "FILE",
        .summary = "what a page refers to",
        .description = R"(
Prints an object with the page's links, frames, images, style sheets and scripts, and embedded
objects, each URL once, cleaned and not resolved, and the base URL that they count from. The options
but the last are for the links. FILE "-" is standard input.)",
        .minimumOperands = 1,
        .maximumOperands = 1,
        .asksHelper = false},
       runLinks,
       {{"containing", &LinksOptions::containing, "TEXT", "those whose text contains this"},
        {"nofollow", &LinksOptions::noFollow, nullptr, "none whose tag says rel=nofollow"},
        {"filtered", &LinksOptions::filtered, nullptr, "none to feeds and scripts"},
        {"details", &LinksOptions::details, nullptr, "every place of a URL, with its tag and text"}}},
  };
  return commands;
}

}  // namespace nimbo
