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
  EXPECT_TRUE(textOfSample("boxes.pdf", 60).identicalTo(NSString::string()));
}

}  // namespace
}  // namespace nimbo
