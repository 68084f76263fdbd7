// SPDX-License-Identifier: Apache-2.0
//
// Pages of feeds and of items, unit by unit, and what of strangers' markup may stand in them.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <utility>

#include "Classes/Dates/NSDateFormatter+NimboDateFormatterExtensions.hpp"
#include "Classes/Feeds/AppendItem2Feed.hpp"
#include "Classes/Feeds/NSArray+FeedExtensions.hpp"
#include "Classes/Feeds/NSDictionary+FeedExtensions.hpp"
#include "Classes/Feeds/NSString+FeedExtensions.hpp"
#include "Classes/Feeds/SafeMarkup.hpp"
#include "platform/Foundation/NSUserDefaults.hpp"
#include "platform/Foundation/id.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

NSString string(std::string_view text) {
  return NSString::stringWithUTF8String(text);
}

/// Sets the style sheet for a test.
class StyleSheet {
 public:
  explicit StyleSheet(const std::string &path) {
    NSUserDefaults::standardUserDefaults().setObject(string(path), u"linkableFeedStyleSheet"_ns);
  }
  StyleSheet(const StyleSheet &) = delete;
  StyleSheet &operator=(const StyleSheet &) = delete;
  ~StyleSheet() { NSUserDefaults::standardUserDefaults().removeObjectForKey(u"linkableFeedStyleSheet"_ns); }
};

const std::string kHead =
    "<html>\n<head>\n<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\"/>\n";
const std::string kBody = "</head>\n<body>\n", kEnd = "\n</body>\n</html>";

std::string pageOf(std::string_view feed, Flag isSafe = false) {
  return stringByConvertingFeedToDisplayHTMLUsingLinkedStyleSheet(string(feed), false, isSafe).UTF8String();
}

std::string articleOf(const std::string &header, const std::string &body) {
  return "\n<div class=\"feed_header\">" + header + "</div><div class=\"feed_article\">\n" + body +
         "\n</div>\n";
}

TEST(FeedPages, HaveTheFeedsTitle) {
  const std::string titled =
      "<title>A &amp; B</title>\n</head>\n<body><div class=\"page_header\"><div "
      "class=\"page_title\"><nobr>A &amp; B</nobr></div></div>\n";
  const std::string empty = articleOf("<br/>", ""), image = "<image><title>x</title></image>";
  const std::pair<std::string, std::string> cases[] = {
      {"<rss>", kHead + "\n</head>\n</html>"},
      {"<rss><title> A &amp; B\n</title>", kHead + titled + kEnd},
      {"<rss>" + image + "<title><![CDATA[A &amp; B]]></title><title>C</title>", kHead + titled + kEnd},
      {"<rss><title></title>", kHead + kBody + kEnd},
      {"<rss><item><title>never ended</title>", kHead + kBody + kEnd},
      {"<rss><item></item><title>late</title>", kHead + kBody + empty + kEnd},
      {"<feed><author><name>x</name></author><entry/>", kHead + kBody + empty + kEnd},
  };
  for (const auto &[feed, page] : cases) EXPECT_EQ(pageOf(feed), page) << feed;
  const NSString noFeed = u"<p>rss"_ns;
  EXPECT_TRUE(stringByConvertingFeedToDisplayHTMLUsingLinkedStyleSheet(noFeed, true).identicalTo(noFeed));
}

