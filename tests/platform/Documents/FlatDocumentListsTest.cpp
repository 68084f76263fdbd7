// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>

#include "tests/platform/Documents/FlatDocuments.hpp"
#include "tests/support/Repeated.hpp"

namespace nimbo {
namespace {

TEST(FlatDocumentLists, IndentsListsByTheirLevels) {
  const std::string styles =
      "<text:list-style style:name='L'><text:list-level-style-bullet text:level='1' text:bullet-char='-'>"
      "<style:list-level-properties text:space-before='3pt' text:min-label-width='10pt'/>"
      "</text:list-level-style-bullet><text:list-level-style-bullet text:level='2' text:bullet-char='-'>"
      "<style:list-level-properties text:space-before='3pt'><style:list-level-label-alignment "
      "fo:margin-left='40pt' fo:text-indent='-15pt'/></style:list-level-properties>"
      "</text:list-level-style-bullet></text:list-style>"
      "<style:style style:family='paragraph' style:name='own'><style:paragraph-properties fo:margin-left='7pt' "
      "fo:text-indent='2pt'/></style:style><style:style style:family='paragraph' style:name='child' "
      "style:parent-style-name='own'/>";
  const auto item = [](const std::string &style, const std::string &behind = "") {
    return "<text:list-item><text:p text:style-name='" + style + "'>x</text:p>" + behind + "</text:list-item>";
  };
  const auto list = [](const std::string &items) {
    return "<text:list text:style-name='L'>" + items + "</text:list>";
  };
  const struct {
    std::string body;
    double head, first;
  } cases[] = {
      {list(item("none")), 13, 3},
      {list(item("child")), 20, 10},
      {list(item("own")), 7, 9},
      {list("<text:list-item>" + list(item("none")) + "</text:list-item>"), 40, 25},
      {list("<text:list-item>" + list(item("own")) + "</text:list-item>"), 7, 9},
  };
  for (const auto &[body, head, first] : cases) {
    const NSAttributedString text = read(flat(body, styles));
    ASSERT_GT(text.length(), 0u) << body;
    const NSParagraphStyle &style = *text.attributesAtIndex(0)->paragraphStyle;
    EXPECT_EQ(style.headIndent, head) << body;
    EXPECT_EQ(style.firstLineHeadIndent, first) << body;
  }
}

TEST(FlatDocumentLists, KnowsBullets) {
  const struct {
    const char *bullet;
    NSString format;
  } cases[] = {{"\u2022", u"{disc}"_ns},   {"\u25cf", u"{disc}"_ns},
               {"\u00b7", u"{disc}"_ns},   {"\uf0b7", u"{disc}"_ns},
               {"\u25e6", u"{circle}"_ns}, {"\u25cb", u"{circle}"_ns},
               {"o", u"{circle}"_ns},      {"\u25aa", u"{square}"_ns},
               {"\u25a0", u"{square}"_ns}, {"\uf0a7", u"{square}"_ns},
               {"-", u"{hyphen}"_ns},      {"\u2013", u"{hyphen}"_ns},
               {"\uf02d", u"{hyphen}"_ns}, {"\uf000", u"{disc}"_ns},
               {"\uf04a", u"{disc}"_ns},   {"\uf0ff", u"{disc}"_ns},
               {"\uf100", u"\uf100"_ns},   {"", u"{disc}"_ns},
               {"\u2192", u"\u2192"_ns},   {"{x}", u"x"_ns}};
  for (const auto &[bullet, format] : cases) {
    const NSAttributedString text = read(
        flat("<text:list text:style-name='L'><text:list-item><text:p>x</text:p></text:list-item></text:list>",
             std::string("<text:list-style style:name='L'><text:list-level-style-bullet text:level='1' "
                         "text:bullet-char='") +
                 bullet + "'/></text:list-style>"));
    ASSERT_GT(text.length(), 0u) << bullet;
    const auto &lists = text.attributesAtIndex(0)->paragraphStyle->textLists;
    ASSERT_EQ(lists.size(), 1u) << bullet;
    EXPECT_EQ(lists[0].markerFormat, format) << bullet;
  }
}

TEST(FlatDocumentLists, CountsLists) {
  const std::string styles =
      "<text:list-style style:name=\"L\"><text:list-level-style-number text:level=\"1\" style:num-format=\"1\" "
      "style:num-suffix=\".\"/><text:list-level-style-number text:level=\"2\" style:num-format=\"a\" "
      "style:num-suffix=\")\" text:display-levels=\"2\"/></text:list-style>"
      "<text:list-style style:name='R'><text:list-level-style-number text:level='1' style:num-format='I' "
      "style:num-prefix='(' style:num-suffix=')' text:start-value='4'/><text:list-level-style-number "
      "text:level='2' style:num-format='A'/><text:list-level-style-number text:level='3' style:num-format='i' "
      "text:display-levels='9'/></text:list-style>"
      "<text:list-style style:name='N'><text:list-level-style-number text:level='1' style:num-format=''/>"
      "<text:list-level-style-number text:level='2' style:num-format='1' text:display-levels='2'/>"
      "</text:list-style>";
  const std::string item = "<text:list-item><text:p>x</text:p></text:list-item>";
  const struct {
    std::string body, text;
  } cases[] = {
      {"<text:list text:style-name=\"L\">" + item + item + "</text:list>", "\t1.\tx\n\t2.\tx"},
      {"<text:list text:style-name=\"L\"><text:list-item "
       "text:start-value=\"7\"><text:p>x</text:p><text:p>y</text:p>"
       "</text:list-item>" +
           item + "</text:list>",
       "\t7.\tx\ny\n\t8.\tx"},
      {"<text:list text:style-name=\"L\"><text:list-header><text:p>head</text:p></text:list-header>" + item +
           "</text:list>",
       "head\n\t1.\tx"},
      {"<text:list text:style-name=\"L\"><text:list-item><text:p>x</text:p><text:list>" + item + item +
           "</text:list></text:list-item><text:list-item><text:p>x</text:p><text:list>" + item +
           "</text:list></text:list-item></text:list>",
       "\t1.\tx\n\t1.a)\tx\n\t1.b)\tx\n\t2.\tx\n\t2.a)\tx"},
      {"<text:list text:style-name=\"L\">" + item +
           "</text:list><text:p>-</text:p><text:list text:style-name=\"L\" "
           "text:continue-numbering=\"true\">" +
           item + "</text:list><text:list text:style-name=\"L\">" + item + "</text:list>",
       "\t1.\tx\n-\n\t2.\tx\n\t1.\tx"},
      {"<text:list xml:id=\"i\" text:style-name=\"L\">" + item +
           "</text:list><text:list text:style-name=\"L\">" + item +
           "</text:list><text:list text:continue-list=\"i\" text:style-name=\"L\">" + item + "</text:list>",
       "\t1.\tx\n\t1.\tx\n\t2.\tx"},
      {"<text:list text:style-name='L'><text:list-item><text:p>x</text:p><text:list>" + item + item +
           "</text:list><text:list>" + item + "</text:list><text:list text:continue-numbering='true'>" + item +
           "</text:list></text:list-item></text:list>",
       "\t1.\tx\n\t1.a)\tx\n\t1.b)\tx\n\t1.a)\tx\n\t1.b)\tx"},
      {"<text:list text:style-name='R'><text:list-item><text:p>x</text:p><text:list><text:list-item><text:p>x"
       "</text:p><text:list>" +
           item + item + "</text:list></text:list-item>" + item + "</text:list></text:list-item>" + item +
           "</text:list>",
       "\t(IV)\tx\n\tA\tx\n\tIV.A.i\tx\n\tIV.A.ii\tx\n\tB\tx\n\t(V)\tx"},
      {"<text:list text:style-name='N'><text:list-item><text:p>x</text:p><text:list>" + item +
           "</text:list></text:list-item></text:list>",
       "x\n\t1\tx"},
  };
  for (const auto &[body, text] : cases) EXPECT_EQ(plain(flat(body, styles)), text) << body;
}

TEST(FlatDocumentLists, LooksForALevelAmongSoManyNodes) {
  const auto marked = [](std::size_t others) {
    return plain(
        flat("<text:list text:style-name='L'><text:list-item><text:p>x</text:p></text:list-item></text:list>",
             "<text:list-style style:name='L'>" + repeated("<x/>", others) +
                 "<text:list-level-style-number text:level='1' style:num-format='1'/></text:list-style>"));
  };
  EXPECT_EQ(marked(63), "\t1\tx");
  EXPECT_EQ(marked(64), "\t\u2022\tx") << "a bullet stands for a level that is not found";
}

}  // namespace
}  // namespace nimbo
