// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Images/NSEPSImageRep.hpp"

#include <cmath>

#include "platform/CoreGraphics/CGPSConverter.hpp"
#include "platform/CoreGraphics/EPSBoundingBox.hpp"
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
  if (const auto box = boundingBoxOfPostScript(postScriptPart(data.view()))) {
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
  // The box of EPS has become the page, which has two decimals; that of other programs, or of one that chooses
  // its page, is a part of it.
  constexpr double kRounding = 0.01;
  const NSSize page = converted->size();
  const bool isPage = isEncapsulated(data_.view()) && std::abs(page.width - box_.size.width) <= kRounding &&
                      std::abs(page.height - box_.size.height) <= kRounding;
  const NSRect part = isPage ? NSRect{{0, 0}, page} : box_;
  const double x = part.size.width / box_.size.width;
  const double y = part.size.height / box_.size.height;
  return converted->drawInRect(context, rect,
                               {{part.origin.x + from.origin.x * x, part.origin.y + from.origin.y * y},
                                {from.size.width * x, from.size.height * y}},
                               operation, fraction, error);
}

}  // namespace nimbo
