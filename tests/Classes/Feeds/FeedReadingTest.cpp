// SPDX-License-Identifier: Apache-2.0
//
// Whole feeds by one call: other namespaces, other formats, and feeds as other formats.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "Classes/Feeds/FeedReading.hpp"
#include "platform/Foundation/NSArray.hpp"
#include "platform/Foundation/NSJSONSerialization.hpp"
#include "platform/Foundation/id.hpp"
#include "tests/support/StringSamples.hpp"

namespace nimbo {
namespace {

NSString string(std::string_view text) {
  return exactString(NSString::stringWithUTF8String(text).view());
}

/// What is not empty of an item: a letter for each field, and "!" behind plain texts.
std::string shown(const FeedItem &item) {
  std::string text;
  const auto add = [&](const char *name, const NSString &value, bool isPlain = false) {
    if (value.length() > 0) text += name + value.UTF8String() + (isPlain ? "!" : "") + "|";
  };
  add("t:", item.title, item.isPlainTitle);
  add("d:", item.description, item.isPlainDescription);
  add("c:", item.content, item.isPlainContent);
  add("a:", item.author);
  add("w:", item.dateString);
  add("p:", item.publishedString);
  add("u:", item.updatedString);
  add("l:", item.link);
  add("i:", item.identifier);
  add("m:", item.image);
  for (const NSString &tag : item.tags) add("#", tag);
  for (const FeedEnclosure &file : item.enclosures) {
    add("e:", file.url);
    add("n:", file.length);
    add("y:", file.type);
  }
  return text;
}

std::string shownItems(const std::string &text, const NSURL &url = NSURL()) {
  const auto feed = readFeed(string(text), url);
  if (!feed) return "no feed";
  std::string all;
  for (const FeedItem &item : feed->items) all += shown(item) + "\n";
  return all;
}

const std::string kAtom = "<feed xmlns='http://www.w3.org/2005/Atom'>";

TEST(FeedReading, KnowsNamespaces) {
  const std::pair<std::string, const char *> cases[] = {
      {"<a:feed xmlns:a='http://www.w3.org/2005/Atom'><a:entry><a:title>t</a:title><title>n</title></a:entry>",
       "t:t|\n"},
      {"<r:RDF xmlns:r=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\" xmlns:s = 'http://purl.org/rss/1.0/'>"
       "<s:item><s:title>t</s:title></s:item>",
       "t:t|\n"},
      {"<rss xmlns:x='http://purl.org/rss/1.0/modules/content/' xmlns:y='HTTP://purl.org/dc/elements/1.1/'>"
       "<item><x:encoded>c</x:encoded><y:creator>a</y:creator></item>",
       "c:c|a:a|\n"},
      {"<rss xmlns:content='http://e/' xmlns:media='http://search.yahoo.com/mrss/'><item><content:encoded>c"
       "</content:encoded><media:title>t</media:title><media:thumbnail url='m'/></item>",
       "t:t|m:m|\n"},
      {"<rss xmlns:atom='http://www.w3.org/2005/Atom'><item><atom:link rel='alternate' href='l'/></item>",
       "l:l|\n"},
      {"<rss xmlns:dc='http://purl.org/dc/elements/1.1/'><item "
       "xmlns:dc='http://e/'><dc:creator>a</dc:creator></item>"
       "<x:item/>",
       "\n"},
      {"<channel><item href='l' lastmod='u'><title>t</title><abstract>d</abstract></item>",
       "t:t|d:d|w:u|u:u|l:l|\n"},
      {"<rss><channel xmlns:x='http://purl.org/dc/elements/1.1/'><item><x:creator>a</x:creator>"
       "<y:title xmlns:y='http://search.yahoo.com/mrss/'>t</y:title></item>",
       "t:t|a:a|\n"},
      {"<x:feed xmlns:x='http://e/'><entry/>", "no feed"},
      {"<rss xmlns:=' xmlns:a", "no feed"},
      {"<html><rss><item/>", "no feed"},
      {"", "no feed"}};
  for (const auto &[text, items] : cases) EXPECT_EQ(shownItems(text), items) << text;
  // Feeds of all versions, and what they are extended by.
  for (const std::string uri :
       {"http://www.w3.org/2005/Atom", "http://purl.org/atom/ns#", "http://purl.org/rss/1.0/",
        "http://purl.org/net/rss1.1#", "http://my.netscape.com/rdf/simple/0.9/",
        "http://channel.netscape.com/rdf/simple/0.9/", "http://backend.userland.com/rss2",
        "http://blogs.law.harvard.edu/tech/rss"})
    EXPECT_EQ(shownItems("<a:rss xmlns:a='" + uri + "'><a:item><a:title>t</a:title></a:item>"), "t:t|\n")
        << uri;
  const std::tuple<std::string, std::string, const char *> extensions[] = {
      {"http://purl.org/dc/terms/", "<x:created>c</x:created>", "w:c|p:c|\n"},
      {"http://www.itunes.com/dtds/podcast-1.0.dtd", "<x:author>a</x:author>", "a:a|\n"},
      {"http://www.w3.org/1999/xhtml", "<x:body><p>b</p></x:body>", "c:<p>b</p>|\n"},
      {"http://purl.org/rss/1.0/modules/syndication/", "<x:title>t</x:title>", "\n"}};
  for (const auto &[uri, element, items] : extensions)
    EXPECT_EQ(shownItems("<rss><item xmlns:x='" + uri + "'>" + element + "</item>"), items) << uri;
}

TEST(FeedReading, ReadsItems) {
  const NSURL url = NSURL::URLWithString(u"http://a/b/"_ns);
  const std::pair<std::string, const char *> cases[] = {
      {"<title type='text'>a &lt;b> &hellip;&#128512;</title>", "t:a <b> …😀!|"},
      {"<title type='html'>&lt;b>&amp;eacute;&#150;</title>", "t:<b>&eacute;–|"},
      {"<title type='xhtml'><div>a &amp; <i>b</i></div></title>", "t:a &amp; <i>b</i>|"},
      {"<content type='xhtml'> <x:div>a<div>&lt;b</div><![CDATA[<c&]]></x:div></content>",
       "c:a<div>&lt;b</div>&lt;c&amp;|"},
      {"<content type='xhtml'><div>a</div><div>b</div></content>", "c:<div>a</div><div>b</div>|"},
      {"<content type='xhtml'><svg><rdf:RDF><dc:creator>x</dc:creator></rdf:RDF></svg>y</content>",
       "c:<svg><rdf:RDF><dc:creator>x</dc:creator></rdf:RDF></svg>y|"},
      {"<content type='html'><div>a &lt;b></div></content>", "c:a <b>|"},
      {"<content type='application/octet-stream'>w6TDtg==</content>", "c:äö|"},
      {"<summary mode='base64'>PGI+</summary>", "d:<b>|"},
      {"<summary type='text/html' mode='escaped'>&lt;p></summary>", "d:<p>|"},
      {"<summary>a<b/>&lt;</summary>", "d:a<b/>&lt;|"},
      {"<title>&#x110000;&#0;&#xd800;&#x;&nosuch;&thetasym;&amp</title>",
       "t:\ufffd\ufffd\ufffd&#x;&nosuch;ϑ&amp|"},
      {"<modified>m</modified><created>c</created><issued>i</issued>", "w:i|p:i|u:m|"},
      {"<modified>m</modified>", "w:m|u:m|"},
      {"<link rel='enclosure' href='/e&amp;f' length='1' type='t'/><link href='x'/><link rel='alternate' "
       "href='y'/>",
       "l:http://a/b/x|e:/e&f|n:1|y:t|"},
      {"<link rel='via' href='v'/><id>http://i/</id>", "l:http://i/|i:http://i/|"},
      {"<guid isPermaLink='false'>http://i/</guid>", "i:http://i/|"},
      {"<guid>HTTPS://i/</guid>", "l:HTTPS://i/|i:HTTPS://i/|"},
      {"<id>https:/i</id>", "i:https:/i|"},
      {"<id>http:/i</id>", "i:http:/i|"},
      {"<id>tag:i</id><link rel='enclosure'>e</link><link rel='alternate'>l</link>", "l:http://a/b/l|i:tag:i|"},
      {"<dc:subject>s</dc:subject><category term='t' label='l'/>", "#s|#t|"},
      {"<itunes:author>o</itunes:author><dc:title>t</dc:title><author>a</author>", "t:t|a:a|"},
      {"<author>a <b>b</b> &amp; c</author>", "a:a b & c|"},
      {"<author><id>i</id><link href='m'/><name>n</name><summary>s</summary></author><id>j</id>", "a:n|i:j|"},
      {"<author> <email><![CDATA[e]]></email><uri>u</uri></author>", "a:e|"},
      {"<dc:creator><b>a</b><!-- x --> <![CDATA[&amp;b]]></dc:creator>", "a:a &amp;b|"},
      {"<content type='xhtml'><div a='<![CDATA['>b<script><![CDATA[c]]></script></div></content>",
       "c:b<script><![CDATA[c]]></script>|"},
      {"<enclosure length='1'/><enclosure url='a&amp;b'/>", "e:a&b|"},
      {"<fullitem>f</fullitem>", "c:f|"},
      {"<g:condition_value>x</g:condition_value><a-name-longer-than-all/><title>t</title>", "t:t|"},
      {"<itunes:summary>d</itunes:summary><itunes:image href='m'/>", "d:d|m:m|"},
      {"<media:description>d</media:description><dc:author>a</dc:author>", "d:d|a:a|"},
      {"<dc:description>d</dc:description><lastmod>u</lastmod>", "d:d|w:u|u:u|"},
      {"<published>p</published><updated>u</updated>", "w:p|p:p|u:u|"},
      {"<dcterms:modified>u</dcterms:modified><dcterms:issued>p</dcterms:issued>", "w:p|p:p|u:u|"},
      {"<dcterms:created>p</dcterms:created><dc:date>u</dc:date>", "w:u|p:p|u:u|"},
      {"<body xmlns='http://www.w3.org/1999/xhtml'><p>b</p></body>", "c:<p>b</p>|"},
      {"<title>t</title><summary>not ended", "t:t|d:not ended|"},
  };
  for (const auto &[item, expected] : cases) {
    EXPECT_EQ(shownItems(kAtom + "<entry>" + item + "</entry>", url), std::string(expected) + "\n") << item;
    EXPECT_EQ(shownItems(kAtom + "<entry>" + item, url), std::string(expected) + "\n") << item;
  }
  EXPECT_EQ(
      shownItems("<feed xml:base='/c/'><entry xml:base='d/'><link href='e'/></entry><entry><link href='e'/>",
                 url),
      "l:http://a/c/d/e|\nl:http://a/c/e|\n");
}

TEST(FeedReading, ReadsWhatFeedsTellOfThemselves) {
  const auto feed = readFeed(string(
      "<rss><channel><image><url>m</url><title>x</title></image><title>A &amp;amp; B</title><link>h</link>"
      "<atom:link rel='self' href='s'/><description>d</description><language>en</language>"
      "<managingEditor>e</managingEditor><item><dc:language>de</dc:language></item><lastBuildDate>w</"
      "lastBuildDate>"));
  ASSERT_TRUE(feed);
  EXPECT_EQ(feed->format, FeedFormat::kRSS);
  EXPECT_EQ(shown(feed->header), "t:A &amp; B|d:d|a:e|w:w|u:w|l:h|m:m|");
  EXPECT_EQ(feed->language, u"en"_ns);
  EXPECT_EQ(
      OPMLOfFeed(*feed, NSURL::URLWithString(u"http://a/?b&c"_ns)),
      u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<opml version=\"2.0\">\n<head><title>A &amp; "
      u"B</title></head>\n"
      u"<body>\n<outline type=\"rss\" text=\"A &amp; B\" title=\"A &amp; B\" xmlUrl=\"http://a/?b&amp;c\" "
      u"htmlUrl=\"h\" description=\"d\" language=\"en\"/>\n</body>\n</opml>"_ns);
  const auto atom = readFeed(string(kAtom + "<link rel='self' href='s'/><subtitle>d</subtitle><logo>m</logo>"
                                            "<author><link href='x'/><id>x</id><name>a</name></author>"));
  ASSERT_TRUE(atom);
  EXPECT_EQ(atom->format, FeedFormat::kAtom);
  EXPECT_EQ(atom->feedURL, u"s"_ns);
  const auto old = readFeed(string("<feed><tagline>d</tagline><dc:language>de</dc:language>"));
  ASSERT_TRUE(old);
  EXPECT_EQ(shown(old->header) + old->language.UTF8String(), "d:d|de");
  EXPECT_EQ(shown(atom->header), "d:d|a:a|m:m|");
  EXPECT_EQ(
      OPMLOfFeed(*atom, NSURL()),
      u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<opml version=\"2.0\">\n<head><title>Feed</title></head>\n"
      u"<body>\n<outline type=\"rss\" text=\"Feed\" xmlUrl=\"s\" description=\"d\"/>\n</body>\n</opml>"_ns);
}

TEST(FeedReading, ReadsAndWritesJSONFeed) {
  const std::string text =
      R"({"version":"https://jsonfeed.org/version/1.1","title":"T <","home_page_url":"h","feed_url":"f",)"
      R"("description":"d","icon":"m","authors":[{"name":"a"}],"language":"en","items":[{"id":"1","url":"l",)"
      R"("title":"t <b>","content_html":"<p>c","summary":"s","image":"m","date_published":"2006-12-24T18:30:00Z",)"
      R"("date_modified":"2006-12-25T00:00:00Z","authors":[{"name":"A"}],"tags":["x","y"],)"
      R"("attachments":[{"url":"e","mime_type":"audio/mpeg","size_in_bytes":5}]},{"id":"2","content_text":"c <"}]})";
  const auto feed = readFeed(string("\ufeff \n" + text));
  ASSERT_TRUE(feed);
  ASSERT_EQ(feed->items.size(), 2u);
  EXPECT_EQ(shown(feed->header), "t:T <!|d:d!|a:a|l:h|m:m|");
  EXPECT_EQ(
      shown(feed->items[0]),
      "t:t <b>!|d:s!|c:<p>c|a:A|w:2006-12-24T18:30:00Z|p:2006-12-24T18:30:00Z|u:2006-12-25T00:00:00Z|l:l|i:1|"
      "m:m|#x|#y|e:e|n:5|y:audio/mpeg|");
  EXPECT_EQ(shown(feed->items[1]), "c:c <!|i:2|");
  EXPECT_EQ(id(JSONFeedOfFeed(*feed)), NSJSONSerialization::JSONObjectWithString(string(text)));

  const auto old = readFeed(string(
      R"({"version":"https://jsonfeed.org/version/1","icon":"","favicon":"f","authors":[],"author":{"url":"a"},)"
      R"("items":[{"id":7,"external_url":"x","banner_image":"b","date_modified":"2006-12-25T00:00:00Z",)"
      R"("tags":["",3,"t"],"attachments":[{"mime_type":"y"},{"url":"e"}]},3]})"));
  ASSERT_TRUE(old);
  EXPECT_EQ(shown(old->header), "a:a|m:f|");
  EXPECT_EQ(shown(old->items.at(0)), "w:2006-12-25T00:00:00Z|u:2006-12-25T00:00:00Z|l:x|i:7|m:b|#t|e:e|");
  for (const char *other : {"{}", "{\"version\":1}", "{\"version\":\"https://jsonfeed.org/version/1\"", "[]"})
    EXPECT_FALSE(readFeed(string(other))) << other;

  const auto made =
      readFeed(string("<rss><item><title>a &amp;amp; &lt;b>c</title><description>&lt;p>d</description>"
                      "<content:encoded>e</content:encoded><enclosure url='u' length='1 MB'/>"
                      "<enclosure url='v' length='1' type='t'/><enclosure url='w' length='0'/></item>"
                      "<item><link>l</link><pubDate>never</pubDate></item><item/>"));
  ASSERT_TRUE(made);
  EXPECT_EQ(
      id(JSONFeedOfFeed(*made).objectForKey(u"items"_ns)),
      NSJSONSerialization::JSONObjectWithString(string(
          R"([{"id":"a & c","title":"a & c","content_html":"e","summary":"d","attachments":[{"url":"u",)"
          R"("mime_type":"application/octet-stream"},{"url":"v","mime_type":"t","size_in_bytes":1},)"
          R"({"url":"w","mime_type":"application/octet-stream"}]},{"id":"l","url":"l","content_text":""},)"
          R"({"id":"2","content_text":""}])")));
}

TEST(FeedReading, WritesPages) {
  const auto feed =
      readFeed(string(kAtom + "<title type='text'>&lt;x></title><entry><title type='text'>a &lt; b</title>"
                              "<content type='html'>&lt;img src=i onerror=x></content>"
                              "<enclosure url='e?a&amp;amp;lt=1' length='&amp;amp;'/></entry>"));
  ASSERT_TRUE(feed);
  const auto body = [](const NSString &page) {
    return NSString::stringWithCharacters(page.view().substr(page.view().find(u"<title>"))).UTF8String();
  };
  const auto files = [](const std::string &url, const std::string &length) {
    return "<div class=\"feed_enclosures\"><p>\n<a class=\"feed_enclosure\" href=\"" + url + "\">" + url +
           "</a>&nbsp;(" + length + ")<br/>\n</p></div>\n</div>\n\n</body>\n</html>";
  };
  const std::string frame =
      "</title>\n</head>\n<body><div class=\"page_header\"><div class=\"page_title\"><nobr>&lt;x&gt;"
      "</nobr></div></div>\n\n<div class=\"feed_header\">a ";
  EXPECT_EQ(body(stringByConvertingFeedToHTML(*feed, {.baseURL = NSURL::URLWithString(u"http://a/"_ns)})),
            "<title>&lt;x&gt;" + frame +
                "&lt; b<br/></div><div class=\"feed_article\">\n<img src=\"http://a/i\">\n" +
                files("e?a&amp;amp;lt=1", "&amp;amp;"));
  EXPECT_EQ(body(stringByConvertingFeedToHTML(*feed, {.isSafe = false})),
            "<title>&lt;x&gt;" + frame + "< b<br/></div><div class=\"feed_article\">\n<img src=i onerror=x>\n" +
                files("e?a&amp;lt=1", "&amp;"));
}

}  // namespace
}  // namespace nimbo
