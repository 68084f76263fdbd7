// SPDX-License-Identifier: Apache-2.0
#include "Classes/Feeds/FeedPageFrame.hpp"

#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "Classes/Feeds/AppendItem2Feed.hpp"
#include "Classes/Feeds/SafeMarkup.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Files.hpp"
#include "Classes/Stripping/NSString+HtmlExtensions+Stripping.hpp"
#include "platform/CoreServices/TextEncodings/CFStringEncoding.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSStringFormatting.hpp"
#include "platform/Foundation/NSUserDefaults.hpp"

namespace nimbo::detail {

namespace {

/// The path of the style sheet, or nil.
NSString pathOfStyleSheet() {
  const NSString path = NSUserDefaults::standardUserDefaults().stringForKey(u"linkableFeedStyleSheet"_ns);
  return path.length() > 0 ? stringByExpandingTildeInPath(path) : NSString();
}

}  // namespace

void appendPageTitle(NSMutableString &page, const NSString &title) {
  if (title.length() == 0) return page.append(kBodyStart);
  nimbo::appendFormat(page,
                      u"<title>%@</title>\n</head>\n<body><div class=\"page_header\"><div "
                      u"class=\"page_title\"><nobr>%@</nobr></div></div>\n",
                      title, title);
}

void appendStyleSheet(NSMutableString &page, Flag isLinked) {
  if (!isLinked) return page.appendString(styleElement());
  const NSString path = pathOfStyleSheet();
  if (const NSURL url = NSURL::fileURLWithPath(path, false))
    nimbo::appendFormat(page, u"<link rel=\"stylesheet\" type=\"text/css\" href=\"%@\"/>\n",
                        url.absoluteString());
}

NSString styleElement() {
  const NSString path = pathOfStyleSheet();
  const NSString text = path ? stringWithContentsOfFile(path, NSUTF8StringEncoding) : NSString();
  return text ? stringWithFormat(u"<style type=\"text/css\"><!--%@--></style>\n", text) : NSString();
}

void appendItem(NSMutableString &page, const FeedItem &item) {
  AppendItem2Feed(&page, item.title, item.content, item.description, item.link, item.dateString, item.author,
                  item.tags, item.enclosures);
}

FeedItem safeItem(const FeedItem &item, const NSURL &baseURL) {
  const auto safe = [&](const NSString &text, bool isPlain) {
    return isPlain ? stringByConvertingCharactersToStandardEntities(text) : safeMarkup(text, baseURL);
  };
  FeedItem result = item;
  result.title = safe(item.title, item.isPlainTitle);
  result.description = safe(item.description, item.isPlainDescription);
  result.content = safe(item.content, item.isPlainContent);
  result.link = safeLink(item.link);
  // A link in the title would end the page's own, which the title stands in.
  if (result.link.length() > 0) result.title = stripTag(result.title, "A");
  result.author = stringByConvertingCharactersToStandardEntities(item.author);
  result.dateString = stringByConvertingCharactersToStandardEntities(item.dateString);
  for (FeedEnclosure &enclosure : result.enclosures) {
    enclosure.url = safeLink(enclosure.url);
    enclosure.length = stringByConvertingCharactersToStandardEntities(enclosure.length);
  }
  return result;
}

FeedItem safeItemByName(FeedItem item) {
  for (FeedEnclosure &enclosure : item.enclosures) {
    enclosure.url = stringByConvertingStandardEntitiesToCharacters(enclosure.url);
    enclosure.length = stringByConvertingStandardEntitiesToCharacters(enclosure.length);
  }
  return safeItem(item);
}

}  // namespace nimbo::detail
