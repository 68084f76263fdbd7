// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Loading/PageSheets.hpp"

#include <gtest/gtest.h>

#include <string>

namespace nimbo::detail {
namespace {

std::string sheetsOf(std::u16string_view page) {
  const HTMLDocument document = HTMLDocument::documentWithText(page);
  const CSSMedium medium;
  const WebView webView{Deadline::after(1)};
  WebResourceLoader loader({}, webView, {});
  std::string texts;
  for (const AuthorSheet &sheet : loadPageSheets(document, NSURL(), medium, loader))
    texts += (sheet.text ? sheet.text.UTF8String() : "nil") + "|";
  return texts;
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
      {u"<noscript><style>a</style></noscript><template><style>b</style></template>", "a|"},
  };
  for (const auto &[page, expected] : cases)
    EXPECT_EQ(sheetsOf(page), expected) << NSString::stringWithCharacters(page).UTF8String();
}

}  // namespace
}  // namespace nimbo::detail