TEST(FeedPages, HaveItems) {
  const NSString when = u"Sun, 24 Dec 2006 18:30:00 GMT"_ns;
  const std::string shown =
      dateTimeFormatter().stringFromDate(NSDate::dateWithUTC(2006, 12, 24, 18, 30, 0)).UTF8String();
  const auto written = [](const NSString &link, const NSString &date, const NSString &author,
                          const std::vector<FeedEnclosure> &enclosures = {}) {
    NSMutableString page;
    AppendItem2Feed(&page, u"T"_ns, u""_ns, u"a<span b>c</SPAN><iframe/>d<IFRAME></iframe>"_ns, link, date,
                    author, {u"tag"_ns}, enclosures);
    return std::move(page).string().UTF8String();
  };
  const std::string link = "<a class=\"feed_link\" href=\"L&\">T</a><br/>";
  const auto line = [](const std::string &text) { return "<font class=\"feed_date\">" + text + "</font>"; };
  EXPECT_EQ(written(u"L&"_ns, when, NSString()), articleOf(link + line(shown), "acd"));
  EXPECT_EQ(written(u"L&"_ns, when, u"me"_ns), articleOf(link + line("me - " + shown), "acd"));
  EXPECT_EQ(written(u"L&"_ns, u""_ns, u""_ns), articleOf(link, "acd"));
  EXPECT_EQ(written(NSString(), u"no date"_ns, NSString()), articleOf("T<br/>" + line("no date"), "acd"));
  EXPECT_EQ(written(u""_ns, NSString(), u"me"_ns), articleOf("T<br/>" + line("me"), "acd"));
  EXPECT_EQ(written(NSString(), NSString(), NSString()), articleOf("T<br/>", "acd"));

  const auto file = [](const std::string &url, const std::string &name, const std::string &size) {
    return "<a class=\"feed_enclosure\" href=\"" + url + "\">" + name + "</a>" + size + "<br/>\n";
  };
  EXPECT_EQ(written(NSString(), NSString(), NSString(),
                    {{u"http://a/b.mp3"_ns, u"123"_ns, {}},
                     {u"c"_ns, u"12 MB"_ns, {}},
                     {u"d/"_ns, u"0"_ns, {}},
                     {u"e"_ns, u""_ns, {}},
                     {u"f"_ns, {}, {}},
                     {{}, u"-5"_ns, {}}}),
            "\n<div class=\"feed_header\">T<br/></div><div class=\"feed_article\">\nacd\n"
            "<div class=\"feed_enclosures\"><p>\n" +
                file("http://a/b.mp3", "b.mp3", "&nbsp;(123 bytes)") + file("c", "c", "&nbsp;(12 MB)") +
                file("d/", "d", "") + file("e", "e", "") + file("f", "f", "") + file("", "", "") +
                "</p></div>\n</div>\n");
  NSMutableString all;
  AppendItem2Feed(&all, {}, u"content"_ns, u"description"_ns, {}, {}, {}, {}, {});
  EXPECT_EQ(std::move(all).string().UTF8String(), articleOf("<br/>", "content"));
  AppendItem2Feed(nullptr, {}, {}, {}, {}, {}, {}, {}, {});
}

