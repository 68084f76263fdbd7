// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Images/NSEPSImageRep.hpp"

#include "platform/AppKit/Images/EPSBoundingBox.hpp"
#include "platform/CoreGraphics/CGPSConverter.hpp"
#include "platform/CoreGraphics/PostScriptFile.hpp"

namespace nimbo {

NSEPSImageRep::~NSEPSImageRep() = default;

bool NSEPSImageRep::canInitWithFirstBytes(std::string_view bytes) {
  return isPostScriptFile(bytes);
}

bool NSEPSImageRep::isEncapsulated(std::string_view bytes) {
  const std::string_view line = firstLineOfPostScript(bytes);
  // DOS programs put their table around EPS alone.
  return line.empty() || isFirstLineOfEPS(line);
}

SharedPointer<NSEPSImageRep> NSEPSImageRep::imageRepWithData(const NSData &data, const Deadline &deadline,
                                                             NSError *error) {
  if (!canInitWithFirstBytes(data.view())) {
    setError(error, ErrorCode::unsupportedType, "the file is no PostScript");
    return {};
  }
  auto rep = SharedPointer<NSEPSImageRep>::adopt(new NSEPSImageRep(data, deadline));
  if (const auto box = detail::boundingBoxOfPostScript(postScriptPart(data.view()))) {
    rep->box_ = *box;
    return rep;
  }
  const SharedPointer<NSPDFImageRep> converted = rep->convertToPDF(deadline, error);
  if (!converted) return {};
  rep->box_.size = converted->size();
  return rep;
}

const ClassDescription &NSEPSImageRep::classDescription() const {
  static const ClassDescription description{
      u"NSEPSImageRep"_ns,
      &imageRepClass(),
      {},
      {{u"pdfImageRep"_ns,
        [](const NSObject &receiver) -> id {
          const auto made = static_cast<const NSEPSImageRep &>(receiver).PDFImageRepIfMade();
          return made ? id(made) : id();
        },
        nullptr}},
      nullptr};
  return description;
}

SharedPointer<NSPDFImageRep> NSEPSImageRep::PDFImageRepIfMade() const {
  const std::scoped_lock lock(mutex_);
  return pdfImageRep_;
}

SharedPointer<NSPDFImageRep> NSEPSImageRep::convertToPDF(const Deadline &deadline, NSError *error) const {
  const std::scoped_lock lock(mutex_);
  if (pdfImageRep_) return pdfImageRep_;
  PostScriptLimits limits;
  limits.deadline = earliest(deadline, deadline_);
  if (const NSData pdf = PDFDataWithPostScript(data_, limits, error))
    pdfImageRep_ = NSPDFImageRep::imageRepWithData(pdf, deadline_, error);
  return pdfImageRep_;
}

bool NSEPSImageRep::draw(NSGraphicsContext &context, const NSRect &rect, const NSRect &from,
                         NSCompositingOperation operation, double fraction, NSError *error) const {
  const SharedPointer<NSPDFImageRep> converted = convertToPDF(context.deadline, error);
  if (!converted) return false;
  // The page may be rounded to whole points, or be another one than the comments name.
  const NSSize page = converted->size();
  const double x = page.width / box_.size.width;
  const double y = page.height / box_.size.height;
  return converted->drawInRect(
      context, rect, {{from.origin.x * x, from.origin.y * y}, {from.size.width * x, from.size.height * y}},
      operation, fraction, error);
}

}  // namespace nimbo
