// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "platform/AppKit/NSAttributedStringRTF.hpp"
#include "tests/platform/AppKit/RichTextDescription.hpp"
#include "tests/support/Repeated.hpp"

namespace nimbo {
namespace {

NSData dataOf(std::string_view bytes) {
  return NSData::dataWithBytes(bytes.data(), bytes.size());
}

NSAttributedString read(std::string_view body) {
  return initWithRTF(dataOf("{\\rtf1\\ansi\\ansicpg1252\\deff0" + std::string(body) + "}"));
}

std::string textOf(std::string_view body) {
  return read(body).string().UTF8String();
}

struct Case {
  std::string_view source;
  std::string_view expected;
};

TEST(RTFReader, Text) {
  using namespace std::string_view_literals;
  constexpr std::string_view kFonts =
      "{\\fonttbl{\\f0\\fcharset0 A;}{\\f1\\fcharset128 J;}{\\f2\\fcharset204 C;}{\\f3\\fcharset2 Symbol;}"
      "{\\f4\\fcharset0\\cpg1253 G;}\\f5\\fcharset134 S;}";
  for (const Case &c : {
           Case{"a\r\nb\\par\\par c", "ab\n\nc"},
           Case{"a\\\nb\\\r\nc", "a\nb\nc"},
           Case{"\\{\\}\\\\\\~\\_\\-\\tab\\line\\page\\emdash\\ldblquote x\\bullet",
                "{}\\\u00a0\u2011\u00ad\t\u2028\f\u2014\u201cx\u2022"},
           Case{"\\endash\\emspace\\enspace\\qmspace\\lquote\\rquote\\rdblquote\\lbr\\column\\\tx",
                "\u2013\u2003\u2002\u2005\u2018\u2019\u201d\u2028\f\tx"},
           Case{"\\zwj\\zwnj\\zwbo\\zwnbo\\ltrmark\\rtlmark x", "\u200d\u200c\u200b\u2060\u200e\u200fx"},
           Case{"a\\sect b\\par\\sect c", "a\nb\nc"},
           Case{"\\'e4\xe4\\'80", "\u00e4\u00e4\u20ac"},
           Case{"\\f2\\'cf\\'f0\\f4\\'e1\\f0\\'e1", "\u041f\u0440\u03b1\u00e1"},
           Case{"\\f1\\'83A\\'83\\'5c\\'b1\x82\xa0\\'83{\\b x}", "\u30a2\u30bd\uff71\u3042\ufffdx"},
           Case{"\\f1\\'83\\\\x", "\u30bdx"},
           Case{"\\f1\\'41\\'83A", "A\u30a2"},
           Case{"\\f1\\'82\\'20\\'83A\\'ff", "\ufffd \u30a2\ufffd"},
           Case{"\\f1\\'9f@\\'a0\\'e0@\\'fcK", "\u6a97\ufffd\u6f3e\u9ed1"},
           Case{"\\f5\\'c4\\'e3", "\u4f60"},
           Case{"\\f3\\'b7\\'a7\\f0\\'a7", "\u2022\u25aa\u00a7"},
           Case{"\\u8364?x\\uc2\\u-10179ab\\u-8704\\'61\\'62z\\uc0\\u97 b", "\u20acx\U0001f600zab"},
           Case{"\\uc1\\u97\xe4\xe4\\u98\\~\\~\\u99\\bin3 xyzd", "a\u00e4b\u00a0cd"},
           Case{"{\\uc3\\u97 xyz}\\u98 xy", "aby"},
           Case{"\\u97\\par\\u98{x}y", "a\nbxy"},
           Case{"\\u97 \\bullet b", "ab"},
           Case{"a{\\*\\unknown gone {\\b gone}}b{\\unknown kept}\\unknown1 c", "abkeptc"},
           Case{"a{\\v gone{\\pict\\pngblip 00}}{\\deleted gone}b\\v1 gone\\v0 c", "abc"},
           Case{"a{\\*\\ftnsep gone}{\\*\\aftnsepc gone}{\\ftncn gone}b", "ab"},
           Case{"{\\header gone}{\\footerl gone}{\\stylesheet{\\s0 gone;}}{\\*\\annotation "
                "gone}a{\\object{\\*\\objdata 00}{\\result b}}",
                "ab"},
           Case{"a{\\footnote note}b", "ab\nnote\n"},
           Case{"a{\\shp{\\*\\shpinst\\par gone\\cell{\\shptxt box\\par}}{\\shprslt gone}}b", "abox\nb"},
           Case{"a{\\upr{b?{\\b ?}}{\\*\\ud{b\\u8364 ?{\\b c}}}}d", "ab\u20accd"},
           Case{"{\\bin5 }}}}}a{\\*\\x\\bin3 }}}b}c", "ac"},
           Case{"a}b{\\b c}", "abc"},
           Case{"a{{{b", "ab"},
           Case{"a\\'4", "a4"},
           Case{"a\0b"sv, "ab"},
           Case{"\\pard{\\listtext\\tab\\bullet\\tab}x\\par{\\pntext 1.}y", "\t\u2022\tx\n\t1.\ty"},
           Case{"\\'e4\\~'x", "\u00e4\u00a0'x"},
           Case{"a{\\ud gone}{\\*\\ud gone}b", "ab"},
           Case{"a{\\footnote b}c{\\footnote d\\par}\\par", "ac\nb\nd\n"},
           Case{"{\\footnote {\\b no}te}", "note\n"},
           Case{"a{\\leveltext gone}{\\*\\levelmarker gone}{\\alttext gone}{\\title gone}{\\creatim gone}{\\sn "
                "gone}{\\info{\\listtext gone}}{\\listtext}b",
                "ab"},
           // A word has 32 letters at most.
           Case{"\\aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa a\\aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaab c", "ab c"},
           Case{"a{\\shp{\\*\\shpinst{\\sp{\\sn pib}{\\sv{\\pict\\pngblip 00}}}}}b", "a\ufffcb"},
           // A star counts for the word right behind it.
           Case{"{\\*x\\no y}{\\*\xe4\\no y}{\\*\\~\\no y}{\\*\\'e4\\no y}{\\*{\\no y}}{{\\*}\\no "
                "y}{\\*\\u97\\no y}",
                "xy\u00e4y\u00a0y\u00e4yyyay"},
           Case{"{\\u97}xy\\u98\\b xy", "axybxy"},
           Case{"\\uc-1\\u97 x", "ax"},
           Case{"\\b-x", "-x"},
           Case{"{\\*\\x \\}\\{ gone\\\\}a{\\*\\x\\bin }b{\\*\\x\\bin2}}gone}c{\\*\\x\\bin-1 gone}d", "abcd"},
       })
    EXPECT_EQ(textOf(std::string(kFonts) + std::string(c.source)), c.expected) << c.source;
}

TEST(RTFReader, BytesWithoutACodePage) {
  for (const Case &c : {
           Case{"\\ansi \\'80\\'8a", "\u20ac\u0160"},
           Case{"\\mac \\'80\\'a5", "\u00c4\u2022"},
           Case{"\\pc \\'81\\'e0\\'9b", "\u00fc\u03b1\u00a2"},
           Case{"\\pca \\'81\\'e0\\'9b", "\u00fc\u00d3\u00f8"},
           Case{"\\'e4\\ansicpg1 \\'e4\\ansicpg1251 \\'e4", "\u00e4\u00e4\u0434"},
       })
    EXPECT_EQ(initWithRTF(dataOf("{\\rtf1" + std::string(c.source) + "}")).string().UTF8String(), c.expected)
        << c.source;
}

TEST(RTFReader, CharacterSetsAndCodePages) {
  struct Row {
    int number;
    std::string_view bytes, letter;
  };
  constexpr Row kCharacterSets[] = {
      {77, "\\'8a", "\u00e4"},       {78, "\\'82\\'a0", "\u3042"},  {79, "\\'b0\\'a1", "\uac00"},
      {80, "\\'b0\\'a1", "\u554a"},  {81, "\\'a4\\'40", "\u4e00"},  {83, "\\'e0", "\u05d0"},
      {84, "\\'c7", "\u0627"},       {85, "\\'e1", "\u03b1"},       {86, "\\'dd", "\u0131"},
      {87, "\\'a1", "\u0e01"},       {88, "\\'88", "\u0105"},       {89, "\\'80", "\u0410"},
      {128, "\\'fc\\'4b", "\u9ed1"}, {129, "\\'b0\\'a1", "\uac00"}, {130, "\\'88\\'61", "\uac00"},
      {134, "\\'c4\\'e3", "\u4f60"}, {136, "\\'a4\\'a4", "\u4e2d"}, {161, "\\'e1", "\u03b1"},
      {162, "\\'fd", "\u0131"},      {163, "\\'d0", "\u0110"},      {177, "\\'e0", "\u05d0"},
      {178, "\\'c7", "\u0627"},      {186, "\\'e0", "\u0105"},      {204, "\\'ef", "\u043f"},
      {222, "\\'a1", "\u0e01"},      {238, "\\'b3", "\u0142"},      {254, "\\'e0", "\u03b1"},
      {255, "\\'e0", "\u00d3"},
  };
  for (const auto &[number, bytes, letter] : kCharacterSets)
    EXPECT_EQ(textOf("{\\fonttbl{\\f1\\fcharset" + std::to_string(number) + " A;}}\\f1 " + std::string(bytes)),
              letter)
        << number;
  constexpr Row kCodePages[] = {
      {437, "\\'e0", "\u03b1"},        {708, "\\'c7", "\u0627"},
      {737, "\\'80", "\u0391"},        {775, "\\'d0", "\u0105"},
      {850, "\\'d2", "\u00ca"},        {852, "\\'a5", "\u0105"},
      {855, "\\'a0", "\u0430"},        {857, "\\'9e", "\u015e"},
      {860, "\\'84", "\u00e3"},        {861, "\\'8d", "\u00de"},
      {862, "\\'80", "\u05d0"},        {863, "\\'84", "\u00c2"},
      {864, "\\'c7", "\ufe8d"},        {865, "\\'af", "\u00a4"},
      {866, "\\'80", "\u0410"},        {874, "\\'a1", "\u0e01"},
      {932, "\\'e0\\'40", "\u6f3e"},   {936, "\\'c4\\'e3", "\u4f60"},
      {949, "\\'b0\\'a1", "\uac00"},   {950, "\\'a4\\'a4", "\u4e2d"},
      {1250, "\\'b3", "\u0142"},       {1251, "\\'ef", "\u043f"},
      {1252, "\\'80", "\u20ac"},       {1253, "\\'e1", "\u03b1"},
      {1254, "\\'fd", "\u0131"},       {1255, "\\'e0", "\u05d0"},
      {1256, "\\'c7", "\u0627"},       {1257, "\\'e0", "\u0105"},
      {1258, "\\'d0", "\u0110"},       {1361, "\\'88\\'61", "\uac00"},
      {10000, "\\'8a", "\u00e4"},      {10001, "\\'82\\'a0", "\u3042"},
      {10002, "\\'a4\\'40", "\u4e00"}, {10003, "\\'b0\\'a1", "\uac00"},
      {10004, "\\'c7", "\u0627"},      {10005, "\\'e0", "\u05d0"},
      {10006, "\\'e1", "\u03b1"},      {10007, "\\'80", "\u0410"},
      {10008, "\\'b0\\'a1", "\u554a"}, {10029, "\\'88", "\u0105"},
      {10081, "\\'dd", "\u0131"},      {20866, "\\'c1", "\u0430"},
      {54936, "\\'b0\\'a1", "\u554a"}, {65001, "\\'e2\\'82\\'ac", "\u20ac"},
  };
  for (const auto &[number, bytes, letter] : kCodePages)
    EXPECT_EQ(textOf("\\ansicpg" + std::to_string(number) + " " + std::string(bytes)), letter) << number;
}

TEST(RTFReader, Attributes) {
  constexpr std::string_view kTables =
      "{\\fonttbl{\\f0\\froman Times{\\*\\falt X};}{\\f1 "
      "Arial;}}{\\colortbl;\\red255\\green0\\blue0;\\red0\\green0\\blue255;}"
      "{\\*\\expandedcolortbl;;\\cssrgb\\c0\\c0\\c100000\\alpha50196;}";
  for (
      const Case &c : {
          Case{"a{\\b b}\\i c\\plain d",
               "[a] font=Times\n[b] font=Times weight=300\n[c] font=Times italic=1\n[d] font=Times\n"},
          Case{"\\f1\\fs25\\b\\b0 x", "[x] font=Arial size=0.5\n"},
          Case{"\\fweight0 x\\fweight5000 y\\fsmilli-1 z",
               "[x] font=Times weight=-399\n[y] font=Times weight=600\n[z] font=Times size=-12 weight=600\n"},
          Case{"\\f9 x\\f1 y", "[x] font=Times\n[y] font=Arial\n"},
          Case{"\\cf1\\highlight2 x\\cf99999999 y",
               "[x] font=Times color=255.0.0 background=0.0.255.128\n[y] font=Times background=0.0.255.128\n"},
          Case{"\\uldb\\ulc1 x\\ul0 y",
               "[x] font=Times underline=3 underlinecolor=255.0.0\n[y] font=Times underlinecolor=255.0.0\n"},
          Case{"\\super x\\sub y\\nosupersub\\up6 z",
               "[x] font=Times superscript=1\n[y] font=Times superscript=-1\n[z] font=Times offset=3\n"},
          Case{"\\expndtw20\\strike x\\expnd-6 y",
               "[x] font=Times strike=1 kern=1\n[y] font=Times strike=1 kern=-1.5\n"},
          Case{"\\li720\\fi-360\\ri100\\qj x\\par\\pard y",
               "[x\\n] font=Times align=4 first=18 head=36 tail=5\n[y] font=Times\n"},
          Case{"x\\qc\\par", "[x\\n] font=Times align=2\n"},
          Case{"\\sl360\\slmult1\\sb20\\sa40 x\\par\\sl-300\\slmult0 y\\par\\sl240\\slmult1 z",
               "[x\\n] font=Times multiple=1.5 after=2 before=1\n[y\\n] font=Times minimum=15 maximum=15 "
               "after=2 before=1\n"
               "[z] font=Times after=2 before=1\n"},
          Case{"\\tqr\\tx720\\tx1440 x", "[x] font=Times tab=2:36 tab=0:72\n"},
          Case{"\\outlinelevel1\\rtlpar x", "[x] font=Times direction=2 header=2\n"},
          Case{"\\qr\\rtlpar\\qnatural\\pardirnatural x", "[x] font=Times\n"},
          Case{"\\super200 a\\sub200 b\\super-1 c\\super0 d\\super x",
               "[a] font=Times superscript=127\n[b] font=Times superscript=-127\n[cd] font=Times\n[x] "
               "font=Times "
               "superscript=1\n"},
          Case{"\\up x\\dn y\\dn4 z\\up0 w",
               "[x] font=Times offset=3\n[y] font=Times offset=-3\n[z] font=Times offset=-2\n[w] font=Times\n"},
          Case{"\\fs25\\fs x\\fsmilli12500 y", "[x] font=Times\n[y] font=Times size=0.5\n"},
          Case{"\\scaps a\\scaps0 b\\striked c\\striked0 d\\strike e\\strike0 f",
               "[a] font=Times smallcaps=1\n[b] font=Times\n[c] font=Times strike=2\n[d] font=Times\n[e] "
               "font=Times "
               "strike=1\n[f] font=Times\n"},
          Case{"\\cb1 x\\chcbpat2 y",
               "[x] font=Times background=255.0.0\n[y] font=Times background=0.0.255.128\n"},
          Case{"\\lin20\\rin40\\fi20 x\\par\\pard\\ql\\ltrpar y",
               "[x\\n] font=Times first=2 head=1 tail=2\n[y] font=Times align=1 direction=1\n"},
          Case{"\\sl300 x\\par\\slmult1\\sl-300 y\\par\\sl0 z\\par\\slminimum100\\slmaximum200\\slleading40 "
               "w\\par\\slminimum-1\\slmaximum-1\\slleading0\\pardeftab720 v",
               "[x\\n] font=Times minimum=15\n[y\\n] font=Times minimum=15 maximum=15\n[z\\n] "
               "font=Times\n[w\\n] "
               "font=Times spacing=2 minimum=5 maximum=10\n[v] font=Times interval=36\n"},
          Case{"\\tqc\\tx20\\tqdec\\tb40\\tx60 x", "[x] font=Times tab=1:1 tab=3:2 tab=0:3\n"},
          Case{
              "\\tx20 x\\par{\\tx40 y\\par}\\tx60 z",
              "[x\\n] font=Times tab=0:1\n[y\\n] font=Times tab=0:1 tab=0:2\n[z] font=Times tab=0:1 tab=0:3\n"},
          Case{"\\outlinelevel5 x\\par\\outlinelevel6 y\\par\\outlinelevel-1 z",
               "[x\\n] font=Times header=6\n[y\\nz] font=Times\n"},
          Case{"{\\field{\\*\\fldinst{HYPERLINK a{\\fldinst gone}}}{\\fldrslt\\plain x{\\field{\\*\\fldinst "
               "PAGE}{\\fldrslt\\b 3}}}}y",
               "[x] font=Times link=a\n[3] font=Times weight=300 link=a\n[y] font=Times\n"},
          Case{"{\\field{\\*\\fldinst{HYPERLINK \"http://a/\\\\\\\\b\" \\\\l \"c\" \\\\o "
               "\"tip\"}}{\\fldrslt{\\ul x}}}y",
               "[x] font=Times underline=1 link=http://a/\\b#c\n[y] font=Times\n"},
          Case{"{\\field{\\*\\fldinst hyperlink \\\\o \"tip\" \\\\t \"_top\" \\\\n a \"b\"}{\\fldrslt x}}",
               "[x] font=Times link=a\n"},
          Case{"{\\field{\\*\\fldinst HYPERLINK \\\\l c}{\\fldrslt x}}{\\field{\\*\\fldinst \"HYPERLINK\" "
               "a}{\\fldrslt y}}",
               "[x] font=Times link=#c\n[y] font=Times\n"},
          Case{"{\\field{\\*\\fldinst PAGE}{\\fldrslt 3}}", "[3] font=Times\n"},
          Case{"{\\pict\\pngblip\\picwgoal200\\pichgoal100\\picscalex50 8950\n4e470d0a1a0a}",
               "[\ufffc] font=Times file=picture1.png bytes=8 shown=5x5\n"},
          Case{"{\\pict\\jpegblip\\picwgoal200\\pichgoal100\\picscaley300 ffd8ff}",
               "[\ufffc] font=Times file=picture1.jpg bytes=3 shown=10x15\n"},
          Case{"{\\pict\\dibitmap0 00}{\\nonshppict{\\pict\\pngblip 00}}x", "[x] font=Times\n"},
          Case{"{\\pict\\emfblip\\picwgoal200 00}{\\pict\\wmetafile8\\picwgoal20\\pichgoal20\\picscalex0 8 "
               "g9\n1}{\\pict\\pngblip\\bin3 }}}}x",
               "[\ufffc] font=Times file=picture1.emf bytes=1\n[\ufffc] font=Times file=picture2.wmf bytes=1 "
               "shown=0.01x1\n[\ufffc] font=Times file=picture3.png bytes=3\n[x] font=Times\n"},
          Case{"{{\\NeXTGraphic none.png \\width20 \\height20\n}\\'ac}x", "[x] font=Times\n"},
          Case{"\\pard{\\pntext 1.\\tab}{\\*\\pn\\pnlvlbody\\pnucrm\\pnstart4}x\\par y\\par\\pard z",
               "[\\t1.\\tx\\ny\\n] font=Times list=1073741824:{upper-roman}:4\n[z] font=Times\n"},
          Case{"{\\*\\pn\\pnlvlblt{\\pntxtb o}}u\\par\\pard{\\*\\pn\\pnlvlbody\\pnlcltr}v\\par"
               "\\pard{\\*\\pn\\pnlvl2\\pnucltr}w\\par\\pard{\\*\\pn\\pnlcrm}x\\par\\pard{\\*"
               "\\pn\\pnlcrm\\pndec}y",
               "[u\\n] font=Times list=1073741824:{disc}:1\n[v\\n] font=Times list=1073741825:{lower-alpha}:1\n"
               "[w\\n] font=Times list=1073741826:{upper-alpha}:1\n[x\\n] font=Times "
               "list=1073741827:{lower-roman}:1\n[y] font=Times list=1073741828:{decimal}:1\n"},
      })
    EXPECT_EQ(describe(read(std::string(kTables) + std::string(c.source))), c.expected) << c.source;
}

TEST(RTFReader, FontsAndColors) {
  for (const Case &c : {
           Case{"{\\fonttbl{\\f0\\fcharset204 \\'c0\\'f0;}{\\f1\\fcharset161 \\'c1;}{\\f2 \\'c1;}}\\f0 x\\f1 "
                "y\\f2 z",
                "[x] font=\u0410\u0440\n[y] font=\u0391\n[z] font=\u00c1\n"},
           Case{"{\\fonttbl{\\f0  A B ;}{\\f0 C;}{\\f1;}}x\\f1 y", "[x] font=A B\n[y]\n"},
           Case{"{\\fonttbl{\\f0 A}}x", "[x] font=A\n"},
           Case{"{\\fonttbl\\f0 A;\\f1 B;}\\deff1 x\\f0 y\\f9 z", "[x] font=B\n[y] font=A\n[z] font=B\n"},
           Case{"{\\fonttbl{\\f1\\cpg1253\\fcharset204 G;}{\\f2\\fcharset204\\cpg1253\\cpg1 "
                "G;}}\\f1\\'e1\\f2\\'e1",
                "[\u03b1\u03b1] font=G\n"},
           Case{"\\ansicpg1251{\\fonttbl{\\f1\\fcharset0 A;}{\\f2\\fcharset1 A;}}\\f1\\'e1\\f2\\'e1",
                "[\u00e1\u0431] font=A\n"},
           Case{"\\ansicpg932{\\fonttbl{\\f1\\fcharset0 A;}}\\f1\\'82\\'a0", "[\u3042] font=A\n"},
           Case{"{\\colortbl;\\red300\\green-5\\blue7;}{\\*\\expandedcolortbl;\\alpha-1;\\alpha0;}\\cf1 x",
                "[x] color=255.0.7.0\n"},
           Case{"{\\colortbl;\\red1;}{\\*\\expandedcolortbl;\\alpha200000;}\\cf1 x", "[x] color=1.0.0\n"},
           Case{"{\\colortbl;\\red1\\green2;\\blue3;;}\\cf2 x\\cf3 y\\cf-1 z", "[x] color=0.0.3\n[yz]\n"},
           Case{"{\\colortbl;\\red1;}{\\colortbl;\\red2;}\\cf1 x\\cf2 y", "[x] color=2.0.0\n[y]\n"},
       })
    EXPECT_EQ(describe(read(c.source)), c.expected) << c.source;
}

TEST(RTFReader, Underlines) {
  const std::pair<const char *, int> words[] = {
      {"ul", 1},         {"ulth", 2},     {"uldb", 3},       {"uld", 4},       {"ulthd", 4},
      {"uldash", 5},     {"ulldash", 5},  {"ulthdash", 5},   {"ulthldash", 5}, {"uldashd", 6},
      {"ulthdashd", 6},  {"uldashdd", 7}, {"ulthdashdd", 7}, {"ulwave", 8},    {"ulhwave", 8},
      {"ululdbwave", 8}, {"ulw", 9},
  };
  for (const auto &[word, style] : words)
    for (const std::string &end : {std::string("ulnone"), std::string("ul0"), std::string(word) + "0"})
      EXPECT_EQ(describe(read("\\" + std::string(word) + " x\\" + end + " y")),
                "[x] underline=" + std::to_string(style) + "\n[y]\n")
          << word;
}

TEST(RTFReader, LinksOfInstructions) {
  const Case cases[] = {
      {R"(HYPERLINK "a\"b\\c")", "a\"b\\c"},
      {R"(HYPERLINK "a)", "a"},
      {R"(HYPERLINK a"b")", "a"},
      {R"(HYPERLINK \l "c" \o tip "d")", "d#c"},
      {R"(HYPERLINK "a" \t x \l)", "a"},
      {R"(HYPERLINK "\a")", "\\a"},
      {"HYPERLINK", ""},
      {R"(HYPERLINK "")", ""},
      {"HYPERLINKS a", ""},
      {R"(HYPERLINK \o a)", ""},
      {"  HYPERLINK   a  ", "a"},
      {"", ""},
  };
  for (const Case &c : cases) {
    std::string escaped;
    for (const char unit : c.source) escaped += unit == '\\' ? "\\\\" : std::string(1, unit);
    const std::string link(c.expected);
    EXPECT_EQ(describe(read("{\\field{\\*\\fldinst{" + escaped + "}}{\\fldrslt x}}")),
              link.empty() ? "[x]\n" : "[x] link=" + link + "\n")
        << c.source;
  }
}

TEST(RTFReader, Lists) {
  constexpr std::string_view kLists =
      "{\\*\\listtable{\\list{\\listlevel\\levelnfc0{\\leveltext\\'02\\'00);}}{"
      "\\listlevel\\levelnfc4\\levelstartat3"
      "{\\leveltext\\'04\\'00.(\\'01;}}\\listid7}{\\list{\\listlevel\\levelnfc23{\\leveltext\\'01\\u8226 "
      "?;}}\\listid8}{\\list{\\listlevel\\levelnfc1}{\\listlevel\\levelnfc2}{\\listlevel\\levelnfc3}\\listid9}}"
      "{\\*\\listoverridetable{\\listoverride\\listid7\\ls1}{\\listoverride\\listid8\\ls2}"
      "{\\listoverride\\listid7{\\lfolevel\\listoverridestartat\\levelstartat9}\\ls3}{"
      "\\listoverride\\listid99\\ls4}{\\listoverride\\listid9\\ls6}}";
  for (const Case &c : {
           Case{"\\ls1\\ilvl0 x", "[x] list=1:{decimal}):1\n"},
           Case{"\\ls1\\ilvl1 x", "[x] list=1:{decimal}):1 list=2:{lower-alpha}:3\n"},
           Case{"\\ls2 x", "[x] list=10:{disc}:1\n"},
           Case{"\\ls3 x", "[x] list=55:{decimal}):9\n"},
           Case{"\\ls4 x\\par\\ls5 y\\par\\ls0 z", "[x\\ny\\nz]\n"},
           Case{"\\ls-1 x", "[x]\n"},
           Case{"\\ls1\\ilvl-1 x", "[x] list=1:{decimal}):1\n"},
           Case{"\\ls2\\ilvl99 x",
                "[x] list=10:{disc}:1 list=11:{decimal}.:1 list=12:{decimal}.:1 list=13:{decimal}.:1 "
                "list=14:{decimal}.:1 list=15:{decimal}.:1 list=16:{decimal}.:1 list=17:{decimal}.:1 "
                "list=18:{decimal}.:1\n"},
           Case{"{\\*\\pn\\pnlvlbody}x\\par\\pard{\\*\\pn\\pndec}y", "[x\\ny] list=1073741824:{decimal}:1\n"},
           Case{"\\ls6\\ilvl2 x",
                "[x] list=19:{upper-roman}.:1 list=20:{lower-roman}.:1 list=21:{upper-alpha}.:1\n"},
       })
    EXPECT_EQ(describe(read(std::string(kLists) + std::string(c.source))), c.expected) << c.source;
}

TEST(RTFReader, BulletsAreMarkersOfTheirKind) {
  const std::pair<int, std::string_view> bullets[] = {
      {0x2022, "{disc}"},   {0xb7, "{disc}"},     {0x25cf, "{disc}"},   {-0xf49, "{disc}"},
      {0x25e6, "{circle}"}, {0x25cb, "{circle}"}, {'o', "{circle}"},    {0x25aa, "{square}"},
      {0x25a0, "{square}"}, {-0xf59, "{square}"}, {0x2043, "{hyphen}"}, {'-', "{hyphen}"},
      {0x2013, "{hyphen}"}, {0x2713, "{check}"},  {-0xf04, "{check}"},  {0x25c6, "{diamond}"},
      {0x25a1, "{box}"},    {'*', "*"},
  };
  for (const auto &[bullet, format] : bullets)
    EXPECT_EQ(describe(read("{\\*\\listtable{\\list{\\listlevel\\levelnfc23{\\leveltext\\'01\\u" +
                            std::to_string(bullet) +
                            " ?;}}\\listid1}}{\\*\\listoverridetable{\\listoverride\\listid1\\ls1}}\\ls1 x")),
              "[x] list=1:" + std::string(format) + ":1\n")
        << bullet;
}

TEST(RTFReader, ListsWithoutLevelsAndLevelsWithoutLists) {
  // What describes a level says nothing where there is none, nor within an override.
  const std::string level = "{\\listlevel\\levelnfc4{\\leveltext\\'02\\'00);}}";
  const std::string stray =
      "{\\leveltext\\'02\\'00x;}{\\*\\levelmarker x}\\levelnfc1\\levelstartat5\\leveltemplateid6";
  EXPECT_EQ(describe(read("{\\*\\listtable" + stray + "{\\list" + stray + level + "\\listid7}{\\list" + stray +
                          "\\listid8}{\\list{\\listlevel\\levelnfc1{\\leveltext}}"
                          "\\listid9}}{\\*\\listoverridetable{\\listoverride\\listid9{\\lfolevel{\\listlevel" +
                          stray + "}}\\ls3}{\\listoverride\\listid7" + stray +
                          "\\ls1}{\\listoverride\\listid8\\ls2}}\\ls1 x\\par\\ls2 y\\par\\ls3 z")),
            "[x\\n] list=1:{lower-alpha}):1\n[y\\n] list=10:{decimal}.:1\n[z] list=37:{upper-roman}.:5\n");
}

TEST(RTFReader, LevelsOfLists) {
  const Case levels[] = {
      {"\\levelnfc0{\\leveltext\\'05(\\'00)\\'01x;}", "({decimal})"},
      {"\\levelnfcn2{\\leveltext\\'01\\'00;}", "{lower-roman}"},
      {"\\levelnfc255{\\leveltext\\'01x;}", "x"},
      {"\\levelnfc23{\\leveltext\\'02oo;}", "oo"},
  };
  for (const Case &c : levels)
    EXPECT_EQ(describe(read("{\\*\\listtable{\\list{\\listlevel" + std::string(c.source) +
                            "}\\listid1}}{\\*\\listoverridetable{\\listoverride\\listid1\\ls1}}\\ls1 x")),
              "[x] list=1:" + std::string(c.expected) + ":1\n")
        << c.source;
  // Only what gives a start of its own makes an override another list.
  EXPECT_EQ(
      describe(read("{\\*\\listtable{\\list\\listid7}}{\\*\\listoverridetable{\\listoverride\\listid7"
                    "{\\lfolevel}\\ls1}{\\listoverride\\listid7{\\lfolevel}{\\lfolevel\\levelstartat9}\\ls2}}"
                    "\\ls1 x\\par\\ls2\\ilvl1 y")),
      "[x\\n] list=1:{decimal}.:1\n[y] list=28:{decimal}.:1 list=29:{decimal}.:9\n");
}

TEST(RTFReader, Tables) {
  for (const Case &c : {
           Case{"\\trowd\\cellx1000\\cellx2000\\intbl a\\cell b\\par c\\cell\\row\\pard d",
                "[a\\n] cell=1/2:0+1,0+1 width=50pt\n[b\\nc\\n] cell=1/2:0+1,1+1 width=50pt\n[d]\n"},
           Case{"\\trowd\\cellx1000\\cellx2000\\intbl a\\cell b\\cell\\row\\trowd\\cellx2010\\intbl "
                "c\\cell\\row",
                "[a\\n] cell=1/2:0+1,0+1 width=50pt\n[b\\n] cell=1/2:0+1,1+1 width=50pt\n[c\\n] "
                "cell=1/2:1+1,0+2 width=100.5pt\n"},
           Case{"\\trowd\\clvmgf\\cellx1000\\cellx2000\\intbl a\\cell "
                "b\\cell\\row\\trowd\\clvmrg\\cellx1000\\cellx2000\\intbl\\cell c\\cell\\row",
                "[a\\n] cell=1/2:0+2,0+1 width=50pt\n[b\\n] cell=1/2:0+1,1+1 width=50pt\n[c\\n] "
                "cell=1/2:1+1,1+1 width=50pt\n"},
           Case{"\\trowd\\cellx1000\\intbl a\\cell\\row\\pard x\\par\\trowd\\cellx1000\\intbl b\\cell\\row",
                "[a\\n] cell=1/1:0+1,0+1 width=50pt\n[x\\n]\n[b\\n] cell=2/1:0+1,0+1 width=50pt\n"},
           Case{"\\trowd\\cellx1000\\lastrow\\intbl a\\cell\\row\\trowd\\cellx1000\\intbl b\\cell\\row",
                "[a\\n] cell=1/1:0+1,0+1 width=50pt\n[b\\n] cell=2/1:0+1,0+1 width=50pt\n"},
           Case{"\\trowd\\cellx1000\\intbl a\\par\\itap2 "
                "b\\nestcell{\\*\\nesttableprops\\trowd\\cellx500\\nestrow}"
                "{\\nonesttables\\par}\\pard\\intbl\\cell\\row",
                "[a\\n] cell=1/1:0+1,0+1 width=50pt\n[b\\n] cell=1/1:0+1,0+1 width=50pt cell=2/1:0+1,0+1 "
                "width=25pt\n"},
           Case{"\\trowd\\clcbpat1\\clbrdrb\\brdrs\\brdrw40\\clpadl20\\clftsWidth2\\clwWidth2500\\clvertalc\\ce"
                "llx9\\intbl a\\cell\\row",
                "[a\\n] cell=1/1:0+1,0+1 padding=1 border=2 width=50% valign=1\n"},
           // A cell's own padding counts more than the row's, also none, and that more than the gap.
           Case{
               "\\trowd\\trgaph60\\trpaddt40\\trpaddr0\\clpadt0\\clpadb20\\cellx1000\\cellx2000\\intbl a\\cell "
               "b\\cell\\row",
               "[a\\n] cell=1/2:0+1,0+1 padding=3 padding=1 width=50pt\n[b\\n] cell=1/2:0+1,1+1 padding=2 "
               "padding=3 width=50pt\n"},
           Case{"\\trowd\\trgaph100\\trpaddt20\\trpaddl40\\trpaddb60\\trpaddr80\\cellx1000\\clpadt80\\clpadl60"
                "\\clpadb40"
                "\\clpadr20\\cellx2000\\intbl a\\cell b\\cell\\row\\trowd\\trgaph100\\cellx1000\\intbl "
                "c\\cell\\row",
                "[a\\n] cell=1/2:0+1,0+1 padding=1 padding=2 padding=3 padding=4 width=50pt\n[b\\n] "
                "cell=1/2:0+1,1+1 padding=4 padding=3 padding=2 padding=1 width=50pt\n[c\\n] cell=1/2:1+1,0+1 "
                "padding=5 padding=5 width=50pt\n"},
           // What belongs to the row's border or the paragraph's is none of the cell's.
           Case{"\\trowd\\clbrdrb\\brdrs\\brdrw40\\brdrt\\brdrw60\\clbrdrl\\brdrs\\brdrw40\\trbrdrv\\brdrnone\\"
                "cellx1000"
                "\\intbl a\\cell\\row",
                "[a\\n] cell=1/1:0+1,0+1 border=2 border=2 width=50pt\n"},
           Case{
               "{\\colortbl;\\red255\\green0\\blue0;}\\trowd\\clbrdrt\\brdrw40\\brdrs\\brdrcf1\\clbrdrl\\brdrdb"
               "\\clbrdrb\\brdrnone\\brdrb\\brdrdot\\brdrcf1\\clbrdrr\\brdrnil\\cellx1000\\brdrs\\clbrdrl\\brdr"
               "w-1"
               "\\cellx2000\\intbl a\\cell b\\cell\\row",
               "[a\\n] cell=1/2:0+1,0+1 border=2 bordercolor=255.0.0 border=0.75 width=50pt\n[b\\n] "
               "cell=1/2:0+1,1+1 width=50pt\n"},
           Case{"\\trowd\\clbrdrt\\brdrs\\brdrw40\\brdrnone\\clbrdrl\\brdrw40\\brdrnil\\cellx1000\\intbl "
                "a\\cell\\row",
                "[a\\n] cell=1/1:0+1,0+1 width=50pt\n"},
           // Widths that are left to the table, and edges that are nearly the same and not.
           Case{"\\trowd\\clwWidth500\\clftsWidth1\\cellx1000\\clvertalb\\cellx2000\\intbl a\\cell "
                "b\\cell\\row\\trowd\\taflags2\\cellx1020\\cellx2021\\intbl c\\cell d\\cell\\row",
                "[a\\n] cell=1/3:0+1,0+1\n[b\\n] cell=1/3:0+1,1+1 width=50pt valign=2\n[c\\n] cell=1/3:1+1,0+1 "
                "width=51pt\n[d\\n] cell=1/3:1+1,1+2 width=50.05pt\n"},
           Case{"\\trowd\\taflags3\\trgaph-20\\trpaddl-1\\trpaddb20\\cellx0\\intbl a\\cell\\row",
                "[a\\n] cell=1/1:0+1,0+1 collapsed padding=1 width=2pt\n"},
           // Cells that go on with none, and look different.
           Case{"\\trowd\\clvmrg\\cellx1000\\clvmrg\\cellx2000\\cellx3000\\intbl{\\b\\cell}\\cell c\\cell\\row",
                "[c\\n] cell=1/3:0+1,2+1 width=50pt\n"},
           // Places that go on with nothing beside them, an inner row that ends where there is none, and no
           // table.
           Case{"\\trowd\\clmrg\\cellx1000\\clmgf\\cellx2000\\cellx3000\\clmrg\\cellx4000\\intbl "
                "a\\cell\\nestrow b\\cell c\\cell d\\cell\\row\\itap0 e",
                "[a\\n] cell=1/4:0+1,0+1 width=50pt\n[b\\n] cell=1/4:0+1,1+1 width=50pt\n[c\\n] "
                "cell=1/4:0+1,2+1 width=50pt\n[d\\n] cell=1/4:0+1,3+1 width=50pt\n[e]\n"},
           // Cells without definitions, and a row without an end.
           Case{"\\intbl a\\cell b\\cell\\row\\intbl c",
                "[a\\n] cell=1/2:0+1,0+1\n[b\\n] cell=1/2:0+1,1+1\n[c] cell=1/2:1+1,0+1\n"},
           Case{"\\row\\cell\\nestcell\\nestrow\\cellx5\\lastrow\\row x",
                "[\\n] cell=1/2:0+1,0+1 width=2pt\n[\\n] cell=1/2:0+1,1+1 cell=2/1:0+1,0+1\n[x]\n"},
       })
    EXPECT_EQ(describe(read(c.source)), c.expected) << c.source;
}

TEST(RTFReader, DocumentAttributes) {
  DocumentAttributes attributes;
  ASSERT_TRUE(initWithRTF(
      dataOf("{\\rtf1\\ansi\\paperw12240\\paperh15840\\margl1440\\margr0{\\info{\\title T\\u228 "
             "?}{\\author  A }{\\subject}"
             "{\\keywords a, b;c}{\\*\\company C}{\\upr{\\author no}{\\*\\ud{\\author yes}}}"
             "{\\creatim\\yr2001\\mo2\\dy3\\hr4\\min5}{\\revtim\\yr0\\mo0\\dy0\\hr0\\min0}}x{\\title no}}"),
      &attributes));
  EXPECT_EQ(attributes.documentType, u"NSRTF"_ns);
  EXPECT_EQ(attributes.title, u"T\u00e4"_ns);
  EXPECT_EQ(attributes.author, u"yes"_ns);
  EXPECT_FALSE(attributes.subject);
  EXPECT_EQ(attributes.keywords, (std::vector<NSString>{u"a"_ns, u"b"_ns, u"c"_ns}));
  EXPECT_EQ(attributes.company, u"C"_ns);
  EXPECT_EQ(attributes.creationTime, NSDate::dateWithUTC(2001, 2, 3, 4, 5, 0));
  EXPECT_FALSE(attributes.modificationTime);
  EXPECT_EQ(attributes.paperSize, (NSSize{612, 792}));
  EXPECT_EQ(attributes.leftMargin, 72);
  EXPECT_EQ(attributes.rightMargin, 0);
  EXPECT_FALSE(attributes.topMargin);
  for (const auto &[source, size] :
       {std::pair{"{\\rtf1\\paperw200 a}", NSSize{10, 792}}, {"{\\rtf1\\paperh200 a}", {612, 10}}}) {
    DocumentAttributes of;
    ASSERT_TRUE(initWithRTF(dataOf(source), &of));
    EXPECT_EQ(of.paperSize, size);
  }
}

TEST(RTFReader, DatesAndKeywords) {
  const auto info = [](const std::string &content) {
    DocumentAttributes attributes;
    EXPECT_TRUE(initWithRTF(dataOf("{\\rtf1{\\info" + content + "}}"), &attributes));
    return attributes;
  };
  for (const char *unknown : {"\\yr0", "\\mo0", "\\dy0"})
    EXPECT_FALSE(info("{\\creatim" + std::string(unknown) + "}").creationTime) << unknown;
  EXPECT_EQ(info("{\\revtim\\yr2001}").modificationTime, NSDate::dateWithUTC(2001, 1, 1, 0, 0, 0));
  EXPECT_EQ(info("{\\creatim\\yr2001\\mo2\\dy3\\hr4\\min5\\sec6}{\\revtim}").creationTime,
            NSDate::dateWithUTC(2001, 2, 3, 4, 5, 6));
  EXPECT_EQ(info("{\\keywords a,, b ; }").keywords, (std::vector<NSString>{u"a"_ns, u"b"_ns}));
  EXPECT_EQ(info("{\\keywords a}{\\keywords b}").keywords, std::vector<NSString>{u"b"_ns});
}

TEST(RTFReader, OtherDataIsNil) {
  for (const std::string_view bytes : {"", "text", "{\\rt", "{rtf1}", "rtfd"}) {
    NSError error;
    EXPECT_FALSE(initWithRTF(dataOf(bytes), nullptr, &error));
    EXPECT_EQ(error.errorCode(), ErrorCode::unsupportedType);
    error = NSError();
    EXPECT_FALSE(initWithRTFD(dataOf(bytes), nullptr, &error));
    EXPECT_TRUE(error.localizedFailureReason);
  }
  EXPECT_FALSE(initWithRTF(NSData()));
  EXPECT_FALSE(RTFFromRange(NSAttributedString(), {0, 5}));
  EXPECT_FALSE(RTFDFromRange(NSAttributedString(), {0, 5}));
  EXPECT_TRUE(initWithRTF(dataOf(" \n{\\rtf1}")));
}

TEST(RTFReader, RTFDAttachments) {
  const auto file = [](std::string_view name, std::string_view bytes) {
    return NSFileWrapper::regularFileWithContents(dataOf(bytes), NSString::stringWithUTF8String(name));
  };
  const NSFileWrapper folder = NSFileWrapper::directoryWithFileWrappers(
      {file("TXT.rtf",
            "{\\rtf1\\ansi a{{\\NeXTGraphic pic.png \\width200 \\height100 \\noorient\n}\\'ac}"
            "{\\v{{\\NeXTGraphic PIC.png}\\'ac}}b{{\\NeXTGraphic "
            "link \\width0 "
            "\\height0}\\'ac}{{\\NeXTGraphic ../pic.png}\\'ac}c{{\\NeXTGraphic PIC.png}\\'ac}}"),
       file("pic.png", "1234"), file("PIC.png", "12345"),
       NSFileWrapper::symbolicLinkWithDestination(u"/etc/passwd"_ns, u"link"_ns)});
  const std::string expected = "[a]\n[\ufffc] file=pic.png bytes=4 shown=10x5\n[bc]\n";
  EXPECT_EQ(describe(initWithRTFD(folder.serializedRepresentation())), expected);
  // Beside the other it has another name in the folder.
  EXPECT_EQ(describe(initWithRTFDFileWrapper(folder)), expected + "[\ufffc] file=PIC.png bytes=5\n");
  // Where nothing stands for a picture it comes before the end of the paragraph, the cell or the text.
  const std::string pending =
      "{\\rtf1{\\NeXTGraphic a.png \\height20}\\par\\trowd\\cellx1000\\intbl{\\NeXTGraphic "
      "a.png}\\par\\itap2{\\NeXTGraphic "
      "a.png}\\nestcell{\\*\\nesttableprops\\trowd\\cellx500\\lastrow\\nestrow}\\pard\\intbl{\\NeXTGraphic "
      "a.png}\\cell\\row"
      "\\pard{\\NeXTGraphic a.png}}";
  const std::string outer = " cell=1/1:0+1,0+1 width=50pt", inner = outer + " cell=2/1:0+1,0+1 width=25pt";
  std::string expectedPending;
  for (const std::string &place : {std::string(), outer, inner, outer})
    expectedPending += "[\ufffc]" + place + " file=a.png bytes=1\n[\\n]" + place + "\n";
  EXPECT_EQ(describe(initWithRTFDFileWrapper(
                NSFileWrapper::directoryWithFileWrappers({file("TXT.rtf", pending), file("a.png", "1")}))),
            expectedPending + "[\ufffc] file=a.png bytes=1\n");
  NSError error;
  EXPECT_FALSE(
      initWithRTFDFileWrapper(NSFileWrapper::directoryWithFileWrappers({file("x", "y")}), nullptr, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::damaged);
}

TEST(RTFWriter, AttachmentsGetNamesOfTheirOwn) {
  const auto attachment = [](std::string_view name, std::string_view bytes) {
    TextAttributes attributes;
    attributes.attachment = NSTextAttachment(
        NSFileWrapper::regularFileWithContents(dataOf(bytes), NSString::stringWithUTF8String(name)));
    return Interned(attributes);
  };
  NSMutableAttributedString builder;
  for (const auto &[name, bytes] :
       {std::pair("txt.RTF", "1"), {"a.png", "2"}, {"A.png", "3"}, {"a.png", "2"}, {"../x", "4"}})
    builder.append(NSAttachmentCharacter, attachment(name, bytes));
  const NSAttributedString text = std::move(builder).attributedString();
  const NSFileWrapper folder = RTFDFileWrapperFromRange(text, {0, 5});
  std::string names;
  for (const auto &entry : folder.fileWrappers()) names += entry.first.UTF8String() + " ";
  EXPECT_EQ(names, "TXT.rtf txt-1.RTF a.png A-1.png .._x ");
  DocumentAttributes attributes;
  EXPECT_EQ(initWithRTFDFileWrapper(folder, &attributes).length(), 5u);
  EXPECT_EQ(attributes.documentType, u"NSRTFD"_ns);
  EXPECT_EQ(initWithRTF(RTFFromRange(text, {0, 5})).length(), 0u) << "RTF alone holds pictures only";
}

TEST(RTFWriter, OnlyWideCellsAreMergedInARow) {
  // A cell that reaches down, of one column and of two.
  for (const auto &[span, starts] : {std::pair(1u, 0), {2u, 2}}) {
    const NSTextTable table{1, 3, false, {}};
    NSMutableAttributedString builder;
    for (const auto &[row, column] : {std::pair(0u, 0u), {0u, span}, {1u, span}}) {
      NSTextTableBlock block;
      block.table = Interned(table);
      block.startingRow = row;
      block.startingColumn = column;
      block.columnSpan = column == 0 ? span : 1;
      block.rowSpan = column == 0 ? 2 : 1;
      NSParagraphStyle style;
      style.textBlocks = {Interned(block)};
      TextAttributes attributes;
      attributes.paragraphStyle = Interned(style);
      builder.append(u"x\n", Interned(attributes));
    }
    const std::string rtf(RTFFromRange(std::move(builder).attributedString(), {0, 6}).view());
    int found = 0;
    for (std::size_t at = 0; (at = rtf.find("\\clmgf", at)) != rtf.npos; ++at) ++found;
    EXPECT_EQ(found, starts) << rtf;
  }
}

TEST(RTFReader, LimitsHold) {
  EXPECT_EQ(textOf(repeated("{\\b ", 100'000) + "x" + repeated("}", 100'000) + "y"), "xy");
  EXPECT_EQ(textOf(repeated("{\\field{\\*\\fldinst{HYPERLINK a}}{\\fldrslt ", 20'000) + "x"), "x");
  const NSAttributedString wide =
      read("\\trowd" + repeated("\\cellx5", 10'000) + "\\intbl " + repeated("x\\cell ", 10'000) + "\\row");
  EXPECT_EQ(wide.length(), 20'000u);
  EXPECT_EQ(wide.attributesAtIndex(0)->paragraphStyle->textBlocks.at(0)->table->numberOfColumns, 4096u);
  EXPECT_EQ(describe(read("{\\colortbl" + repeated("\\red1;", 65'537) + "}\\cf65535 x\\cf65536 y")),
            "[x] color=1.0.0\n[y]\n");
  EXPECT_EQ(textOf("\\uc300\\u97 " + repeated("x", 256)), "ax");
  // A field beyond the limit leaves that around it as it is.
  EXPECT_EQ(describe(read(repeated("{\\field}", 65'535) +
                          "{\\field{\\*\\fldinst{HYPERLINK a}}{\\fldrslt x{\\field{\\*\\fldinst{HYPERLINK "
                          "b}}{\\fldrslt y}}}}{\\field{\\*\\fldinst{HYPERLINK c}}{\\fldrslt z}}")),
            "[xy] link=a\n[z]\n");
  const NSAttributedString deep = read(repeated("\\intbl\\itap900 x\\nestcell", 10));
  EXPECT_EQ(deep.attributesAtIndex(0)->paragraphStyle->textBlocks.size(), 16u);
  EXPECT_EQ(read(repeated("\\tx5", 1000) + "x").attributesAtIndex(0)->paragraphStyle->tabStops.size(), 64u);
  EXPECT_EQ(textOf("\\u99999999999999999999999?\\fs-99999999999\\li99999999999\\cellx-9999999999 x").substr(3),
            "x");
  EXPECT_EQ(textOf("{\\pict\\pngblip\\bin999999999 x"), "\ufffc");
}

}  // namespace
}  // namespace nimbo
