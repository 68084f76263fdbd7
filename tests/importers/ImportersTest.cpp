// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "tests/importers/ShippedImporters.hpp"
#include "tests/support/FileReaders.hpp"
#include "tests/support/PDFSamples.hpp"
#include "tests/support/ZipSamples.hpp"

namespace nimbo {
namespace {

using namespace std::literals;

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
      {"list.txt", "bplis", ErrorCode::none, true},
      {"long.txt", std::string((16 << 20) + 1, 'x'), ErrorCode::incomplete, true},
      {"exact.txt", std::string(16 << 20, 'x'), ErrorCode::none, true},
      {"long.rtf", "{\\rtf1 text}" + std::string((64 << 20) - 11, '\n'), ErrorCode::incomplete, true},
      {"exact.rtf", "{\\rtf1 text}" + std::string((64 << 20) - 12, '\n'), ErrorCode::none, true},
      {"empty.rtf", "", ErrorCode::incomplete, false},
      {"pdf.rtf", pdf, ErrorCode::unsupportedType, false},
      {"exact.html", "<p>text" + std::string((16 << 20) - 7, ' '), ErrorCode::none, true},
      {"long.html", "<p>text" + std::string((16 << 20) - 6, ' '), ErrorCode::incomplete, true},
      {"empty.html", "", ErrorCode::incomplete, false},
      {"photo.html", photo, ErrorCode::damaged, false},
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
  return importerReader(name, document, contentsOfSample("documents/"s + document));
}

INSTANTIATE_TEST_SUITE_P(
    Importers, FileReaders,
    testing::Values(exampleReader("PDF", "leaf.pdf", "article.pdf", true),
                    exampleReader("LatinText", "leaf.txt", "letter-latin1.txt"),
                    exampleReader("UTF16Text", "leaf.txt", "labels-utf16.txt"),
                    exampleReader("Source", "leaf.c", "quiver.c"),
                    importerReader("MP3", "leaf.mp3", contentsOfSample("movies/cover.mp3"), false),
                    importerReader("MP4", "leaf.mp4", contentsOfSample("movies/ten-seconds.mp4"), false),
                    exampleReader("JPEG", "leaf.jpg", "leaf.jpg"), exampleReader("PNG", "leaf.png", "leaf.png"),
                    importerReader("HTML", "leaf.html", "<title>A page</title><p>Leaves", false),
                    importerReader("RTF", "letter.rtf", contentsOfSample("documents/letter.rtf"), false),
                    documentReader("FODT", "letter.fodt"), documentReader("ODT", "letter.odt"),
                    documentReader("DOCX", "letter.docx"), documentReader("XLSX", "table.xlsx"),
                    documentReader("ODS", "table.ods"), documentReader("ODP", "talk.odp"),
                    documentReader("PPTX", "talk.pptx"), documentReader("EPUB", "book.epub")),
    nameOfFileReader);

}  // namespace
}  // namespace nimbo
