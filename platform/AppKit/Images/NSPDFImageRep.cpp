// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Images/NSPDFImageRep.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/AppKit/Images/PixelDrawing.hpp"

namespace nimbo {

namespace {

PDFLimits limitsUntil(const Deadline &deadline) {
  PDFLimits limits;
  limits.deadline = deadline;
  return limits;
}

}  // namespace

NSPDFImageRep::NSPDFImageRep(std::unique_ptr<PDFDocument> document, const NSString &path, const NSData &data)
    : document_(std::move(document)),
      path_(path),
      data_(data),
      size_(document_->pageAtIndex(0).sizeAsShown()) {}

NSPDFImageRep::~NSPDFImageRep() = default;

SharedPointer<NSPDFImageRep> NSPDFImageRep::imageRepWithDocument(std::unique_ptr<PDFDocument> document,
                                                                 const NSString &path, const NSData &data,
                                                                 NSError *error) {
  if (!document || document->isLocked(error)) return {};
  if (document->pageCount() == 0) {
    setError(error, ErrorCode::incomplete, "the PDF has no pages");
    return {};
  }
  return SharedPointer<NSPDFImageRep>::adopt(new NSPDFImageRep(std::move(document), path, data));
}

SharedPointer<NSPDFImageRep> NSPDFImageRep::imageRepWithContentsOfFile(const NSString &path,
                                                                       const Deadline &deadline,
                                                                       NSError *error) {
  return imageRepWithDocument(PDFDocument::documentWithContentsOfFile(path, limitsUntil(deadline), error), path,
                              {}, error);
}

SharedPointer<NSPDFImageRep> NSPDFImageRep::imageRepWithData(const NSData &data, const Deadline &deadline,
                                                             NSError *error) {
  return imageRepWithDocument(PDFDocument::documentWithData(data, limitsUntil(deadline), error), {}, data,
                              error);
}

const ClassDescription &NSPDFImageRep::classDescription() const {
  static const ClassDescription description{u"NSPDFImageRep"_ns, &imageRepClass(), {}, {}, nullptr};
  return description;
}

std::uint32_t NSPDFImageRep::pageCount() const {
  const std::scoped_lock lock(mutex_);
  return document_->pageCount();
}

NSData NSPDFImageRep::PDFRepresentation(NSError *error) const {
  return path_ ? NSData::dataWithContentsOfFile(path_, error) : data_;
}

bool NSPDFImageRep::draw(NSGraphicsContext &context, const NSRect &rect, const NSRect &from,
                         NSCompositingOperation operation, double fraction, NSError *error) const {
  // What is larger than the canvas is drawn as coarse as it may be, and enlarged.
  const auto pixels = [](double canvas, std::uint32_t most) {
    return static_cast<std::uint32_t>(std::clamp<double>(std::ceil(canvas), 1, most));
  };
  CGContext &canvas = context.CGContextToDraw();
  CGImage image;
  {
    const std::scoped_lock lock(mutex_);
    image = document_->pageAtIndex(0).imageOfArea(
        from, pixels(rect.size.width, canvas.width()), pixels(rect.size.height, canvas.height()),
        {.shouldAntialias = context.shouldAntialias, .deadline = context.deadline}, error);
  }
  if (!image) return false;
  detail::drawPixels(context, rect, image, from.size, {{0, 0}, from.size}, operation, fraction);
  return true;
}

}  // namespace nimbo
