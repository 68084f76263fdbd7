// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>

#include "platform/PDFKit/PDFDocument.hpp"
#include "tests/support/PDFSamples.hpp"

namespace nimbo {
namespace {

/// A page of 400 by 400 points, its content and its font "F".
NSData pageOfContent(const std::string &content, const std::string &font, const std::string &entries = "",
                     const std::string &stream = "") {
  return PDFOfObjects({"<</Type /Catalog /Pages 2 0 R>>", "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                       "<</Type /Page /Parent 2 0 R /MediaBox [0 0 400 400] /Contents 4 0 R " + entries +
                           " /Resources <</Font <</F 5 0 R>>>>>>",
                       PDFStream("", content), "<</Type /Font " + font + ">>", PDFStream("", stream)});
}

std::string textOfPage(const NSData &data) {
  const auto document = PDFDocument::documentWithData(data);
  NSError error;
  const PDFPage page = document->pageAtIndex(0);
  const NSString text = page.string(&error);
  EXPECT_FALSE(error) << error.localizedFailureReason.UTF8String();
  EXPECT_EQ(page.attributedString().string(), text);
  return text ? text.UTF8String() : "";
}

/// The lines, without blanks at their ends, that are not empty.
std::string linesOfText(const std::string &text) {
  std::string lines;
  for (std::size_t start = 0, end; start < text.size(); start = end + 1) {
    end = std::min(text.find('\n', start), text.size());
    std::string line = text.substr(start, end - start);
    line.erase(line.find_last_not_of(' ') + 1);
    if (!line.empty()) lines += line + "\n";
  }
  return lines;
}

TEST(PDFPageText, IsWhatAuthorsWroteFromRightToLeft) {
  const std::string written(samplePDF("right-to-left.txt").view());
  for (const char *name : {"right-to-left-cairo.pdf", "right-to-left-browser.pdf", "right-to-left-office.pdf"})
    EXPECT_EQ(linesOfText(textOfPage(samplePDF(name))), written) << name;
}

/// The codes A to C are Hebrew letters, D a mark of theirs, E and F forms of Arabic letters, G that of a
/// mark, all of one width.
TEST(PDFPageText, IsInLogicalOrderHoweverItIsDrawn) {
  const std::string font =
      "/Subtype /Type1 /BaseFont /Odd /FirstChar 32 /LastChar 71 /Widths [" +
      [] {
        std::string widths;
        for (char code = ' '; code <= 'G'; ++code) widths += code == 'D' ? "0 " : "500 ";
        return widths;
      }() +
      "] /FontDescriptor <</Type /FontDescriptor /FontName /Odd /Flags 4 /MissingWidth 500>> "
      "/Encoding <</Differences [65 /uni05D0 /uni05D1 /uni05D2 /uni05B8 /uniFEFB /uniFE91 /uniFE76]>>";
  const struct {
    const char *what;
    const char *content;
    const char *text;
  } cases[] = {
      {"from left to right", "20 200 Td (CBA CB) Tj", "בג אבג\n"},
      {"as it is read", "60 200 Td (A) Tj -5 0 Td (B) Tj -5 0 Td (C) Tj", "אבג\n"},
      {"a mark before its letter", "20 200 Td (CBDA) Tj", "אָבג\n"},
      {"a mark behind its letter", "60 200 Td (A) Tj 0 0 Td (D) Tj -5 0 Td (B) Tj -5 0 Td (C) Tj", "אָבג\n"},
      {"mirrored glyphs", "-1 0 0 1 60 200 Tm (ABC) Tj", "אבג\n"},
      {"upside down", "-1 0 0 -1 60 200 Tm (CBA) Tj", "אבג\n"},
      {"forms of letters", "20 200 Td (EF) Tj", "بلا\n"},
      {"the form of a mark", "20 200 Td (GA) Tj", "א\u064e\n"},
      {"brackets that are seen", "20 200 Td (\\(CB\\) A) Tj", "א (בג)\n"},
      {"brackets that are read", "20 200 Td (\\)CB\\( A) Tj", "א (בג)\n"},
      {"brackets in what runs from left to right",
       "20 200 Td (CB abcd [ef] \\(gh\\)) Tj 0 -12 Td (ijklmnop) Tj", "בג abcd [ef] (gh)\nijklmnop\n"},
      {"brackets the wrong way round in it", "20 200 Td (CB abcd ]ef[ \\)gh\\() Tj 0 -12 Td (ijklmnop) Tj",
       "בג abcd [ef] (gh)\nijklmnop\n"},
      {"a mark before its letter in a cell", "200 200 Td (A) Tj -50 0 Td (DB) Tj", "א בָ\n"},
      {"parts of a line", "60 200 Td ( CBA) Tj -20 0 Td (1234) Tj -20 0 Td (.CB ) Tj", "אבג 1234 בג.\n"},
      {"parts without blanks", "60 200 Td (CBA) Tj -15 0 Td (CB) Tj", "אבג בג\n"},
      {"cells of a table", "200 200 Td (CBA) Tj -150 0 Td (CB) Tj", "אבג בג\n"},
      {"a blank that is wider than high", "20 200 Td 900 Tz (CB A) Tj", "א בג\n"},
      {"a mark behind all letters", "20 200 Td (CBD) Tj", "בָג\n"},
      {"a mark alone", "20 200 Td (D) Tj", "\u05b8\n"},
      {"both directions below letters from right to left", "20 200 Td (CBA) Tj 0 -12 Td (CB ab) Tj",
       "אבג\nab בג\n"},
      {"both directions below letters from left to right", "20 200 Td (abcd) Tj 0 -12 Td (CB ab) Tj",
       "abcd\nבג ab\n"},
      {"both directions and a full stop", "20 200 Td (abcd) Tj 0 -12 Td (.CB ab) Tj", "abcd\nab בג.\n"},
      {"a word that is divided", "20 200 Td (CBA-) Tj 0 -12 Td (CB) Tj", "אבגבג\n"},
  };
  for (const auto &c : cases)
    EXPECT_EQ(linesOfText(textOfPage(pageOfContent("BT /F 10 Tf " + std::string(c.content) + " ET", font))),
              c.text)
        << c.what;
}

TEST(PDFPageText, IsOnThePage) {
  const std::string helvetica = "/Subtype /Type1 /BaseFont /Helvetica";
  const struct {
    const char *what;
    const char *content;
    const char *entries;
    const char *text;
  } cases[] = {
      {"around it",
       "(on) Tj 0 500 Td (above) Tj 0 -1000 Td (below) Tj 500 500 Td (right) Tj -900 0 Td (left) Tj", "",
       "on\n"},
      {"a line across its edge", "370 0 Td (mmmmmmm) Tj", "", "mm\n"},
      {"outside what is shown", "(on) Tj", "/CropBox [200 200 300 300]", "on\n"},
      {"turned", "(on) Tj 0 -200 Td (below) Tj", "/Rotate 90 /CropBox [10 20 300 300]", "on\n"},
      {"a box in another place", "(off) Tj 500 500 Td (on) Tj", "/MediaBox [400 400 800 800]", "on\n"},
      {"a box of no size", "(on) Tj", "/MediaBox [0 0 0 0]", "on\n"},
  };
  for (const auto &c : cases)
    EXPECT_EQ(linesOfText(textOfPage(pageOfContent("BT /F 10 Tf 20 100 Td " + std::string(c.content) + " ET",
                                                   helvetica, c.entries))),
              c.text)
        << c.what;
}

TEST(PDFPageText, HasTheLettersThatFontsMean) {
  const std::string content = "BT /F 10 Tf 20 100 Td (oABCDEFGHIJ) Tj ET";
  const std::string longParts =
      "/Subtype /Type1 /BaseFont /Helvetica /Encoding <</Differences [65 /f_f_uni /f_" + std::string(120, 'x') +
      "]>>";
  const std::string map =
      "/CIDInit /ProcSet findresource begin begincmap 1 begincodespacerange <00> <7f> <c280> <dfbf> "
      "endcodespacerange ";
  const struct {
    const char *what;
    std::string content;
    const char *font;
    std::string stream;
    const char *text;
  } cases[] = {
      {"names of ligatures", content,
       "/Subtype /Type1 /BaseFont /Helvetica /Encoding <</Differences [65 /f_f_i /f_l /T_h /ffi /uniFB01 "
       "/uni00660069 /f_f_i.alt /f_oo /uni004A006F /uni0066:069]>>",
       "", "offiflThffifififfifJo\n"},
      {"a map that a font brings", "BT /F 10 Tf 20 100 Td (A) Tj ET",
       "/Subtype /Type1 /BaseFont /Helvetica /Encoding <</Differences [65 /f_f_i]>> /ToUnicode 6 0 R",
       map + "1 beginbfchar <41> <0078> endbfchar endcmap", "x\n"},
      {"names with parts that are none", "BT /F 10 Tf 20 100 Td (oABo) Tj ET", longParts.c_str(), "", "offo\n"},
      {"codes of one and two bytes", "BT /F 10 Tf 20 100 Td <61d0b0d0b1> Tj ET",
       "/Subtype /Type0 /BaseFont /Odd /Encoding 6 0 R /ToUnicode 6 0 R /DescendantFonts [<</Type /Font "
       "/Subtype "
       "/CIDFontType2 /BaseFont /Odd /CIDSystemInfo <</Registry (Odd) /Ordering (Odd) /Supplement 0>> "
       "/FontDescriptor <</Type /FontDescriptor /FontName /Odd /Flags 4>>>>]",
       map +
           "2 begincidrange <00> <7f> 0 <d080> <d0bf> 1024 endcidrange 2 beginbfrange <00> <7f> <0000> <d080> "
           "<d0bf> <0400> endbfrange endcmap",
       "aаб\n"},
      {"glyphs narrower than the document says", "BT /F 10 Tf 20 100 Td (Hello, 86) Tj ET",
       "/Subtype /TrueType /BaseFont /Arial /FirstChar 32 /LastChar 32 /Widths [278] /FontDescriptor <</Type "
       "/FontDescriptor /FontName /Arial /Flags 32 /MissingWidth 750>>",
       "", "Hello, 86\n"},
  };
  for (const auto &c : cases)
    EXPECT_EQ(linesOfText(textOfPage(pageOfContent(c.content, c.font, "", c.stream))), c.text) << c.what;
}

TEST(PDFPageText, HasTheTextGivenInPlaceOfGlyphs) {
  // The page's marked content 0 and 1 belongs to an element with a text, 2 to one within another with a text,
  // the form's 0 to one without.
  const auto page = [](const std::string &content, const std::string &entries = "") {
    return PDFOfObjects(
        {"<</Type /Catalog /Pages 2 0 R /StructTreeRoot 6 0 R>>", "<</Type /Pages /Kids [3 0 R] /Count 1>>",
         "<</Type /Page /Parent 2 0 R /MediaBox [0 0 400 400] /Contents 4 0 R /StructParents 1 " + entries +
             " /Resources <</Font <</F 5 0 R /T 12 0 R>> /XObject <</X 10 0 R>> /Properties <</N <</ActualText "
             "(named)>>>>>>>>",
         PDFStream("", "BT /F 10 Tf 20 100 Td " + content + " ET"),
         "<</Type /Font /Subtype /Type1 /BaseFont /Helvetica>>",
         "<</Type /StructTreeRoot /ParentTree <</Nums [0 [9 0 R] 1 [7 0 R 7 0 R 8 0 R]]>>>>",
         "<</S /P /P 6 0 R /ActualText (whole)>>", "<</S /Span /P 11 0 R /ActualText (inner)>>",
         "<</S /P /P 6 0 R>>",
         PDFStream(
             "/Type /XObject /Subtype /Form /BBox [0 0 400 400] /StructParents 0 /Resources <</Font <</F 5 0 "
             "R>>>> ",
             "/P <</MCID 0>> BDC /Span <</ActualText (open)>> BDC BT /F 10 Tf 20 50 Td (xx) Tj ET"),
         "<</S /P /P 6 0 R /ActualText (outer)>>",
         "<</Type /Font /Subtype /Type3 /FontBBox [0 0 9 9] /FontMatrix [.1 0 0 .1 0 0] /CharProcs <</a 13 0 "
         "R>> "
         "/Encoding <</Differences [97 /a]>> /FirstChar 97 /LastChar 97 /Widths [9] /Resources <<>>>>",
         PDFStream("", "9 0 0 0 9 9 d1 0 0 9 9 re f"),
         "<</Type /Annot /Subtype /Stamp /Rect [0 0 400 400] /F 4 /AP <</N 15 0 R>>>>",
         PDFStream("/Type /XObject /Subtype /Form /BBox [0 0 400 400] /Resources <</Font <</F 5 0 R>>>> ",
                   "BT /F 10 Tf 20 20 Td (note) Tj ET")});
  };
  const struct {
    const char *what;
    const char *content;
    const char *text;
  } cases[] = {
      {"fewer letters", "/Span <</ActualText (W)>> BDC (VV) Tj EMC ( next) Tj", "W next\n"},
      {"more letters", "(x ) Tj /Span <</ActualText <feff0061006e0064>>> BDC (+) Tj EMC ( y) Tj", "x and y\n"},
      {"one behind the other",
       "/Span <</ActualText (a)>> BDC (xx) Tj EMC /Span <</ActualText (b)>> BDC (xx) Tj EMC", "ab\n"},
      {"gaps between the glyphs", "/Span <</ActualText (W)>> BDC [(V) -500 (V)] TJ EMC (X) Tj", "WX\n"},
      {"the gap behind them", "/Span <</ActualText (a)>> BDC (VV) Tj EMC 16 0 Td (b) Tj", "a b\n"},
      {"no letters", "(a) Tj /Span <</ActualText ()>> BDC (xxx) Tj EMC (b) Tj", "ab\n"},
      {"a hyphen that parts a word",
       "(docu) Tj /S <</ActualText <feff00ad>>> BDC (-) Tj EMC 0 -12 Td (ment) Tj", "document\n"},
      {"within each other",
       "/A <</ActualText (a)>> BDC (x) Tj /B <</ActualText (b)>> BDC (x) Tj EMC (x) Tj EMC (c) Tj", "ac\n"},
      {"among other marks", "/A BMC /N <</ActualText (a)>> BDC /B BMC (x) Tj EMC (x) Tj EMC EMC EMC (c) Tj",
       "ac\n"},
      {"properties by name", "/Span /N BDC (xx) Tj EMC (d) Tj", "namedd\n"},
      {"no end", "EMC /Span <</ActualText (a)>> BDC (xx) Tj ET BT /F 10 Tf 20 80 Td (b) Tj", "a\nb\n"},
      {"several texts in it",
       "ET /N <</ActualText (a)>> BDC BT /F 10 Tf 20 60 Td (x) Tj ET BT /F 10 Tf 25 60 Td (x) Tj ET EMC BT /F "
       "10 Tf "
       "20 30 Td (c) Tj",
       "a\nc\n"},
      {"no end in a form", "ET /X Do BT /F 10 Tf 20 30 Td (on) Tj", "open\non\n"},
      {"content behind a glyph that is drawn", "(x ) Tj /N /N BDC /T 10 Tf (a) Tj EMC /F 10 Tf ( y) Tj",
       "x named y\n"},
      {"an element in two parts",
       "/P <</MCID 0>> BDC (x) Tj EMC 0 -12 Td /P <</MCID 2>> BDC (x) Tj EMC 0 -12 Td /P <</MCID 1>> BDC (x) "
       "Tj EMC",
       "whole\nouter\n"},
      {"elements of the structure",
       "/P <</MCID 0>> BDC (x) Tj EMC 0 -9 Td /P <</MCID 1>> BDC (x) Tj EMC 20 0 Td /P <</MCID 2>> BDC (x) Tj "
       "EMC "
       "/P <</MCID 3>> BDC ( ) Tj EMC",
       "whole\nouter\n"},
  };
  for (const auto &c : cases) EXPECT_EQ(linesOfText(textOfPage(page(c.content))), c.text) << c.what;
  EXPECT_EQ(linesOfText(textOfPage(page("/N /N BDC (x) Tj", "/Annots [14 0 R]"))), "named\nnote\n");
}

TEST(PDFPageText, HasTheTextOfAnElementOnItsFirstPage) {
  const std::string page =
      "<</Type /Page /Parent 2 0 R /MediaBox [0 0 400 400] /Contents 5 0 R /StructParents 0 /Resources <</Font "
      "<</F 6 0 R>>>>>>";
  const auto document = PDFDocument::documentWithData(PDFOfObjects(
      {"<</Type /Catalog /Pages 2 0 R /StructTreeRoot 7 0 R>>", "<</Type /Pages /Kids [3 0 R 4 0 R] /Count 2>>",
       page, page, PDFStream("", "BT /F 10 Tf 20 100 Td (own ) Tj /P <</MCID 0>> BDC (x) Tj EMC ET"),
       "<</Type /Font /Subtype /Type1 /BaseFont /Helvetica>>",
       "<</Type /StructTreeRoot /ParentTree <</Nums [0 [8 0 R]]>>>>",
       "<</S /P /P 7 0 R /ActualText (whole)>>"}));
  const char *const texts[] = {"own whole\n", "own\n", "own whole\n"};
  for (std::uint32_t i = 0; i < 3; ++i)
    EXPECT_EQ(linesOfText(document->pageAtIndex(i % 2).string().UTF8String()), texts[i]) << i;
}

/// Letters are 5 points wide, and blanks, too.
TEST(PDFPageText, HasWordsAsTheyAreMeant) {
  const std::string font = "/Subtype /Type1 /BaseFont /Courier /FirstChar 32 /LastChar 126 /Widths [" + [] {
    std::string widths;
    for (char code = ' '; code <= '~'; ++code) widths += "500 ";
    return widths;
  }() + "] /FontDescriptor <</Type /FontDescriptor /FontName /Courier /Flags 32>>";
  const struct {
    const char *what;
    const char *content;
    const char *text;
  } cases[] = {
      {"spaced words", "3 Tc (WIDE AS THIS IS) Tj", "WIDE AS THIS IS\n"},
      {"a spaced word", "3 Tc (HEADING) Tj", "HEADING\n"},
      {"wider gaps between words", "3 Tc [(TWO) -500 (WORDS)] TJ", "TWO WORDS\n"},
      {"a spaced word among others", "(a ) Tj 4 Tc (spaced ) Tj 0 Tc (word) Tj", "a spaced word\n"},
      {"spacing and kerning", "2 Tc [(k) 60 (e) -40 (r) 80 (n)] TJ", "kern\n"},
      {"letters that stand alone", "(a b c d e f) Tj", "a b c d e f\n"},
      {"gaps between letters and words", "[(so) -250 (a) -250 (b) -250 (c) -250 (d)] TJ", "so a b c d\n"},
      {"digits", "[(1) -400 (2) -400 (3) -400 (4) -400 (5)] TJ", "1 2 3 4 5\n"},
      {"two letters", "3 Tc (AB) Tj", "A B\n"},
      {"digits below a spaced word", "3 Tc (HEADING) Tj 0 -12 Td (57) Tj", "HEADING\n5 7\n"},
      {"digits behind a blank", "[(Total) -200 ( ) (5) -400 (7)] TJ", "Total 5 7\n"},
      {"digits of spaced words", "3 Tc (5 YEARS 2020 10) Tj", "5 YEARS 2020 10\n"},
      {"gaps between words that are little wider", "[(W) -200 (I) -200 (D) -200 (E) -330 (A) -200 (S)] TJ",
       "WIDE AS\n"},
      {"a divided word", "(docu- ) Tj 0 -12 Td (ments in folders-) Tj 0 -18 Td (again) Tj",
       "documents in foldersagain\n"},
      {"a divided word that is turned", "0 1 -1 0 50 0 Tm (docu-) Tj 0 -12 Td (ment) Tj", "document\n"},
      {"the rest of a word far below", "(docu-) Tj 0 -19 Td (ment) Tj", "document\n"},
      {"no rest of a word", "(docu-) Tj 0 -21 Td (ment) Tj", "docu-\nment\n"},
      {"the rest of a word of nearly that size", "(docu-) Tj /F 10.9 Tf 0 -12 Td (ment) Tj", "document\n"},
      {"a larger word below", "(docu-) Tj /F 11.1 Tf 0 -12 Td (ment) Tj", "docu-\nment\n"},
      {"a short word", "(in-) Tj 0 -12 Td (to) Tj", "into\n"},
      {"three letters", "3 Tc (ABC) Tj", "A B C\n"},
      {"a spaced word with a letter in place of glyphs",
       "3 Tc (WI) Tj /S <</ActualText (D)>> BDC (xx) Tj EMC (E) Tj", "WIDE\n"},
      {"four letters", "3 Tc (ABCD) Tj", "ABCD\n"},
      {"the widest spacing", "5.4 Tc (HEADING) Tj", "HEADING\n"},
      {"letters farther from each other", "5.7 Tc (HEADING) Tj", "H E A D I N G\n"},
      {"hyphens of their own",
       "(Smith- ) Tj 0 -12 Td (Jones - ) Tj 0 -12 Td (so e-) Tj 0 -12 Td (mail 1914-) Tj 0 -12 Td (to rm -) Tj "
       "0 "
       "-12 Td (n--) Tj 0 -12 Td (done) Tj",
       "Smith-\nJones -\nso e-\nmail 1914-\nto rm -\nn--\ndone\n"},
      {"hyphens in cells", "(go) Tj 60 0 Td (no-) Tj 60 0 Td (yes) Tj 60 0 Td (or-) Tj -180 -12 Td (be) Tj",
       "go\nno-\nyes\nor-\nbe\n"},
      {"hyphens of columns", "(left di-) Tj 100 0 Td (right be-) Tj -100 -12 Td (vided) Tj 100 0 Td (gins) Tj",
       "left di-\nright be-\nvided\ngins\n"},
      {"a hyphen above a note", "(foot-) Tj /F 7 Tf 0 -12 Td (a note) Tj", "foot-\na note\n"},
      {"blanks beside gaps", "[(one) -300 ( ) -300 (two)] TJ", "one two\n"},
  };
  for (const auto &c : cases)
    EXPECT_EQ(
        linesOfText(textOfPage(pageOfContent("BT /F 10 Tf 20 100 Td " + std::string(c.content) + " ET", font))),
        c.text)
        << c.what;
}

TEST(PDFPageText, HasWordsBetweenBlanksOfEveryKind) {
  for (const char *blank :
       {"space", "uni00A0", "uni1680", "uni180E", "uni2000", "uni200A", "uni202F", "uni205F", "uni3000"}) {
    std::string font = "/Subtype /Type1 /BaseFont /Odd /FirstChar 65 /LastChar 97 /Widths [";
    for (char code = 'A'; code <= 'a'; ++code) font += "500 ";
    font +=
        "] /FontDescriptor <</Type /FontDescriptor /FontName /Odd /Flags 32>> /Encoding <</Differences [97 /" +
        std::string(blank) + "]>>";
    EXPECT_EQ(linesOfText(textOfPage(pageOfContent("BT /F 10 Tf 20 100 Td 3 Tc (WIDEaWORDS) Tj ET", font))),
              "WIDE WORDS\n")
        << blank;
  }
}

/// The codes A to D are ideographs.
TEST(PDFPageText, HasIdeographsInLinesOrColumns) {
  const std::string font =
      "/Subtype /Type1 /BaseFont /Odd /FirstChar 65 /LastChar 68 /Widths [1000 1000 1000 1000] /FontDescriptor "
      "<</Type /FontDescriptor /FontName /Odd /Flags 4>> /Encoding <</Differences [65 /uni7537 /uni5973 "
      "/uni4ED6 "
      "/uni4E00]>>";
  const struct {
    const char *what;
    const char *content;
    const char *text;
  } cases[] = {
      {"a column", "(A) Tj 0 -11 Td (B) Tj 0 -11 Td (C) Tj", "男女他\n"},
      {"a column of more", "(A) Tj 0 -14 Td (B) Tj 0 -14 Td (C) Tj 0 -14 Td (D) Tj", "男女他一\n"},
      {"lines of one character", "(A) Tj 0 -14 Td (B) Tj 0 -14 Td (C) Tj", "男\n女\n他\n"},
      {"lines of one character that are nearer", "(A) Tj 0 -12 Td (B) Tj 0 -12 Td (C) Tj", "男\n女\n他\n"},
      {"four characters far below each other", "(A) Tj 0 -17 Td (B) Tj 0 -17 Td (C) Tj 0 -17 Td (D) Tj",
       "男\n女\n他\n一\n"},
      {"a crooked column", "(A) Tj 2 -11 Td (B) Tj -2 -11 Td (C) Tj", "男女他\n"},
      {"no column", "(A) Tj 4 -11 Td (B) Tj -4 -11 Td (C) Tj", "男\n女\n他\n"},
      {"the end of a paragraph", "10 0 Td (ABC) Tj -10 -11 Td (A) Tj 0 -11 Td (B) Tj", "男女他\n男\n女\n"},
  };
  for (const auto &c : cases)
    EXPECT_EQ(
        linesOfText(textOfPage(pageOfContent("BT /F 10 Tf 20 100 Td " + std::string(c.content) + " ET", font))),
        c.text)
        << c.what;
}

TEST(PDFPageText, IsWhatABrowserShowsSpacedOrVertically) {
  EXPECT_EQ(linesOfText(textOfPage(samplePDF("styles-browser.pdf"))),
            "WIDE HEADINGS\na mixed line\n吾輩は猫である。\n名前はまだ無い。\n「終」\n");
}

}  // namespace
}  // namespace nimbo
