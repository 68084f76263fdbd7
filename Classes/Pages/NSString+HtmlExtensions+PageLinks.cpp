// SPDX-License-Identifier: Apache-2.0
#include "Classes/Pages/NSString+HtmlExtensions+PageLinks.hpp"

#include <utility>

#include "Classes/Pages/PageLinkHandlers.hpp"
#include "Classes/Pages/ScanWithHandler.hpp"
#include "Classes/URLs/NSString+URLUtilities/Kinds.hpp"

namespace nimbo {
inline namespace HtmlExtensions {

namespace {

std::vector<NSString> linksContaining(const NSString &page, const NSString &containing, Flag useRelNoFollow,
                                      NSURL *baseURL, Flag isFiltered) {
  LinksContext context;
  context.isFiltered = isFiltered;
  context.usesRelNoFollow = useRelNoFollow;
  context.containing = containing;
  detail::scanWithHandler(page, RetrieveLinksHandler, context, containing.length() > 0);
  if (baseURL) *baseURL = context.baseURL;
  return std::move(context.links).strings();
}

std::vector<NSString> retrievedFrames(const NSString &page, FramesContext &context, bool *frameset,
                                      NSURL *baseURL) {
  detail::scanWithHandler(page, RetrieveLinksAndFramesHandler, context);
  if (frameset) *frameset = context.isFrameset;
  if (baseURL) *baseURL = context.baseURL;
  return std::move(context.links).strings();
}

std::vector<NSString> framesSet(const NSString &page, bool *frameset, NSURL *baseURL, Flag withLinks) {
  FramesContext context;
  context.withLinks = withLinks;
  return retrievedFrames(page, context, frameset, baseURL);
}

std::vector<NSString> framesAndFacts(const NSString &page, bool *frameset, NSURL *baseURL, NSString *favIcon,
                                     NSString *title, NSString *refresh, NSString *robots, NSString *revisit,
                                     bool *isFeed, Flag withLinks) {
  for (NSString *const text : {favIcon, title, refresh, revisit})
    if (text) *text = NSString();
  FramesContext context;
  context.withLinks = withLinks;
  context.title = title;
  context.refresh = refresh;
  context.revisit = revisit;
  context.favIcon = favIcon;
  if (robots) context.robots.emplace();
  std::vector<NSString> frames = retrievedFrames(page, context, frameset, baseURL);
  if (robots) *robots = std::move(*context.robots).string();
  if (isFeed) *isFeed = context.isFeed;
  return frames;
}

std::vector<NSString> stringsFoundBy(TagHandler handler, const NSString &page) {
  return detail::scannedWithHandler<StringSet>(page, handler).strings();
}

}  // namespace

std::vector<NSString> htmlLinksContaining(const NSString &page, const NSString &containing, Flag useRelNoFollow,
                                          NSURL *baseURL) {
  return linksContaining(page, containing, useRelNoFollow, baseURL, false);
}

std::vector<NSString> filteredHtmlLinksContaining(const NSString &page, const NSString &containing,
                                                  Flag useRelNoFollow, NSURL *baseURL) {
  return linksContaining(page, containing, useRelNoFollow, baseURL, true);
}

std::vector<NSString> htmlLinksBaseURL(const NSString &page, NSURL *baseURL) {
  return htmlLinksContaining(page, NSString(), false, baseURL);
}

std::vector<NSString> filteredHtmlLinksBaseURL(const NSString &page, NSURL *baseURL) {
  return filteredHtmlLinksContaining(page, NSString(), false, baseURL);
}

std::vector<NSString> htmlFramesBaseURL(const NSString &page, NSURL *baseURL) {
  return framesSet(page, nullptr, baseURL, false);
}

std::vector<NSString> htmlFramesSet(const NSString &page, bool *frameset, NSURL *baseURL) {
  return framesSet(page, frameset, baseURL, false);
}

std::vector<NSString> htmlFramesSet(const NSString &page, bool *frameset, NSURL *baseURL, NSString *favIcon,
                                    NSString *title, NSString *refresh, NSString *robots, NSString *revisit,
                                    bool *isFeed) {
  return framesAndFacts(page, frameset, baseURL, favIcon, title, refresh, robots, revisit, isFeed, false);
}

std::vector<NSString> htmlLinksAndFramesBaseURL(const NSString &page, NSURL *baseURL) {
  return framesSet(page, nullptr, baseURL, true);
}

std::vector<NSString> htmlLinksAndFramesSet(const NSString &page, bool *frameset, NSURL *baseURL) {
  return framesSet(page, frameset, baseURL, true);
}

std::vector<NSString> htmlLinksAndFramesSet(const NSString &page, bool *frameset, NSURL *baseURL,
                                            NSString *favIcon, NSString *title, NSString *refresh,
                                            NSString *robots, NSString *revisit, bool *isFeed) {
  return framesAndFacts(page, frameset, baseURL, favIcon, title, refresh, robots, revisit, isFeed, true);
}

std::vector<NSString> htmlImages(const NSString &page) {
  return stringsFoundBy(RetrieveImagesHandler, page);
}

std::vector<NSString> htmlStylesheetsAndScripts(const NSString &page) {
  return stringsFoundBy(RetrieveSheetsAndScriptsHandler, page);
}

std::vector<NSString> htmlEmbeddedObjects(const NSString &page) {
  return stringsFoundBy(RetrieveObjectsHandler, page);
}

bool filterLink(const NSString &link) {
  return isFeedStringURL(link) || isJavaScriptStringURL(link) || isAppleScriptStringURL(link);
}

}  // namespace HtmlExtensions
}  // namespace nimbo
