// SPDX-License-Identifier: Apache-2.0
#include <cstddef>
#include <cstdint>

#include "helper/PDFDocument+Conversion.hpp"
#include "platform/PDFKit/PDFDate.hpp"

/// Everything that is asked of a PDF, and its bytes as a date, which they are too rarely inside one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t length) {
  using namespace nimbo;
  dateWithPDFDateString(NSString::stringWithLossyUTF8String({reinterpret_cast<const char *>(bytes), length}));
  const PDFLimits limits{
      .memoryBytes = std::size_t{128} << 20, .stepSeconds = 2, .pages = 32, .drawingSeconds = 2};
  const auto document = PDFDocument::documentWithData(NSData::dataWithBytes(bytes, length), limits);
  if (!document) return 0;
  document->documentAttributes();
  for (std::uint32_t index = 0; index < document->pageCount(); ++index) {
    document->pageAtIndex(index).boundsForBox(PDFDisplayBox::cropBox);
    document->pageAtIndex(index).rotation();
  }
  if (document->isLocked() || document->pageCount() == 0) return 0;
  fixedAndNormalizedStringUsingTimeout(*document, 2);
  document->selectionForEntireDocument().attributedString(Deadline::after(2));
  // A picture, and a part of one that is larger.
  for (const double scale : {1.0, 0.1}) {
    const NSSize size = document->pageAtIndex(0).sizeAsShown();
    document->pageAtIndex(0).imageOfArea({{0, 0}, {size.width * scale, size.height * scale}}, 64, 48, {});
  }
  return 0;
}
