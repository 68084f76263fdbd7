// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "Classes/Pages/NSString+HtmlExtensions.hpp"
#include "Classes/Pages/PageContents.hpp"
#include "platform/Foundation/id.hpp"
#include "tests/Classes/Pages/PlainPages.hpp"
#include "tests/support/StringSamples.hpp"

namespace nimbo {
namespace {

struct Case {
  std::u16string_view page;
  /// Null: nil.
  const char *expected;
};

template <class Ask>
void expectEach(const std::vector<Case> &cases, Ask ask) {
  for (const auto &[page, expected] : cases) {
    SCOPED_TRACE(NSString::stringWithCharacters(page).UTF8String());
    const NSString answer = ask(exactString(page));
    ASSERT_EQ(static_cast<bool>(answer), expected != nullptr);
    if (expected) {
      EXPECT_EQ(answer.UTF8String(), expected);
    }
  }
}

TEST(PageFacts, TitlesAreTheTextBehindTheLastTagInThem) {
  expectEach({{u"<title> a &amp; b\n</title>", " a &amp; b\n"},
              {u"<title>a<b>c</b>d</TITLE>", "d"},
              {u"<title>a<b>c</b></title>", ""},
              {u"<title>a", ""},
              {u"a<title/>b</title>", "a"},
              {u"<titles>a</titles><title>b</title><title>c</title>", "b"},
              {u"<body><title>a</title>", ""},
              {u"</body><title>a</title>", ""},
              {u"", ""}},
             htmlTitle);
  expectEach({{u"<title> a &amp; b\n</title>", "a & b"}, {u"<title> </title>", ""}}, normalizedHtmlTitle);
  EXPECT_EQ(htmlTitle(NSString()), NSString::string());
}

TEST(PageFacts, TheFirstBaseDecides) {
  expectEach({{u"<base href=' http://e.org/a/ '><base href=http://f.org>", "http://e.org/a/"},
              {u"<base href='#a'><base href=http://f.org>", nullptr},
              {u"<base href=a/b><base href=http://f.org>", nullptr},
              {u"<base target=a></base href=http://e.org><base href=https://f.org/>", "https://f.org/"},
              {u"<base href=ftp://e.org>", nullptr},
              {u"<base href=http://.../>", nullptr},
              {u"<body><base href=http://e.org>", nullptr},
              {u"", nullptr}},
             [](const NSString &page) { return htmlBaseURL(page).absoluteString(); });
}

TEST(PageFacts, LinkTagsNameTheCanonicalURLAndTheIcon) {
  expectEach(
      {{u"<link rel=Canonical href='/a b'/><link rel=canonical href=c>", "/a%20b"},
       {u"<link rel='canonical x' href=a><link rel=canonical href='#b'><link rel=canonical href=c>", "c"},
       {u"</link rel=canonical href=a><link rel=canonical href=b>", "b"},
       {u"<link rel=canonical><body><link rel=canonical href=a>", nullptr}},
      htmlCanonicalURL);
  expectEach(
      {{u"<link rel=icon href=/a.ico>", nullptr},
       {u"<link rel='SHORTCUT ICON' href=a.ico>", "/a.ico"},
       {u"<link rel='x shortcut icons' href=../a.ico>", "../a.ico"},
       {u"<body><link rel='shortcut icon'><link rel='shortcut icon' href=http://e.org/a>", "http://e.org/a"},
       {u"</link rel='shortcut icon' href=a>", nullptr},
       {u"<a rel='shortcut icon' href=a>", nullptr}},
      htmlFavIcon);
  constexpr std::u16string_view kTag = u"x<link rel='shortcut icon' href=a>";
  EXPECT_EQ(getFavIcon(kTag.data(), 2, 4, 1, static_cast<std::uint32_t>(kTag.size()) - 1), u"/a"_ns);
  EXPECT_FALSE(getFavIcon(kTag.data(), NSNotFound, 0, 1, static_cast<std::uint32_t>(kTag.size()) - 1));
}

TEST(PageFacts, MetaTagsOfOneNameAreJoined) {
  expectEach({{u"<meta name=description content=a><META NAME='DC.Description' CONTENT=' b '>", "a  b"},
              {u"<meta name=descriptions content=a>", nullptr},
              {u"<meta name=description content=''><body><meta name=description content=a>", nullptr},
              {u"<meta content='a <' name=description>", "a"},
              {u"<meta name=description content='a <meta name=keywords content='b'>", "a"},
              {u"<meta name=description content='a > b'>", "a"},
              {u"<meta name=\"a'b\" name=description content=c>", nullptr}},
             [](const NSString &page) { return htmlMetaDescription(page); });
  const NSString page =
      u"<meta http-equiv=Refresh content='5; url=a'><meta name=author content=b>"
      u"<meta name=dc.rights content=c><meta name=INDEXTITLE content=d>"
      u"<meta name=date content=e><meta name=title content=f><meta name=x content=g>"
      u"<meta name=dc.author content=h><meta name=copyright content=i><meta name=dc.date content=j>"
      u"<meta name=dc.title content=k>"_ns;
  EXPECT_EQ(htmlMetaRefresh(page), u"5; url=a"_ns);
  EXPECT_EQ(htmlMetaHTTPEquiv(page, u"REFRESH"_ns), u"5; url=a"_ns);
  EXPECT_EQ(htmlMetaAuthor(page), u"b h"_ns);
  EXPECT_EQ(htmlMetaCopyright(page), u"c i"_ns);
  EXPECT_EQ(htmlMetaIndexTitle(page), u"d"_ns);
  EXPECT_EQ(htmlMetaDate(page), u"e j"_ns);
  EXPECT_EQ(htmlMetaTitle(page), u"f k"_ns);
  EXPECT_EQ(htmlMetaAttributeWithName(page, u"X"_ns), u"g"_ns);
  EXPECT_FALSE(htmlMetaKeywords(page));
  EXPECT_EQ(htmlMetaKeywords(u"<meta name=DC.Keywords content=a><meta name=keywords content=b>"_ns), u"a b"_ns);
  EXPECT_FALSE(htmlMetaAttributeWithName(page, NSString()));
  EXPECT_FALSE(htmlMetaHTTPEquiv(page, NSString()));
}

TEST(PageFacts, TheDateIsTheFirstOfThreeKinds) {
  expectEach({{u"<meta name=dated content=a><meta name=DC.date content=''>"
               u"<meta http-equiv=Last-Modified content=' b '><meta name=date content=c>",
               " b"},
              {u"<body><meta name=date content=a>", nullptr}},
             htmlDate);
}

TEST(PageFacts, AllMetaAttributesStandUnderTheirNames) {
  const NSString page =
      u"<meta name=\u00c4 content='&lt;b&gt;a&lt;/b&gt;'><meta name=k content='b\n c&amp;'>"
      u"<meta content=x><meta name=K content=d><body><meta name=e content=f>"_ns;
  const NSDictionary raw = {{u"\u00e4"_ns, u"&lt;b&gt;a&lt;/b&gt;"_ns}, {u"k"_ns, u"b\n c&amp; d"_ns}};
  EXPECT_EQ(htmlMetaAttributes(page), raw);
  const NSDictionary converted = {{u"\u00e4"_ns, u"a"_ns}, {u"k"_ns, u"b c& d"_ns}};
  EXPECT_EQ(htmlMetaAttributesByConvertingEntitiesToCharacters(page), converted);
  EXPECT_EQ(htmlMetaAttributes(NSString()), NSDictionary::dictionary());
}

TEST(PageFacts, TheDublinCoreIsIndexedFirst) {
  NSString keywords, description, title, indexTitle = u"old"_ns;
  htmlMetaKeywords(
      u"<meta name=keywords content=a><title>b</title><body><meta name=title content=c>"
      u"<meta name=keywords content=d><meta name=description content=e>"
      u"<meta name=dc.description content=f><meta name=dc.description content=g>"_ns,
      &keywords, &description, &title, &indexTitle);
  EXPECT_EQ(keywords, u"a d"_ns);
  EXPECT_EQ(description, u"f g"_ns);
  EXPECT_EQ(title, u"b"_ns);
  EXPECT_FALSE(indexTitle);
  htmlMetaKeywords(u"<meta name=title content=c><title>b</title>"_ns, nullptr, nullptr, &title, nullptr);
  EXPECT_EQ(title, u"c"_ns);
  htmlMetaKeywords(
      u"<meta name=keywords content=a><meta name=DC.Keywords content=b><meta name=dc.keywords content=c>"
      u"<title>d</title><meta name=dc.title content=e><meta name=dc.title content=f>"_ns,
      &keywords, &description, &title, nullptr);
  EXPECT_EQ(keywords, u"b c"_ns);
  EXPECT_FALSE(description);
  EXPECT_EQ(title, u"e"_ns);
}

TEST(PageFacts, BaseTagsAreAddedSetAndRemoved) {
  const auto add = [](const NSString &page) { return stringByAddingBaseURL(page, u"http://e.org/?a&b"_ns); };
  const auto set = [](const NSString &page) { return stringBySettingBaseURL(page, u"a"_ns); };
  const auto clear = [](const NSString &page) { return stringBySettingBaseURL(page, NSString::string()); };
  expectEach({{u"<head><head x>a", "<head><head x><BASE href=\"http://e.org/?a&amp;b\"/>\na"},
              {u"<head><base target=x>", "<head><BASE href=\"http://e.org/?a&amp;b\"/>\n<base target=x>"},
              {u"<head><base href=x>", "<head><base href=x>"},
              {u"<html><meta x><head><title>a",
               "<html><meta x><head><BASE href=\"http://e.org/?a&amp;b\"/>\n<title>a"},
              {u"<base target=x><head><base href=x>", "<base target=x><head><base href=x>"},
              {u"<head></head><base href=x>", "<head></head><base href=x>"},
              {u"<header></head><body><head>", "<header></head><body><head>"}},
             add);
  expectEach({{u"1<base href=x>2<base href=y>", "1<BASE href=\"a\"/>\n2<base href=y>"},
              {u"<head>", "<head><BASE href=\"a\"/>\n"},
              {u"<p><base target=x><base href=y>z", "<p><base target=x><BASE href=\"a\"/>\nz"},
              {u"<body><base href=x>", "<body><base href=x>"},
              {u"<p>", "<p>"}},
             set);
  expectEach({{u"1<base href=x>2", "12"}, {u"<head>", "<head>"}}, clear);
  EXPECT_TRUE(add(u"<p>"_ns).identicalTo(u"<p>"_ns));
  EXPECT_EQ(stringBySettingBaseURL(u"<base href=x>"_ns, NSString()), u"<base href=x>"_ns);
  EXPECT_EQ(stringByAddingBaseURL(u"<head>"_ns, NSString::string()), u"<head>"_ns);
}

/// Pieces of pages that mean something, and what breaks them.
constexpr std::u16string_view kPieces[] = {
    // clang-format off
    u"<head>", u"</head>", u"<body>", u"<BODY BACKGROUND=a.png>", u"<html>", u"<title>", u"</title>", u"<title/>",
    u"text ", u"Word", u"<b>", u"</b>", u"<base href=http://e.org/>", u"<base href='#a'>", u"<BASE HREF=x/>",
    u"<link rel=canonical href=/c>", u"<link rel=Canonical href='#'>", u"<link rel='Shortcut Icon' href=i>",
    u"<link rel=icon href=./i>", u"<link rel=stylesheet href=s.css>", u"</link rel=script href=t>",
    u"<meta name=", u"<meta http-equiv=", u"description", u"dc.description", u"keywords", u"title", u"date",
    u"last-modified", u"refresh", u"author", u"dc.rights", u"robots", u"revisit-after", u"IndexTitle", u"dc.title", u" content=",
    u" content='a <b>c</b>'>", u" content=\"x\">", u" content='y <'>", u" content = z >", u"'", u"\"", u">", u"<",
    u" ", u"<meta ", u"</meta name=date content=n>", u"<a href=u.html>", u"<a href='v w' rel=nofollow>",
    u"<A HREF=feed:x>", u"<a name=x>", u"</a>", u"<area href=r/>", u"<a href=javascript:x>", u"<img src=p.png>",
    u"<frame src=f>", u"<iframe src='f&amp;g'/>", u"<rss>", u"<RDF:RDF>", u"<feed x>", u"<script src=s.js>",
    u"<script>x.src='q'", u"</script>", u"<style>@IMPORT \"i.css\"", u"</style>", u"<style>@import url(x);",
    u"<embed href=e>", u"<object data=d HREF=o>", u"<!--", u"-->", u"<a", u"\u00df",
    // clang-format on
};

void expectSame(const NSString &page) {
  const auto text = [](const NSString &string) { return std::u16string(string.view()); };
  const auto set = [](const std::vector<NSString> &strings) {
    PlainPage::Strings result;
    for (const NSString &each : strings) EXPECT_TRUE(result.emplace(each.view()).second) << "twice the same";
    return result;
  };
  const PlainPage plain(page.view());
  EXPECT_EQ(text(htmlTitle(page)), plain.title());
  EXPECT_EQ(htmlBaseURL(page), plain.base(false));
  EXPECT_EQ(text(htmlCanonicalURL(page)), plain.canonical());
  EXPECT_EQ(text(htmlDate(page)), plain.date());
  EXPECT_EQ(text(htmlFavIcon(page)), plain.favIcon(false));
  EXPECT_EQ(text(htmlMetaDescription(page)), plain.meta("NAME", u"description", u"dc.description"));
  EXPECT_EQ(text(htmlMetaRefresh(page)), plain.meta("HTTP-EQUIV", u"refresh", u""));
  std::map<std::u16string, std::u16string> metas;
  for (const auto &[key, value] : htmlMetaAttributes(page)) metas.emplace(text(key), text(value.string()));
  EXPECT_EQ(metas, plain.metas());
  NSString keywords, description, title, indexTitle;
  htmlMetaKeywords(page, &keywords, &description, &title, &indexTitle);
  EXPECT_EQ(text(keywords), plain.indexed(u"KEYWORDS", true));
  EXPECT_EQ(text(description), plain.indexed(u"DESCRIPTION", true));
  EXPECT_EQ(text(title), plain.indexed(u"TITLE", false));
  EXPECT_EQ(text(indexTitle), plain.indexed(u"INDEXTITLE", false));

  NSURL base;
  for (const NSString &containing : {NSString(), u"Word"_ns, u"t"_ns})
    for (const bool noFollow : {false, true}) {
      EXPECT_EQ(set(htmlLinksContaining(page, containing, noFollow, &base)),
                plain.links(containing.view(), noFollow, false));
      EXPECT_EQ(set(filteredHtmlLinksContaining(page, containing, noFollow, &base)),
                plain.links(containing.view(), noFollow, true));
      EXPECT_EQ(base, plain.base(true));
    }
  NSString icon, robots;
  bool isFeed = true;
  EXPECT_EQ(
      set(htmlLinksAndFramesSet(page, nullptr, &base, &icon, nullptr, nullptr, &robots, nullptr, &isFeed)),
      plain.frames(true));
  EXPECT_EQ(base, plain.base(true));
  EXPECT_EQ(text(icon), plain.favIcon(true));
  EXPECT_EQ(text(robots), plain.robots());
  EXPECT_EQ(isFeed, plain.isFeed());
  EXPECT_EQ(set(htmlFramesBaseURL(page, nullptr)), plain.frames(false));
  EXPECT_EQ(set(htmlImages(page)), plain.images());
  EXPECT_EQ(set(htmlStylesheetsAndScripts(page)), plain.sheets());
  EXPECT_EQ(set(htmlEmbeddedObjects(page)), plain.objects());
}

PlainPage::Strings linksOfKind(const PageContents &contents, PageLinkKind kind) {
  PlainPage::Strings result;
  for (const PageLink &link : contents.links)
    if (link.kind == kind) result.emplace(link.URL.view());
  return result;
}

/// All in one pass is what the functions tell one by one.
void expectSameContents(const NSString &page) {
  const PageContents contents = contentsOfPage(page);
  const PageFacts &facts = contents.facts;
  EXPECT_EQ(facts.title, htmlTitle(page));
  EXPECT_EQ(facts.normalizedTitle, normalizedHtmlTitle(page));
  EXPECT_EQ(facts.baseURL, htmlBaseURL(page));
  EXPECT_EQ(facts.canonicalURL, htmlCanonicalURL(page));
  EXPECT_EQ(facts.date, htmlDate(page));
  EXPECT_EQ(facts.favIcon, htmlFavIcon(page));
  EXPECT_EQ(facts.author, htmlMetaAuthor(page));
  EXPECT_EQ(facts.copyright, htmlMetaCopyright(page));
  EXPECT_EQ(facts.refresh, htmlMetaRefresh(page));
  EXPECT_EQ(facts.metaAttributes, htmlMetaAttributesByConvertingEntitiesToCharacters(page));
  NSString keywords, description, title, indexTitle, robots, revisit;
  htmlMetaKeywords(page, &keywords, &description, &title, &indexTitle);
  EXPECT_EQ(facts.indexedKeywords, keywords);
  EXPECT_EQ(facts.indexedDescription, description);
  EXPECT_EQ(facts.indexedTitle, title);
  EXPECT_EQ(facts.indexTitle, indexTitle);
  NSURL base;
  bool isFeed = false;
  htmlFramesSet(page, nullptr, &base, nullptr, nullptr, nullptr, &robots, &revisit, &isFeed);
  EXPECT_EQ(facts.robots ? facts.robots : NSString::string(), robots);
  EXPECT_EQ(facts.revisit, revisit);
  EXPECT_EQ(facts.isFeed, isFeed);
  EXPECT_EQ(contents.linksBaseURL, base);
  const PlainPage plain(page.view());
  EXPECT_EQ(linksOfKind(contents, PageLinkKind::kLink), plain.links(u"", false, false));
  EXPECT_EQ(linksOfKind(contents, PageLinkKind::kFrame), plain.frames(false));
  EXPECT_EQ(linksOfKind(contents, PageLinkKind::kImage), plain.images());
  EXPECT_EQ(linksOfKind(contents, PageLinkKind::kObject), plain.objects());
}

TEST(PageFacts, OfRandomPagesAreThoseOfThePlainTwin) {
  std::mt19937 random(20260202);
  std::uniform_int_distribution<std::size_t> piece(0, std::size(kPieces) - 1), count(1, 30);
  // Each base that is no URL is logged.
  testing::internal::CaptureStderr();
  for (int i = 0; i < 4000 && !testing::Test::HasFailure(); ++i) {
    std::u16string page;
    for (std::size_t left = count(random); left > 0; --left) page += kPieces[piece(random)];
    SCOPED_TRACE(NSString::stringWithCharacters(page).UTF8String());
    expectSame(exactString(page));
    expectSameContents(exactString(page));
  }
  EXPECT_NE(testing::internal::GetCapturedStderr().find("Invalid base: #a\n"), std::string::npos);
}

}  // namespace
}  // namespace nimbo
