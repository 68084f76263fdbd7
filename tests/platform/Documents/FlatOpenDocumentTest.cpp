// SPDX-License-Identifier: Apache-2.0
#include "platform/Documents/FlatOpenDocument.hpp"

#include <gtest/gtest.h>

#include <array>
#include <iterator>
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
      {"<text:p>a<draw:frame><table:table><table:table-row><table:table-cell><text:p>1</text:p></"
       "table:table-cell>"
       "</table:table-row></table:table></draw:frame>b</text:p><text:p>c</text:p>",
       "ab\n1\nc"},
      {"<text:p>a<draw:a xlink:href='u'>b<draw:custom-shape><text:p>c</text:p></draw:custom-shape></draw:a>d"
       "</text:p>",
       "abd\nc"},
  };
  for (const auto &[body, text] : cases) EXPECT_EQ(plain(flat(body)), text) << body;
  EXPECT_EQ(plain(flat("<text:p><text:s text:c='10001'/></text:p>")), std::string(10'000, ' '));
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
      {"style:text-underline-style='dotted'", NSUnderlineStyle::dotted, NSStrikethroughStyle::none},
      {"style:text-underline-style='dash'", NSUnderlineStyle::dashed, NSStrikethroughStyle::none},
      {"style:text-underline-style='long-dash'", NSUnderlineStyle::dashed, NSStrikethroughStyle::none},
      {"style:text-underline-style='dot-dot-dash'", NSUnderlineStyle::dashDotDot, NSStrikethroughStyle::none},
      {"style:text-underline-style='wave'", NSUnderlineStyle::wavy, NSStrikethroughStyle::none},
      {"style:text-underline-style='solid' style:text-underline-width='thick'", NSUnderlineStyle::thick,
       NSStrikethroughStyle::none},
      {"style:text-underline-style='solid' style:text-underline-width='auto'", NSUnderlineStyle::single,
       NSStrikethroughStyle::none},
      {"style:text-underline-style='solid' style:text-underline-type='single'", NSUnderlineStyle::single,
       NSStrikethroughStyle::none},
      {"style:text-line-through-style='none'", NSUnderlineStyle::none, NSStrikethroughStyle::none},
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

/// A letter in a style of these properties, which may hold elements.
NSAttributedString styled(const std::string &kind, const std::string &properties,
                          const std::string &inside = "") {
  const std::string element = "style:" + kind + "-properties";
  return read(flat("<text:p text:style-name='s'>x</text:p>",
                   "<style:style style:family='paragraph' style:name='s'><" + element + " " + properties + ">" +
                       inside + "</" + element + "></style:style>"));
}

TEST(FlatOpenDocument, SetsCharacters) {
  const auto look = [](const std::string &properties) {
    return *styled("text", properties).attributesAtIndex(0);
  };
  const struct {
    const char *value;
    int weight;
  } weights[] = {{"bold", kBoldFontWeight},
                 {"100", 100},
                 {"99", kRegularFontWeight},
                 {"900", 900},
                 {"1000", 900},
                 {"normal", kRegularFontWeight},
                 {"600x", kRegularFontWeight}};
  for (const auto &[value, weight] : weights)
    EXPECT_EQ(look(std::string("fo:font-weight='") + value + "'").font.weight, weight) << value;
  const struct {
    const char *value;
    int superscript;
  } positions[] = {{"super 58%", 1}, {"sub 58%", -1}, {"33% 58%", 1},
                   {"-33% 58%", -1}, {"0% 100%", 0},  {"9", 0}};
  for (const auto &[value, superscript] : positions)
    EXPECT_EQ(look(std::string("style:text-position='") + value + "'").superscript, superscript) << value;
  const struct {
    const char *value;
    double points;
  } sizes[] = {{"9pt", 9}, {"2000pt", 2000}, {"2001pt", 12}, {"0pt", 12}, {"50%", 6}, {"12", 12}};
  const double usual = look("").font.pointSize;
  ASSERT_EQ(usual, 12);
  for (const auto &[value, points] : sizes)
    EXPECT_EQ(look(std::string("fo:font-size='") + value + "'").font.pointSize, points) << value;
  EXPECT_TRUE(look("fo:font-style='oblique'").font.isItalic);
  EXPECT_FALSE(look("fo:font-style='normal'").font.isItalic);
  EXPECT_TRUE(look("fo:font-variant='small-caps'").font.isSmallCaps);
  EXPECT_FALSE(look("fo:font-variant='normal'").font.isSmallCaps);
  EXPECT_EQ(look("fo:letter-spacing='2pt'").kern, 2);
  EXPECT_EQ(look("fo:letter-spacing='normal'").kern, 0);
  EXPECT_EQ(look("fo:font-family='\"A b\" , c'").font.familyName, u"A b"_ns);
  EXPECT_EQ(look("style:font-name='A;b'").font.familyName, u"A"_ns);
  EXPECT_EQ(look("fo:color='#0A0b0c'").foregroundColor, (NSColor{10, 11, 12}));
  for (const char *none : {"#12345", "#1234567", "1234567", "#12345x", "red"})
    EXPECT_FALSE(look(std::string("fo:color='") + none + "'").foregroundColor) << none;
  EXPECT_TRUE(look("fo:color='#010203' style:use-window-font-color='false'").foregroundColor);
  EXPECT_EQ(look("style:text-underline-style='solid' style:text-underline-color='#010203'").underlineColor,
            (NSColor{1, 2, 3}));
}

TEST(FlatOpenDocument, SetsParagraphs) {
  const auto style = [](const std::string &properties, const std::string &inside = "") {
    return *styled("paragraph", properties, inside).attributesAtIndex(0)->paragraphStyle;
  };
  const struct {
    const char *value;
    NSTextAlignment alignment;
  } alignments[] = {{"left", NSTextAlignment::left},     {"start", NSTextAlignment::left},
                    {"right", NSTextAlignment::right},   {"end", NSTextAlignment::right},
                    {"center", NSTextAlignment::center}, {"justify", NSTextAlignment::justified},
                    {"x", NSTextAlignment::natural}};
  for (const auto &[value, alignment] : alignments)
    EXPECT_EQ(style(std::string("fo:text-align='") + value + "'").alignment, alignment) << value;
  const struct {
    const char *value;
    NSWritingDirection direction;
  } directions[] = {{"rl-tb", NSWritingDirection::rightToLeft},
                    {"lr-tb", NSWritingDirection::leftToRight},
                    {"page", NSWritingDirection::natural}};
  for (const auto &[value, direction] : directions)
    EXPECT_EQ(style(std::string("style:writing-mode='") + value + "'").baseWritingDirection, direction)
        << value;
  const struct {
    const char *value;
    double points;
  } lengths[] = {{"1in", 72},  {"2.54cm", 72}, {"25.4mm", 72}, {"2pc", 24}, {"8px", 6},
                 {"-3pt", -3}, {"0", 0},       {"5", 0},       {"5x", 0},   {"1000001pt", 0}};
  for (const auto &[value, points] : lengths)
    EXPECT_EQ(style(std::string("fo:margin-left='") + value + "'").headIndent, points) << value;
  const NSParagraphStyle all = style(
      "fo:margin-right='1pt' fo:margin-top='2pt' fo:margin-bottom='3pt' style:line-spacing='4pt' "
      "style:tab-stop-distance='5pt'");
  EXPECT_EQ(all.tailIndent, 1);
  EXPECT_EQ(all.paragraphSpacingBefore, 2);
  EXPECT_EQ(all.paragraphSpacing, 3);
  EXPECT_EQ(all.lineSpacing, 4);
  EXPECT_EQ(all.defaultTabInterval, 5);
  EXPECT_EQ(style("",
                  "<style:tab-stops><style:tab-stop style:position='4pt' style:type='char'/><style:tab-stop "
                  "style:position='3pt' style:type='right'/><style:tab-stop style:position='2pt' "
                  "style:type='center'/><style:tab-stop/><style:tab-stop style:position='1pt'/>"
                  "</style:tab-stops>")
                .tabStops,
            (std::vector<NSTextTab>{{NSTextTabType::left, 1},
                                    {NSTextTabType::center, 2},
                                    {NSTextTabType::right, 3},
                                    {NSTextTabType::decimal, 4}}));
}

TEST(FlatOpenDocument, GivesEmptyCellsAParagraph) {
  const NSAttributedString text =
      read(flat("<table:table><table:table-row><table:table-cell/><table:table-cell><text:p>b</text:p>"
                "</table:table-cell></table:table-row></table:table><text:p>c</text:p>"));
  ASSERT_EQ(text.string().UTF8String(), "\nb\nc");
  const auto columnAt = [&](std::uint32_t index) {
    return text.attributesAtIndex(index)->paragraphStyle->textBlocks.at(0)->startingColumn;
  };
  EXPECT_EQ(columnAt(0), 0u);
  EXPECT_EQ(columnAt(1), 1u);
  EXPECT_TRUE(text.attributesAtIndex(3)->paragraphStyle->textBlocks.empty());
}

TEST(FlatOpenDocument, RepeatsRowsAndColumnsThatHoldText) {
  const auto cell = [](const std::string &attributes, const std::string &text) {
    return "<table:table-cell " + attributes + "><text:p>" + text + "</text:p></table:table-cell>";
  };
  const auto row = [](const std::string &attributes, const std::string &cells) {
    return "<table:table-row " + attributes + ">" + cells + "</table:table-row>";
  };
  const auto table = [](const std::string &rows) { return "<table:table>" + rows + "</table:table>"; };
  const std::string none = "<table:table-cell/>";
  const struct {
    std::string body, text;
  } cases[] = {
      {table(row("table:number-rows-repeated='2'", cell("table:number-columns-repeated='3'", "a"))),
       "a\na\na\na\na\na\n"},
      {table(row("table:number-rows-repeated='100'", cell("", "a"))), repeated("a\n", 100)},
      {table(row("table:number-rows-repeated='101'", cell("", "a"))), repeated("a\n", 100)},
      {table(row("table:number-rows-repeated='0'", cell("table:number-columns-repeated='0'", "a"))), "a\n"},
      // What is empty and repeated fills a sheet up; what is not repeated is there.
      {table(row("table:number-rows-repeated='2'", "<table:table-cell table:number-columns-repeated='2'/>") +
             row("", cell("", "a"))),
       "a\n"},
      {table(row("", none) + row("", cell("", "a"))), "\na\n"},
      {table(row("", "<table:table-cell table:number-columns-repeated='2'/>" + cell("", "a"))), "\n\na\n"},
      {table("<table:table-header-rows>" + row("", cell("", "a")) +
             "</table:table-header-rows><table:table-rows>" + row("", cell("", "b")) +
             "</table:table-rows><table:table-row-group>" + row("", cell("", "c")) +
             "</table:table-row-group>"),
       "a\nb\nc\n"},
  };
  for (const auto &[body, text] : cases) EXPECT_EQ(plain(flat(body)), text) << body;
  const auto grouped = [&](std::size_t groups) {
    return plain(flat(table(repeated("<table:table-row-group>", groups) + row("", cell("", "a")) +
                            repeated("</table:table-row-group>", groups))));
  };
  constexpr std::size_t kMostGroups = 16;
  EXPECT_EQ(grouped(kMostGroups), "a\n");
  EXPECT_EQ(grouped(kMostGroups + 1), "");
}

TEST(FlatOpenDocument, BreaksPagesWhereStylesSaySo) {
  const std::string styles =
      "<style:style style:family='paragraph' style:name='b'><style:paragraph-properties "
      "fo:break-before='page'/>"
      "</style:style><style:style style:family='paragraph' style:name='a'><style:paragraph-properties "
      "fo:break-after='page'/></style:style><style:style style:family='paragraph' style:name='c'>"
      "<style:paragraph-properties fo:break-before='column' fo:break-after='auto'/></style:style>";
  const auto paragraph = [](const char *style) {
    return std::string("<text:p text:style-name='") + style + "'>" + style + "</text:p>";
  };
  EXPECT_EQ(plain(flat(paragraph("b") + paragraph("b") + paragraph("x"), styles)), "b\n\fb\nx");
  EXPECT_EQ(plain(flat(paragraph("a") + paragraph("x") + paragraph("a"), styles)), "a\n\fx\na");
  EXPECT_EQ(plain(flat(paragraph("c") + paragraph("c"), styles)), "c\nc");
  EXPECT_EQ(plain(flat(paragraph("x") + "<table:table><table:table-row><table:table-cell>" + paragraph("b") +
                           "</table:table-cell></table:table-row></table:table>",
                       styles)),
            "x\nb\n");
}

TEST(FlatOpenDocument, LeavesOutWhatIsNoText) {
  for (const std::string name : {"office:forms",
                                 "office:annotation",
                                 "office:annotation-end",
                                 "text:tracked-changes",
                                 "text:sequence-decls",
                                 "text:variable-decls",
                                 "text:user-field-decls",
                                 "text:dde-connection-decls",
                                 "text:script",
                                 "text:alphabetical-index-auto-mark-file",
                                 "text:ruby-text",
                                 "text:table-of-content-source",
                                 "text:illustration-index-source",
                                 "text:table-index-source",
                                 "text:object-index-source",
                                 "text:user-index-source",
                                 "text:alphabetical-index-source",
                                 "text:bibliography-source",
                                 "text:meta-field-source",
                                 "table:shapes",
                                 "table:tracked-changes",
                                 "table:named-expressions",
                                 "table:database-ranges",
                                 "table:content-validations",
                                 "table:calculation-settings",
                                 "table:label-ranges",
                                 "table:dde-links",
                                 "presentation:notes",
                                 "presentation:header-decl",
                                 "presentation:footer-decl",
                                 "presentation:date-time-decl",
                                 "anim:par",
                                 "svg:title",
                                 "svg:desc",
                                 "draw:glue-point",
                                 "draw:enhanced-geometry"})
    EXPECT_EQ(plain(flat("<" + name + "><text:p>x</text:p></" + name + "><text:p>y</text:p>")), "y") << name;
  for (const std::string name : {"svg:title", "text:hidden-text", "text:hidden-paragraph", "text:script"})
    EXPECT_EQ(plain(flat("<text:p>a<" + name + ">x</" + name + ">b</text:p>")), "ab") << name;
}

TEST(FlatOpenDocument, HidesWhatStylesHide) {
  const std::string styles =
      "<style:style style:family='paragraph' style:name='p'><style:text-properties text:display='none'/>"
      "</style:style><style:style style:family='text' style:name='t'><style:text-properties "
      "text:display='none'/>"
      "</style:style><style:style style:family='text' style:name='shown'><style:text-properties "
      "text:display='true'/></style:style>";
  const struct {
    const char *body, *text;
  } cases[] = {
      {"<text:p>a</text:p><text:p text:style-name='p'>b<text:tab/></text:p><text:p>c</text:p>", "a\nc"},
      {"<text:p>a<text:span text:style-name='t'>b<text:tab/><text:s/></text:span>c</text:p>", "ac"},
      {"<text:p>a<text:a text:style-name='t'>b<text:line-break/></text:a>c</text:p>", "ac"},
      {"<text:p>a<text:span text:style-name='shown'>b</text:span></text:p>", "ab"},
  };
  for (const auto &[body, text] : cases) EXPECT_EQ(plain(flat(body, styles)), text) << body;
}

TEST(FlatOpenDocument, RaisesTheSignsOfNotes) {
  const NSAttributedString text =
      read(flat("<text:p>x<text:note><text:note-citation>1</text:note-citation><text:note-body><text:p>note"
                "</text:p></text:note-body></text:note>y</text:p>"));
  ASSERT_EQ(text.string().UTF8String(), "x1y\n1 note");
  const int superscripts[] = {0, 1, 0, 0, 1, 0, 0};
  for (std::uint32_t i = 0; i < std::size(superscripts); ++i)
    EXPECT_EQ(text.attributesAtIndex(i)->superscript, superscripts[i]) << i;
}

TEST(FlatOpenDocument, KnowsHeadings) {
  const std::string styles =
      "<style:style style:family='paragraph' style:name='Heading_20_3'/><style:style style:family='paragraph' "
      "style:name='Heading_20_7'/><style:style style:family='paragraph' style:name='Heading_20_x'/>"
      "<style:style style:family='paragraph' style:name='four' style:default-outline-level='4'/>"
      "<style:style style:family='paragraph' style:name='plain' style:parent-style-name='four' "
      "style:default-outline-level=''/><style:style style:family='paragraph' style:name='child' "
      "style:parent-style-name='Heading_20_3'/>";
  const struct {
    const char *attributes;
    int level;
  } cases[] = {{"text:style-name='Heading_20_3'", 3},
               {"text:style-name='Heading_20_7'", 6},
               {"text:style-name='Heading_20_x'", 0},
               {"text:style-name='child'", 3},
               {"text:style-name='four'", 4},
               {"text:style-name='plain'", 0},
               {"text:style-name='four' text:outline-level='2'", 2},
               {"text:outline-level='6'", 6},
               {"text:outline-level='x'", 0},
               {"", 0}};
  for (const auto &[attributes, level] : cases) {
    const NSAttributedString text = read(flat("<text:h " + std::string(attributes) + ">x</text:h>", styles));
    ASSERT_EQ(text.length(), 1u) << attributes;
    EXPECT_EQ(text.attributesAtIndex(0)->paragraphStyle->headerLevel, level) << attributes;
  }
}

TEST(FlatOpenDocument, IndentsListsByTheirLevels) {
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

TEST(FlatOpenDocument, KnowsFontsAndTabsOfTheWholeDocument) {
  const auto tabOf = [](const std::string &relative) {
    const std::string xml =
        "<office:document><office:settings><config:config-item-set><config:config-item "
        "config:name='TabsRelativeToIndent'>" +
        relative +
        "</config:config-item></config:config-item-set></office:settings><office:font-face-decls>"
        "<style:font-face style:name='F' svg:font-family=\"'A b', serif\"/></office:font-face-decls>"
        "<office:automatic-styles><style:style style:family='paragraph' style:name='s'>"
        "<style:paragraph-properties fo:margin-left='10pt'><style:tab-stops><style:tab-stop "
        "style:position='5pt'/></style:tab-stops></style:paragraph-properties><style:text-properties "
        "style:font-name='F'/></style:style></office:automatic-styles><office:body><office:text><text:p "
        "text:style-name='s'>x</text:p></office:text></office:body></office:document>";
    const NSAttributedString text = read(xml);
    EXPECT_EQ(text.attributesAtIndex(0)->font.familyName, u"A b"_ns);
    return text.attributesAtIndex(0)->paragraphStyle->tabStops.at(0).location;
  };
  EXPECT_EQ(tabOf("true"), 15);
  EXPECT_EQ(tabOf("false"), 5);
}

TEST(FlatOpenDocument, KnowsPictures) {
  const auto picture = [](const std::string &type, const std::string &frame = "",
                          const std::string &inside = "", const std::string &bytes = "UE5H") {
    const NSAttributedString text = read(flat(
        "<text:p>x<draw:frame " + frame + "><draw:image draw:mime-type='" + type + "'><office:binary-data>" +
        bytes + "</office:binary-data></draw:image>" + inside + "</draw:frame></text:p>"));
    return text.length() == 2 ? text.attributesAtIndex(1)->attachment : NSTextAttachment();
  };
  const struct {
    const char *type;
    NSString name;
  } kinds[] = {{"image/png", u"picture1.png"_ns},     {"image/jpeg", u"picture1.jpeg"_ns},
               {"image/gif", u"picture1.gif"_ns},     {"image/tiff", u"picture1.tiff"_ns},
               {"image/bmp", u"picture1.bmp"_ns},     {"image/webp", u"picture1.webp"_ns},
               {"image/svg+xml", u"picture1.svg"_ns}, {"image/x-emf", u"picture1.emf"_ns},
               {"image/x-wmf", u"picture1.wmf"_ns},   {"application/pdf", u"picture1.pdf"_ns},
               {"image/x-other", u"picture1"_ns}};
  for (const auto &[type, name] : kinds) {
    const NSTextAttachment attachment = picture(type);
    ASSERT_TRUE(attachment) << type;
    EXPECT_EQ(attachment.fileWrapper().preferredFilename(), name) << type;
  }
  const std::string both = "<svg:title>T</svg:title><svg:desc>D</svg:desc>";
  EXPECT_EQ(picture("", "", both).alternativeText(), u"T"_ns);
  EXPECT_EQ(picture("", "", "<svg:desc>D</svg:desc>").alternativeText(), u"D"_ns);
  EXPECT_EQ(picture("", "svg:width='2pt' svg:height='1pt'").sizeInPoints(), (NSSize{2, 1}));
  for (const char *none : {"svg:width='2pt'", "svg:height='2pt'", "svg:width='0pt' svg:height='1pt'",
                           "svg:width='1pt' svg:height='0pt'"})
    EXPECT_FALSE(picture("", none).sizeInPoints()) << none;
  EXPECT_FALSE(picture("", "", "", "VkNMTVRG")) << "\"VCLMTF\" begins what only its writer reads";
}

TEST(FlatOpenDocument, SetsCells) {
  const NSAttributedString text = read(
      flat("<table:table table:style-name='t'><table:table-row><table:table-cell table:style-name='c'>"
           "<text:p>a</text:p></table:table-cell><table:table-cell table:style-name='m'><text:p>b</text:p>"
           "</table:table-cell><table:table-cell><text:p>c</text:p></table:table-cell></table:table-row>"
           "</table:table>",
           "<style:style style:family='table' style:name='t'><style:table-properties style:width='5in' "
           "table:border-model='collapsing'/></style:style><style:style style:family='table-cell' "
           "style:name='c'><style:table-cell-properties fo:border='1pt solid #010203' fo:border-left='none' "
           "fo:border-right='2pt solid' fo:padding='3pt' fo:padding-bottom='4pt' fo:padding-left='5pt' "
           "style:vertical-align='bottom' fo:background-color='#040506'/></style:style><style:style "
           "style:family='table-cell' style:name='m'><style:table-cell-properties fo:border-top='1pt solid "
           "#010203' fo:border-bottom='6pt solid #010203' fo:padding-top='7pt' fo:padding-right='8pt' "
           "style:vertical-align='middle'/></style:style>"));
  ASSERT_EQ(text.string().UTF8String(), "a\nb\nc\n");
  const auto cell = [&](std::uint32_t index) {
    return *text.attributesAtIndex(index)->paragraphStyle->textBlocks.at(0);
  };
  using Edges = std::array<double, kRectEdges>;
  const NSTextTableBlock first = cell(0), second = cell(2), third = cell(4);
  EXPECT_EQ(first.borderWidths, (Edges{1, 0, 1, 2}));
  EXPECT_EQ(first.borderColors[NSTopEdge], (NSColor{1, 2, 3}));
  EXPECT_FALSE(first.borderColors[NSLeftEdge]);
  EXPECT_FALSE(first.borderColors[NSRightEdge]);
  EXPECT_EQ(first.padding, (Edges{3, 5, 4, 3}));
  EXPECT_EQ(first.backgroundColor, (NSColor{4, 5, 6}));
  EXPECT_EQ(first.verticalAlignment, NSTextBlockVerticalAlignment::bottom);
  EXPECT_EQ(second.borderWidths, (Edges{1, 0, 6, 0}));
  EXPECT_EQ(second.padding, (Edges{7, 0, 0, 8}));
  EXPECT_EQ(second.verticalAlignment, NSTextBlockVerticalAlignment::middle);
  EXPECT_EQ(third.verticalAlignment, NSTextBlockVerticalAlignment::top);
  EXPECT_TRUE(first.table->collapsesBorders);
  EXPECT_EQ(first.table->width.value, 360);
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

TEST(FlatOpenDocument, MeasuresSoManyColumns) {
  const auto widthIn = [](const std::string &columns) {
    const NSAttributedString cell = read(
        flat("<table:table>" + columns +
                 "<table:table-row><table:table-cell><text:p>a</text:p></table:table-cell></table:table-row>"
                 "</table:table>",
             "<style:style style:family='table-column' style:name='inch'><style:table-column-properties "
             "style:column-width='1in'/></style:style>"));
    return cell.attributesAtIndex(0)->paragraphStyle->textBlocks.at(0)->width.value;
  };
  const auto column = [](const std::string &count) {
    return "<table:table-column table:style-name='inch' table:number-columns-repeated='" + count + "'/>";
  };
  constexpr std::size_t kMostGroups = 16;
  const std::string begin = "<table:table-column-group>", end = "</table:table-column-group>";
  EXPECT_EQ(widthIn(column("16384")), 72);
  EXPECT_EQ(widthIn(column("99999")), 72);
  EXPECT_EQ(widthIn(repeated(begin, kMostGroups) + column("1") + repeated(end, kMostGroups)), 72);
  EXPECT_EQ(widthIn(repeated(begin, kMostGroups + 1) + column("1") + repeated(end, kMostGroups + 1)), 0);
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
  constexpr std::size_t kMostKeywords = 1000;
  EXPECT_EQ(factsOf(repeated("<meta:keyword>a</meta:keyword>", kMostKeywords + 1)).keywords.size(),
            kMostKeywords);
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

TEST(FlatOpenDocument, KnowsThePaperOfItsPages) {
  const auto factsOf = [](const std::string &masters) {
    const std::string xml =
        "<office:document><office:meta><dc:creator>Last</dc:creator><dc:title>T</dc:title><dc:subject>S"
        "</dc:subject><dc:description>D</dc:description></office:meta><office:automatic-styles>"
        "<style:page-layout style:name='A'><style:page-layout-properties fo:page-width='10pt' "
        "fo:page-height='20pt' fo:margin-left='1pt' fo:margin-right='2pt' fo:margin-top='3pt' "
        "fo:margin-bottom='4pt'/></style:page-layout><style:page-layout style:name='B'>"
        "<style:page-layout-properties fo:page-width='30pt'/></style:page-layout></office:automatic-styles>"
        "<office:master-styles><style:master-page style:name='First' style:page-layout-name='B'/>" +
        masters + "</office:master-styles><office:body><office:text/></office:body></office:document>";
    DocumentAttributes facts;
    attributedStringWithFlatOpenDocument(NSData::dataWithBytes(xml.data(), xml.size()), &facts);
    return facts;
  };
  const DocumentAttributes facts =
      factsOf("<style:master-page style:name='Standard' style:page-layout-name='A'/>");
  EXPECT_EQ(facts.paperSize, (NSSize{10, 20}));
  EXPECT_EQ(facts.leftMargin, 1);
  EXPECT_EQ(facts.rightMargin, 2);
  EXPECT_EQ(facts.topMargin, 3);
  EXPECT_EQ(facts.bottomMargin, 4);
  EXPECT_EQ(facts.author, u"Last"_ns);
  EXPECT_EQ(facts.title, u"T"_ns);
  EXPECT_EQ(facts.subject, u"S"_ns);
  EXPECT_EQ(facts.comment, u"D"_ns);
  const DocumentAttributes first = factsOf("");
  EXPECT_FALSE(first.paperSize) << "a width alone is no size";
  EXPECT_FALSE(first.topMargin);
}

TEST(FlatOpenDocument, KnowsBullets) {
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

TEST(FlatOpenDocument, LooksForALevelAmongSoManyNodes) {
  const auto marked = [](std::size_t others) {
    return plain(
        flat("<text:list text:style-name='L'><text:list-item><text:p>x</text:p></text:list-item></text:list>",
             "<text:list-style style:name='L'>" + repeated("<x/>", others) +
                 "<text:list-level-style-number text:level='1' style:num-format='1'/></text:list-style>"));
  };
  EXPECT_EQ(marked(63), "\t1\tx");
  EXPECT_EQ(marked(64), "\t\u2022\tx") << "a bullet stands for a level that is not found";
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

TEST(FlatOpenDocument, ReadsAsDeepAsItMay) {
  // The content, the sections and what stands in the paragraph.
  constexpr std::size_t kMostSections = 198;
  const auto nested = [](std::size_t sections, NSError *error) {
    return read(flat(repeated("<text:section>", sections) + "<text:p>x</text:p>" +
                     repeated("</text:section>", sections)),
                error);
  };
  NSError error;
  EXPECT_EQ(nested(kMostSections, &error).string().UTF8String(), "x");
  EXPECT_FALSE(error);
  EXPECT_EQ(nested(kMostSections + 1, &error).string().UTF8String(), "");
  EXPECT_EQ(error.errorCode(), ErrorCode::incomplete);
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
