// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/ContentTypes.hpp"
#include "platform/ImageIO/CGImageSource.hpp"
#include "platform/PDFKit/PDFDocument.hpp"
#include "tests/support/FileReaders.hpp"

namespace nimbo {
namespace {

id textAndAttributes(const NSString &path, NSError *error) {
  const auto document = PDFDocument::documentWithContentsOfFile(path, PDFLimits(), error);
  if (!document) return id();
  NSArray answer = {document->documentAttributes(), document->pageCount()};
  document->readPages(
      Deadline::never(), [&](const NSString &text) { return answer.addObject(text), true; }, error);
  return answer;
}

id imageProperties(const NSString &path, NSError *error) {
  const auto source = CGImageSource::sourceWithContentsOfFile(path, error);
  return source ? id(NSArray{source->type(), source->count(), source->properties()}) : id();
}

/// The type that the content has; the name says nothing.
id typeOfContent(const NSString &path, NSError *error) {
  const NSString type = LSCopyItemContentType(path, error);
  for (const NSString &general : {u"public.data"_ns, u"public.folder"_ns, u"public.item"_ns})
    if (type == general) return id();
  return type;
}

FileReader reader(const char *name, const char *path, const std::string &sample,
                  decltype(FileReader::read) read) {
  return {name, path, contentsOfFile(sample), read, read != typeOfContent, read == textAndAttributes};
}

INSTANTIATE_TEST_SUITE_P(
    Media, FileReaders,
    testing::Values(reader("PDF", "leaf.pdf", EXAMPLES_FOLDER "/article.pdf", textAndAttributes),
                    reader("CompressedPDF", "leaf.pdf", QUIVERLEAF_TEST_DATA "/pdf/object-streams.pdf",
                           textAndAttributes),
                    reader("JPEG", "leaf.jpg", EXAMPLES_FOLDER "/leaf.jpg", imageProperties),
                    reader("PNG", "leaf.png", EXAMPLES_FOLDER "/leaf.png", imageProperties),
                    reader("BMP", "leaf.bmp", TEST_FILES "/image-properties/leaf.bmp", imageProperties),
                    reader("GIF", "leaf.gif", TEST_FILES "/image-properties/leaf.gif", imageProperties),
                    reader("TIFF", "leaf.tif", TEST_FILES "/image-properties/leaf.tif", imageProperties),
                    reader("WebP", "leaf.webp", TEST_FILES "/image-properties/leaf.webp", imageProperties),
                    reader("TypeOfPDF", "leaf", EXAMPLES_FOLDER "/article.pdf", typeOfContent),
                    reader("TypeOfZip", "leaf", TEST_FILES "/container/docx.zip", typeOfContent),
                    reader("TypeOfCompoundFile", "leaf", TEST_FILES "/container/excel.ole", typeOfContent)),
    nameOfFileReader);

}  // namespace
}  // namespace nimbo
