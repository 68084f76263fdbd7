// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Classes/Pages/IconsHandler.hpp"
#include "Classes/Pages/NSString+HtmlExtensions.hpp"
#include "Classes/Pages/NSString+HtmlLinkThumbsAndTitles.hpp"
#include "Classes/Pages/PageContents.hpp"
#include "platform/Foundation/NSStringJoining.hpp"
#include "platform/Foundation/id.hpp"
#include "tests/support/StringSamples.hpp"

namespace nimbo {
namespace {

struct Case {
  std::u16string_view page;
  /// The URLs, with a space behind each but the last.
  const char *urls;
};

template <class Ask>
void expectEach(const std::vector<Case> &cases, Ask ask) {
  for (const auto &[page, urls] : cases)
    EXPECT_EQ(stringByJoining(ask(exactString(page)), u" ").UTF8String(), urls)
        << NSString::stringWithCharacters(page).UTF8String();
}

TEST(PageLinks, AreGatheredOnce) {
  const auto links = [](const NSString &page) { return htmlLinksBaseURL(page, nullptr); };
  expectEach({{u"<a href=' a b '>x</a><A HREF='a b'/><area href=c&amp;d></a href=e>", "a%20b c&d"},
              {u"<a href=''><a name=x><a href='#t'>", "#t"},
              {u"<a href=javascript:x><a href=feed:y><a href=z.rss><a href=AppleScript:w>",
               "javascript:x feed:y z.rss AppleScript:w"},
              {u"", ""}},
             links);
  expectEach(
      {{u"<a href=' JavaScript:x'><a href=feed:y><a href=z.rss><area href=AppleScript:w><a href=v>", "v"}},
      [](const NSString &page) { return filteredHtmlLinksBaseURL(page, nullptr); });
  EXPECT_TRUE(links(NSString()).empty());
}

TEST(PageLinks, MayBeForbiddenToFollow) {
  expectEach(
      {{u"<a href=a rel=NOFOLLOW><a href=b rel='x nofollow'><a href=c rel=nofollo><a href=d rel=x>", "c d"}},
      [](const NSString &page) { return htmlLinksContaining(page, NSString::string(), true, nullptr); });
}

TEST(PageLinks, MayHaveToContainAText) {
  const auto links = [](const NSString &page) { return htmlLinksContaining(page, u"Word"_ns, true, nullptr); };
  expectEach({{u"<a href=a>a <b>Wo</b>rd</a><a href=b>word</a><a href=c>Word</a><area href=d>Word", "a c"},
              {u"<a href=a>Word<a href=b>x</a>Word<a href=c>Word", ""},
              {u"<a href=a>x</a>Word</a><a>Word</a><a href=b rel=nofollow>Word</a>", ""},
              {u"<a href=a>W<!-- -->ord</a>", "a"}},
             links);
  expectEach({{u"<a href=feed:a>Word</a><a href=b>Word</a>", "b"}}, [](const NSString &page) {
    return filteredHtmlLinksContaining(page, u"Word"_ns, false, nullptr);
  });
}

TEST(PageLinks, TheLastBaseCounts) {
  NSURL base = NSURL::URLWithString(u"http://old.org"_ns);
  htmlLinksBaseURL(u"<base href=http://e.org/><body><base href=http://f.org/>"_ns, &base);
  EXPECT_EQ(base.absoluteString(), u"http://f.org/"_ns);
  htmlFramesBaseURL(u"<base href=http://e.org/><base href=x>"_ns, &base);
  EXPECT_FALSE(base);
}

TEST(PageLinks, OfImagesSheetsAndObjects) {
  expectEach({{u"<img src=a><IMG SRC=a><img data-x=b><body background=c><link rel='Apple-Touch-Icon' href=d>"
               u"<link rel=image_src href=./e><table background=f><link rel=ico href=g>",
               "a c /d ./e"}},
             htmlImages);
  expectEach(
      {{u"<script src=a.js></script><style>@import url(b);</style><STYLE>@Import \"c d\"; @import \"e\"</STYLE>"
        u"<style>@import 'f'</style><link rel='alternate StyleSheet' href=g><link rel=feed href=h>",
        "a.js c%20d /g"},
       {u"<script>x.src='a'; @import \"b\"</script><style>@import \"c</style>", "a"}},
      htmlStylesheetsAndScripts);
  expectEach({{u"<embed src=a><embed href=b><object data=c><object href=d></object href=e>", "b d"}},
             htmlEmbeddedObjects);
}

TEST(PageLinks, FramesComeWithFacts) {
  const NSString page =
      u"<rss><html><frameset><frame src=a><iframe src=b></iframe><a href=c><title>d</title><body>"
      u"<title>e</title><link rel='shortcut icon' href=f><link rel='shortcut icon' href=g>"
      u"<meta http-equiv=refresh content=1><meta http-equiv=refresh content=2><meta name=robots content=x>"
      u"<meta name=robots content=y><meta name=revisit-after content='3 days'>"_ns;
  bool isSet = true, isFeed = false;
  NSURL base;
  NSString icon, title, refresh, robots, revisit;
  const auto ask = [&](const NSString &asked) {
    return htmlFramesSet(asked, &isSet, &base, &icon, &title, &refresh, &robots, &revisit, &isFeed);
  };
  EXPECT_EQ(ask(page), (std::vector{u"a"_ns, u"b"_ns}));
  EXPECT_EQ(icon, u"/g"_ns);
  EXPECT_EQ(title, u"e"_ns);
  EXPECT_EQ(refresh, u"2"_ns);
  EXPECT_EQ(robots, u"x,y"_ns);
  EXPECT_EQ(revisit, u"3 days"_ns);
  EXPECT_TRUE(isFeed);
  EXPECT_FALSE(isSet);
  const PageFacts facts = contentsOfPage(page).facts;
  EXPECT_EQ(facts.robots, u"x,y"_ns);
  EXPECT_EQ(facts.revisit, u"3 days"_ns);
  EXPECT_TRUE(facts.isFeed);
  EXPECT_EQ(htmlLinksAndFramesBaseURL(page, nullptr), (std::vector{u"a"_ns, u"b"_ns, u"c"_ns}));
  EXPECT_EQ(htmlFramesSet(page, nullptr, nullptr), (std::vector{u"a"_ns, u"b"_ns}));
  EXPECT_EQ(htmlLinksAndFramesSet(page, nullptr, nullptr), (std::vector{u"a"_ns, u"b"_ns, u"c"_ns}));
  EXPECT_TRUE(ask(u"<html><rss>"_ns).empty());
  EXPECT_FALSE(isFeed);
  // The long s is no s, although it is one in capitals.
  EXPECT_TRUE(ask(u"<r\u017fs><html>"_ns).empty());
  EXPECT_FALSE(icon || title || refresh || revisit || isFeed);
  EXPECT_EQ(robots, NSString::string());
}

TEST(PageContents, TellTextAndPlaceOfEachLink) {
  constexpr std::u16string_view kPage =
      u"<a href=a>A &amp;\n<b>b</b><a href=a rel=nofollow><img src=i alt='An image'></a><area href=c alt=C>"
      u"<script data-x='>' src=s>x.src='t'</script><script>x.src='u'</script>"
      u"<style>x.src='v'; @import \"w\"</style><a href='/?u=%26'> </a><base href='http://h/?u=%26'>";
  const PageContents contents =
      contentsOfPage(exactString(kPage), {.preservingMeaning = true, .withDetails = true});
  std::vector<std::string> links;
  for (const PageLink &link : contents.links) {
    EXPECT_EQ(kPage[link.place.location], u'<');
    EXPECT_EQ(kPage[link.place.location + link.place.length - 1], u'>');
    links.push_back(std::to_string(static_cast<int>(link.kind)) + " " + link.URL.UTF8String() + " " +
                    (link.text ? link.text.UTF8String() : "-") + (link.isNoFollow ? " nofollow" : ""));
  }
  EXPECT_EQ(links, (std::vector<std::string>{"0 a A & b", "0 a An image nofollow", "2 i An image", "0 c C",
                                             "3 s -", "3 w -", "0 /?u=%26 -"}));
  EXPECT_EQ(contents.linksBaseURL.absoluteString(), u"http://h/?u=%26"_ns);
  EXPECT_EQ(contentsOfPage(exactString(kPage)).linksBaseURL.absoluteString(), u"http://h/?u=&"_ns);
  for (const PageLink &link : contentsOfPage(exactString(kPage)).links) EXPECT_FALSE(link.text);
  EXPECT_TRUE(contentsOfPage(NSString()).links.empty());
  EXPECT_TRUE(contentsOfPage(u"</a href=a></area href=b></frame src=c></img src=d></link rel=stylesheet href=e>"
                             u"</embed href=f></object href=g></body background=h>"_ns)
                  .links.empty());
  EXPECT_EQ(contentsOfPage(NSString()).facts.title, NSString::string());
}

TEST(PageLinks, ScriptsOpenLinks) {
  const struct {
    NSString link, opened;
  } cases[] = {{u"javascript:imageViewall('a.png','b')"_ns, u"a.png"_ns},
               {u"JavaScript:Open('a b')"_ns, u"a b"_ns},
               {u"javascript:open('')"_ns, u""_ns},
               {u"javascript:open('a"_ns, NSString()},
               {u" javascript:open('a')"_ns, NSString()},
               {u"javascript:close('a')"_ns, NSString()},
               {NSString(), NSString()}};
  for (const auto &[link, opened] : cases) EXPECT_EQ(stringByExtractingJavaScriptURL(link), opened);
}

TEST(LinkThumbsAndTitles, AreThoseOfTheLinks) {
  NSDictionary thumbs, titles;
  const NSURL base = NSURL::URLWithString(u"http://e.org/p/q"_ns);
  const NSString page =
      u"<link rel='shortcut icon' href=i.ico><a href=a.html title='A tooltip'>An &amp;\n <b>article</b>"
      u"<img src=a.jpg alt=x><img src=b.png></a> no title <img alt=No><a href=b.html><img src=c.svg alt='The "
      u"image'></a>"
      u"<a href=a.html>More</a><a href=\"javascript:open('c.html')\" title=C><table background='d.gif?1'></a>"
      u"<a href='#t'>here</a><a href=d.html>***</a>"_ns;
  getLinkThumbs(page, &thumbs, &titles, base, false);
  EXPECT_EQ(thumbs, (NSDictionary{{u"http://e.org/p/q"_ns, u"http://e.org/i.ico"_ns},
                                  {u"http://e.org/p/a.html"_ns, u"http://e.org/p/a.jpg"_ns},
                                  {u"http://e.org/p/c.html"_ns, u"http://e.org/p/d.gif?1"_ns}}));
  EXPECT_EQ(titles, (NSDictionary{{u"http://e.org/p/a.html"_ns, u"An & article"_ns},
                                  {u"http://e.org/p/b.html"_ns, u"The image"_ns},
                                  {u"http://e.org/p/c.html"_ns, u"C"_ns}}));
  getLinkThumbs(u"<a href=a>x <img src=b.jpeg><img src=c.jpe>"_ns, &thumbs, nullptr, NSURL(), false);
  EXPECT_EQ(thumbs, (NSDictionary{{u"a"_ns, u"c.jpe"_ns}}));
  getLinkThumbs(u"<a href=a>x</a href=b><img src=c.png></a><a href=d></img src=e.png></a>"_ns, &thumbs, nullptr,
                NSURL(), false);
  EXPECT_EQ(thumbs, NSDictionary::dictionary());
  getLinkThumbs(NSString(), &thumbs, &titles, base, false);
  EXPECT_EQ(titles, NSDictionary::dictionary());
}

TEST(LinkThumbsAndTitles, AreHiddenFromSearchEngines) {
  const NSString page =
      u"<a href=a><!--googleoff: anchor-->x<!--googleon: anchor--> y</a>"
      u"<!--GOOGLEOFF: INDEX--><a href=b title=z>z<img src=b.png></a><!--googleon: all-->"
      u"<a href=c>c<!--googleoff: snippet-->d<img src=c.png></a>"_ns;
  NSDictionary thumbs, titles;
  getLinkThumbs(page, &thumbs, &titles, NSURL(), true);
  EXPECT_EQ(thumbs, (NSDictionary{{u"c"_ns, u"c.png"_ns}}));
  EXPECT_EQ(titles, (NSDictionary{{u"a"_ns, u"y"_ns}, {u"c"_ns, u"cd"_ns}}));
  getLinkThumbs(page, &thumbs, &titles, NSURL(), false);
  EXPECT_EQ(titles, (NSDictionary{{u"a"_ns, u"x y"_ns}, {u"b"_ns, u"z"_ns}, {u"c"_ns, u"cd"_ns}}));
}

TEST(LinkThumbsAndTitles, TheTitleWithTheMostWordsCounts) {
  const NSString link = u"a"_ns;
  IconsContext context;
  addTitleToIconsContext(context, u"no titles are wanted"_ns, link, true);
  context.titles = {{link, u"one two"_ns}};
  const struct {
    NSString title;
    bool replace;
    NSString expected;
  } steps[] = {{u"x y z"_ns, false, u"one two"_ns}, {u"x"_ns, true, u"one two"_ns},
               {u" x\n y "_ns, true, u"x y"_ns},    {u"- -"_ns, true, u"x y"_ns},
               {u"z"_ns, true, u"x y"_ns},          {NSString(), true, u"x y"_ns}};
  for (const auto &[title, replace, expected] : steps) {
    addTitleToIconsContext(context, title, link, replace);
    EXPECT_EQ(context.titles.objectForKey(link).string(), expected);
  }
  addTitleToIconsContext(context, u"x"_ns, NSString(), true);
  EXPECT_EQ(context.titles.count(), 1u);
}

}  // namespace
}  // namespace nimbo
