// SPDX-License-Identifier: Apache-2.0
//
// What other programs than this one read of a written text.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/AppKit/NSAttributedStringRTF.hpp"

namespace nimbo {
namespace {

constexpr char kStart[] = "{\\rtf1\\ansi\\ansicpg1252\\uc0\\deff0\n{\\fonttbl{\\f0\\fnil\\fcharset0 ;}}\n";

/// The RTF of the parts, one behind the other.
std::string written(const std::vector<std::pair<std::u16string, TextAttributes>> &parts) {
  NSMutableAttributedString builder;
  for (const auto &[units, attributes] : parts) builder.append(units, attributes);
  const std::uint32_t length = builder.length();
  return std::string(RTFFromRange(std::move(builder).attributedString(), {0, length}).view());
}

TextAttributes ofParagraph(const NSParagraphStyle &style) {
  TextAttributes attributes;
  attributes.paragraphStyle = Interned(style);
  return attributes;
}

/// The cell of a table of one row.
TextAttributes ofCell(std::uint32_t column, std::uint32_t span, const NSTextBlockWidth &width) {
  NSTextTableBlock block;
  block.table = Interned(NSTextTable{1, 2, false, {}});
  block.startingColumn = column;
  block.columnSpan = span;
  block.width = width;
  NSParagraphStyle style;
  style.textBlocks = {Interned(block)};
  return ofParagraph(style);
}

std::size_t count(const std::string &text, const std::string &part) {
  std::size_t found = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != text.npos; ++at) ++found;
  return found;
}

TEST(RTFWriter, SaysWhatChanges) {
  TextAttributes bold;
  bold.font.weight = kBoldFontWeight;
  EXPECT_EQ(
      written({{u"a\nb", {}}, {u"c\n", bold}}),
      kStart +
          std::string("{\\colortbl;}\n\n\\pard \\plain\\f0\\fs24 a\\par\nb\\plain\\f0\\fs24\\b c\\par\n}\n"));
}

TEST(RTFWriter, HasWordsForReadersOfEveryKind) {
  const auto words = [](auto &&change) {
    TextAttributes attributes;
    change(attributes);
    const std::string rtf = written({{u"x", attributes}});
    const std::string start = "\\plain\\f0";
    const std::size_t at = rtf.find(start) + start.size();
    return rtf.substr(at, rtf.find(" x}", at) - at);
  };
  const std::pair<std::uint16_t, const char *> weights[] = {
      {400, ""},    {500, "\\fweight500"},   {599, "\\fweight599"}, {600, "\\b\\fweight600"},
      {700, "\\b"}, {800, "\\b\\fweight800"}};
  for (const auto &[weight, expected] : weights)
    EXPECT_EQ(words([&](TextAttributes &attributes) { attributes.font.weight = weight; }),
              "\\fs24" + std::string(expected));
  const std::pair<double, const char *> sizes[] = {
      {12.24, "\\fs24\\fsmilli12240"}, {12.25, "\\fs25\\fsmilli12250"}, {12.5, "\\fs25"}, {-1, "\\fs0"}};
  for (const auto &[size, expected] : sizes)
    EXPECT_EQ(words([&](TextAttributes &attributes) { attributes.font.pointSize = size; }), expected);
  EXPECT_EQ(words([&](TextAttributes &attributes) {
              attributes.backgroundColor = NSColor{1, 2, 3};
            }),
            "\\fs24\\chcbpat1\\cb1");
}

TEST(RTFWriter, ColorsHaveTheirAlphaBesideThem) {
  TextAttributes attributes;
  attributes.foregroundColor = NSColor{255, 0, 1, 128};
  const std::string rtf = written({{u"x", attributes}});
  EXPECT_NE(rtf.find("{\\colortbl;\\red255\\green0\\blue1;}\n"
                     "{\\*\\expandedcolortbl;\\cssrgb\\c100000\\c0\\c392\\alpha50196;}\n"),
            rtf.npos)
      << rtf;
}

TEST(RTFWriter, NamesOfFontsEndBeforeTheSemicolon) {
  TextAttributes attributes;
  attributes.font.familyName = u"A;B"_ns;
  EXPECT_NE(written({{u"x", attributes}}).find("{\\f0\\fnil\\fcharset0 A B;}"), std::string::npos);
}

TEST(RTFWriter, ListsAreInTheTables) {
  NSParagraphStyle style;
  style.textLists = {{u"({lower-alpha})"_ns, 3, 5}, {u"{disc}"_ns, 1, 6}};
  EXPECT_EQ(written({{u"\t\u2022\tx", ofParagraph(style)}}),
            kStart + std::string("{\\colortbl;}\n"
                                 "{\\*\\listtable\n"
                                 "{\\list\\listtemplateid1\\listhybrid"
                                 "{\\listlevel\\levelnfc4\\levelnfcn4\\leveljc0\\leveljcn0\\levelfollow0"
                                 "\\levelstartat3\\levelspace360\\levelindent0{\\*\\levelmarker "
                                 "(\\{lower-alpha\\})}{\\leveltext\\leveltemplateid5\\'03(\\'00);}"
                                 "{\\levelnumbers\\'02;}\\fi-360\\li720}"
                                 "{\\listlevel\\levelnfc23\\levelnfcn23\\leveljc0\\leveljcn0\\levelfollow0"
                                 "\\levelstartat1\\levelspace360\\levelindent0{\\*\\levelmarker "
                                 "\\{disc\\}}{\\leveltext\\leveltemplateid6\\'01\\u8226 ;}"
                                 "{\\levelnumbers;}\\fi-360\\li1440}"
                                 "{\\listname ;}\\listid1}}\n"
                                 "{\\*\\listoverridetable{\\listoverride\\listid1\\listoverridecount0\\ls1}}\n"
                                 "\n"
                                 "\\pard\\ls1\\ilvl1 {\\listtext \\plain\\f0\\fs24 \\tab \\u8226 \\tab }"
                                 "\\plain\\f0\\fs24 x}\n"));
}

TEST(RTFWriter, MarkersStandBetweenTwoTabs) {
  NSParagraphStyle style;
  style.textLists = {{u"{decimal}"_ns, 1, 1}};
  const auto tabs = [](std::size_t units) { return u"\t" + std::u16string(units, u'1') + u"\tx"; };
  const std::pair<std::u16string, bool> cases[] = {
      {tabs(1), true},   {tabs(62), true},  {tabs(63), false}, {tabs(0), false},     {u"\t1x", false},
      {u"1.\tx", false}, {u"\t1\n", false}, {u"\t1\t", true},  {u"\t1\nx\t", false},
  };
  for (const auto &[units, isMarker] : cases)
    EXPECT_EQ(count(written({{units, ofParagraph(style)}}), "\\listtext"), isMarker ? 1u : 0u) << units.size();
  EXPECT_EQ(count(written({{tabs(1), {}}}), "\\listtext"), 0u) << "no list";
}

TEST(RTFWriter, ListsHaveNineLevels) {
  NSParagraphStyle style;
  for (std::uint32_t i = 1; i <= 10; ++i) style.textLists.push_back({u"{disc}"_ns, 1, i});
  const std::string rtf = written({{u"x", ofParagraph(style)}});
  EXPECT_EQ(count(rtf, "{\\listlevel"), 9u);
  EXPECT_NE(rtf.find("\\ls1\\ilvl8 "), rtf.npos);
}

TEST(RTFWriter, TextsOfLevelsAreCut) {
  const std::u16string many(201, u'x');
  NSParagraphStyle style;
  style.textLists = {{NSString::stringWithCharacters(many), 1, 1},
                     {NSString::stringWithCharacters(many + u"{decimal}" + many), 1, 2}};
  const std::string rtf = written({{u"x", ofParagraph(style)}}), x(100, 'x');
  EXPECT_EQ(count(rtf, "\\leveltemplateid1\\'c8" + x + x + ";}{\\levelnumbers;}"), 1u) << rtf;
  EXPECT_EQ(count(rtf, "\\leveltemplateid2\\'c9" + x + "\\'01" + x + ";}{\\levelnumbers\\'65;}"), 1u) << rtf;
}

TEST(RTFWriter, SaysWhatIsKnownOfTheDocument) {
  DocumentAttributes facts;
  facts.title = u"T"_ns;
  facts.author = u"A"_ns;
  facts.subject = u"S"_ns;
  facts.keywords = {u"a"_ns, u"b"_ns};
  facts.creationTime = facts.modificationTime = NSDate::dateWithUTC(2001, 2, 3, 4, 5, 6);
  facts.paperSize = NSSize{612, 792};
  facts.topMargin = 1;
  facts.bottomMargin = 2;
  const std::string time = "\\yr2001\\mo2\\dy3\\hr4\\min5\\sec6}";
  EXPECT_EQ(RTFFromRange(NSAttributedString(u""_ns), {0, 0}, facts).view(),
            kStart + ("{\\colortbl;}\n{\\info{\\title T}{\\author A}{\\subject S}{\\keywords a, b}{\\creatim" +
                      time + "{\\revtim" + time + "}\n\\paperw12240\\paperh15840\\margt20\\margb40\n}\n"));
}

TEST(RTFWriter, RowsSayWhatTheirCellsAreLike) {
  TextAttributes first = ofCell(0, 1, {50, NSTextBlockWidth::Unit::points});
  NSTextTableBlock block = *first.paragraphStyle->textBlocks[0];
  block.padding[NSLeftEdge] = 1;
  block.borderWidths[NSBottomEdge] = 2;
  block.borderColors[NSRightEdge] = NSColor{1, 2, 3};
  NSParagraphStyle style;
  style.textBlocks = {Interned(block)};
  first = ofParagraph(style);
  EXPECT_EQ(
      written({{u"a\n", first}, {u"b\n", ofCell(1, 1, {})}}),
      kStart + std::string("{\\colortbl;\\red1\\green2\\blue3;}\n\n"
                           "\\trowd\\trgaph0\\trleft0\\lastrow\n"
                           "\\clvertalt\\clftsWidth3\\clwWidth1000\\clpadl20\\clpadfl3\\clbrdrb\\brdrs\\brdrw40"
                           "\\clbrdrr\\brdrnone\\brdrcf1\\cellx1000\n"
                           "\\clvertalt\\clftsWidth1\\cellx5320\n"
                           "\\pard\\intbl\\itap1 \\plain\\f0\\fs24 a\\cell\n"
                           "\\pard\\intbl\\itap1 \\plain\\f0\\fs24 b\\cell\n"
                           "\\row\n}\n"));
}

TEST(RTFWriter, PlacesWithoutACellAreEmptyOnes) {
  EXPECT_EQ(written({{u"a\n", ofCell(1, 1, {})}}),
            kStart + std::string("{\\colortbl;}\n\n"
                                 "\\trowd\\trgaph0\\trleft0\\lastrow\n"
                                 "\\clgap\\cellx4320\n"
                                 "\\clvertalt\\clftsWidth1\\cellx8640\n"
                                 "\\pard\\intbl\\itap1\\cell\n"
                                 "\\pard\\intbl\\itap1 \\plain\\f0\\fs24 a\\cell\n"
                                 "\\row\n}\n"));
}

TEST(RTFWriter, CellsEndWhereTheirWidthsSay) {
  using enum NSTextBlockWidth::Unit;
  const std::pair<NSTextBlockWidth, const char *> cases[] = {
      {{2.9, points}, "60"},   {{3.05, points}, "61"},  {{199.95, points}, "3999"},
      {{201, points}, "4000"}, {{25, percent}, "2160"}, {{}, "8640"},
  };
  for (const auto &[width, edge] : cases) {
    const std::string rtf = written({{u"a\n", ofCell(0, 1, width)}});
    EXPECT_NE(rtf.find("\\cellx" + std::string(edge) + "\n"), rtf.npos) << rtf;
  }
}

TEST(RTFWriter, RowsHaveNoMoreColumnsThanReadersTake) {
  constexpr std::uint32_t kMost = 2048;
  const std::string late = written({{u"a\n", ofCell(kMost + 1, 9, {50, NSTextBlockWidth::Unit::points})}});
  EXPECT_EQ(count(late, "\\clgap"), kMost);
  EXPECT_EQ(count(late, "\\cellx"), kMost + 1);
  EXPECT_EQ(count(late, "\\clmrg"), 0u);
  EXPECT_EQ(count(late, "\\cellx123880\n"), 1u) << "behind columns of 60 twips";
  const std::string wide = written({{u"a\n", ofCell(0, UINT32_MAX, {})}});
  EXPECT_EQ(count(wide, "\\cellx"), kMost);
  EXPECT_EQ(count(wide, "\\clmrg"), kMost - 1);
}

TEST(RTFWriter, TablesStandInEachOtherToALimit) {
  NSParagraphStyle style;
  for (std::uint32_t table = 1; table <= 17; ++table) {
    NSTextTableBlock block;
    block.table = Interned(NSTextTable{table, 1, false, {}});
    style.textBlocks.push_back(Interned(block));
  }
  const std::string rtf = written({{u"a\n", ofParagraph(style)}});
  EXPECT_EQ(count(rtf, "\\nestrow}"), 15u);
  EXPECT_EQ(count(rtf, "\\pard\\intbl\\itap16 \\plain"), 1u) << rtf;
}

TEST(RTFWriter, PicturesAreLinesOfDigits) {
  TextAttributes attributes;
  const std::string bytes = "\x89PNG\r\n\x1a\n" + std::string(57, '\0') + '\x1f';
  const NSFileWrapper file =
      NSFileWrapper::regularFileWithContents(NSData::dataWithBytes(bytes.data(), bytes.size()));
  attributes.attachment = NSTextAttachment(file, NSSize{10, 0.5});
  const std::string zeros(56 * 2, '0');
  const std::string picture =
      "{\\pict{\\*\\picprop}\\pngblip\\picwgoal200\\pichgoal10\n89504e470d0a1a0a" + zeros + "\n001f}";
  EXPECT_NE(written({{std::u16string(1, NSAttachmentCharacter), attributes}}).find(picture), std::string::npos);
}

}  // namespace
}  // namespace nimbo
