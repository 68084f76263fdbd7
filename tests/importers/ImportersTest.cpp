// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "Classes/MetaDataImporter.hpp"

namespace nimbo {
namespace {

namespace fs = std::filesystem;

NSString pathString(const fs::path &path) {
  return NSString::stringWithFileSystemRepresentation(path.native());
}

/// Whether `text` holds `part`.
bool contains(const NSString &text, std::u16string_view part) {
  return text.view().find(part) != std::u16string_view::npos;
}

/// The shipped importers alone, as the helper loads them.
class Importers : public testing::Test {
 protected:
  Importers() : folder_(fs::path(testing::TempDir()) / ("importers-" + std::to_string(::getpid()))) {
    fs::create_directories(folder_);
  }
  ~Importers() override { fs::remove_all(folder_); }

  static NSDictionary metaData(const fs::path &path) {
    static MetaDataImporter importer(locations());
    return importer.metaDataOfFileAtPath(pathString(path));
  }
  static MetaDataImporterLocations locations() {
    MetaDataImporterLocations locations;
    locations.shippedImporterFolder = pathString(IMPORTERS_FOLDER);
    return locations;
  }
  static NSDictionary metaDataOfExample(const char *name) { return metaData(fs::path(EXAMPLES_FOLDER) / name); }

  fs::path write(const std::string &name, std::string_view bytes) const {
    std::ofstream(folder_ / name, std::ios::binary) << bytes;
    return folder_ / name;
  }

