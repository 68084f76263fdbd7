// SPDX-License-Identifier: Apache-2.0
#include <chrono>
#include <string>
#include <utility>

#include "importers/ImporterPlugIn.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/PDFKit/PDFDocument.hpp"

namespace nimbo {
namespace {

using Clock = std::chrono::steady_clock;

/// For opening and for all the text, well below what callers wait; the pages that are not read by then are left
/// out.
constexpr double kTextSeconds = 6;
/// For opening, and for one page.
constexpr double kStepSeconds = 4;
/// Pages after this much text are left out.
constexpr std::uint32_t kMaximumTextLengthInCodeUnits = 32u << 20;

/// The pages' text, each ended by a line feed; nil when no page has any.
NSString textOfDocument(const PDFDocument &document, Clock::time_point start) {
  NSMutableString text;
  const std::uint32_t count = document.pageCount();
  auto pageStart = Clock::now();
  for (std::uint32_t i = 0; i < count && text.length() < kMaximumTextLengthInCodeUnits; ++i) {
    if (const NSString page = document.pageAtIndex(i).string(); page.length() > 0) {
      text.appendString(page);
      text.appendCharacter(u'\n');
    }
    // The last page counts twice, so that one as slow as it is not begun when it would overrun.
    const auto now = Clock::now();
    if (std::chrono::duration<double>((now - start) + (now - pageStart)).count() >= kTextSeconds) break;
    pageStart = now;
  }
  return text.length() > 0 ? std::move(text).string() : NSString();
}

/// The size at which the page is shown: of its crop box, turned.
NSSize shownSizeOfPage(const PDFPage &page) {
  NSSize size = page.boundsForBox(PDFDisplayBox::cropBox).size;
  if (page.rotation() % 180 != 0) std::swap(size.width, size.height);
  return size;
}

void importPDF(const NSString &path, Attributes &attributes) {
  const auto start = Clock::now();
  PDFLimits limits;
  limits.stepSeconds = kStepSeconds;
  const auto document = PDFDocument::documentWithData(NSData::dataWithContentsOfFile(path), limits);
  if (!document) return;

  const std::string version =
      std::to_string(document->majorVersion()) + "." + std::to_string(document->minorVersion());
  attributes.set("kMDItemVersion", NSString::stringWithUTF8String(version));
  attributes.set("kMDItemSecurityMethod", document->isEncrypted() ? u"Password Encrypted"_ns : u"None"_ns);

  const NSDictionary information = document->documentAttributes();
  attributes.set("kMDItemTitle", information.objectForKey(u"Title"_ns));
  attributes.setArrayOf("kMDItemAuthors", information.objectForKey(u"Author"_ns).string());
  attributes.set("kMDItemDescription", information.objectForKey(u"Subject"_ns));
  attributes.set("kMDItemKeywords", information.objectForKey(u"Keywords"_ns));
  attributes.set("kMDItemCreator", information.objectForKey(u"Creator"_ns));
  attributes.setArrayOf("kMDItemEncodingApplications", information.objectForKey(u"Producer"_ns).string());
  attributes.set("kMDItemContentCreationDate", information.objectForKey(u"CreationDate"_ns));
  attributes.set("kMDItemContentModificationDate", information.objectForKey(u"ModDate"_ns));
  if (document->pageCount() == 0) return;

  attributes.set("kMDItemNumberOfPages", document->pageCount());
  const NSSize size = shownSizeOfPage(document->pageAtIndex(0));
  attributes.set("kMDItemPageWidth", size.width);
  attributes.set("kMDItemPageHeight", size.height);
  if (!document->isLocked()) attributes.set("kMDItemTextContent", textOfDocument(*document, start));
}

}  // namespace
}  // namespace nimbo

QUIVERLEAF_IMPORTER_FACTORY void *PDFImporterFactory(void *, const std::uint8_t *typeID) {
  return nimbo::makeMetaDataImporter(typeID, nimbo::importPDF);
}
