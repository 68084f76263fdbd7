// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "tests/importers/ShippedImporters.hpp"
#include "tests/support/PDFSamples.hpp"

namespace nimbo {
namespace {

using namespace std::literals;

TEST_F(Importers, PDF) {
  const NSDictionary article = metaDataOfExample("article.pdf");
  const NSDictionary wanted = {
      {u"kMDItemTitle"_ns, u"The Quiver and the Leaf"_ns},
      {u"kMDItemAuthors"_ns, NSArray{u"Rowan Fletcher"_ns}},
      {u"kMDItemKeywords"_ns, NSArray{u"archives"_ns, u"loose leaves"_ns, u"quivers"_ns}},
      {u"kMDItemContentCreationDate"_ns, NSDate{748512000}},
      {u"kMDItemNumberOfPages"_ns, 2},
      {u"kMDItemPageWidth"_ns, 595.0},
      {u"kMDItemVersion"_ns, u"1.4"_ns},
      {u"kMDItemSecurityMethod"_ns, u"None"_ns},
  };
  expectAttributes(article, wanted);
  const NSString text = article.objectForKey(u"kMDItemTextContent"_ns).string();
  // Ligatures, a word that a line's end divides, and the second page.
  for (const std::u16string_view part :
       {u"affidavits", u"certificates", u"inefficient", u"what the fire spared"})
    EXPECT_TRUE(contains(text, part)) << NSString::stringWithCharacters(part).UTF8String();
  // Pages end with a line feed of their own behind that of their last line.
  EXPECT_FALSE(text.view().starts_with(u'\n'));
  EXPECT_TRUE(text.view().ends_with(u"\n\n"));

  EXPECT_TRUE(metaDataOfExample("leaflet").objectForKey(u"kMDItemTextContent"_ns));
}

TEST_F(Importers, LockedPDF) {
  const NSDictionary locked = metaDataOfExample("locked.pdf");
  expectAttributes(locked,
                   {{u"kMDItemSecurityMethod"_ns, u"Password Encrypted"_ns}, {u"kMDItemNumberOfPages"_ns, 2}});
  EXPECT_FALSE(locked.objectForKey(u"kMDItemTextContent"_ns));
  EXPECT_FALSE(locked.objectForKey(u"kMDItemTitle"_ns));
}

TEST_F(Importers, PDFWithoutPages) {
  expectAttributes(metaDataOf("none.pdf", samplePDF("no-pages.pdf").view()),
                   {{u"kMDItemSecurityMethod"_ns, u"None"_ns},
                    {u"kMDItemNumberOfPages"_ns, id()},
                    {u"kMDItemPageWidth"_ns, id()}});
}

TEST_F(Importers, PagesAreMeasuredAsTheyAreShownAndFactsKeptApart) {
  for (const int rotation : {0, 90, 180, 270}) {
    const NSDictionary found =
        metaDataOf("turned.pdf",
                   "%PDF-1.7\n1 0 obj <</Type/Catalog/Pages 2 0 R>> endobj\n"
                   "2 0 obj <</Type/Pages/Count 1/Kids[3 0 R]>> endobj\n"
                   "3 0 obj <</Type/Page/Parent 2 0 R/MediaBox[0 0 300 400]/CropBox[50 0 150 400]/Rotate " +
                       std::to_string(rotation) +
                       "/UserUnit 2>> endobj\n4 0 obj <</Title(a)/Author(b)/Subject(c)/Keywords(d)/Creator(e)"
                       "/Producer(f)/CreationDate(D:20010101)/ModDate(D:20010102)>> endobj\n"
                       "trailer <</Root 1 0 R/Info 4 0 R>>\n");
    const bool isUpright = rotation % 180 == 0;
    expectAttributes(found, {{u"kMDItemPageWidth"_ns, isUpright ? 200.0 : 800.0},
                             {u"kMDItemPageHeight"_ns, isUpright ? 800.0 : 200.0},
                             {u"kMDItemTitle"_ns, u"a"_ns},
                             {u"kMDItemAuthors"_ns, NSArray{u"b"_ns}},
                             {u"kMDItemDescription"_ns, u"c"_ns},
                             {u"kMDItemKeywords"_ns, NSArray{u"d"_ns}},
                             {u"kMDItemCreator"_ns, u"e"_ns},
                             {u"kMDItemEncodingApplications"_ns, NSArray{u"f"_ns}},
                             {u"kMDItemContentCreationDate"_ns, NSDate{0}},
                             {u"kMDItemContentModificationDate"_ns, NSDate{86400}}});
  }
}

}  // namespace
}  // namespace nimbo
