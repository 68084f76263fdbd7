// SPDX-License-Identifier: Apache-2.0
//
// Feeds by the names of their tags: which texts are some, and their items.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "Classes/Feeds/NSString+FeedExtensions.hpp"
#include "platform/Foundation/NSUserDefaults.hpp"
#include "platform/Foundation/id.hpp"
#include "tests/Classes/Feeds/PlainFeedReader.hpp"
#include "tests/support/StringSamples.hpp"

namespace nimbo {
namespace {

NSString string(std::string_view text) {
  return exactString(NSString::stringWithUTF8String(text).view());
}

/// The value as text; an array's elements and a dictionary's values each with "|" behind them.
std::string shown(const id &value) {
  std::string text = value.string().UTF8String();
  for (const id &element : value.array()) text += shown(element) + "|";
  for (const auto &[key, element] : value.dictionary()) text += shown(element) + "|";
  return text;
}

std::string shown(const NSDictionary &item, const std::vector<std::string> &keys) {
  std::string text;
  for (const std::string &key : keys) text += shown(item.objectForKey(string(key))) + ";";
  return text;
}

/// The items, one for each line, with these of their values.
std::string shownItems(std::string_view feed, const std::vector<std::string> &keys,
                       const NSURL &url = NSURL()) {
  std::string text;
  for (const id &item : getItemsOfFeed(string(feed), url)) text += shown(item.dictionary(), keys) + "\n";
  return text;
}

std::string inRSS(const std::string &item) {
  return "<rss><channel><item>" + item + "</item></channel></rss>";
}

TEST(Feeds, AreRecognized) {
  const struct {
    std::string_view text;
    bool isFeed, isComplete;
  } cases[] = {{"<?xml version='1.0'?><RSS version=2>", true, false},
               {"<!-- <html> --><!DOCTYPE x><feed></feed>", true, true},
               {"<rdf:RDF/>", true, true},
               {"<rdf:RDF><item></item></RDF:RDF", true, false},
               {"</rss>", true, true},
               {"<html><rss></rss>", false, false},
               {"<Head><rss>", false, false},
               {"<p><body>", false, false},
               {"<rss><body></rss>", true, false},
               {"<a b='<![CDATA['><rss>", true, false},
               {"<?a <![CDATA[ ?><rss>", true, false},
               {"<!-a <![CDATA[ -><rss>", true, false},
               {"<script><![CDATA[</script><rss>", true, false},
               {"<![CDATA[]><html>]]><rss><![CDATA[]></rss>]]>", true, false},
               {"<![CDATA[<rss>", false, false},
               {"<rssx><feeds><rdf-RDF><rdf>", false, false},
               {"", false, false},
               {"rss", false, false}};
  for (const auto &[text, isOne, isWhole] : cases) {
    SCOPED_TRACE(text);
    bool isComplete = !isWhole;
    EXPECT_EQ(isFeed(string(text)), isOne);
    EXPECT_EQ(isFeedComplete(string(text), &isComplete), isOne);
    EXPECT_EQ(isComplete, isWhole);
    EXPECT_EQ(getItemsOfFeed(string(std::string(text) + "<item/>")).count(), isOne ? 1u : 0u);
  }
  EXPECT_FALSE(isFeed(NSString()));
  EXPECT_FALSE(isFeedComplete(NSString()));
}

TEST(Feeds, HaveItemsWithFields) {
  const struct {
    std::string item;
    std::vector<std::string> keys;
    const char *values;
  } cases[] = {
      {"", {"title", "description", "content", "author", "date", "link", "tags", "enclosures"}, ";;;;;;;;"},
      {"<title> a </title><TITLE>b</TITLE>", {"title"}, "a;"},
      {"<title/><title> </title><title>b</title>", {"title"}, "b;"},
      {"<media:title>a</media:title><titles>b</titles>", {"title"}, ";"},
      {"<title>caf&eacute; &amp;amp; &#60;</title>", {"title"}, "café &amp; <;"},
      {"<title>&lt;</title><author>&#x41;</author>", {"title", "author"}, "<;A;"},
      {"<description>&lt;b&gt;&nbsp;&eacute;&amp;lt;</description>", {"description"}, "<b>&nbsp;&eacute;&lt;;"},
      {"<description>a <b>b</b> &lt;</description>", {"description"}, "a <b>b</b> <;"},
      {"<summary>s</summary><description>d</description>", {"description", "content"}, "s;;"},
      {"<content:encoded><![CDATA[ <p>&amp;amp; a[1]> </item> \"x]]></content:encoded>",
       {"content"},
       "<p>&amp; a[1]> </item> \"x;"},
      {"<content><![CDATA[a]]>&lt;<![CDATA[<b]]></content><content>c</content>", {"content"}, "a<<b;"},
      {"<content type='xhtml'><div>&lt;b&gt; <content>x</content><title>y</title></div></content>",
       {"content", "title"},
       "<div><b> <content>x</content><title>y</title></div>;;"},
      {"<title><![CDATA[Q&amp;A]]></title>", {"title"}, "Q&A;"},
      {"<author>me</author><dc:creator>you</dc:creator>", {"author"}, "me;"},
      {"<author><uri>u</uri><name> me </name></author>", {"author"}, "me;"},
      {"<author><email>m@e</email></author><name>x</name>", {"author"}, "<email>m@e</email>;"},
      {"<author>a <b>b</b> &amp; c</author>", {"author"}, "a <b>b</b> & c;"},
      {"<dc:creator><b>a</b> <![CDATA[&lt;b]]></dc:creator>", {"author"}, "<b>a</b> <b;"},
      {"<pubDate>a<!-- b --><b/> c</pubDate>", {"date"}, "a<!-- b --><b/> c;"},
      {"<contributor><name>x</name></contributor><author><name>y</name></author>", {"author"}, "y;"},
      {"<source><title>x</title><link>z</link></source><title>y</title>", {"title", "link"}, "x;z;"},
      {"<pubDate>a</pubDate><updated>b</updated>", {"date"}, "a;"},
      {"<issued>a</issued><published>b</published>", {"date"}, "a;"},
      {"<category>a</category><category term='b'/><category term='c'>d</category>"
       "<category term='e'> </category><category/>",
       {"tags"},
       "a|b|d|e|;"},
      {"<enclosure url='u?a&amp;b' length=5 type=t/><enclosure length=1><enclosure url=v></enclosure>",
       {"enclosures"},
       "u?a&b|5|t/||v||;"},
      {"<link>http://a/?b&amp;c=d&copy=e</link>", {"link"}, "http://a/?b&c=d&copy=e;"},
      {"<link rel='service.post' href='a'/><link rel=edit href=b><link rel=self href='c'/>"
       "<link rel=related href='/d&amp;e'/>",
       {"link"},
       "/d&e;"},
      {"<title>no end<link>l</link><description>d<pubDate>p</pubDate>",
       {"title", "link", "description", "date"},
       "no end;l;d;p;"},
      {"<author>a<name>n</name><title>t</title>", {"author", "title"}, "n;t;"},
      {"<author><name>n</author><title>t<link>l</link><title>u</title>", {"author", "title", "link"}, "n;t;l;"},
      {"<author><link href='m'/><summary>s</summary><dc:date>1</dc:date><name>n</name></author><link "
       "href='l'/>",
       {"author", "link", "description", "date"},
       "n;l;;;"},
      {"<content><svg><dc:creator>a</dc:creator></svg> b</content><summary>c <enclosure url='u'/> d</summary>",
       {"content", "description", "author"},
       "<svg><dc:creator>a</dc:creator></svg> b;c <enclosure url='u'/> d;;"},
  };
  for (const auto &[item, keys, values] : cases) {
    std::string expected = values;
    if (keys[0] == "enclosures") expected = "u?a&amp;b|5|||1||v|||;";
    EXPECT_EQ(shownItems(inRSS(item), keys), expected + "\n") << item;
  }
}

TEST(Feeds, HaveItemsInOrder) {
  EXPECT_EQ(shownItems("<rdf:RDF><channel><title>x</title></channel><item><title>a</title></item>"
                       "<image><title>y</title></image><item/><item><title>b<item><title>c</title></ITEM>"
                       "<item><title>never ended</title>",
                       {"title"}),
            "a;\n;\nb;\nc;\n");
  EXPECT_EQ(shownItems("<feed><entry><summary>Array</summary></entry><entry><summary>array</summary></entry>",
                       {"description"}),
            "array;\n");
  // A comment in front of a section, and one that holds one.
  EXPECT_EQ(shownItems("<rss><!-- <item><title><![CDATA[a]]></title></item> --><item><title>b</title></item>"
                       "<!----><item><title><![CDATA[c<!--]]></title></item><!-- never <![CDATA[]]><item/>",
                       {"title"}),
            "b;\nc<!--;\n");
  EXPECT_EQ(
      shownItems("<rss><item><title>a</title></item><item><title><![CDATA[never</title></item>", {"title"}),
      "a;\n");
}

TEST(Feeds, HaveDatesAndLinks) {
  const NSArray items =
      getItemsOfFeed(string("<rss><item><pubDate>Sun, 24 Dec 2006 18:30:00 GMT</pubDate></item>"));
  ASSERT_EQ(items.count(), 1u);
  EXPECT_EQ(items[0].dictionary().objectForKey(u"calendarDate"_ns).date(),
            NSDate::dateWithUTC(2006, 12, 24, 18, 30, 0));
  const NSDate before = NSDate::date();
  for (const char *const undated : {"", "<pubDate>no date</pubDate>"}) {
    const NSArray one = getItemsOfFeed(string(inRSS(undated)));
    const auto date = one[0].dictionary().objectForKey(u"calendarDate"_ns).date();
    ASSERT_TRUE(date);
    EXPECT_GE(date->timeIntervalSinceReferenceDate, before.timeIntervalSinceReferenceDate);
  }

  NSUserDefaults::standardUserDefaults().registerDefaults({{u"NewsAggregatorHost"_ns, u"news.example.com"_ns}});
  const NSURL url = NSURL::URLWithString(u"http://example.org/a/feed"_ns);
  const std::pair<const char *, const char *> cases[] = {
      {"/b", "http://example.org/b"},
      {"/", "http://example.org/"},
      {"//example.com/b", "http://example.com/b"},
      {"b", "b"},
      {"HTTP://News.example.com/news/url?sa=T&amp;url=http://a.example/?b&amp;cid=0&amp;c",
       "http://a.example/?b"},
      {"http://news.example.com/news/url?a&amp;url=x-https://b", "https://b"},
      {"http://news.example.com/news/url?url=http://b", "http://news.example.com/news/url?url=http://b"},
      {"http://example.com/news/url?a&amp;url=http://b", "http://example.com/news/url?a&url=http://b"}};
  for (const auto &[link, expected] : cases)
    EXPECT_EQ(shownItems(inRSS(std::string("<link>") + link + "</link>"), {"link"}, url),
              std::string(expected) + ";\n");
  EXPECT_EQ(shownItems(inRSS("<link>/b</link>"), {"link"}), "/b;\n");
}

TEST(Feeds, AreReadAsThePlainReaderReadsThem) {
  std::mt19937 random(7);
  const auto pick = [&](const std::vector<std::string> &words) { return words[random() % words.size()]; };
  const std::vector<std::string> names = {"title",           "LINK",     "description", "summary",
                                          "content:encoded", "author",   "dc:creator",  "pubDate",
                                          "updated",         "category", "guid",        "x:title"};
  const std::vector<std::string> texts = {
      "",        " ",     "a",    "Array",  "b &amp;amp; c", "&lt;p&gt;", "é &#233;", "&eacute;&nbsp;",
      "\n x \t", "/path", "&amp", "&#xe9;y"};
  for (int round = 0; round < 2000; ++round) {
    const std::string item = pick({"item", "Entry"});
    std::string feed = pick({"<rss>", "<feed xmlns='a'>", "<rdf:RDF>"}) + "<title>outside</title>";
    for (std::size_t i = random() % 4; i-- > 0;) {
      feed += "<" + item + ">";
      for (std::size_t k = random() % 8; k-- > 0;) {
        const std::string name = pick(names);
        feed += "<" + name + pick({"", " a='b>c'"}) + ">" + pick(texts) + "</" + name + ">" +
                pick({"", "\n", "text"});
      }
      feed += "</" + item + ">";
    }
    std::string expected, read;
    for (PlainFeedReader::Item &one : PlainFeedReader::itemsOf(string(feed))) {
      for (const char *key : {"title", "description", "content", "author", "tags", "date", "link"})
        expected += one[key] + ";";
      expected += "\n";
    }
    ASSERT_EQ(shownItems(feed, {"title", "description", "content", "author", "tags", "date", "link"}), expected)
        << feed;
  }
}

}  // namespace
}  // namespace nimbo
