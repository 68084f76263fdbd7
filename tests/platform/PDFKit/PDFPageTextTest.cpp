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

/// The codes A to C are Hebrew letters, D a mark of theirs, E and F forms of Arabic letters, all of one width.
TEST(PDFPageText, IsInLogicalOrderHoweverItIsDrawn) {
  const std::string font =
      "/Subtype /Type1 /BaseFont /Odd /FirstChar 32 /LastChar 70 /Widths [" +
      [] {
        std::string widths;
        for (char code = ' '; code <= 'F'; ++code) widths += code == 'D' ? "0 " : "500 ";
        return widths;
      }() +
      "] /FontDescriptor <</Type /FontDescriptor /FontName /Odd /Flags 4 /MissingWidth 500>> "
      "/Encoding <</Differences [65 /uni05D0 /uni05D1 /uni05D2 /uni05B8 /uniFEFB /uniFE91]>>";
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
      {"brackets that are seen", "20 200 Td (\\(CB\\) A) Tj", "א (בג)\n"},
      {"brackets that are read", "20 200 Td (\\)CB\\( A) Tj", "א (בג)\n"},
      {"parts of a line", "60 200 Td ( CBA) Tj -20 0 Td (1234) Tj -20 0 Td (.CB ) Tj", "אבג 1234 בג.\n"},
      {"parts without blanks", "60 200 Td (CBA) Tj -15 0 Td (CB) Tj", "אבג בג\n"},
      {"cells of a table", "200 200 Td (CBA) Tj -150 0 Td (CB) Tj", "אבג בג\n"},
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
  const std::string content = "BT /F 10 Tf 20 100 Td (oABCDEFGH) Tj ET";
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
       "/uni00660069 /f_f_i.alt /f_oo]>>",
       "", "offiflThffifififfif\n"},
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

}  // namespace
}  // namespace nimbo