TEST(FeedPages, AreMadeOfItems) {
  const NSDictionary item = {{u"title"_ns, u"T"_ns},
                             {u"content"_ns, u"C"_ns},
                             {u"author"_ns, u"A"_ns},
                             {u"link"_ns, u"L"_ns},
                             {u"enclosures"_ns, NSArray{NSDictionary{{u"url"_ns, u"u"_ns}}, 5}},
                             {u"date"_ns, 7}};
  const std::string link = "<a class=\"feed_link\" href=\"L\">T</a><br/>",
                    meta = "<meta name=\"author\" content=\"A\"/>";
  const std::string searched = articleOf(link, "C");
  const std::string displayed = "\n<div class=\"feed_header\">" + link +
                                "<font class=\"feed_date\">A</font></div><div class=\"feed_article\">\nC\n"
                                "<div class=\"feed_enclosures\"><p>\n<a class=\"feed_enclosure\" "
                                "href=\"u\">u</a><br/>\n</p></div>\n</div>\n";
  const NSArray items = {item, 7, NSDictionary::dictionary()};
  const std::string empty = articleOf("<br/>", "");

  EXPECT_EQ(stringByConvertingItemToSearchableHTML(item).UTF8String(), kHead + meta + kBody + searched + kEnd);
  EXPECT_EQ(stringByConvertingItemsToSearchableHTML(items).UTF8String(),
            kHead + kBody + searched + empty + kEnd);
  EXPECT_EQ(stringByConvertingItemToDisplayHTML(item).UTF8String(), kHead + meta + kBody + displayed + kEnd);
  EXPECT_EQ(stringByConvertingItemsToDisplayHTML(NSArray()).UTF8String(), kHead + kBody + kEnd);

  const TemporaryFolder folder;
  const std::string path = folder.path() / "a b.css";
  std::ofstream(path) << "p > a {}";
  const StyleSheet sheet(path);
  const std::string url = "file://" + (folder.path() / "a%20b.css").string();
  const std::string linked = "<link rel=\"stylesheet\" type=\"text/css\" href=\"" + url + "\"/>\n";
  const std::string inlined = "<style type=\"text/css\"><!--p > a {}--></style>\n";
  const NSString page = stringByConvertingItemsToDisplayHTML(items);
  EXPECT_EQ(page.UTF8String(), kHead + linked + kBody + displayed + empty + kEnd);
  EXPECT_EQ(stringByReplacingLinkedStyleSheet(page).UTF8String(),
            kHead + inlined + kBody + displayed + empty + kEnd);
  EXPECT_EQ(stringByConvertingItemToDisplayHTML(item).UTF8String(),
            kHead + inlined + meta + kBody + displayed + kEnd);
  EXPECT_EQ(stringByConvertingItemToDisplayHTMLUsingLinkedStyleSheet(item, true).UTF8String(),
            kHead + linked + meta + kBody + displayed + kEnd);
  EXPECT_EQ(stringByConvertingFeed(u"<feed/>"_ns, NSURL(), true).UTF8String(),
            kHead + linked + "\n</head>\n</html>");
  EXPECT_EQ(pageOf("<feed/>"), kHead + inlined + "\n</head>\n</html>");
  const NSString other =
      u"<link rel=stylesheet href='http://a/b.css'><body><link rel=stylesheet href='file:///a'>"_ns;
  EXPECT_TRUE(stringByReplacingLinkedStyleSheet(other).identicalTo(other));

  const StyleSheet missing(path + ".missing");
  EXPECT_TRUE(stringByReplacingLinkedStyleSheet(page).identicalTo(page));
  EXPECT_EQ(pageOf("<feed/>"), kHead + "\n</head>\n</html>");
}

TEST(FeedPages, TellEmptyItems) {
  const struct {
    NSString title, content, description;
    bool isEmpty;
  } cases[] = {{u"a"_ns, {}, {}, true},
               {u"a"_ns, u""_ns, u" \n"_ns, true},
               {u"Stra\u00dfe 1"_ns, u""_ns, u"STRASSE 1"_ns, true},
               {u"Title 1"_ns, u"(title) 2"_ns, u"x"_ns, true},
               {u"a <b>"_ns, u"a <iframe x></iframe><b>"_ns, {}, true},
               {u"a"_ns, u"<p>a"_ns, {}, false},
               {u"a"_ns, u"b"_ns, u"a"_ns, false},
               {{}, u"b"_ns, {}, false}};
  for (const auto &[title, content, description, isEmpty] : cases)
    EXPECT_EQ(
        isEmptyFeedItem({{u"title"_ns, title}, {u"content"_ns, content}, {u"description"_ns, description}}),
        isEmpty)
        << content.UTF8String();
}

