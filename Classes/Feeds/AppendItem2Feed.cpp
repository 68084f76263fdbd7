// SPDX-License-Identifier: Apache-2.0
#include "Classes/Feeds/AppendItem2Feed.hpp"

#include <optional>

#include "Classes/Dates/NSDateFormatter+NimboDateFormatterExtensions.hpp"
#include "Classes/Dates/NSString+Date.hpp"
#include "Classes/Feeds/FeedTexts.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Characters.hpp"
#include "Classes/Stripping/NSString+HtmlExtensions+Stripping.hpp"
#include "platform/Foundation/NSNumber.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSStringFormatting.hpp"

namespace nimbo {

namespace {

/// The author and the date, as people read it.
NSString dateLine(const NSString &author, const NSString &dateString) {
  NSString line = detail::orEmpty(dateString);
  if (line.length() > 0)
    if (const std::optional<NSDate> moment = date(line))
      line = detail::orEmpty(dateTimeFormatter().stringFromDate(*moment));
  if (author.length() == 0) return line;
  return line.length() > 0 ? stringWithFormat(u"%@ - %@", author, line) : author;
}

void appendEnclosure(NSMutableString &buffer, const FeedEnclosure &enclosure) {
  const NSString url = detail::orEmpty(enclosure.url), name = lastPathComponent(url);
  if (containsAlphaCharacter(enclosure.length))
    appendFormat(buffer, u"<a class=\"feed_enclosure\" href=\"%@\">%@</a>&nbsp;(%@)<br/>\n", url, name,
                 enclosure.length);
  else if (longLongValue(enclosure.length).value_or(0) > 0)
    appendFormat(buffer, u"<a class=\"feed_enclosure\" href=\"%@\">%@</a>&nbsp;(%@ bytes)<br/>\n", url, name,
                 enclosure.length);
  else
    appendFormat(buffer, u"<a class=\"feed_enclosure\" href=\"%@\">%@</a><br/>\n", url, name);
}

}  // namespace

void AppendItem2Feed(NSMutableString *buffer, const NSString &title, const NSString &content,
                     const NSString &description, const NSString &link, const NSString &dateString,
                     const NSString &author, const std::vector<NSString> & /*tags*/,
                     const std::vector<FeedEnclosure> &enclosures) {
  if (!buffer) return;
  const NSString body =
      stripTag(stripTag(detail::orEmpty(content.length() > 0 ? content : description), "IFRAME"), "SPAN");
  const NSString line = dateLine(author, dateString), heading = detail::orEmpty(title);
  if (link.length() > 0 && line.length() > 0)
    appendFormat(*buffer,
                 u"\n<div class=\"feed_header\"><a class=\"feed_link\" href=\"%@\">%@</a><br/><font "
                 u"class=\"feed_date\">%@</font></div><div class=\"feed_article\">\n%@\n",
                 link, heading, line, body);
  else if (link.length() > 0)
    appendFormat(*buffer,
                 u"\n<div class=\"feed_header\"><a class=\"feed_link\" href=\"%@\">%@</a><br/></div><div "
                 u"class=\"feed_article\">\n%@\n",
                 link, heading, body);
  else if (line.length() > 0)
    appendFormat(*buffer,
                 u"\n<div class=\"feed_header\">%@<br/><font class=\"feed_date\">%@</font></div><div "
                 u"class=\"feed_article\">\n%@\n",
                 heading, line, body);
  else
    appendFormat(*buffer, u"\n<div class=\"feed_header\">%@<br/></div><div class=\"feed_article\">\n%@\n",
                 heading, body);
  if (enclosures.empty()) return buffer->append(u"</div>\n");
  buffer->append(u"<div class=\"feed_enclosures\"><p>\n");
  for (const FeedEnclosure &enclosure : enclosures) appendEnclosure(*buffer, enclosure);
  buffer->append(u"</p></div>\n</div>\n");
}

}  // namespace nimbo
