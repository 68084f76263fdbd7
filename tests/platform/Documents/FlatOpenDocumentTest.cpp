// SPDX-License-Identifier: Apache-2.0
#include "platform/Documents/FlatOpenDocument.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

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
      {"<text:p>a<draw:custom-shape><text:p>shape</text:p></draw:custom-shape>b</text:p>", "ab\nshape"},
      {"<draw:frame><draw:image><office:binary-data>UE5H</office:binary-data></draw:image></draw:frame>"
       "<text:p>x</text:p>",
       "\uFFFC\nx"},
      {"<text:p>x</text:p><draw:frame><draw:image><office:binary-data/></draw:image><draw:image>"
       "<office:binary-data>UE5H</office:binary-data></draw:image></draw:frame>",
       "x\n\uFFFC"},
      {"<text:p>x</text:p><draw:frame><draw:image/></draw:frame><text:p>y</text:p>", "x\ny"},
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

TEST(FlatOpenDocument, DrawsLinesAtText) {
  const struct {
    const char *properties;
    NSUnderlineStyle underline;
    NSStrikethroughStyle strikethrough;
  } cases[] = {
      {"style:text-underline-style='solid' style:text-underline-mode='skip-white-space'",
       NSUnderlineStyle::byWord, NSStrikethroughStyle::none},
      {"style:text-underline-style='solid' style:text-underline-mode='continuous'", NSUnderlineStyle::single,
       NSStrikethroughStyle::none},
      {"style:text-underline-style='solid' style:text-underline-width='bold'", NSUnderlineStyle::thick,
       NSStrikethroughStyle::none},
      {"style:text-underline-style='none' style:text-underline-type='double'", NSUnderlineStyle::none,
       NSStrikethroughStyle::none},
      {"style:text-underline-style='dot-dash' style:text-underline-type='double'", NSUnderlineStyle::dashDot,
       NSStrikethroughStyle::none},
      {"style:text-line-through-style='solid'", NSUnderlineStyle::none, NSStrikethroughStyle::single},
      {"style:text-line-through-style='solid' style:text-line-through-type='double'", NSUnderlineStyle::none,
       NSStrikethroughStyle::doubled},
      {"style:text-line-through-style='solid' style:text-line-through-type='none'", NSUnderlineStyle::none,
       NSStrikethroughStyle::none},
  };
  for (const auto &[properties, underline, strikethrough] : cases) {
    const NSAttributedString text =
        read(flat("<text:p text:style-name='s'>x</text:p>",
                  std::string("<style:style style:family='paragraph' style:name='s'><style:text-properties ") +
                      properties + "/></style:style>"));
    ASSERT_EQ(text.length(), 1u) << properties;
    EXPECT_EQ(text.attributesAtIndex(0)->underlineStyle, underline) << properties;
    EXPECT_EQ(text.attributesAtIndex(0)->strikethroughStyle, strikethrough) << properties;
  }
}

TEST(FlatOpenDocument, SetsTheHeightOfLinesInOneWay) {
  const struct {
    const char *properties;
    double multiple, least, most;
  } cases[] = {
      {"", 1.5, 0, 0},
      {"fo:line-height='20pt'", 0, 20, 20},
      {"fo:line-height='100%'", 0, 0, 0},
      {"style:line-height-at-least='14pt'", 0, 14, 0},
  };
  for (const auto &[properties, multiple, least, most] : cases) {
    const NSAttributedString text = read(flat(
        "<text:p text:style-name='s'>x</text:p>",
        std::string("<style:style style:family='paragraph' style:name='b'><style:paragraph-properties "
                    "fo:line-height='150%'/></style:style><style:style style:family='paragraph' style:name='s' "
                    "style:parent-style-name='b'><style:paragraph-properties ") +
            properties + "/></style:style>"));
    ASSERT_EQ(text.length(), 1u) << properties;
    const NSParagraphStyle &paragraph = *text.attributesAtIndex(0)->paragraphStyle;
    EXPECT_EQ(paragraph.lineHeightMultiple, multiple) << properties;
    EXPECT_EQ(paragraph.minimumLineHeight, least) << properties;
    EXPECT_EQ(paragraph.maximumLineHeight, most) << properties;
  }
}