 private:
  fs::path folder_;
};

std::string contentsOfExample(const std::string &name) {
  std::ifstream file(fs::path(EXAMPLES_FOLDER) / name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST_F(Importers, PDF) {
  const NSDictionary article = metaDataOfExample("article.pdf");
  const NSDictionary wanted = {
      {u"kMDItemTitle"_ns, u"The Quiver and the Leaf"_ns},
      {u"kMDItemAuthors"_ns, NSArray{u"Rowan Fletcher"_ns}},
      {u"kMDItemKeywords"_ns, NSArray{u"archives"_ns, u"loose leaves"_ns, u"quivers"_ns}},
      {u"kMDItemDescription"_ns, u"How a small archive keeps its loose leaves"_ns},
      {u"kMDItemCreator"_ns, u"scripts/make-examples"_ns},
      {u"kMDItemContentCreationDate"_ns, NSDate{748512000}},
      {u"kMDItemNumberOfPages"_ns, 2},
      {u"kMDItemPageWidth"_ns, 595.0},
      {u"kMDItemPageHeight"_ns, 842.0},
      {u"kMDItemVersion"_ns, u"1.4"_ns},
      {u"kMDItemSecurityMethod"_ns, u"None"_ns},
  };
  for (const auto &[name, value] : wanted) EXPECT_EQ(article.objectForKey(name), value) << name.UTF8String();
  const NSString text = article.objectForKey(u"kMDItemTextContent"_ns).string();
  // Ligatures, a word that a line's end divides, and the second page.
  for (const std::u16string_view part :
       {u"affidavits", u"certificates", u"inefficient", u"what the fire spared"})
    EXPECT_TRUE(contains(text, part)) << NSString::stringWithCharacters(part).UTF8String();

  EXPECT_TRUE(metaDataOfExample("leaflet").objectForKey(u"kMDItemTextContent"_ns));
}

TEST_F(Importers, LockedPDF) {
  const NSDictionary locked = metaDataOfExample("locked.pdf");
  EXPECT_EQ(locked.objectForKey(u"kMDItemSecurityMethod"_ns), id(u"Password Encrypted"_ns));
  EXPECT_EQ(locked.objectForKey(u"kMDItemNumberOfPages"_ns), id(2));
  EXPECT_FALSE(locked.objectForKey(u"kMDItemTextContent"_ns));
  EXPECT_FALSE(locked.objectForKey(u"kMDItemTitle"_ns));
}

TEST_F(Importers, PagesAreMeasuredAsTheyAreShown) {
  const auto path =
      write("turned.pdf",
            "%PDF-1.7\n1 0 obj <</Type/Catalog/Pages 2 0 R>> endobj\n"
            "2 0 obj <</Type/Pages/Count 1/Kids[3 0 R]>> endobj\n"
            "3 0 obj <</Type/Page/Parent 2 0 R/MediaBox[0 0 300 400]/CropBox[50 0 150 400]/Rotate 90"
            "/UserUnit 2>> endobj\ntrailer <</Root 1 0 R>>\n");
  const NSDictionary found = metaData(path);
  EXPECT_EQ(found.objectForKey(u"kMDItemPageWidth"_ns), id(800.0));
  EXPECT_EQ(found.objectForKey(u"kMDItemPageHeight"_ns), id(200.0));
}

TEST_F(Importers, Text) {
  struct Case {
    const char *name;
    std::u16string_view begin;
    std::u16string_view end;
  };
  for (const Case &c :
       {Case{"letter-latin1.txt", u"Sehr geehrte Frau Köhler,\n\ndie losen Blätter", u" Blätter\n"},
        Case{"labels-utf16.txt", u"Quiver\tFirst words", u"銀杏の葉\t紅葉、秋の終わり\n"},
        Case{"quiver.c", u"/* How many quivers", u"  return 0;\n}\n"}}) {
    const NSString text = metaDataOfExample(c.name).objectForKey(u"kMDItemTextContent"_ns).string();
    EXPECT_TRUE(text.view().starts_with(c.begin)) << text.UTF8String();
    EXPECT_TRUE(text.view().ends_with(c.end)) << text.UTF8String();
  }
}

TEST_F(Importers, LongTextIsCut) {
  constexpr std::size_t kMaximumLength = std::size_t{16} << 20;
  // The limit divides the "ö".
  const std::string bytes = std::string(kMaximumLength - 2, 'x') + "\n\xc3\xb6 beyond";
  const NSString text = metaData(write("long.txt", bytes)).objectForKey(u"kMDItemTextContent"_ns).string();
  EXPECT_EQ(text.length(), kMaximumLength - 1);
}

TEST_F(Importers, Image) {
  const NSDictionary photo = metaDataOfExample("leaf.jpg");
  const NSDictionary wanted = {
      {u"kMDItemPixelWidth"_ns, 480},
      {u"kMDItemPixelHeight"_ns, 320},
      {u"kMDItemPixelCount"_ns, 153600},
      // The camera was held upright.
      {u"kMDItemOrientation"_ns, 1},
      {u"kMDItemBitsPerSample"_ns, 8},
      {u"kMDItemColorSpace"_ns, u"RGB"_ns},
      {u"kMDItemHasAlphaChannel"_ns, false},
      {u"kMDItemResolutionWidthDPI"_ns, 300.0},
      {u"kMDItemProfileName"_ns, u"sRGB"_ns},
      {u"kMDItemAcquisitionMake"_ns, u"Fletcher Optical"_ns},
      {u"kMDItemAcquisitionModel"_ns, u"Quiver 25"_ns},
      {u"kMDItemExposureTimeSeconds"_ns, 0.008},
      {u"kMDItemFNumber"_ns, 5.6},
      {u"kMDItemISOSpeed"_ns, 200},
      {u"kMDItemFocalLength"_ns, 35.0},
      {u"kMDItemFlashOnOff"_ns, true},
      // 10:30 at two hours east of UTC.
      {u"kMDItemContentCreationDate"_ns, NSDate::dateWithUTC(2024, 9, 20, 8, 30, 0)},
      {u"kMDItemAltitude"_ns, 58.5},
      {u"kMDItemTitle"_ns, u"A leaf"_ns},
      {u"kMDItemKeywords"_ns, NSArray{u"leaf"_ns, u"archive"_ns}},
      {u"kMDItemAuthors"_ns, NSArray{u"Rowan Fletcher"_ns}},
      {u"kMDItemCopyright"_ns, u"Archive of Loose Leaves"_ns},
  };
  for (const auto &[name, value] : wanted) EXPECT_EQ(photo.objectForKey(name), value) << name.UTF8String();
  EXPECT_NEAR(photo.objectForKey(u"kMDItemLatitude"_ns).real().value_or(0), -33.86, 1e-9);
  EXPECT_NEAR(photo.objectForKey(u"kMDItemLongitude"_ns).real().value_or(0), 151.21, 1e-9);

  const NSDictionary drawing = metaDataOfExample("leaf.png");
  EXPECT_EQ(drawing.objectForKey(u"kMDItemHasAlphaChannel"_ns), id(true));
  EXPECT_EQ(drawing.objectForKey(u"kMDItemOrientation"_ns), id(0));
  EXPECT_FALSE(drawing.objectForKey(u"kMDItemContentCreationDate"_ns));
}

TEST_F(Importers, CameraDates) {
  // The date stands in the file as text, in place.
  const std::string photo = contentsOfExample("leaf.jpg");
  const std::string date = "2024:09:20 10:30:00";
  const std::size_t place = photo.find(date);
  const std::size_t offset = photo.find("+02:00");
  ASSERT_TRUE(place != photo.npos && offset != photo.npos);
  ::setenv("TZ", "XXX+3", 1);
  ::tzset();
  const auto dateOf = [&](std::string_view newDate, std::string_view newOffset) {
    std::string changed = photo;
    changed.replace(place, date.size(), newDate).replace(offset, newOffset.size(), newOffset);
    return metaData(write("dated.jpg", changed)).objectForKey(u"kMDItemContentCreationDate"_ns);
  };
  EXPECT_EQ(dateOf("2024:02:29 23:59:59", "-01:30"), id(NSDate::dateWithUTC(2024, 3, 1, 1, 29, 59)));
  // Without an offset the time is this system's: three hours west of UTC.
  EXPECT_EQ(dateOf("2024:02:29 23:59:59", "      "), id(NSDate::dateWithUTC(2024, 3, 1, 2, 59, 59)));
  for (const char *wrong : {"0000:00:00 00:00:00", "2023:02:29 10:00:00", "2024:09:20 24:00:00",
                            "    :  :     :  :  ", "20th of September  "})
    EXPECT_FALSE(dateOf(wrong, "+02:00")) << wrong;
  ::unsetenv("TZ");
  ::tzset();
}

TEST_F(Importers, DamagedFiles) {
  for (const char *name : {"article.pdf", "locked.pdf", "leaflet", "letter-latin1.txt", "labels-utf16.txt",
                           "quiver.c", "leaf.jpg", "leaf.png"}) {
    SCOPED_TRACE(name);
    const std::string whole = contentsOfExample(name);
    const std::string copy = std::string("damaged-") + name;
    EXPECT_FALSE(metaData(write(copy, "")).objectForKey(u"kMDItemPixelWidth"_ns));
    for (std::size_t cut = 1; cut < 12; ++cut) {
      const std::size_t middle = whole.size() * cut / 12;
      metaData(write(copy, whole.substr(0, middle)));
      std::string holed = whole;
      holed.replace(middle, holed.size() / 20, holed.size() / 20, '\0');
      metaData(write(copy, holed));
    }
    for (const char *extension : {".pdf", ".jpg", ".png", ".tiff", ".txt", ".webp", ".heic", ".psd"}) {
      const fs::path wrong = write(std::string("wrong") + extension, whole);
      metaData(wrong);
      fs::remove(wrong);
    }
  }
  // What is cut at its end still gives what stands before.
  const std::string letter = contentsOfExample("letter-latin1.txt");
  EXPECT_TRUE(contains(metaData(write("cut.txt", letter.substr(0, letter.size() / 2)))
                           .objectForKey(u"kMDItemTextContent"_ns)
                           .string(),
                       u"Köhler"));
  const std::string photo = contentsOfExample("leaf.jpg");
  EXPECT_EQ(
      metaData(write("cut.jpg", photo.substr(0, photo.size() * 3 / 4))).objectForKey(u"kMDItemPixelWidth"_ns),
      id(480));
}

}  // namespace
}  // namespace nimbo
