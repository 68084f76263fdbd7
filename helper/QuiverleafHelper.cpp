// SPDX-License-Identifier: Apache-2.0
#include "helper/QuiverleafHelper.hpp"

#include "Classes/Strings/NSString+NSStringNimboExtensions.hpp"
#include "helper/PDFDocument+Conversion.hpp"
#include "helper/PDFProducer.hpp"
#include "platform/PDFKit/PDFDocument.hpp"

namespace nimbo {
namespace {

/// How long the pages of one document may be read for.
constexpr double kPageTextTimeoutSeconds = 60.0;

}  // namespace

NSDictionary QuiverleafHelper::metaDataForFile(const NSString &path) {
  NSDictionary metaData = _mdimporter.metaDataOfFileAtPath(path);
  for (const NSString &key : metaData.allKeys())
    if (metaData.objectForKey(key).isNull()) metaData.removeObjectForKey(key);
  return metaData;
}

NSDictionary QuiverleafHelper::attributedStringWithPDF(bool attributed, const NSData &pdf) {
  return _attributedStringWithPDF(attributed, pdf, NSString(), false);
}

NSDictionary QuiverleafHelper::_attributedStringWithPDF(bool attributed, const NSData &pdf,
                                                        const NSString &file, bool size) {
  const std::unique_ptr<PDFDocument> document = pdf ? PDFDocument::documentWithData(pdf) : nullptr;
  if (!document) return NSDictionary();
  const NSDictionary attributes = document->documentAttributes();
  NSDictionary result = NSDictionary::dictionary();
  if (document->isLocked())
    result.setObject(true, u"Locked"_ns);
  else if (!attributed)
    result.setObject(textOfPDF(*document, attributes, file), u"String"_ns);
  result.setObject(document->pageCount(), u"PageCount"_ns);
  result.addEntriesFromDictionary(attributes);
  if (size && document->pageCount() > 0) {
    const NSRect box = document->pageAtIndex(0).boundsForBox(PDFDisplayBox::mediaBox);
    const NSString text = NSStringFromSize(box.size);
    result.setObject(text, u"Size"_ns);
    result.setObject(text, u"PixelSize"_ns);
    result.setObject(false, u"Alpha"_ns);
  }
  return result;
}

NSString QuiverleafHelper::textOfPDF(PDFDocument &document, const NSDictionary &attributes,
                                     const NSString &file) {
  if (file && mayAskImporterForText(attributes)) {
    if (const NSString text = _mdimporter.textContentOfFileAtPath(file)) return fixedAndNormalizedString(text);
  }
  return fixedAndNormalizedStringUsingTimeout(document, kPageTextTimeoutSeconds);
}

NSDictionary QuiverleafHelper::searchableTextOfWebArchive(const NSString &) {
  return NSDictionary();
}

NSDictionary QuiverleafHelper::attributedStringWithContentsOfFile(const NSString &) {
  return NSDictionary();
}

id QuiverleafHelper::writeRTFDData(const NSData &, const NSString &) {
  return id();
}

NSData QuiverleafHelper::RTFDWithHTML(const NSData &, const NSString &, bool) {
  return NSData();
}

NSData QuiverleafHelper::PDFImageRepOfFile(const NSString &) {
  return NSData();
}

NSDictionary QuiverleafHelper::posterImageForMovieWithFile(const NSString &) {
  return NSDictionary();
}

NSDictionary QuiverleafHelper::imageWithContentsOfFile(const NSString &, bool, bool) {
  return NSDictionary();
}

}  // namespace nimbo
