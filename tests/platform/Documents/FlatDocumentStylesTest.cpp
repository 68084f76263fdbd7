// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "tests/platform/Documents/FlatDocuments.hpp"
#include "tests/support/Repeated.hpp"

namespace nimbo {
namespace {

TEST(FlatDocumentStyles, FollowsStylesToTheirAncestors) {
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

TEST(FlatDocumentStyles, DrawsLinesAtText) {
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

TEST(FlatDocumentStyles, SetsCharacters) {
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

TEST(FlatDocumentStyles, SetsParagraphs) {
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

TEST(FlatDocumentStyles, KeepsSoManyTabStops) {
  const NSAttributedString text = styled(
      "paragraph", "",
      "<style:tab-stops>" + repeated("<style:tab-stop style:position='1pt'/>", 257) + "</style:tab-stops>");
  EXPECT_EQ(text.attributesAtIndex(0)->paragraphStyle->tabStops.size(), 256u);
}

TEST(FlatDocumentStyles, KnowsFontsAndTabsOfTheWholeDocument) {
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

TEST(FlatDocumentStyles, SetsTheHeightOfLinesInOneWay) {
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

}  // namespace
}  // namespace nimbo
