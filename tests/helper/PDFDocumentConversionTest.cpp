// SPDX-License-Identifier: Apache-2.0
#include "helper/PDFDocument+Conversion.hpp"

#include <gtest/gtest.h>

#include "tests/support/PDFSamples.hpp"

namespace nimbo {
namespace {

NSString textOfSample(const char *name, double timeoutSeconds, NSError *error = nullptr) {
  const auto document = PDFDocument::documentWithData(samplePDF(name));
  EXPECT_TRUE(document) << name;
  return document ? fixedAndNormalizedStringUsingTimeout(*document, timeoutSeconds, error) : NSString();
}

TEST(PDFDocumentConversion, CleansAndJoinsThePages) {
  const std::string firstPage =
      "A catalogue of documents, each with its\nown efficient summary\nand na\u00efve words.\n\n"
      "The second column\nof the first page\nknows \u201cquotes\u201d.\n\n";
  const std::string bothPages = firstPage + "Page two: Caf\u00e9 Zo\u00eb   \nends here.\n\n";
  for (const double timeout : {0.0, -1.0, 3600.0})
    EXPECT_EQ(textOfSample("columns.pdf", timeout).UTF8String(), bothPages) << timeout;
  NSError error;
  EXPECT_EQ(textOfSample("columns.pdf", 3600, &error).UTF8String(), bothPages);
  EXPECT_FALSE(error);
  EXPECT_EQ(textOfSample("columns.pdf", 1e-9, &error).UTF8String(), firstPage);
  EXPECT_EQ(error.errorCode(), ErrorCode::timeLimit);
}

TEST(PDFDocumentConversion, TellsNoPagesFromNoText) {
  NSError error;
  EXPECT_FALSE(textOfSample("no-pages.pdf", 0, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::incomplete);
  EXPECT_TRUE(textOfSample("boxes.pdf", 60, &(error = {})).identicalTo(NSString::string()));
  EXPECT_EQ(error.localizedFailureReason, u"the PDF has no text layer"_ns);
}

/// Pages with a text ('t') and without one.
std::unique_ptr<PDFDocument> documentOfPages(const std::string &kinds) {
  std::vector<std::string> objects = {"<</Type /Catalog /Pages 2 0 R>>", "",
                                      "<</Type /Font /Subtype /Type1 /BaseFont /Helvetica>>",
                                      PDFStream("", "BT /F 12 Tf 20 20 Td (text) Tj ET")};
  std::string kids;
  for (const char kind : kinds) {
    objects.push_back("<</Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Resources <</Font <</F 3 0 R>>>>" +
                      std::string(kind == 't' ? " /Contents 4 0 R>>" : ">>"));
    kids += std::to_string(objects.size()) + " 0 R ";
  }
  objects[1] = "<</Type /Pages /Kids [" + kids + "] /Count " + std::to_string(kinds.size()) + ">>";
  return PDFDocument::documentWithData(PDFOfObjects(objects));
}

TEST(PDFDocumentConversion, NamesThePagesWithoutText) {
  const struct {
    std::string kinds;
    NSRange pages;
    std::string reason;
  } cases[] = {
      {"tt", {0, 2}, ""},
      {"t.t", {0, 3}, "page 2 has no text layer"},
      {".tt..t.", {0, 7}, "pages 1, 4 to 5 and 7 have no text layer"},
      {".tt..t.", {2, 4}, "pages 4 to 5 have no text layer"},
      {"...", {0, 3}, "the PDF has no text layer"},
      {"t..", {1, 2}, "the pages asked for have no text layer"},
      {"t.t.t.t.t.t.t.t.t.t.t.t.",
       {0, 99},
       "pages 2, 4, 6, 8, 10, 12, 14, 16, 18, 20 and 2 more have no text layer"},
  };
  for (const auto &[kinds, pages, reason] : cases) {
    NSError error;
    const NSArray texts = fixedAndNormalizedPages(*documentOfPages(kinds), pages, 0, &error);
    std::string found;
    for (std::size_t i = 0; i < texts.count(); ++i) found += texts[i].string() == u"text\n"_ns ? 't' : '.';
    EXPECT_EQ(found, kinds.substr(pages.location, pages.length));
    EXPECT_EQ(error ? error.localizedFailureReason.UTF8String() : "", reason) << kinds;
  }
}

}  // namespace
}  // namespace nimbo
