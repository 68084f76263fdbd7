// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Loading/PageSheets.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/WebKit/Loading/SheetText.hpp"

namespace nimbo::detail {
namespace {

/// Each text, and the sheets that it imports in parentheses.
std::string textsOf(const std::vector<AuthorSheet> &sheets) {
  std::string texts;
  for (const AuthorSheet &sheet : sheets) {
    texts += sheet.text ? sheet.text.UTF8String() : "nil";
    if (!sheet.imports.empty()) texts += "(" + textsOf(sheet.imports) + ")";
    texts += "|";
  }
  return texts;
}

std::string sheetsOf(std::u16string_view page) {
  const HTMLDocument document = HTMLDocument::documentWithText(page);
  const CSSMedium medium;
  const WebView webView{Deadline::after(1)};
  WebResourceLoader loader({}, webView, {});
  return textsOf(loadPageSheets(document, NSURL(), medium, loader));
}

TEST(PageSheets, AreThoseThatABrowserUses) {
  const std::pair<std::u16string_view, std::string_view> cases[] = {
      {u"<style>a</style><link rel=stylesheet href=data:,b><p><style>c</style>", "a|b|c|"},
      {u"<link rel='Alternate stylesheet' href=data:,a><link rel=stylesheet disabled href=data:,b>", ""},
      {u"<style type=text/less>a</style><style type=' TEXT/css;x'>b</style><style type>c</style>", "b|c|"},
      {u"<style media=print>a</style><style media='screen, tv'>b</style>", "b|"},
      {u"<style title=x>a</style><style title=y>b</style><style>c</style><link rel=stylesheet title=x "
       u"href=data:,d>",
       "a|c|d|"},
      {u"<style media=print title=x>a</style><style title=y>b</style><style title=''>c</style>", "b|c|"},
      {u"<svg><style>a</style></svg><math><style>b</style></math>", "a|"},
      {u"<style>@import 'data:,a';@IMPORT 'none:b';@import 'data:,c';d</style><style>e</style>",
       "@import 'data:,a';@IMPORT 'none:b';@import 'data:,c';d(a|nil|c|)|e|"},
      {u"<style>@import \"data:,@import 'data:,a';b\"</style>",
       "@import \"data:,@import 'data:,a';b\"(@import 'data:,a';b(a|)|)|"},
      {u"<noscript><style>a</style></noscript><template><style>b</style></template>", "a|"},
      {u"<link rel=stylesheets href=data:,a><link href=data:,b><link rel=stylesheet><link rel=style "
       u"href=data:,c>",
       ""},
      {u"<link rel=stylesheet media=print href=data:,a><link rel=stylesheet type=text/less href=data:,b>", ""},
      {u"<link rel='x STYLESHEET' media=tv,screen type=TEXT/css href=data:,a>", "a|"},
      {u"<link rel=stylesheet media=print title=x href=data:,a><link rel=stylesheet title=y href=data:,b>"
       u"<link rel=stylesheet title=z href=data:,c>",
       "b|"},
  };
  for (const auto &[page, expected] : cases)
    EXPECT_EQ(sheetsOf(page), expected) << NSString::stringWithCharacters(page).UTF8String();
}

TEST(PageSheets, AreLimitedInNumberAndDepth) {
  std::u16string many, importing = u"<style>";
  for (std::size_t i = 0; i < kMaximumPageSheets + 10; ++i) {
    many += u"<style>a</style>";
    importing += u"@import 'none:';";
  }
  const auto count = [](const std::string &texts, std::string_view part) {
    std::size_t found = 0;
    for (std::size_t i = texts.find(part); i != texts.npos; i = texts.find(part, i + 1)) ++found;
    return found;
  };
  EXPECT_EQ(count(sheetsOf(many), "a|"), kMaximumPageSheets);
  EXPECT_EQ(count(sheetsOf(importing), "nil|"), kMaximumPageSheets - 1);

  std::vector<WebResource> chain;
  for (std::size_t i = 0; i < kMaximumImportDepth + 5; ++i) {
    const std::string text = "@import '" + std::to_string(i + 1) + "';";
    const NSURL url = NSURL::URLWithString(NSString::stringWithUTF8String("http://a/" + std::to_string(i)));
    chain.push_back(WebResource::resourceWithData(NSData::dataWithBytes(text.data(), text.size()), url, {}));
  }
  const HTMLDocument document = HTMLDocument::documentWithText(u"<link rel=stylesheet href=0>");
  const CSSMedium medium;
  const WebView webView{Deadline::after(1)};
  WebResourceLoader loader({}, webView, {});
  loader.provide(chain);
  const NSURL base = NSURL::URLWithString(u"http://a/"_ns);
  EXPECT_EQ(count(textsOf(loadPageSheets(document, base, medium, loader)), "@import"), kMaximumImportDepth + 1);
}

TEST(PageSheets, AreReadInTheirEncodings) {
  struct Case {
    std::string bytes, name, page, expected;
  };
  const Case cases[] = {
      {"p{}/*\xC3\xA9*/", "", "iso-8859-1", "p{}/*\u00e9*/"},
      {"p{}/*\xE9*/", "", "iso-8859-1", "p{}/*\u00e9*/"},
      {"p{}/*\xE9*/", "no-such-name", "utf-8", "p{}/*\ufffd*/"},
      {"p{}/*\xE9*/", "", "utf-16", "p{}/*\ufffd*/"},
      {"p{}/*\xE9*/", "utf-8", "", "p{}/*\ufffd*/"},
      {"p{}/*\x93*/", "ISO-8859-1", "", "p{}/*\u201c*/"},
      {"p{}/*\xE9*/", "windows-1252", "utf-8", "p{}/*\u00e9*/"},
      {"@charset \"iso-8859-5\";/*\xE9*/", "", "iso-8859-1", "@charset \"iso-8859-5\";/*\u0449*/"},
      {"@charset \"utf-16\";/*\xC3\xA9*/", "", "", "@charset \"utf-16\";/*\u00e9*/"},
      {"\xEF\xBB\xBFp{}/*\xE9*/", "windows-1252", "", "p{}/*\ufffd*/"},
      {std::string("\xFF\xFEp\0", 4), "windows-1252", "", "p"},
      {std::string("\xFE\xFF\0p", 4), "windows-1252", "", "p"},
      {"p{}/*\x93*/", "us-ascii", "", "p{}/*\u201c*/"},
      {"p{}/*\x93*/", "", "us-ascii", "p{}/*\u201c*/"},
      {"p{}/*\xE9*/", "", "utf-16be", "p{}/*\ufffd*/"},
      {"p{}/*\xE9*/", "", "utf-16le", "p{}/*\ufffd*/"},
      {"@charset \"utf-16be\";/*\xC3\xA9*/", "", "", "@charset \"utf-16be\";/*\u00e9*/"},
      {"@charset \"utf-16le\";/*\xC3\xA9*/", "", "", "@charset \"utf-16le\";/*\u00e9*/"},
      {"@charset 'iso-8859-5';/*\xE9*/", "", "iso-8859-1", "@charset 'iso-8859-5';/*\u00e9*/"},
      {"@charset \"iso-8859-5\";/*\xE9*/", "iso-8859-1", "", "@charset \"iso-8859-5\";/*\u00e9*/"},
  };
  for (const auto &[bytes, name, page, expected] : cases)
    EXPECT_EQ(textOfSheet(NSData::dataWithBytes(bytes.data(), bytes.size()),
                          name.empty() ? NSString() : NSString::stringWithUTF8String(name),
                          page.empty() ? NSString() : NSString::stringWithUTF8String(page))
                  .UTF8String(),
              expected)
        << bytes << " of " << page;
  EXPECT_EQ(sheetsOf(u"<meta http-equiv=Content-Type content='text/html; charset=ISO-8859-1'>"
                     u"<link rel=stylesheet href=data:text/css,%E9>"),
            "\u00e9|");
  EXPECT_EQ(sheetsOf(u"<meta http-equiv=refresh content='0;charset=utf-8'><meta http-equiv=content-type "
                     u"content=text/html><meta content='a;charset=utf-8'><meta http-equiv=content-type>"
                     u"<meta charset=' iso-8859-5 '><meta charset=utf-8><link rel=stylesheet "
                     u"href=data:text/css,%E9>"),
            "\u0449|");
}

}  // namespace
}  // namespace nimbo::detail
