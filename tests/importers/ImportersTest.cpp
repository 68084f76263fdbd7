// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <initializer_list>
#include <tuple>

#include "Classes/MetaData/MetaDataImporter.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "platform/Foundation/NSStringJoining.hpp"
#include "tests/support/FileReaders.hpp"
#include "tests/support/PDFSamples.hpp"
#include "tests/support/TemporaryFolder.hpp"
#include "tests/support/WebArchiveSamples.hpp"
#include "tests/support/ZipSamples.hpp"

namespace nimbo {
namespace {

using namespace std::literals;

/// Whether `text` holds `part`.
bool contains(const NSString &text, std::u16string_view part) {
  return text.view().find(part) != std::u16string_view::npos;
}

/// The shipped importers alone, as the helper loads them.
class Importers : public testing::Test {
 public:
  static NSDictionary metaData(const NSString &path, NSError *error = nullptr) {
    static MetaDataImporter importer([] {
      MetaDataImporterLocations locations;
      locations.shippedImporterFolder = NSString::stringWithUTF8String(IMPORTERS_FOLDER);
      return locations;
    }());
    return importer.metaDataOfFileAtPath(path, error);
  }

 protected:
  static NSDictionary metaDataOfExample(const std::string &name) {
    return metaData(NSString::stringWithUTF8String(EXAMPLES_FOLDER "/" + name));
  }
  NSDictionary metaDataOf(const std::string &name, std::string_view bytes) const {
    return metaData(folder.write(name, bytes));
  }

  TemporaryFolder folder;
};

std::string contentsOfExample(const std::string &name) {
  return contentsOfFile(EXAMPLES_FOLDER "/" + name);
}

void expectAttributes(const NSDictionary &found, const NSDictionary &wanted) {
  for (const auto &[name, value] : wanted) EXPECT_EQ(found.objectForKey(name), value) << name.UTF8String();
}

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