TEST(FlatOpenDocument, MeasuresColumnsInGroups) {
  const NSAttributedString text = read(flat(
      "<table:table><table:table-header-columns><table:table-column "
      "table:style-name='narrow'/></table:table-header-columns><table:table-columns><table:table-column-group>"
      "<table:table-column table:style-name='wide' table:number-columns-repeated='2'/>"
      "</table:table-column-group></table:table-columns><table:table-row><table:table-cell><text:p>a</text:p>"
      "</table:table-cell><table:table-cell table:number-columns-spanned='2'><text:p>b</text:p>"
      "</table:table-cell><table:covered-table-cell/></table:table-row></table:table>",
      "<style:style style:family='table-column' style:name='narrow'><style:table-column-properties "
      "style:column-width='1in'/></style:style><style:style style:family='table-column' style:name='wide'>"
      "<style:table-column-properties style:column-width='2in'/></style:style>"));
  ASSERT_EQ(text.string().UTF8String(), "a\nb\n");
  const auto widthAt = [&](std::uint32_t index) {
    return text.attributesAtIndex(index)->paragraphStyle->textBlocks.at(0)->width.value;
  };
  EXPECT_EQ(widthAt(0), 72);
  EXPECT_EQ(widthAt(2), 288);
}

TEST(FlatOpenDocument, KnowsFactsOfTheDocument) {
  const auto factsOf = [](const std::string &meta) {
    const std::string xml = "<office:document><office:meta>" + meta +
                            "</office:meta><office:body><office:text/></office:body></office:document>";
    DocumentAttributes facts;
    attributedStringWithFlatOpenDocument(NSData::dataWithBytes(xml.data(), xml.size()), &facts);
    return facts;
  };
  const DocumentAttributes facts = factsOf(
      "<dc:creator>Last</dc:creator><meta:initial-creator>First</meta:initial-creator>"
      "<meta:user-defined meta:name='Owner'>Nobody</meta:user-defined>"
      "<meta:user-defined meta:name='Company'>Works &amp; Co</meta:user-defined>"
      "<meta:keyword>a</meta:keyword><meta:keyword/><meta:keyword>b</meta:keyword>"
      "<dc:date>2002-03-04T05:06:07.891</dc:date>");
  EXPECT_EQ(facts.author, u"First"_ns);
  EXPECT_EQ(facts.company, u"Works & Co"_ns);
  EXPECT_EQ(facts.keywords, (std::vector{u"a"_ns, u"b"_ns}));
  EXPECT_EQ(facts.modificationTime, NSDate::dateWithUTC(2002, 3, 4, 5, 6, 7));
  EXPECT_EQ(facts.creationTime, std::nullopt);
  const struct {
    const char *text;
    std::optional<NSDate> date;
  } cases[] = {
      {"2001-12-31", NSDate::dateWithUTC(2001, 12, 31, 0, 0, 0)},
      {"2001-02-03T23:59:60", NSDate::dateWithUTC(2001, 2, 3, 23, 59, 60)},
      {"2001-02-03T04:05", std::nullopt},
      {"2001-02-03 04:05:06", std::nullopt},
      {"2001-02-03T24:05:06", std::nullopt},
      {"2001-02-03T04:60:06", std::nullopt},
      {"2001-02-03T04:05:61", std::nullopt},
      {"2001-02-03T04:05:-1", std::nullopt},
      {"2001-02-03T-4:05:06", std::nullopt},
      {"2001-02-03T0x:05:06", std::nullopt},
      {"2001-2x-03", std::nullopt},
      {"2001-13-03", std::nullopt},
      {"2001-12-00", std::nullopt},
      {"2001-12-32", std::nullopt},
      {"yesterday", std::nullopt},
  };
  for (const auto &[text, date] : cases)
    EXPECT_EQ(factsOf("<meta:creation-date>" + std::string(text) + "</meta:creation-date>").creationTime, date)
        << text;
}

TEST(FlatOpenDocument, CountsLists) {
  const std::string styles =
      "<text:list-style style:name=\"L\"><text:list-level-style-number text:level=\"1\" style:num-format=\"1\" "
      "style:num-suffix=\".\"/><text:list-level-style-number text:level=\"2\" style:num-format=\"a\" "
      "style:num-suffix=\")\" text:display-levels=\"2\"/></text:list-style>"
      "<text:list-style style:name='R'><text:list-level-style-number text:level='1' style:num-format='I' "
      "style:num-prefix='(' style:num-suffix=')' text:start-value='4'/><text:list-level-style-number "
      "text:level='2' style:num-format='A'/><text:list-level-style-number text:level='3' style:num-format='i' "
      "text:display-levels='3'/></text:list-style>"
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
