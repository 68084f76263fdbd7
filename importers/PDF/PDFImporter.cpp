// SPDX-License-Identifier: Apache-2.0
#include <utility>

#include "importers/ImporterPlugIn.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/NSStringFormatting.hpp"
#include "platform/PDFKit/PDFDocument.hpp"

namespace nimbo {
namespace {

/// For opening and for all the text, well below what callers wait; the pages that are not read by then are left
/// out.
constexpr double kTextSeconds = 6;
/// For opening, and for one page.
constexpr double kStepSeconds = 4;
/// For everything that is asked of the document.
constexpr double kDocumentSeconds = 10;
/// Pages after this much text are left out.
constexpr std::uint32_t kMaximumTextLengthInCodeUnits = 32u << 20;

/// The pages' text, each ended by a line feed; nil when no page has any. `*error` says which pages are missing.
NSString textOfDocument(const PDFDocument &document, const Deadline &deadline, NSError *error) {
  NSMutableString text;
  const auto append = [&text](const NSString &page) {
    text.appendString(page);
    text.appendCharacter(u'\n');
    return text.length() < kMaximumTextLengthInCodeUnits;
  };
  document.readPages(deadline, append, error);
  return text.length() > 0 ? std::move(text).string() : NSString();
}

/// The size at which the page is shown: of its crop box, turned.
NSSize shownSizeOfPage(const PDFPage &page) {
  NSSize size = page.boundsForBox(PDFDisplayBox::cropBox).size;
  if (page.rotation() % 180 != 0) std::swap(size.width, size.height);
  return size;
}

void importPDF(const NSString &path, Attributes &attributes) {
  const Deadline textDeadline = Deadline::after(kTextSeconds);
  PDFLimits limits;
  limits.stepSeconds = kStepSeconds;
  limits.deadline = Deadline::after(kDocumentSeconds);
  NSError error;
  const auto document = PDFDocument::documentWithContentsOfFile(path, limits, &error);
  const bool isLocked = document && document->isLocked(&error);
  attributes.setReason(error);
  if (!document) return;

  attributes.set("kMDItemVersion",
                 stringWithFormat(u"%d.%d", document->majorVersion(), document->minorVersion()));
  attributes.set("kMDItemSecurityMethod", document->isEncrypted() ? u"Password Encrypted"_ns : u"None"_ns);

  const NSDictionary information = document->documentAttributes(&error);
  attributes.set("kMDItemTitle", information.objectForKey(u"Title"_ns));
  attributes.setArrayOf("kMDItemAuthors", information.objectForKey(u"Author"_ns).string());
  attributes.set("kMDItemDescription", information.objectForKey(u"Subject"_ns));
  attributes.set("kMDItemKeywords", information.objectForKey(u"Keywords"_ns));
  attributes.set("kMDItemCreator", information.objectForKey(u"Creator"_ns));
  attributes.setArrayOf("kMDItemEncodingApplications", information.objectForKey(u"Producer"_ns).string());
  attributes.set("kMDItemContentCreationDate", information.objectForKey(u"CreationDate"_ns));
  attributes.set("kMDItemContentModificationDate", information.objectForKey(u"ModDate"_ns));
  if (document->pageCount() > 0) {
    attributes.set("kMDItemNumberOfPages", document->pageCount());
    const NSSize size = shownSizeOfPage(document->pageAtIndex(0));
    attributes.set("kMDItemPageWidth", size.width);
    attributes.set("kMDItemPageHeight", size.height);
  }
  if (isLocked) return;
  attributes.set("kMDItemTextContent", textOfDocument(*document, textDeadline, &error));
  attributes.setReason(error);
}

}  // namespace
}  // namespace nimbo

QUIVERLEAF_IMPORTER_FACTORY void *PDFImporterFactory(void *, const std::uint8_t *typeID) {
  return nimbo::makeMetaDataImporter(typeID, nimbo::importPDF);
}
