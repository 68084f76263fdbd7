// SPDX-License-Identifier: Apache-2.0
#include "Classes/Pages/IconsHandler.hpp"

#include <algorithm>
#include <string_view>

#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "Classes/Markup/TagHandlers.hpp"
#include "Classes/Pages/NSString+HtmlLinkThumbsAndTitles.hpp"
#include "Classes/Pages/PageFactHandlers.hpp"
#include "Classes/Pages/PageFactTags.hpp"
#include "Classes/Pages/TagTests.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/LinesAndWords.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Removing.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Trimming.hpp"
#include "Classes/URLs/NSString+HtmlExtensions+URLs.hpp"
#include "Classes/URLs/NSString+URLUtilities/Kinds.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Relative.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Schemes.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {

namespace {

using detail::isOpeningTag;
using detail::stringUnlessEmpty;

constexpr std::string_view kImageNames[] = {".gif", ".jpg", ".jpe", ".png"};
/// The attributes of an image that say what it shows, the better one first.
constexpr std::string_view kImageTitles[] = {"ALT", "TITLE"};

bool isImageName(std::u16string_view url) {
  const std::u16string_view path = url.substr(0, url.find_first_of(u"?#"));
  return std::ranges::any_of(kImageNames, [&](std::string_view end) { return endsWithASCIINoCase(path, end); });
}

bool areThumbsWanted(const IconsContext &context) {
  return context.thumbs && (!context.googleTags || context.markers.areIndexed());
}

bool areTitlesWanted(const IconsContext &context) {
  return context.titles &&
         (!context.googleTags || (context.markers.areIndexed() && context.markers.areAnchorsIndexed()));
}

/// A normalised URL as it is stored; nil when it leads nowhere.
NSString resolved(const NSString &url, const IconsContext &context) {
  return context.baseURL ? URLRelativeTo(url, context.baseURL).absoluteString() : url;
}

void addThumb(const NSString &image, const NSString &link, IconsContext &context) {
  if (!context.thumbs.objectForKey(link)) context.thumbs.setObject(resolved(image, context), link);
}

void endLink(IconsContext &context) {
  if (!context.link) return;
  const NSString text = std::move(context.linkText).string();
  addTitleToIconsContext(context, stringByConvertingEntitiesToCharacters(text), context.link, true);
  for (const NSString &title : {context.linkTitle, context.imageTitle})
    addTitleToIconsContext(context, stringByConvertingEntitiesToCharacters(title), context.link, false);
  context.link = context.linkTitle = context.imageTitle = NSString();
}

NSString linkOfAnchor(const TagShape &tag, const IconsContext &context) {
  NSString link = normalizedStringURL(stringUnlessEmpty(tag.attribute("HREF")));
  if (isJavaScriptStringURL(link)) link = normalizedStringURL(stringByExtractingJavaScriptURL(link));
  if (!link || link.view().front() == u'#' || isAppleScriptStringURL(link)) return {};
  return resolved(link, context);
}

void beginLink(const TagShape &tag, IconsContext &context) {
  context.link = linkOfAnchor(tag, context);
  if (context.link && areTitlesWanted(context)) context.linkTitle = stringUnlessEmpty(tag.attribute("TITLE"));
}

/// Takes what a tag in the open link shows.
void addImage(const TagShape &tag, std::string_view source, IconsContext &context) {
  if (areThumbsWanted(context)) {
    const NSString image = normalizedStringURL(stringUnlessEmpty(tag.attribute(source)));
    if (isImageName(image.view())) addThumb(image, context.link, context);
  }
}

void addImageTitle(const TagShape &tag, IconsContext &context) {
  if (!areTitlesWanted(context)) return;
  for (const std::string_view name : kImageTitles)
    if (!context.imageTitle) context.imageTitle = stringUnlessEmpty(tag.attribute(name));
}

void endPage(IconsContext &context) {
  endLink(context);
  if (context.thumbs && context.page && isHTTPURL(context.baseURL))
    addThumb(u"/favicon.ico"_ns, context.page, context);
}

void retrieveIcons(const TagShape &tag, IconsContext &context) {
  if (context.link && areTitlesWanted(context)) context.linkText.append(tag.text());
  if (tag.kind() == kComment) context.markers.followComment(tag.tag());
  if (tag.kind() == kClosingCall) return endPage(context);
  const TagName name = tag.tagName();
  if (name == TagName::kA) endLink(context);
  if (!isOpeningTag(tag)) return;
  if (name == TagName::kBase) {
    const std::u16string_view link = detail::linkOfBaseTag(tag);
    if (NSURL base = link.empty() ? NSURL() : baseURL(NSString::stringWithCharacters(link)))
      context.baseURL = std::move(base);
  } else if (name == TagName::kLink && context.thumbs && context.page) {
    if (const NSString icon = detail::favIconOfLinkTag(tag)) addThumb(icon, context.page, context);
  } else if (name == TagName::kA) {
    beginLink(tag, context);
  }
  if (!context.link) return;
  addImage(tag, name == TagName::kImg ? "SRC" : "BACKGROUND", context);
  if (name == TagName::kImg) addImageTitle(tag, context);
}

}  // namespace

const TagHandler IconsHandler = tagHandler<retrieveIcons>;

void addTitleToIconsContext(IconsContext &context, const NSString &title, const NSString &link, Flag replace) {
  if (!context.titles || !link) return;
  const std::uint32_t words = numberOfWordsUsingDefaultSeparation(title);
  if (words == 0) return;
  if (const NSString known = context.titles.objectForKey(link).string()) {
    const auto counted = context.wordsOfTitles.find(link);
    const std::uint32_t knownWords =
        counted == context.wordsOfTitles.end() ? numberOfWordsUsingDefaultSeparation(known) : counted->second;
    if (!replace || words < knownWords) return;
  }
  context.wordsOfTitles[link] = words;
  context.titles.setObject(stringByRemovingMultipleSpacesAndFeeds(stringByTrimmingWhiteSpaces(title), true),
                           link);
}

}  // namespace nimbo
