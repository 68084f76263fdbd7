// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "platform/PDFKit/PDFDocument.hpp"
#include "tests/support/PDFSamples.hpp"

namespace nimbo {
namespace {

const std::string kCatalog = "<</Type /Catalog /Pages 2 0 R>>";

/// A run as "Family 12 bold italic #ff0000 +1 <link>|text", without what is usual.
std::string describedRun(const TextAttributes &attributes, const NSString &text) {
  std::string described = attributes.font.familyName.UTF8String();
  char part[32];
  std::snprintf(part, sizeof part, " %g", attributes.font.pointSize);
  described += part;
  if (attributes.font.weight != kRegularFontWeight) described += " " + std::to_string(attributes.font.weight);
  if (attributes.font.isItalic) described += " italic";
  if (const auto &color = attributes.foregroundColor) {
    std::snprintf(part, sizeof part, " #%02x%02x%02x", color->red, color->green, color->blue);
    described += part;
  }
  if (attributes.superscript == 1) described += " above";
  if (attributes.superscript == -1) described += " below";
  if (std::abs(attributes.superscript) > 1) described += " " + std::to_string(attributes.superscript);
  if (attributes.link) described += " <" + attributes.link.UTF8String() + ">";
  return described + "|" + text.UTF8String();
}

std::vector<std::string> describedRuns(const NSAttributedString &text) {
  std::vector<std::string> described;
  std::uint32_t start = 0;
  for (const AttributeRun &run : text.runs()) {
    described.push_back(
        describedRun(*run.attributes, text.string().substringWithRange({start, run.end - start})));
    start = run.end;
  }
  return described;
}

/// A page of such content, with a Helvetica "F" and other resources.
NSData pageOfContent(const std::string &content, const std::string &fonts = "",
                     const std::string &entries = "") {
  return PDFOfObjects({kCatalog, "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                       "<</Type /Page /Parent 2 0 R /MediaBox [0 0 400 400] /Contents 4 0 R " + entries +
                           " /Resources <</Font <</F 5 0 R " + fonts + ">>>>>>",
                       PDFStream("", content), "<</Type /Font /Subtype /Type1 /BaseFont /Helvetica>>"});
}

std::string linkAnnotation(const std::string &rectangle, const std::string &action) {
  return "<</Type /Annot /Subtype /Link /Rect [" + rectangle + "] /A <<" + action + ">>>> ";
}

TEST(PDFAttributedText, HasWhatAWriterGaveIt) {
  const auto document = PDFDocument::documentWithData(samplePDF("rich.pdf"));
  ASSERT_TRUE(document);
  NSError error;
  const NSAttributedString text =
      document->selectionForEntireDocument().attributedString(Deadline::never(), &error);
  EXPECT_FALSE(error);
  const std::vector<std::string> expected = {
      "DejaVuSans 20|A large ",
      "DejaVuSans 20 700|bold ",
      "DejaVuSans 20|title\n\n",
      "DejaVuSans 12|plain, ",
      "DejaVuSans 12 #ff0000|red ",
      "DejaVuSans 12|and ",
      "DejaVuSansMono 12 italic #003366|typed\n\n",
      "DejaVuSans 12|H",
      "DejaVuSans 8 below|2",
      "DejaVuSans 12|O, x",
      "DejaVuSans 8 above|2",
      "DejaVuSans 8|\n\n",
      "DejaVuSans 12|see ",
      "DejaVuSans 12 #0000ff <https://example.org/a?b=c>|this page",
      "DejaVuSans 12| or that\n\n",
      "DejaVuSans 15|rotated\n\n",
      "DejaVuSans 16|narrowed\n\n",
      "DejaVuSerif 12 700 italic|Last\n\n",
  };
  EXPECT_EQ(describedRuns(text), expected);
}

TEST(PDFAttributedText, ReadsWhatADocumentMaySay) {
  const std::string text = "BT /F 12 Tf 20 100 Td (here there) Tj ET";
  const auto font = [](const std::string &name, const std::string &descriptor) {
    return "/G <</Type /Font /Subtype /TrueType /BaseFont /" + name +
           " /FontDescriptor <</Type /FontDescriptor /FontName /" + name + " " + descriptor + ">>>>";
  };
  const std::string other = "BT /G 12 Tf 20 100 Td (x) Tj ET";
  const struct {
    const char *what;
    NSData data;
    std::vector<std::string> runs;
  } cases[] = {
      {"colours",
       pageOfContent("BT /F 12 Tf 20 100 Td 0.5 g (a) Tj 0 1 0 rg (b) Tj 0 0 0 1 k (c) Tj 1 0 0 RG 1 Tr (d) "
                     "Tj 3 Tr (e) Tj ET"),
       {"Helvetica 12 #7f7f7f|a", "Helvetica 12 #00ff00|b", "Helvetica 12|c", "Helvetica 12 #ff0000|d",
        "Helvetica 12|e\n"}},
      {"sizes",
       pageOfContent("BT /F 1 Tf 24 0 0 24 20 300 Tm (a) Tj 0 9 -9 0 20 200 Tm (b) Tj /F 0.008 Tf 0 -30 Td "
                     "(c) Tj ET"),
       {"Helvetica 24|a\n\n", "Helvetica 9|b\n\n", "Helvetica 12|c\n"}},
      {"small letters on the line and off it",
       pageOfContent("BT /F 20 Tf 20 100 Td (a) Tj /F 10 Tf (b) Tj 7 Ts (c) Tj 0 Ts (d) Tj -4 Ts (e) Tj ET"),
       {"Helvetica 20|a", "Helvetica 10|b", "Helvetica 10 above|c", "Helvetica 10|d", "Helvetica 10 below|e",
        "Helvetica 10|\n"}},
      {"how small and how far off the line they have to be",
       pageOfContent(
           "BT /F 20 Tf 20 100 Td (a) Tj /F 16.8 Tf 7 Ts (b) Tj /F 17.2 Tf (c) Tj /F 10 Tf 1.6 Ts (d) Tj "
           "1.4 Ts (e) Tj -1.6 Ts (f) Tj -1.4 Ts (g) Tj ET"),
       {"Helvetica 20|a", "Helvetica 16.8 above|b", "Helvetica 17.2|c", "Helvetica 10 above|d",
        "Helvetica 10|e", "Helvetica 10 below|f", "Helvetica 10|g\n"}},
      {"weights that are none", pageOfContent(other, font("Odd", "/Flags 32 /FontWeight 99")), {"Odd 12|x\n"}},
      {"the greatest weight",
       pageOfContent(other, font("Odd", "/Flags 32 /FontWeight 900")),
       {"Odd 12 900|x\n"}},
      {"a weight beyond it", pageOfContent(other, font("Odd", "/Flags 32 /FontWeight 901")), {"Odd 12|x\n"}},
      {"a slanted font",
       pageOfContent(other, font("Odd", "/Flags 32 /ItalicAngle -12")),
       {"Odd 12 italic|x\n"}},
      {"the longest link",
       pageOfContent(text, "",
                     "/Annots [" +
                         linkAnnotation("0 0 400 400", "/S /URI /URI (http:" + std::string(4091, 'x') + ")") +
                         "]"),
       {"Helvetica 12 <http:" + std::string(4091, 'x') + ">|here there", "Helvetica 12|\n"}},
      {"a link that is longer",
       pageOfContent(text, "",
                     "/Annots [" +
                         linkAnnotation("0 0 400 400", "/S /URI /URI (http:" + std::string(4092, 'x') + ")") +
                         "]"),
       {"Helvetica 12|here there\n"}},
      {"a font that names its weight",
       pageOfContent(other, font("Odd", "/Flags 32 /FontWeight 300")),
       {"Odd 12 300|x\n"}},
      {"a name before a descriptor",
       pageOfContent(other, font("Odd-Light", "/Flags 262176 /FontWeight 700")),
       {"Odd 12 300|x\n"}},
      {"a font of flags alone", pageOfContent(other, font("Odd", "/Flags 262240")), {"Odd 12 700 italic|x\n"}},
      {"a name longer than MuPDF keeps",
       pageOfContent(other, font("ABCDEF+AnExtraordinarilyLongName-BoldItalic", "/Flags 32")),
       {"AnExtraordinarilyLongName 12 700 italic|x\n"}},
      {"composite fonts",
       pageOfContent(
           "BT /G 12 Tf 20 100 Td <0041> Tj ET",
           "/G <</Type /Font /Subtype /Type0 /BaseFont /Odd-Bold-UniJIS-UCS2-H /Encoding "
           "/UniJIS-UCS2-H /DescendantFonts [<</Type /Font /Subtype /CIDFontType0 /BaseFont /Odd-Bold "
           "/CIDSystemInfo <</Registry (Adobe) /Ordering (Japan1) /Supplement 2>> /FontDescriptor "
           "<</Type /FontDescriptor /FontName /Odd-Bold /Flags 4>>>>]>>"),
       {"Odd 12 700|A\n"}},
      {"links in part of a line",
       pageOfContent(text, "", "/Annots [" + linkAnnotation("47 95 90 115", "/S /URI /URI (mailto:a@b)") + "]"),
       {"Helvetica 12|here ", "Helvetica 12 <mailto:a@b>|there", "Helvetica 12|\n"}},
      {"links that are none here",
       pageOfContent(text, "",
                     "/Annots [" + linkAnnotation("0 0 400 400", "/S /GoTo /D [0 /Fit]") +
                         linkAnnotation("0 0 400 400", "/S /GoToR /F (other.pdf) /D [0 /Fit]") +
                         linkAnnotation("0 0 400 400", "/S /JavaScript /JS (alert)") +
                         linkAnnotation("0 0 400 400", "/S /URI /URI (http:" + std::string(5000, 'x') + ")") +
                         linkAnnotation("200 95 300 115", "/S /URI /URI (http://elsewhere)") + "]"),
       {"Helvetica 12|here there\n"}},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.what);
    const auto document = PDFDocument::documentWithData(c.data);
    ASSERT_TRUE(document);
    NSError error;
    EXPECT_EQ(describedRuns(document->pageAtIndex(0).attributedString(&error)), c.runs);
    EXPECT_FALSE(error) << error.localizedFailureReason.UTF8String();
  }
}

TEST(PDFAttributedText, HasThePlainTextAndItsLosses) {
  for (const char *name :
       {"columns.pdf", "rich.pdf", "recursion.pdf", "boxes.pdf", "huge-count.pdf", "no-pages.pdf"}) {
    SCOPED_TRACE(name);
    const auto document = PDFDocument::documentWithData(samplePDF(name));
    NSMutableString whole;
    NSError plainError, error;
    const auto append = [&whole](const NSString &text) {
      whole.append(text.view());
      whole.appendCharacter(u'\n');
      return true;
    };
    document->readPages(Deadline::never(), append, &plainError);
    const NSAttributedString text =
        document->selectionForEntireDocument().attributedString(Deadline::never(), &error);
    EXPECT_EQ(text.string().view(), whole.view());
    EXPECT_EQ(static_cast<bool>(text), document->pageCount() > 0);
    EXPECT_EQ(error, plainError);
    for (std::uint32_t page = 0; page < document->pageCount(); ++page)
      EXPECT_EQ(document->pageAtIndex(page).attributedString().string(), document->pageAtIndex(page).string());
  }
}

TEST(PDFAttributedText, KeepsItsLimits) {
  std::string annotations;
  for (int i = 0; i < 100; ++i)
    annotations += linkAnnotation("0 0 400 " + std::to_string(400 - i), "/S /URI /URI (http://a)");
  const NSData data =
      pageOfContent("BT /F 12 Tf 20 300 Td (a) Tj 1 0 0 rg (b) Tj 0 1 0 rg (c) Tj 0 -100 Td (d) Tj ET", "",
                    "/Annots [" + annotations + "]");
  const struct {
    PDFLimits limits;
    ErrorCode code;
    std::vector<std::string> runs;
  } cases[] = {
      {{},
       ErrorCode::none,
       {"Helvetica 12 <http://a>|a", "Helvetica 12 #ff0000 <http://a>|b", "Helvetica 12 #00ff00 <http://a>|c",
        "Helvetica 12 #00ff00|\n\n", "Helvetica 12 #00ff00 <http://a>|d", "Helvetica 12 #00ff00|\n"}},
      {{.attributeRuns = 2},
       ErrorCode::incomplete,
       {"Helvetica 12 <http://a>|a", "Helvetica 12 #ff0000 <http://a>|bc\n\nd\n"}},
      {{.attributeRuns = 0}, ErrorCode::incomplete, {"Helvetica 12 <http://a>|abc\n\nd\n"}},
      {{.linkComparisons = 102},
       ErrorCode::incomplete,
       {"Helvetica 12 <http://a>|a", "Helvetica 12 #ff0000 <http://a>|b", "Helvetica 12 #00ff00|c\n\nd\n"}},
  };
  for (const auto &c : cases) {
    const auto document = PDFDocument::documentWithData(data, c.limits);
    ASSERT_TRUE(document);
    NSError error;
    EXPECT_EQ(describedRuns(document->pageAtIndex(0).attributedString(&error)), c.runs);
    EXPECT_EQ(error.errorCode(), c.code);
  }
}

}  // namespace
}  // namespace nimbo
