// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/NSEPSImageRep+PDF.hpp"

#include "Classes/Collections/NSObject+NSObjectNimboExtensions.hpp"

namespace nimbo {
inline namespace PDF {

SharedPointer<NSPDFImageRep> PDFImageRep(const NSEPSImageRep &representation) {
  SharedPointer<NSObject> made = getSafeValueForKey(representation, u"pdfImageRep"_ns).object();
  return SharedPointer<NSPDFImageRep>::adopt(static_cast<NSPDFImageRep *>(made.detach()));
}

NSData PDFRepresentation(const NSEPSImageRep &representation, NSError *error) {
  const auto made = PDFImageRep(representation);
  return made ? made->PDFRepresentation(error) : NSData();
}

SharedPointer<NSPDFImageRep> initPDFImageRep(const NSEPSImageRep &representation, const Deadline &deadline,
                                             NSError *error) {
  if (auto made = PDFImageRep(representation)) return made;
  return representation.convertToPDF(deadline, error);
}

}  // namespace PDF
}  // namespace nimbo