  EXPECT_TRUE(metaDataOfExample("leaflet").objectForKey(u"kMDItemTextContent"_ns));
}

TEST_F(Importers, LockedPDF) {
  const NSDictionary locked = metaDataOfExample("locked.pdf");
  expectAttributes(locked,
                   {{u"kMDItemSecurityMethod"_ns, u"Password Encrypted"_ns}, {u"kMDItemNumberOfPages"_ns, 2}});
  EXPECT_FALSE(locked.objectForKey(u"kMDItemTextContent"_ns));
  EXPECT_FALSE(locked.objectForKey(u"kMDItemTitle"_ns));
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

TEST_F(Importers, Text) {
  const std::tuple<const char *, std::u16string_view, std::u16string_view> cases[] = {
      {"letter-latin1.txt", u"Sehr geehrte Frau Köhler,\n\ndie losen Blätter", u" Blätter\n"},
      {"labels-utf16.txt", u"Quiver\tFirst words", u"銀杏の葉\t紅葉、秋の終わり\n"},
      {"quiver.c", u"/* How many quivers", u"  return 0;\n}\n"},
  };
  for (const auto &[name, begin, end] : cases) {
    const NSString text = metaDataOfExample(name).objectForKey(u"kMDItemTextContent"_ns).string();
    EXPECT_TRUE(text.view().starts_with(begin) && text.view().ends_with(end)) << text.UTF8String();
  }
}

TEST_F(Importers, LongTextIsCut) {
  constexpr std::size_t kMaximumLength = std::size_t{16} << 20;
  // The limit divides the "ö".
  const std::string bytes = std::string(kMaximumLength - 2, 'x') + "\n\xc3\xb6 beyond";
  const NSString text = metaDataOf("long.txt", bytes).objectForKey(u"kMDItemTextContent"_ns).string();
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
      {u"kMDItemFNumber"_ns, 5.6},
      {u"kMDItemFocalLength"_ns, 35.0},
      {u"kMDItemCopyright"_ns, u"Archive of Loose Leaves"_ns},
      {u"kMDItemExposureTimeSeconds"_ns, 0.008},
      {u"kMDItemISOSpeed"_ns, 200},
      {u"kMDItemFlashOnOff"_ns, true},
      // 10:30 at two hours east of UTC.
      {u"kMDItemContentCreationDate"_ns, NSDate::dateWithUTC(2024, 9, 20, 8, 30, 0)},
      {u"kMDItemAltitude"_ns, 58.5},
      {u"kMDItemTitle"_ns, u"A leaf"_ns},
      {u"kMDItemKeywords"_ns, NSArray{u"leaf"_ns, u"archive"_ns}},
      // The camera's own fields say something else.
      {u"kMDItemAuthors"_ns, NSArray{u"Rowan Fletcher"_ns}},
      {u"kMDItemDescription"_ns, u"A leaf on paper"_ns},
  };
  expectAttributes(photo, wanted);
  EXPECT_NEAR(photo.objectForKey(u"kMDItemLatitude"_ns).real().value_or(0), -33.86, 1e-9);
  EXPECT_NEAR(photo.objectForKey(u"kMDItemLongitude"_ns).real().value_or(0), 151.21, 1e-9);

  const NSDictionary drawing = metaDataOfExample("leaf.png");
  expectAttributes(drawing, {{u"kMDItemHasAlphaChannel"_ns, true}, {u"kMDItemOrientation"_ns, 0}});
  EXPECT_FALSE(drawing.objectForKey(u"kMDItemContentCreationDate"_ns));
}

TEST_F(Importers, OtherPhotos) {
  const std::string photo = contentsOfExample("leaf.jpg");
  const auto changed = [&](std::initializer_list<std::pair<std::string_view, std::string_view>> parts) {
    std::string bytes = photo;
    for (const auto &[from, to] : parts) {
      EXPECT_NE(bytes.find(from), bytes.npos);
      if (const std::size_t place = bytes.find(from); place != bytes.npos) bytes.replace(place, to.size(), to);
    }
    return metaDataOf("other.jpg", bytes);
  };
  // The camera was held upright, or not: 480 columns of 320 pixels are stored.
  for (const char orientation : {'\1', '\2', '\3', '\4', '\5', '\6', '\7', '\x08', '\x09'}) {
    const std::string entry = "\x12\x01\x03\0\x01\0\0\0"s + orientation;
    const bool isUpright = orientation >= 5 && orientation <= 8;
    EXPECT_EQ(changed({{entry.substr(0, 8), entry}}).objectForKey(u"kMDItemOrientation"_ns),
              id(isUpright ? 1 : 0))
        << int{orientation};
  }
  // North, west and below the sea.
  const NSDictionary elsewhere = changed({{"\1\0\2\0\2\0\0\0S"sv, "\1\0\2\0\2\0\0\0N"sv},
                                          {"\3\0\2\0\2\0\0\0E"sv, "\3\0\2\0\2\0\0\0W"sv},
                                          {"\5\0\1\0\1\0\0\0\0"sv, "\5\0\1\0\1\0\0\0\1"sv}});
  EXPECT_NEAR(elsewhere.objectForKey(u"kMDItemLatitude"_ns).real().value_or(0), 33.86, 1e-9);
  EXPECT_NEAR(elsewhere.objectForKey(u"kMDItemLongitude"_ns).real().value_or(0), -151.21, 1e-9);
  EXPECT_EQ(elsewhere.objectForKey(u"kMDItemAltitude"_ns), id(-58.5));
  // The time at which it was digitised, a flash that was not fired, and nothing but the camera's own fields.
  expectAttributes(changed({{"\x03\x90\2\0"sv, "\x04\x90\2\0"sv},
                            {"\x11\x90\2\0"sv, "\x12\x90\2\0"sv},
                            {"\x09\x92\3\0\1\0\0\0\1"sv, "\x09\x92\3\0\1\0\0\0\x10"sv},
                            {"8BIM\x04\x04"sv, "8BIM\x04\x05"sv},
                            {"http://ns.adobe.com/xap"sv, "http://ns.adobe.com/xyz"sv}}),
                   {{u"kMDItemContentCreationDate"_ns, NSDate::dateWithUTC(2024, 9, 20, 8, 30, 0)},
                    {u"kMDItemFlashOnOff"_ns, false},
                    {u"kMDItemTitle"_ns, id()},
                    {u"kMDItemKeywords"_ns, id()},
                    {u"kMDItemAuthors"_ns, NSArray{u"Quiver 25"_ns}},
                    {u"kMDItemCopyright"_ns, u"Archive of Loose Leaves"_ns},
                    {u"kMDItemDescription"_ns, u"Leaf 1024"_ns}});
}

TEST_F(Importers, CameraDates) {
  // The date stands in the file as text, in place.
  const std::string photo = contentsOfExample("leaf.jpg");
  const std::string date = "2024:09:20 10:30:00";
  const std::size_t place = photo.find(date);
  const std::size_t offset = photo.find("+02:00");
  ASSERT_TRUE(place != photo.npos && offset != photo.npos);
  ::setenv("TZ", "America/Fortaleza", 1);
  ::tzset();
  const auto dateOf = [&](std::string_view newDate, std::string_view newOffset) {
    std::string changed = photo;
    changed.replace(place, date.size(), newDate).replace(offset, newOffset.size(), newOffset);
    return metaDataOf("dated.jpg", changed).objectForKey(u"kMDItemContentCreationDate"_ns);
  };
  EXPECT_EQ(dateOf("2024:02:29 23:59:59", "-01:30"), id(NSDate::dateWithUTC(2024, 3, 1, 1, 29, 59)));
  // Without an offset the time is this system's: three hours west of UTC.
  for (const char *unknown : {"      ", "   :  ", "+25:00"})
    EXPECT_EQ(dateOf("2024:02:29 23:59:59", unknown), id(NSDate::dateWithUTC(2024, 3, 1, 2, 59, 59)));
  for (const char *wrong : {"0000:00:00 00:00:00", "2023:02:29 10:00:00", "2024:09:20 24:00:01",
                            "    :  :     :  :  ", "20th of September  "})
    EXPECT_FALSE(dateOf(wrong, "+02:00")) << wrong;
  ::unsetenv("TZ");
  ::tzset();
}

TEST_F(Importers, SayWhatIsWrong) {
  const std::string pdf = contentsOfExample("article.pdf"), photo = contentsOfExample("leaf.jpg");
  const std::string circle =
      "%PDF-1.4\n1 0 obj <</Type/Catalog/Pages 2 0 R>> endobj\n2 0 obj <</Type/Pages/Count 2/Kids[3 0 R 2 0 "
      "R]>> "
      "endobj\n3 0 obj <</Type/Page/Parent 2 0 R>> endobj\ntrailer <</Root 1 0 R>>\n";
  const struct {
    const char *name;
    std::string bytes;
    ErrorCode code;
    /// Whether there are attributes all the same.
    bool isAnswered;
  } cases[] = {
      {"whole.pdf", pdf, ErrorCode::none, true},
      {"locked.pdf", contentsOfExample("locked.pdf"), ErrorCode::locked, true},
      {"hidden.pdf", std::string(samplePDF("locked-pages.pdf").view()), ErrorCode::locked, true},
      {"scan.pdf", std::string(samplePDF("boxes.pdf").view()), ErrorCode::incomplete, true},
      {"circle.pdf", circle, ErrorCode::damaged, true},
      {"empty.pdf", "", ErrorCode::incomplete, false},
      {"begin.pdf", "%PDF-1.4", ErrorCode::damaged, false},
      {"photo.pdf", photo, ErrorCode::unsupportedType, false},
      {"whole.jpg", photo, ErrorCode::none, true},
      {"empty.jpg", "", ErrorCode::incomplete, false},
      {"begin.jpg", photo.substr(0, 20), ErrorCode::damaged, false},
      {"pdf.jpg", pdf, ErrorCode::unsupportedType, false},
      {"whole.txt", "text", ErrorCode::none, true},
      {"empty.txt", "", ErrorCode::incomplete, false},
      {"photo.txt", photo, ErrorCode::damaged, false},
      {"long.txt", std::string((16 << 20) + 1, 'x'), ErrorCode::incomplete, true},
      {"exact.txt", std::string(16 << 20, 'x'), ErrorCode::none, true},
      {"long.rtf", "{\\rtf1 text}" + std::string((64 << 20) - 11, '\n'), ErrorCode::incomplete, true},
      {"exact.rtf", "{\\rtf1 text}" + std::string((64 << 20) - 12, '\n'), ErrorCode::none, true},
      {"empty.rtf", "", ErrorCode::incomplete, false},
      {"pdf.rtf", pdf, ErrorCode::unsupportedType, false},
      {"exact.html", "<p>text" + std::string((16 << 20) - 7, ' '), ErrorCode::none, true},
      {"long.html", "<p>text" + std::string((16 << 20) - 6, ' '), ErrorCode::incomplete, true},
      {"empty.html", "", ErrorCode::incomplete, false},
      {"empty.docx", "", ErrorCode::incomplete, false},
      {"pdf.docx", pdf, ErrorCode::damaged, false},
      {"none.docx", storedZip({{"a.xml", "<d/>"}}), ErrorCode::damaged, false},
      {"empty.odt", "", ErrorCode::incomplete, false},
      {"pdf.odt", pdf, ErrorCode::damaged, false},
      {"none.odt", storedZip({{"a.xml", "<d/>"}}), ErrorCode::damaged, false},
      {"empty.epub", "", ErrorCode::incomplete, false},
      {"none.epub", storedZip({{"a.xml", "<d/>"}}), ErrorCode::damaged, false},
      {"empty.mp3", "", ErrorCode::incomplete, false},
      {"text.mp3", "text", ErrorCode::unsupportedType, false},
  };
  for (const auto &[name, bytes, code, isAnswered] : cases) {
    NSError error;
    const NSDictionary found = metaData(folder.write(name, bytes), &error);
    EXPECT_EQ(error.errorCode(), code) << name << ": " << error.localizedFailureReason.UTF8String();
    EXPECT_EQ(found.count() > 0, isAnswered) << name;
  }
}

TEST_F(Importers, TakeWhatStandsBeforeTheCut) {
  const std::string letter = contentsOfExample("letter-latin1.txt");
  const NSDictionary cutLetter = metaDataOf("cut.txt", letter.substr(0, letter.size() / 2));
  EXPECT_TRUE(contains(cutLetter.objectForKey(u"kMDItemTextContent"_ns).string(), u"Köhler"));
  const std::string photo = contentsOfExample("leaf.jpg");
  const NSDictionary cutPhoto = metaDataOf("cut.jpg", photo.substr(0, photo.size() * 3 / 4));
  EXPECT_EQ(cutPhoto.objectForKey(u"kMDItemPixelWidth"_ns), id(480));
}

std::string contentsOfDocument(const std::string &name) {
  return contentsOfFile(QUIVERLEAF_TEST_DATA "/documents/" + name);
}

TEST_F(Importers, Documents) {
  const NSArray author{u"Rowan Fletcher"_ns}, both{u"Rowan Fletcher"_ns, u"Ash Birch"_ns};
  const NSArray keywords{u"leaf"_ns, u"quiver"_ns};
  const NSDate made = NSDate::dateWithUTC(2024, 9, 20, 10, 30, 0);
  const NSDictionary letter = {
      {u"kMDItemTitle"_ns, u"Loose leaves"_ns},
      {u"kMDItemSubject"_ns, u"Leaves"_ns},
      {u"kMDItemDescription"_ns, u"What was found"_ns},
      {u"kMDItemAuthors"_ns, author},
      {u"kMDItemContentCreationDate"_ns, made},
      {u"kMDItemContentModificationDate"_ns, NSDate::dateWithUTC(2024, 9, 21, 8, 0, 0)},
      {u"kMDItemNumberOfPages"_ns, 1}};
  // What is deleted is not there; notes, comments and what stands on every page come last.
  const NSString body =
      u"The quiver and the leaf\nGr\u00fc\u00dfe & \u9280\u674f fall.\tTab   blanks\nnext "
      u"line\noak\nash\na1\na1 "
      u"below\tb1\n\tb2\nThe end\n"_ns;
  const NSString last = u"A footnote\nThat is me\nArchive of Loose Leaves\nBelow every page"_ns;
  const struct {
    const char *name;
    NSDictionary attributes;
    NSString text;
  } cases[] = {
      {"letter.fodt", letter, stringByConcatenating(body, last)},
      {"letter.odt", letter, stringByConcatenating(body, last)},
      {"letter.docx", letter, stringByConcatenating(body, u"\t", last)},
      {"table.xlsx",
       {{u"kMDItemTitle"_ns, u"Quivers"_ns},
        {u"kMDItemAuthors"_ns, both},
        {u"kMDItemKeywords"_ns, keywords},
        {u"kMDItemCreator"_ns, u"Microsoft Excel"_ns},
        {u"kMDItemContentCreationDate"_ns, made}},
       u"Leaves\nName\tCount\tPressed\nGingko \u9280\u674f\t12\tTRUE\nOak & ash\t3.5\tlast\nA rare one\nEmpty\n"
       u"Sums\nName\t15.5"_ns},
      {"table.ods",
       {{u"kMDItemTitle"_ns, u"Quivers"_ns}, {u"kMDItemKeywords"_ns, keywords}},
       u"Leaves\nName\tCount\nGingko \u9280\u674f\t12\nSums\nName\t15.5"_ns},
      {"talk.odp", {{u"kMDItemAuthors"_ns, author}}, u"First slide\nSay hello\nSecond slide"_ns},
      {"talk.pptx",
       {{u"kMDItemTitle"_ns, u"A talk"_ns},
        {u"kMDItemKeywords"_ns, keywords},
        {u"kMDItemOrganizations"_ns, NSArray{u"Archive of Loose Leaves"_ns}},
        {u"kMDItemContentCreationDate"_ns, made},
        {u"kMDItemNumberOfPages"_ns, 2},
        {u"kMDItemWordCount"_ns, 9}},
       u"Shown\nfirst\nSay hello\nShown last\na\tb\nc\td"_ns},
      {"book.epub",
       {{u"kMDItemTitle"_ns, u"Loose Leaves"_ns},
        {u"kMDItemAuthors"_ns, both},
        {u"kMDItemKeywords"_ns, NSArray{u"leaf"_ns}},
        {u"kMDItemDescription"_ns, u"What was found"_ns},
        {u"kMDItemOrganizations"_ns, NSArray{u"The Archive"_ns}},
        {u"kMDItemLanguages"_ns, NSArray{u"en"_ns}},
        {u"kMDItemContentCreationDate"_ns, NSDate::dateWithUTC(2024, 9, 20, 0, 0, 0)}},
       u"First\nSecond\n\n\n\ncaf\u00e9 & more"_ns},
  };
  for (const auto &[name, attributes, text] : cases) {
    SCOPED_TRACE(name);
    NSError error;
    const NSDictionary found = metaData(folder.write(name, contentsOfDocument(name)), &error);
    EXPECT_FALSE(error) << error.localizedFailureReason.UTF8String();
    expectAttributes(found, attributes);
    EXPECT_EQ(found.objectForKey(u"kMDItemTextContent"_ns).string().UTF8String(), text.UTF8String());
  }
}

/// A document of `parts`, each with the end of its content type; the first is the main one.
std::string openXMLDocument(std::initializer_list<std::tuple<const char *, const char *, const char *>> parts,
                            const char *references = "") {
  std::string types = "<Types>";
  ZipParts all;
  for (const auto &[name, type, content] : parts) {
    types += "<Override PartName='/"s + name + "' ContentType='application/vnd.openxmlformats-officedocument." +
             type + "+xml'/>";
    all.emplace_back(name, content);
  }
  const std::string main = all[0].first;
  all.emplace_back("[Content_Types].xml", types + "</Types>");
  all.emplace_back("_rels/.rels",
                   "<Relationships><Relationship Id='r1' Target='" + main + "'/></Relationships>");
  all.emplace_back("_rels/" + main + ".rels", "<Relationships>"s + references + "</Relationships>");
  return storedZip(all);
}

std::string book(const std::string &chapter, const std::string &encrypted) {
  return storedZip({{"META-INF/container.xml", "<container><rootfile full-path='b.opf'/></container>"},
                    {"META-INF/encryption.xml",
                     "<e><EncryptedData><CipherReference URI='" + encrypted + "'/></EncryptedData></e>"},
                    {"b.opf",
                     "<package><manifest><item id='a' href='a.xhtml'/><item id='b' href='b.xhtml'/></manifest>"
                     "<spine><itemref idref='a'/><itemref idref='b'/></spine></package>"},
                    {"a.xhtml", "<html><body><p>First</p></body></html>"},
                    {"b.xhtml", chapter}});
}

TEST_F(Importers, PartsOfDocuments) {
  constexpr const char *kDocument = "wordprocessingml.document.main";
  const std::string chapter = "<html><body><p>Second</p></body></html>";
  std::string gone, headers;
  for (const std::string name : {"tracked-changes", "forms", "scripts", "binary-data", "note-citation",
                                 "ruby-text", "title", "desc", "event-listeners", "page-number"})
    gone += "<" + name + "><p>gone</p></" + name + ">";
  int number = 0;
  for (const std::string name :
       {"header", "footer", "header-left", "footer-left", "header-first", "footer-first"})
    headers += "<" + name + "><p>" + std::to_string(++number) + "</p></" + name + ">";
  ZipParts many = {{"content.xml", "<o><p>Blatt</p></o>"}};
  for (int i = 0; i < 0xffff; ++i) many.emplace_back(std::to_string(i), "");
  const std::string enough = storedZip(many);
  many.emplace_back("more", "");
  const struct {
    const char *name;
    std::string bytes;
    NSString text;
    ErrorCode code = ErrorCode::none;
  } cases[] = {
      // Runs of a text are one text, without its pronunciation; there is no fifth text.
      {"shared.xlsx",
       openXMLDocument(
           {{"book.xml", "spreadsheetml.sheet.main", "<w><sheet name='Leaves' r:id='r2'/></w>"},
            {"sheet.xml", "spreadsheetml.worksheet",
             "<s><row><c t='s'><v>1</v></c><c t='s'><v>0</v></c></row>"
             "<row><c t='s'><v>3</v></c><c t='s'><v>2</v></c><c t='s'><v>4</v></c><c t='s'><v>x</v></c>"
             "<c t='inlineStr'><is><t>beech</t><rPh><t>bu</t></rPh><r><t>es</t></r></is></c></row></s>"},
            {"texts.xml", "spreadsheetml.sharedStrings",
             "<s> <si> <t>oak</t> </si><si><r><t>as</t></r><rPh><t>esche</t></rPh><r><t>h</t></r></si>"
             "<si><t/></si><si><t>elm</t></si></s>"}},
           "<Relationship Id='r1' Target='texts.xml'/><Relationship Id='r2' Target='sheet.xml'/>"),
       u"Leaves\nash\toak\nelm\t\t\t\tbeeches"_ns},
      // Empty cells are told from each other in front of others alone.
      {"empty-cells.xlsx",
       openXMLDocument({{"book.xml", "spreadsheetml.sheet.main", "<w><sheet name='' r:id='r2'/></w>"},
                        {"sheet.xml", "spreadsheetml.worksheet",
                         "<s><row><c/><c t='b'><v>0</v></c><c><v/></c><c t='inlineStr'><is><t/></is></c></row>"
                         "<row><c><v>oak</v></c><c/></row></s>"}},
                       "<Relationship Id='r1' TargetMode='External' Target='book.xml'/>"
                       "<Relationship Id='r2' Target='./sheet.xml'/>"),
       u"\tFALSE\noak"_ns},
      {"blanks.fodt",
       "<o><s/><tab/><p>a<s/>b<s c='3'/>c<s c='65'/>d<s c='0'/>e</p> between <p> \n f \t g<line-break/> "
       "h</p></o>",
       NSString::stringWithUTF8String("a b   c" + std::string(64, ' ') + "d e\nf g\nh")},
      {"elements.docx",
       openXMLDocument({{"a.xml", kDocument,
                         "<d><p><pPr><tab/><t>gone</t></pPr>out<r><t>a</t><tab/><t>b<t/></t><ptab/><t>c</t><br/"
                         "><t>d</t><cr/>"
                         "<t>e</t></r><Fallback><t>gone</t></Fallback><moveFrom><t>gone</t></"
                         "moveFrom><ruby><rt><t>gone</t></rt>"
                         "<t>f</t></ruby><fld><t>gone</t></fld></p><tr><tc><p><t>g</t></p></tc><tc><p><t>h</"
                         "t></p></tc></tr>"
                         "<tr><tc><p/></tc><tc><p><t>i</t></p></tc></tr><v>gone</v></d>"}}),
       u"a\tb\tc\nd\nef\ng\th\n\ti"_ns},
      {"elements.fodt",
       "<o>gone<p>a" + gone +
           "b</p><table name='gone'><table-row><table-cell><p>c</p></table-cell>"
           "<covered-table-cell/><table-cell><h>d</h></table-cell></table-row></"
           "table><annotation><p>note<creator>gone"
           "</creator><date>gone</date><date-string>gone</date-string><sender-initials>gone</sender-initials></"
           "p>"
           "</annotation>" +
           headers + "<p>e<note><note-body><p>foot</p></note-body></note>f</p></o>",
       u"ab\nc\t\td\nef\nfoot\nnote\n1\n2\n3\n4\n5\n6"_ns},
      // A chart's texts are text, and its numbers are not.
      {"chart.docx",
       openXMLDocument(
           {{"a.xml", kDocument, "<d><p><r><t>re</t><noBreakHyphen/><t>bound</t></r></p></d>"},
            {"chart.xml", "drawingml.chart",
             "<c><cat><strCache><ptCount val='2'/><pt><v>oak</v></pt><pt><v>ash</v></pt></strCache></cat>"
             "<val><numCache><pt><v>12</v></pt></numCache></val></c>"}},
           "<Relationship Id='r1' Target='chart.xml'/>"),
       u"re\u2011bound\noak\nash"_ns},
      {"entity.docx",
       openXMLDocument({{"a.xml", kDocument, "<!DOCTYPE d [<!ENTITY e 'x'>]><d><p><t>&e;</t></p></d>"}}),
       NSString(), ErrorCode::damaged},
      {"empty.docx", openXMLDocument({{"a.xml", kDocument, "<d/>"}}), NSString(), ErrorCode::incomplete},
      {"locked.docx",
       "\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1"s + std::string(4096, '\0') +
           "E\0n\0c\0r\0y\0p\0t\0e\0d\0P\0a\0c\0k\0a\0g\0e\0"s,
       NSString(), ErrorCode::locked},
      {"damaged.docx", "\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1"s + std::string(4096, '\0'), NSString(),
       ErrorCode::damaged},
      {"locked.odt", storedZip({{"content.xml", "noise"}}, 1), NSString(), ErrorCode::locked},
      {"enough.odt", enough, u"Blatt"_ns},
      {"many.odt", storedZip(many), u"Blatt"_ns, ErrorCode::incomplete},
      {"open.epub", book(chapter, "font.otf"), u"First\nSecond"_ns},
      {"locked.epub", book(chapter, "B.xhtml"), u"First"_ns, ErrorCode::locked},
      {"long.epub", book("<p>Second</p>" + std::string(17 << 20, '\n') + "<p>Third</p>", ""),
       u"First\nSecond"_ns, ErrorCode::incomplete},
  };
  for (const auto &[name, bytes, text, code] : cases) {
    SCOPED_TRACE(name);
    NSError error;
    const NSDictionary found = metaData(folder.write(name, bytes), &error);
    EXPECT_EQ(error.errorCode(), code) << error.localizedFailureReason.UTF8String();
    EXPECT_EQ(found.objectForKey(u"kMDItemTextContent"_ns).string().UTF8String(), text.UTF8String());
  }
  expectAttributes(metaDataOf("language.fodt", "<o><meta><language>de</language></meta><p>Blatt</p></o>"),
                   {{u"kMDItemLanguages"_ns, NSArray{u"de"_ns}}});
}

TEST_F(Importers, LongDocumentsAreCut) {
  constexpr std::uint32_t kMaximumLength = 16 << 20;
  for (const std::uint32_t length : {kMaximumLength, kMaximumLength + 1}) {
    NSError error;
    const NSDictionary found = metaData(
        folder.write("long.fodt", "<o><p>" + std::string(length - 2, 'x') + "</p><p>\xc3\xb6</p></o>"), &error);
    EXPECT_EQ(found.objectForKey(u"kMDItemTextContent"_ns).string().length(), kMaximumLength);
    EXPECT_EQ(error.errorCode(), length == kMaximumLength ? ErrorCode::none : ErrorCode::incomplete);
  }
}

TEST_F(Importers, EveryKindOfPart) {
  const char *const text = "<d><p><t>Blatt</t></p></d>";
  const char *const reference = "<Relationship Id='r2' Target='b.xml'/>";
  for (const char *type : {"wordprocessingml.document.main", "wordprocessingml.template.main",
                           "ms-word.document.macroEnabled.main", "ms-word.template.macroEnabledTemplate.main"})
    EXPECT_EQ(
        metaDataOf("a.docx", openXMLDocument({{"a.xml", type, text}})).objectForKey(u"kMDItemTextContent"_ns),
        id(u"Blatt"_ns))
        << type;
  for (const char *type : {"presentationml.presentation.main", "ms-powerpoint.presentation.macroEnabled.main",
                           "presentationml.slideshow.main", "ms-powerpoint.slideshow.macroEnabled.main",
                           "presentationml.template.main", "ms-powerpoint.template.macroEnabled.main",
                           "ms-powerpoint.addin.macroEnabled.main"})
    EXPECT_EQ(metaDataOf("a.pptx", openXMLDocument({{"a.xml", type, "<p><sldId id='256' r:id='r2'/></p>"},
                                                    {"b.xml", "presentationml.slide", text}},
                                                   reference))
                  .objectForKey(u"kMDItemTextContent"_ns),
              id(u"Blatt"_ns))
        << type;
  for (const char *type :
       {"spreadsheetml.sheet.main", "ms-excel.sheet.macroEnabled.main", "spreadsheetml.template.main",
        "ms-excel.template.macroEnabled.main", "ms-excel.addin.macroEnabled.main"})
    EXPECT_EQ(metaDataOf("a.xlsx", openXMLDocument({{"a.xml", type, "<w><sheet name='' r:id='r2'/></w>"},
                                                    {"b.xml", "spreadsheetml.worksheet",
                                                     "<s><row><c><v>Blatt</v></c></row></s>"}},
                                                   reference))
                  .objectForKey(u"kMDItemTextContent"_ns),
              id(u"Blatt"_ns))
        << type;
  // What a part refers to follows it, what stands on every page last; other parts are no text.
  EXPECT_EQ(
      metaDataOf("parts.docx",
                 openXMLDocument({{"a.xml", "wordprocessingml.document.main", text},
                                  {"b.xml", "wordprocessingml.footer", "<d><p><t>footer</t></p></d>"},
                                  {"c.xml", "wordprocessingml.header", "<d><p><t>header</t></p></d>"},
                                  {"d.xml", "wordprocessingml.comments", "<d><p><t>comment</t></p></d>"},
                                  {"e.xml", "wordprocessingml.endnotes", "<d><p><t>endnote</t></p></d>"},
                                  {"f.xml", "wordprocessingml.footnotes", "<d><p><t>footnote</t></p></d>"},
                                  {"g.xml", "drawingml.chart", "<d><p><t>chart</t></p></d>"},
                                  {"h.xml", "drawingml.diagramData", "<d><p><t>diagram</t></p></d>"},
                                  {"i.xml", "drawing", "<d><p><t>drawing</t></p></d>"},
                                  {"j.xml", "wordprocessingml.styles", "<d><p><t>gone</t></p></d>"}},
                                 "<Relationship Id='1' Target='b.xml'/><Relationship Id='2' Target='c.xml'/>"
                                 "<Relationship Id='3' Target='d.xml'/><Relationship Id='4' Target='e.xml'/>"
                                 "<Relationship Id='5' Target='f.xml'/><Relationship Id='6' Target='g.xml'/>"
                                 "<Relationship Id='7' Target='h.xml'/><Relationship Id='8' Target='i.xml'/>"
                                 "<Relationship Id='9' Target='j.xml'/><Relationship Id='10' Target='a.xml'/>"))
          .objectForKey(u"kMDItemTextContent"_ns),
      id(u"Blatt\ndrawing\ndiagram\nchart\nfootnote\nendnote\ncomment\nheader\nfooter"_ns));
}

TEST_F(Importers, PropertiesOfDocuments) {
  const auto authors = [](const NSString &author) {
    return std::pair(u"kMDItemAuthors"_ns, id(NSArray{author}));
  };
  const struct {
    const char *name;
    std::string bytes;
    NSDictionary attributes;
  } cases[] = {
      {"all.fodt",
       "<o><meta><initial-creator>A</initial-creator><creator>B</creator><title> A\n title </title><title/>"
       "<language>de</language><generator>Quill</generator><keyword>leaf</keyword><document-statistic "
       "page-count='3' word-count='21'/></meta><p>Blatt</p></o>",
       {authors(u"A"_ns),
        {u"kMDItemTitle"_ns, u"A title"_ns},
        {u"kMDItemLanguages"_ns, NSArray{u"de"_ns}},
        {u"kMDItemCreator"_ns, u"Quill"_ns},
        {u"kMDItemKeywords"_ns, NSArray{u"leaf"_ns}},
        {u"kMDItemNumberOfPages"_ns, 3},
        {u"kMDItemWordCount"_ns, 21}}},
      {"later.fodt",
       "<o><meta><creator>B</creator><initial-creator>A</initial-creator></meta><p>Blatt</p></o>",
       {authors(u"A"_ns)}},
      {"other.fodt", "<o><meta><creator>B</creator></meta><p>Blatt</p></o>", {authors(u"B"_ns)}},
      {"all.docx",
       openXMLDocument({{"a.xml", "wordprocessingml.document.main", "<d><p><t>Blatt</t></p></d>"},
                        {"b.xml", "core-properties",
                         "<p><creator> A;; B </creator><keywords>a,b ;c</keywords><subject>S</subject>"
                         "<language>de</language><modified>2001-01-02T00:00:00Z</modified></p>"},
                        {"c.xml", "extended-properties",
                         "<p><Application>Quill</Application><Company>C</Company><Pages>3</Pages>"
                         "<Words>4 or 5</Words></p>"}}),
       {{u"kMDItemAuthors"_ns, NSArray{u"A"_ns, u"B"_ns}},
        {u"kMDItemKeywords"_ns, NSArray{u"a"_ns, u"b"_ns, u"c"_ns}},
        {u"kMDItemSubject"_ns, u"S"_ns},
        {u"kMDItemLanguages"_ns, NSArray{u"de"_ns}},
        {u"kMDItemContentModificationDate"_ns, NSDate{86400}},
        {u"kMDItemCreator"_ns, u"Quill"_ns},
        {u"kMDItemOrganizations"_ns, NSArray{u"C"_ns}},
        {u"kMDItemNumberOfPages"_ns, 3},
        {u"kMDItemWordCount"_ns, id()}}},
      // The first title, language and date are those of the book itself.
      {"all.epub",
       storedZip(
           {{"META-INF/container.xml", "<c><rootfile full-path='b.opf'/><rootfile full-path='other.opf'/></c>"},
            {"b.opf",
             "<package><title>One</title><title>Two</title><language>de</language><language>en</language>"
             "<date>2001-01-02</date><date>2002</date><subject>a</subject><subject>b</subject>"
             "<manifest><item id='a' href='a.xhtml'/></manifest><spine><itemref idref='none'/>"
             "<itemref idref='a'/></spine></package>"},
            {"a.xhtml", "<html><body><p>Blatt</p></body></html>"}}),
       {{u"kMDItemTitle"_ns, u"One"_ns},
        {u"kMDItemLanguages"_ns, NSArray{u"de"_ns}},
        {u"kMDItemContentCreationDate"_ns, NSDate{86400}},
        {u"kMDItemKeywords"_ns, NSArray{u"a"_ns, u"b"_ns}},
        {u"kMDItemAuthors"_ns, id()}}},
  };
  for (const auto &[name, bytes, attributes] : cases) {
    SCOPED_TRACE(name);
    const NSDictionary found = metaDataOf(name, bytes);
    expectAttributes(found, attributes);
    EXPECT_EQ(found.objectForKey(u"kMDItemTextContent"_ns), id(u"Blatt"_ns));
  }
}

TEST_F(Importers, RichText) {
  folder.write("leaf.rtfd/TXT.rtf",
               "{\\rtf1{\\info{\\title A title}{\\author A; B}{\\subject S}{\\doccomm D}{\\*\\company C}"
               "{\\keywords leaf, "
               "quiver}{\\creatim\\yr2001\\mo1\\dy1}{\\revtim\\yr2001\\mo1\\dy2}}caf\\'e9\\line next\\par}");
  for (const NSString &path :
       {folder.string("leaf.rtfd"),
        folder.write("leaf.rtf", contentsOfFile((folder.path() / "leaf.rtfd/TXT.rtf").native()))}) {
    NSError error;
    expectAttributes(metaData(path, &error), {{u"kMDItemTitle"_ns, u"A title"_ns},
                                              {u"kMDItemAuthors"_ns, NSArray{u"A"_ns, u"B"_ns}},
                                              {u"kMDItemSubject"_ns, u"S"_ns},
                                              {u"kMDItemDescription"_ns, u"D"_ns},
                                              {u"kMDItemOrganizations"_ns, NSArray{u"C"_ns}},
                                              {u"kMDItemKeywords"_ns, NSArray{u"leaf"_ns, u"quiver"_ns}},
                                              {u"kMDItemContentCreationDate"_ns, NSDate{0}},
                                              {u"kMDItemContentModificationDate"_ns, NSDate{86400}},
                                              {u"kMDItemTextContent"_ns, u"caf\u00e9\nnext\n"_ns}});
    EXPECT_FALSE(error);
  }
  const NSString letter = metaDataOf("letter.rtf", contentsOfDocument("letter.rtf"))
                              .objectForKey(u"kMDItemTextContent"_ns)
                              .string();
  for (const std::u16string_view part :
       {u"The quiver and the leaf\n", u"Gr\u00fc\u00dfe & \u9280\u674f fall.\tTab   blanks\nnext line\n",
        u"A footnote"})
    EXPECT_TRUE(contains(letter, part)) << letter.UTF8String();
}

constexpr std::string_view kPage =
    "<!DOCTYPE html><html lang=de><head><title>\n A  <page> &amp; more </title><meta name=Author "
    "content='Rowan F.'>"
    "<meta name=GENERATOR content='Quill &amp; Co'>"
    "<meta content='leaf, quiver;oak' name=keywords><meta name=description content='a &amp; b'>"
    "<title>Other</title>"
    "</head><body><svg><title>Drawing</title></svg><p>Gr\xc3\xbc\xc3\x9f"
    "e<script>code</script>";

TEST_F(Importers, SourcesListsAndFeeds) {
  expectAttributes(metaDataOf("a.dart", "void main() {}\n"),
                   {{u"kMDItemTextContent"_ns, u"void main() {}\n"_ns}});
  const NSData list = NSPropertyListSerialization::dataWithPropertyList(
      NSDictionary{{u"Name"_ns, u"B\u00e4r"_ns}, {u"Of"_ns, NSArray{1, u"x"_ns, true}}},
      NSPropertyListFormat::binary);
  for (const char *name : {"a.plist", "a.bplist", "nameless"})
    expectAttributes(metaDataOf(name, list.view()),
                     {{u"kMDItemTextContent"_ns, u"Name\nB\u00e4r\nOf\nx\n"_ns}});
  // A string that stands once in the file, and comes up so often that its text would be too long.
  const std::string array = "\xaf\x11\x01\x2c"s + std::string(300, '\1');
  const std::string string = "\x5f\x12\0\1\0\0"s + std::string(1 << 16, 'x');
  const std::string many = "bplist00" + array + string + "\0\0\0\x08\0\0\x01\x38"s + "\0\0\0\0\0\0\4\1"s +
                           "\0\0\0\0\0\0\0\2\0\0\0\0\0\0\0\0\0\0\0\0\0\1\1\x3e"s;
  for (const std::string &content : {many, "bplist00" + std::string(17u << 20, 'x')}) {
    NSError error;
    EXPECT_EQ(metaData(folder.write("many.plist", content), &error).count(), 0u);
    EXPECT_EQ(error.errorCode(), ErrorCode::tooLarge);
  }

  const NSDictionary feed =
      metaDataOf("feed.rss",
                 "<?xml version=\"1.0\"?><!-- made --><rss><channel><title>News</title><item>"
                 "<title>First</title><description>&lt;p&gt;Words&lt;/p&gt;</description>"
                 "</item></channel></rss>");
  expectAttributes(feed, {{u"kMDItemTitle"_ns, u"News"_ns}});
  const NSString text = feed.objectForKey(u"kMDItemTextContent"_ns).string();
  EXPECT_TRUE(contains(text, u"First") && contains(text, u"Words") && !contains(text, u"<"))
      << text.UTF8String();
}

TEST_F(Importers, Pages) {
  const NSDictionary wanted = {{u"kMDItemTitle"_ns, u"A <page> & more"_ns},
                               {u"kMDItemAuthors"_ns, NSArray{u"Rowan F."_ns}},
                               {u"kMDItemKeywords"_ns, NSArray{u"leaf"_ns, u"quiver"_ns, u"oak"_ns}},
                               {u"kMDItemDescription"_ns, u"a & b"_ns},
                               {u"kMDItemCreator"_ns, u"Quill & Co"_ns},
                               {u"kMDItemLanguages"_ns, NSArray{u"de"_ns}}};
  const id archive =
      listOfArchive(listOfResource(kPage, u"http://example.org/"_ns, u"text/html"_ns, u"UTF-8"_ns), {},
                    NSArray{listOfArchive(listOfResource("<p>frame", NSString()))});
  const NSDictionary archived = metaDataOf("a.webarchive", bytesOfList(archive).view());
  const NSDictionary page = metaDataOf("a.html", kPage);
  for (const NSDictionary &found : {page, archived}) {
    expectAttributes(found, wanted);
    EXPECT_TRUE(contains(found.objectForKey(u"kMDItemTextContent"_ns).string(), u"Gr\u00fc\u00dfe"));
    EXPECT_FALSE(contains(found.objectForKey(u"kMDItemTextContent"_ns).string(), u"code"));
  }
  EXPECT_TRUE(contains(archived.objectForKey(u"kMDItemTextContent"_ns).string(), u"\n\nframe"));
  EXPECT_EQ(archived.objectForKey(u"kMDItemWhereFroms"_ns), id(NSArray{u"http://example.org/"_ns}));
  for (const std::string name : {"author", "DC.creator", "dcterms.creator"})
    expectAttributes(metaDataOf("author.html", "<html><meta name=author content=' '><meta name=" + name +
                                                   " content=A><meta name=author content=B><p>text"),
                     {{u"kMDItemAuthors"_ns, NSArray{u"A"_ns}}});
  NSError error;
  metaData(folder.write("long.html", std::string(kPage) + std::string(16 << 20, ' ')), &error);
  EXPECT_EQ(error.errorCode(), ErrorCode::incomplete);
  const NSString silent = folder.write("silent.html", "<html><body><img src=a></body></html>");
  EXPECT_FALSE(metaData(silent, &error).objectForKey(u"kMDItemTextContent"_ns));
  EXPECT_EQ(error.localizedFailureReason, u"the page has no text"_ns);
}

TEST_F(Importers, Sounds) {
  for (const auto &[name, rate] : {std::pair("cover.mp3", 22050.0),
                                   {"sound.m4a", 22050.0},
                                   {"sound.ogg", 22050.0},
                                   {"sound.flac", 8000.0},
                                   {"sound.wav", 8000.0}}) {
    SCOPED_TRACE(name);
    const NSDictionary found =
        metaData(NSString::stringWithUTF8String(QUIVERLEAF_TEST_DATA "/movies/"s + name));
    expectAttributes(found, {{u"kMDItemTitle"_ns, u"Lose Blätter"_ns},
                             {u"kMDItemAuthors"_ns, NSArray{u"Rowan Fletcher"_ns}},
                             {u"kMDItemAlbum"_ns, u"Quivers"_ns},
                             {u"kMDItemMusicalGenre"_ns, u"Folk"_ns},
                             {u"kMDItemRecordingYear"_ns, 2004},
                             {u"kMDItemComment"_ns, u"Recorded in the fletcher's loft"_ns},
                             {u"kMDItemAudioTrackNumber"_ns, 3},
                             {u"kMDItemMediaTypes"_ns, NSArray{u"Sound"_ns}},
                             {u"kMDItemAudioSampleRate"_ns, rate},
                             {u"kMDItemAudioChannelCount"_ns, 1}});
    EXPECT_GT(found.objectForKey(u"kMDItemDurationSeconds"_ns).real().value_or(0), 0.1);
    EXPECT_EQ(found.objectForKey(u"kMDItemCodecs"_ns).array().count(), 1u);
    EXPECT_FALSE(found.objectForKey(u"kMDItemPixelWidth"_ns));
  }
}

/// A sound with such tags in front of its own.
std::string taggedSound(std::initializer_list<std::string_view> entries) {
  // The comment header of a sound: each entry's length, its name and its text.
  std::string comments = std::string(4, '\0') + static_cast<char>(entries.size()) + std::string(3, '\0');
  for (const std::string_view entry : entries) {
    comments += static_cast<char>(entry.size()) + std::string(3, '\0');
    comments += entry;
  }
  const auto high = static_cast<char>(comments.size() >> 8), low = static_cast<char>(comments.size());
  // The first block is 34 bytes about the stream; the new one stands behind it.
  std::string sound = contentsOfFile(QUIVERLEAF_TEST_DATA "/movies/sound.flac");
  return sound.insert(4 + 4 + 34, std::string("\4\0", 2) + high + low + comments);
}

TEST_F(Importers, TagsOfASong) {
  expectAttributes(
      metaDataOf("song.flac", taggedSound({"ARTIST=Iris Bowyer", "ARTIST=Jan Leaf", "LYRICS=Leaf by leaf",
                                           "TITLE=One",          "TITLE=Two",       "ALBUM= ",
                                           "ALBUM=Quivers",      "COMPOSER=C",      "LYRICIST=L",
                                           "GENRE=Folk",         "DATE=2004-10-31", "TRACKNUMBER=3/12",
                                           "BPM=92.5",           "INITIALKEY=Am",   "COMMENT=N",
                                           "DESCRIPTION=D",      "COPYRIGHT=R",     "LABEL=P",
                                           "KEYWORDS=leaf",      "KEYWORDS=quiver", "ENCODING=E"})),
      {{u"kMDItemAuthors"_ns, NSArray{u"Iris Bowyer"_ns, u"Jan Leaf"_ns}},
       {u"kMDItemTextContent"_ns, u"Leaf by leaf"_ns},
       {u"kMDItemTitle"_ns, u"One, Two"_ns},
       {u"kMDItemAlbum"_ns, u"Quivers"_ns},
       {u"kMDItemComposer"_ns, u"C"_ns},
       {u"kMDItemLyricist"_ns, u"L"_ns},
       {u"kMDItemMusicalGenre"_ns, u"Folk"_ns},
       {u"kMDItemRecordingYear"_ns, 2004},
       {u"kMDItemAudioTrackNumber"_ns, 3},
       {u"kMDItemTempo"_ns, 92.5},
       {u"kMDItemKeySignature"_ns, u"Am"_ns},
       {u"kMDItemComment"_ns, u"N"_ns},
       {u"kMDItemDescription"_ns, u"D"_ns},
       {u"kMDItemCopyright"_ns, u"R"_ns},
       {u"kMDItemPublishers"_ns, NSArray{u"P"_ns}},
       {u"kMDItemKeywords"_ns, NSArray{u"leaf"_ns, u"quiver"_ns}},
       {u"kMDItemEncodingApplications"_ns, NSArray{u"E"_ns}}});
  // Numbers that are none, and too large ones.
  expectAttributes(
      metaDataOf("odd.flac", taggedSound({"DATE=1e9", "TRACKNUMBER=A3", "BPM=nan", "DESCRIPTION=\t "})),
      {{u"kMDItemRecordingYear"_ns, id()},
       {u"kMDItemAudioTrackNumber"_ns, id()},
       {u"kMDItemTempo"_ns, id()},
       {u"kMDItemDescription"_ns, id()}});
}

TEST_F(Importers, Movies) {
  const NSDictionary found =
      metaData(NSString::stringWithUTF8String(QUIVERLEAF_TEST_DATA "/movies/quarters.mov"));
  expectAttributes(found, {{u"kMDItemPixelWidth"_ns, 144},
                           {u"kMDItemPixelHeight"_ns, 48},
                           {u"kMDItemCodecs"_ns, NSArray{u"PNG"_ns}},
                           {u"kMDItemMediaTypes"_ns, NSArray{u"Video"_ns}}});
  EXPECT_FALSE(found.objectForKey(u"kMDItemAudioChannelCount"_ns));
  EXPECT_FALSE(found.objectForKey(u"kMDItemLanguages"_ns));
  NSError error;
  EXPECT_EQ(metaData(folder.write("none.mp4", "no movie"), &error).count(), 0u);
  EXPECT_EQ(error.errorCode(), ErrorCode::unsupportedType);
}

FileReader importerReader(const char *name, const char *path, std::string whole, bool noticesCuts = true) {
  return {name,
          path,
          std::move(whole),
          [](const NSString &file, NSError *error) {
            const NSDictionary found = Importers::metaData(file, error);
            return found.count() > 0 ? id(found) : id();
          },
          true,
          noticesCuts};
}

FileReader exampleReader(const char *name, const char *path, const char *example, bool noticesCuts = false) {
  return importerReader(name, path, contentsOfExample(example), noticesCuts);
}

FileReader documentReader(const char *name, const char *document) {
  return importerReader(name, document, contentsOfDocument(document));
}

INSTANTIATE_TEST_SUITE_P(
    Importers, FileReaders,
    testing::Values(exampleReader("PDF", "leaf.pdf", "article.pdf", true),
                    exampleReader("LatinText", "leaf.txt", "letter-latin1.txt"),
                    exampleReader("UTF16Text", "leaf.txt", "labels-utf16.txt"),
                    exampleReader("Source", "leaf.c", "quiver.c"),
                    importerReader("MP3", "leaf.mp3", contentsOfFile(QUIVERLEAF_TEST_DATA "/movies/cover.mp3"),
                                   false),
                    importerReader("MP4", "leaf.mp4",
                                   contentsOfFile(QUIVERLEAF_TEST_DATA "/movies/ten-seconds.mp4"), false),
                    exampleReader("JPEG", "leaf.jpg", "leaf.jpg"), exampleReader("PNG", "leaf.png", "leaf.png"),
                    importerReader("HTML", "leaf.html", std::string(kPage), false),
                    importerReader("RTF", "letter.rtf", contentsOfDocument("letter.rtf"), false),
                    documentReader("FODT", "letter.fodt"), documentReader("ODT", "letter.odt"),
                    documentReader("DOCX", "letter.docx"), documentReader("XLSX", "table.xlsx"),
                    documentReader("ODS", "table.ods"), documentReader("ODP", "talk.odp"),
                    documentReader("PPTX", "talk.pptx"), documentReader("EPUB", "book.epub")),
    nameOfFileReader);

}  // namespace
}  // namespace nimbo
