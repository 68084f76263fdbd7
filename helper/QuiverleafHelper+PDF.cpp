// SPDX-License-Identifier: Apache-2.0
#include <memory>
#include <string>
#include <utility>

#include "helper/PDFDocument+Conversion.hpp"
#include "helper/PDFProducer.hpp"
#include "helper/PDFTextOptions.hpp"
#include "helper/QuiverleafHelper.hpp"
#include "helper/TextCleaning.hpp"
#include "platform/AppKit/NSAttributedStringRTF.hpp"
#include "platform/Foundation/NSGeometry.hpp"
#include "platform/Foundation/System/ForeignCall.hpp"
#include "platform/PDFKit/PDFDocument.hpp"

namespace nimbo {
namespace {

/// How long the pages of one document may be read for.
constexpr double kPageTextTimeoutSeconds = 60.0;

NSData RTFDOfSelection(const PDFSelection &selection, NSError *error) {
  const NSAttributedString text = selection.attributedString(Deadline::after(kPageTextTimeoutSeconds), error);
  NSData rtfd = RTFDFromRange(text, {0, text.length()});
  if (text && !rtfd) setError(error, ErrorCode::tooLarge, "the attributed text is too long");
  return rtfd;
}

/// Whether no password is missing, after the one of the options has been tried.
bool unlock(PDFDocument &document, const PDFTextOptions &options, NSError *error) {
  if (!document.isLocked() || !options.password) return !document.isLocked(error);
  return document.unlockWithPassword(options.password, error);
}

}  // namespace

NSDictionary QuiverleafHelper::attributedStringWithPDF(bool attributed, const NSData &pdf, NSError *error) {
  return _attributedStringWithPDF(attributed, pdf, NSString(), false, Deadline(), error);
}

NSDictionary QuiverleafHelper::stringWithPDF(const NSData &pdf, const NSDictionary &options, NSError *error) {
  return answerToPDF(pdf, PDFTextOptionsOfDictionary(options), NSString(), false, Deadline(), error);
}

NSDictionary QuiverleafHelper::_attributedStringWithPDF(bool attributed, const NSData &pdf,
                                                        const NSString &file, bool size,
                                                        const Deadline &deadline, NSError *error) {
  return answerToPDF(pdf, {.attributed = attributed}, file, size, deadline, error);
}

NSDictionary QuiverleafHelper::answerToPDF(const NSData &pdf, const PDFTextOptions &options,
                                           const NSString &file, bool size, const Deadline &deadline,
                                           NSError *error) {
  PDFLimits limits;
  limits.deadline = earliest(Deadline::after(kDocumentSeconds), deadline);
  const std::unique_ptr<PDFDocument> document = PDFDocument::documentWithData(pdf, limits, error);
  if (!document) return NSDictionary();
  const bool isOpen = unlock(*document, options, error);
  const std::uint32_t count = document->pageCount();
  const std::uint32_t skipped = options.firstPage - 1;
  if (isOpen && skipped > 0 && skipped >= count) {
    setError(
        error, ErrorCode::incomplete,
        "there is no page " + std::to_string(options.firstPage) + ": the PDF has " + std::to_string(count));
    return NSDictionary();
  }
  const NSDictionary attributes = document->documentAttributes(error);
  NSDictionary result = NSDictionary::dictionary();
  if (isOpen) {
    const NSRange pages = {skipped, options.lastPage - skipped};
    result.setObject(textOfPDF(*document, options, pages, attributes, file, error),
                     options.byPage ? u"Pages"_ns : u"String"_ns);
  } else {
    result.setObject(true, u"Locked"_ns);
  }
  const bool asksForMore = options.lastPage != UINT32_MAX && options.lastPage > count;
  if (isOpen && asksForMore && error && !*error)
    setError(error, ErrorCode::incomplete, "the PDF has no more than " + std::to_string(count) + " pages");
  result.setObject(count, u"PageCount"_ns);
  result.addEntriesFromDictionary(attributes);
  if (size && count > 0) {
    const NSRect box = document->pageAtIndex(0).boundsForBox(PDFDisplayBox::mediaBox);
    const NSString text = NSStringFromSize(box.size);
    result.setObject(text, u"Size"_ns);
    result.setObject(text, u"PixelSize"_ns);
    result.setObject(false, u"Alpha"_ns);
  }
  return result;
}

id QuiverleafHelper::textOfPDF(PDFDocument &document, const PDFTextOptions &options, const NSRange &pages,
                               const NSDictionary &attributes, const NSString &file, NSError *error) {
  if (options.attributed) return RTFDOfSelection(document.selectionForPages(pages), error);
  if (options.byPage) return fixedAndNormalizedPages(document, pages, kPageTextTimeoutSeconds, error);
  if (file && mayAskImporterForText(attributes)) {
    NSError importerError;
    const ForeignCall call;
    if (const NSString text = _mdimporter.textContentOfFileAtPath(file, &importerError)) {
      if (error && importerError) *error = std::move(importerError);
      return cleanedText(text);
    }
  }
  return fixedAndNormalizedStringOfPages(document, pages, kPageTextTimeoutSeconds, error);
}

}  // namespace nimbo
