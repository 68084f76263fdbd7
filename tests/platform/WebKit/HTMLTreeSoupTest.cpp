// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Foundation/NSString.hpp"
#include "tests/platform/WebKit/TreeText.hpp"

namespace nimbo {
namespace {

// Gumbo follows the rules of 2014. What these changed in since stands in no soup here:
// - `select`, `option`, `optgroup`, and `hr` and `input` in them: a select holds any element now, and has no
// mode.
// - `rb`, `rp`, `rt`, `rtc`: the ends of ruby texts are implied in other places.
// - `menu`, `menuitem`, `dialog`, `details`, `summary`, `hgroup`, `search`, `isindex`, `keygen`, `command`:
// elements whose
//   kind changed, or that were taken out.
// - `noscript` in the head: Gumbo reads it as with scripts on.
// - `template`, `form` in tables: Gumbo does not always keep what belongs to a template apart.
// - `</p>` in SVG and MathML, which leaves them now, and `</br>`, which rules out a frameset, too.
// Gumbo's own faults: it takes unknown elements for one another, and blanks behind a second `html` for those of
// the head.
constexpr const char *kNames[] = {
    "a",        "b",       "i",        "nobr",  "font", "em",    "code",    "p",       "div",
    "span",     "li",      "ul",       "ol",    "dl",   "dd",    "dt",      "h1",      "h2",
    "table",    "tbody",   "thead",    "tfoot", "tr",   "td",    "th",      "caption", "colgroup",
    "col",      "button",  "textarea", "pre",   "br",   "img",   "address", "center",  "object",
    "frameset", "frame",   "noframes", "base",  "meta", "style", "script",  "title",   "iframe",
    "xmp",      "section", "label",    "u",     "head", "body"};
constexpr const char *kForeignNames[] = {"svg", "math", "foreignObject", "desc", "g", "mglyph"};
constexpr const char *kAttributes[] = {
    "",          "",           " id=a",           " class=\"b c\"",        " id=b",       " A=1 a=2",
    " x='<'",    " b=\"x>y\"", " a=&amp&lt;&lt=", " c=&#x80;&#65&nosuch;", " d=\t\"q\"e", "/",
    " color=red"};
constexpr const char *kTexts[] = {"x",     " ",    "\n",    "some text", "&amp;",    "&nbsp;",      "&notin;",
                                  "&lt",   "&",    "< ",    "1<2",       "<!--c-->", "<!-- -- -->", "<!---->",
                                  "<!-->", "<?x>", "</ x>", "<!x>",      "\t"};

class Soup {
 public:
  explicit Soup(unsigned seed) : random_(seed) {}

  std::string make() {
    std::vector<const char *> names;
    for (int i = 0; i < 8; ++i) names.push_back(one(kNames));
    const bool isForeign = chance(4);
    if (isForeign) names.insert(names.end(), {one(kForeignNames), one(kForeignNames), "svg"});
    std::string soup = chance(2) ? "<!DOCTYPE html>" : "";
    for (unsigned i = 2 + random_() % 20; i > 0; --i)
      if (chance(4))
        soup += one(kTexts);
      else if (const char *const name = names[random_() % names.size()];
               chance(3) && !isNewerEnd(name, isForeign))
        soup.append("</").append(name).append(">");
      else
        soup.append("<").append(name).append(one(kAttributes)).append(">");
    return soup;
  }

 private:
  static bool isNewerEnd(std::string_view name, bool isForeign) {
    return name == "br" || (isForeign && name == "p");
  }
  bool chance(unsigned of) { return random_() % of == 0; }
  template <std::size_t N>
  const char *one(const char *const (&all)[N]) {
    return all[random_() % N];
  }

  std::mt19937 random_;
};

TEST(HTMLTreeSoupTest, isTheTreeOfAnotherParser) {
  Soup soup(1);
  for (int i = 0; i < 3000; ++i) {
    const std::string page = soup.make();
    const NSString string = NSString::stringWithUTF8String(page);
    ASSERT_EQ(treeText(HTMLDocument::documentWithText(string.view())), gumboTreeText(page)) << page;
  }
}

}  // namespace
}  // namespace nimbo
