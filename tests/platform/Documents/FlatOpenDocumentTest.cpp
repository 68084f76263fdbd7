// SPDX-License-Identifier: Apache-2.0
#include "platform/Documents/FlatOpenDocument.hpp"

#include <gtest/gtest.h>

#include <string>

namespace nimbo {
namespace {

std::string repeated(std::string_view text, std::size_t count) {
  std::string result;
  result.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; ++i) result += text;
  return result;
}

/// A document; the reader goes by the usual prefixes, so that no name space need be declared.
std::string flat(const std::string &body, const std::string &styles = "", const char *kind = "text") {
  const std::string element = std::string("office:") + kind;
  return "<office:document><office:automatic-styles>" + styles + "</office:automatic-styles><office:body><" +
         element + ">" + body + "</" + element + "></office:body></office:document>";
}

NSAttributedString read(const std::string &xml, NSError *error = nullptr) {
  return attributedStringWithFlatOpenDocument(NSData::dataWithBytes(xml.data(), xml.size()), nullptr, error);
}

std::string plain(const std::string &xml) {
  const NSAttributedString text = read(xml);
  return text ? text.string().UTF8String() : "nil";
}

TEST(FlatOpenDocument, ShowsTheTextThatAPersonSees) {
  const struct {
    const char *body, *text;
  } cases[] = {
      {"", ""},
      {"<text:p/>", ""},
      {"<text:p/><text:p/>", "\n"},
      {"<text:p>\n  white \t\n space <text:span> all </text:span>\n over </text:p>", "white space all over"},
      {"<text:p>a<text:s text:c=\"3\"/>b<text:s/></text:p>", "a   b "},
      {"<text:p>&lt;&amp;&#x1F600;<![CDATA[<c>]]></text:p>", "<&\U0001F600<c>"},
      {"<text:p>page <text:page-number>7</text:page-number></text:p>", "page 7"},
      {"<text:section><text:p>in</text:p></text:section><text:section "
       "text:display=\"none\"><text:p>out</text:p>"
       "</text:section>",
       "in"},
      {"<text:tracked-changes><text:changed-region><text:deletion><text:p>deleted</text:p></text:deletion>"
       "</text:changed-region></text:tracked-changes><text:p>kept<text:change text:change-id=\"c\"/></text:p>",
       "kept"},
      {"<text:p>a<office:annotation><text:p>comment</text:p></office:annotation>b</text:p>", "ab"},
      {"<text:p><text:ruby><text:ruby-base>base</text:ruby-base><text:ruby-text>ruby</text:ruby-text></"
       "text:ruby>"
       "</text:p>",
       "base"},
      {"<text:p>before<draw:frame><draw:text-box><text:p>boxed</text:p></draw:text-box></draw:frame> "
       "after</text:p>"
       "<text:p>next</text:p>",
       "before after\nboxed\nnext"},
      {"<text:table-of-content><text:table-of-content-source><text:index-title-template>x"
       "</text:index-title-template></text:table-of-content-source><text:index-body><text:p>Contents</text:p>"
       "</text:index-body></text:table-of-content>",
       "Contents"},
      {"<text:p>x<text:note><text:note-citation>a</text:note-citation><text:note-body><text:p>1st</text:p>"
       "<text:p>2nd</text:p></text:note-body></text:note></text:p>",
       "xa\na 1st\n2nd"},
  };
  for (const auto &[body, text] : cases) EXPECT_EQ(plain(flat(body)), text) << body;
  EXPECT_EQ(plain(flat("<draw:page><draw:frame><draw:text-box><text:p>one</text:p></draw:text-box></draw:frame>"
                       "<presentation:notes><text:p>said</text:p></presentation:notes></draw:page>"
                       "<draw:page><draw:custom-shape><text:p>two</text:p></draw:custom-shape></draw:page>",
                       "", "presentation")),
            "one\n\ftwo");
  EXPECT_EQ(plain(flat("<table:table><table:table-row><table:table-cell><text:p>1</text:p></table:table-cell>"
                       "<table:table-cell table:number-columns-repeated=\"16383\"/></table:table-row>"
                       "<table:table-row table:number-rows-repeated=\"1048575\"><table:table-cell "
                       "table:number-columns-repeated=\"16384\"/></table:table-row></table:table>",
                       "", "spreadsheet")),
            "1\n");
}

TEST(FlatOpenDocument, FollowsStylesToTheirAncestors) {
  const std::string styles =
      "<style:default-style style:family=\"paragraph\"><style:text-properties fo:font-size=\"10pt\" "
      "fo:font-family=\"'Body', serif\"/></style:default-style>"
      "<style:style style:family=\"paragraph\" style:name=\"base\"><style:paragraph-properties "
      "fo:margin-left=\"1in\" "
      "fo:text-indent=\"-0.5in\" fo:line-height=\"150%\" "
      "fo:margin-top=\"6pt\"><style:tab-stops><style:tab-stop "
      "style:position=\"2in\" style:type=\"right\"/><style:tab-stop style:position=\"1in\"/></style:tab-stops>"
      "</style:paragraph-properties><style:text-properties fo:font-weight=\"bold\" "
      "fo:color=\"#102030\"/></style:style>"
      "<style:style style:family=\"paragraph\" style:name=\"derived\" style:parent-style-name=\"base\">"
      "<style:paragraph-properties fo:margin-top=\"1cm\" fo:text-align=\"justify\"/><style:text-properties "
      "fo:font-size=\"200%\"/></style:style>"
      "<style:style style:family=\"text\" style:name=\"half\"><style:text-properties fo:font-size=\"50%\" "
      "fo:font-weight=\"normal\" style:use-window-font-color=\"true\" style:text-underline-style=\"solid\" "
      "style:text-underline-type=\"double\" fo:background-color=\"#ffff00\"/></style:style>"
      "<style:style style:family=\"text\" style:name=\"hidden\"><style:text-properties text:display=\"none\"/>"
      "</style:style>"
      "<style:style style:family=\"paragraph\" style:name=\"a\" style:parent-style-name=\"b\"/>"
      "<style:style style:family=\"paragraph\" style:name=\"b\" style:parent-style-name=\"a\"/>";
  const NSAttributedString text =
      read(flat("<text:p text:style-name=\"derived\">x<text:span text:style-name=\"half\">y<text:span "
                "text:style-name=\"hidden\">"
                "z</text:span></text:span></text:p><text:p text:style-name=\"a\">w</text:p>",
                styles));
  ASSERT_EQ(text.string().UTF8String(), "xy\nw");
  const TextAttributes x = *text.attributesAtIndex(0), y = *text.attributesAtIndex(1);
  EXPECT_EQ(x.font, (NSFont{u"Body"_ns, 20, kBoldFontWeight}));
  EXPECT_EQ(x.foregroundColor, (NSColor{0x10, 0x20, 0x30}));
  EXPECT_EQ(y.font, (NSFont{u"Body"_ns, 10}));
  EXPECT_EQ(y.foregroundColor, std::nullopt);
  EXPECT_EQ(y.backgroundColor, (NSColor{255, 255, 0}));
  EXPECT_EQ(y.underlineStyle, NSUnderlineStyle::doubled);
  const NSParagraphStyle &paragraph = *x.paragraphStyle;
  EXPECT_EQ(paragraph.headIndent, 72);
  EXPECT_EQ(paragraph.firstLineHeadIndent, 36);
  EXPECT_EQ(paragraph.lineHeightMultiple, 1.5);
  EXPECT_NEAR(paragraph.paragraphSpacingBefore, 28.35, 0.01);
  EXPECT_EQ(paragraph.alignment, NSTextAlignment::justified);
  EXPECT_EQ(paragraph.tabStops,
            (std::vector<NSTextTab>{{NSTextTabType::left, 144}, {NSTextTabType::right, 216}}));
}

TEST(FlatOpenDocument, CountsLists) {
  const std::string styles =
      "<text:list-style style:name=\"L\"><text:list-level-style-number text:level=\"1\" style:num-format=\"1\" "
      "style:num-suffix=\".\"/><text:list-level-style-number text:level=\"2\" style:num-format=\"a\" "
      "style:num-suffix=\")\" text:display-levels=\"2\"/></text:list-style>";
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
  };
  for (const auto &[body, text] : cases) EXPECT_EQ(plain(flat(body, styles)), text) << body;
}