TEST(SafeMarkup, HasNothingThatRuns) {
  const std::pair<const char *, const char *> cases[] = {
      {"<p onclick=x()>a<script>b</script><b style='c'>d</b>", "<p>a<b>d</b>"},
      {"a < b & c &lt; d > e", "a &lt; b & c &lt; d > e"},
      {"<a href='javascript:x'>a</a><a href=\" java\tscript&#58;x\">b</a><a href='JAVASCRIPT&colon;x'>c</a>",
       "<a>a</a><a>b</a><a href=\"JAVASCRIPT&amp;colon;x\">c</a>"},
      {"<a href='&#106;avascript&#x3a;x'>a</a><a href='vbscript:x'/><a href=data:text/html,x>",
       "<a>a</a><a></a><a></a>"},
      {"<a href='http://a/?b=\"c\"&amp;d' title='\"<x'>",
       "<a href=\"http://a/?b=&quot;c&quot;&amp;d\" title=\"&quot;&lt;x\"></a>"},
      {"<img src=data:image/png;base64,x onerror=y><img src=data:image/svg+xml,x>",
       "<img src=\"data:image/png;base64,x\"><img>"},
      {"<img src=data:image/png+xml,x><img src=data:image/GIF,x><a href=data:image/png,x>b</a>",
       "<img><img src=\"data:image/GIF,x\"><a>b</a>"},
      {"<a href=feed:javascript:x>a</a><a href=feed:http://b>c</a>", "<a>a</a><a href=\"feed:http://b\">c</a>"},
      {"</div></body><div>a<i>b</div>c</i><iframe src=x></iframe><svg onload=x><style>a",
       "<div>a<i>b</i></div>ca"},
      {"<!-- <b> --><![CDATA[<i>]]><form><input name=a><p>b</form>", "<p>b"},
      {"<plaintext><textarea><title>a", "a"},
      {"<scr<script>ipt>x", "ipt>x"},
      {"<a title='</a><script>x</script>'>b", "<a title=\"&lt;/a\">b</a>"},
      {"<p", "&lt;p"},
      {"", ""},
      {"<img src=data:image/webp,x><img src=data:image/jpeg;base64,x><img src=data:image/png>",
       "<img src=\"data:image/webp,x\"><img src=\"data:image/jpeg;base64,x\"><img>"},
      // Attributes of each element, those of others not.
      {"<img alt='javascript:x' border=1 height=2 width=3 align=left start=4 href=a cite=b>",
       "<img alt=\"javascript:x\" width=\"3\" height=\"2\" align=\"left\" border=\"1\">"},
      {"<video src=a poster=b width=1 height=2 controls border=3>c</video>",
       "<video src=\"a\" poster=\"b\" width=\"1\" height=\"2\" controls=\"\">c</video>"},
      {"<audio src=a poster=b controls=c><source src=d type=e controls>",
       "<audio src=\"a\" controls=\"c\"><source src=\"d\" type=\"e\"></audio>"},
      {"<table border=1 width=2 height=3><tr valign=a align=b><td align=c valign=d colspan=4 rowspan=5 width=6 "
       "border=7><th width=8 span=9>",
       "<table width=\"2\" border=\"1\"><tr valign=\"a\"><td width=\"6\" align=\"c\" valign=\"d\" "
       "colspan=\"4\" "
       "rowspan=\"5\"><th width=\"8\"></table>"},
      {"<colgroup span=2 width=3><col span=4 title=a>", "<colgroup span=\"2\"><col span=\"4\" title=\"a\">"},
      {"<ol start=2 type=a><ul type=b start=3 lang=c dir=d>",
       "<ol start=\"2\" type=\"a\"><ul type=\"b\" lang=\"c\" dir=\"d\"></ul></ol>"},
      {"<font color=a><del cite=b datetime=c><q cite=javascript:x color=d><time datetime=e><p align=f type=g>",
       "<font color=\"a\"><del cite=\"b\" datetime=\"c\"><q><time datetime=\"e\"><p align=\"f\">"
       "</time></q></del></font>"}};
  for (const auto &[markup, safe] : cases) EXPECT_EQ(safeMarkup(string(markup)).UTF8String(), safe) << markup;
  const std::pair<const char *, std::string> elements[] = {
      {"a abbr acronym address article aside audio b bdi bdo big blockquote center cite code del details dfn "
       "div dl "
       "em figcaption figure font footer h1 h2 h3 h4 h5 h6 header i ins kbd main mark ol picture pre q ruby s "
       "samp "
       "section small span strike strong sub summary sup table time tt u ul var video",
       "<@>x</@>"},
      {"p li dt dd tr td th tbody thead tfoot colgroup caption rb rp rt rtc br hr img wbr col source", "<@>x"},
      {"form input button select option object embed applet iframe base link meta svg math body html marquee",
       "x"}};
  for (const auto &[names, written] : elements) {
    std::istringstream words(names);
    for (std::string name; words >> name;) {
      std::string expected = written;
      for (std::size_t at; (at = expected.find('@')) != expected.npos;) expected.replace(at, 1, name);
      EXPECT_EQ(safeMarkup(string("<" + name + ">x")).UTF8String(), expected);
    }
  }
  const NSURL base = NSURL::URLWithString(u"http://a/b/"_ns);
  EXPECT_EQ(safeMarkup(u"<a href='c'><img src=/d>"_ns, base),
            u"<a href=\"http://a/b/c\"><img src=\"http://a/d\"></a>"_ns);
  std::u16string deep, end;
  for (int i = 0; i < 300; ++i) deep += u"<b>";
  const NSString bounded = safeMarkup(NSString::stringWithCharacters(deep));
  EXPECT_EQ(bounded.length(), 256u * 7);
  EXPECT_EQ(safeText(u"<b>a</b> &lt; <script>x</script>c<d"_ns), u"a &lt; c&lt;d"_ns);
  EXPECT_FALSE(safeMarkup(NSString()));
  EXPECT_FALSE(safeLink(NSString()));
  for (const NSString &link :
       {u"HTTP:a"_ns, u"https://a/"_ns, u"ftp://a"_ns, u"mailto:a@b"_ns, u"tel:1"_ns, u"news:a"_ns,
        u"xmpp:a"_ns, u"magnet:?a"_ns, u"feed:http://a"_ns, u"a"_ns, u"a/b:c"_ns, u"?a:b"_ns, u"#a:b"_ns})
    EXPECT_EQ(safeLink(link), link);
  for (const NSString &link : {u"javascript:a"_ns, u" java\nscript:a"_ns, u"data:,a"_ns, u"file:///a"_ns,
                               u"x:a"_ns, u":a"_ns, u"feed:javascript:a"_ns})
    EXPECT_EQ(safeLink(link), NSString::string()) << link.UTF8String();
}