TEST(FlatOpenDocument, RefusesWhatItIsNot) {
  const struct {
    std::string xml;
    ErrorCode code;
  } cases[] = {{"", ErrorCode::damaged},
               {"text", ErrorCode::damaged},
               {"<office:document>", ErrorCode::damaged},
               {"<office:document/>", ErrorCode::damaged},
               {"<html><body/></html>", ErrorCode::damaged},
               {repeated("<", 10'000'001), ErrorCode::tooLarge}};
  for (const auto &[xml, code] : cases) {
    NSError error;
    EXPECT_FALSE(read(xml, &error));
    EXPECT_EQ(error.errorCode(), code) << xml.substr(0, 30);
  }
}

TEST(FlatOpenDocument, StaysWithinItsLimits) {
  constexpr std::size_t kDeep = 100'000;
  const std::string cell = "<table:table-cell table:number-columns-repeated=\"16384\"><text:p>" +
                           std::string(20'000, 'x') + "</text:p></table:table-cell>";
  const struct {
    const char *what;
    std::string body;
  } cases[] = {
      {"spans",
       "<text:p>" + repeated("<text:span>", kDeep) + "x" + repeated("</text:span>", kDeep) + "</text:p>"},
      {"sections",
       repeated("<text:section>", kDeep) + "<text:p>x</text:p>" + repeated("</text:section>", kDeep)},
      {"lists", repeated("<text:list><text:list-item>", kDeep) + "<text:p>x</text:p>" +
                    repeated("</text:list-item></text:list>", kDeep)},
      {"tables", repeated("<table:table><table:table-row><table:table-cell>", kDeep) +
                     repeated("</table:table-cell></table:table-row></table:table>", kDeep)},
      {"cells",
       "<table:table>" +
           repeated("<table:table-row table:number-rows-repeated=\"4000000000\">" + cell + "</table:table-row>",
                    100) +
           "</table:table>"},
      {"frames", repeated("<text:p>", kDeep) + repeated("</text:p>", kDeep)},
  };
  for (const auto &[what, body] : cases) {
    NSError error;
    const NSAttributedString text = read(flat(body), &error);
    EXPECT_TRUE(text) << what;
    EXPECT_LT(text.length(), 100'000'000u) << what;
    EXPECT_EQ(error.errorCode(), ErrorCode::incomplete) << what;
  }
}

}  // namespace
}  // namespace nimbo