TEST(FeedPages, AreSafeWhenAskedFor) {
  EXPECT_EQ(
      pageOf(
          "<rss><title>&lt;/title&gt;<![CDATA[</title><script>x</script>]]></title><item><title>&lt;b "
          "onload=x&gt;a</title><link>javascript:x</link><author>&lt;i&gt;</author><pubDate>&lt;x&gt;"
          "</pubDate><description>&lt;script&gt;x&lt;/script&gt;b</description><enclosure "
          "url='javascript:x' length='&lt;a&gt;'/><enclosure "
          "url='http://a/?b&amp;c'/></item><item><title>&lt;a href=b>c&lt;b&gt;&lt;/a> d</title><link>e</link>"
          "</item><item><title>&lt;a href=f>g</title></item>",
          true),
      kHead +
          "<title>&lt;/title&gt;</title>\n</head>\n<body><div class=\"page_header\"><div "
          "class=\"page_title\"><nobr>&lt;/title&gt;</nobr></div></div>\n\n<div "
          "class=\"feed_header\"><b>a</b><br/>"
          "<font class=\"feed_date\">&lt;i&gt; - &lt;x&gt;</font></div><div class=\"feed_article\">\nb\n<div "
          "class=\"feed_enclosures\"><p>\n<a class=\"feed_enclosure\" href=\"\"></a>&nbsp;(&lt;a&gt;)<br/>\n"
          "<a class=\"feed_enclosure\" href=\"http://a/?b&amp;c\">?b&amp;c</a><br/>\n</p></div>\n</div>\n" +
          articleOf("<a class=\"feed_link\" href=\"e\">c<b></b> d</a><br/>", "") +
          articleOf("<a href=\"f\">g</a><br/>", "") + kEnd);
}

}  // namespace
}  // namespace nimbo
