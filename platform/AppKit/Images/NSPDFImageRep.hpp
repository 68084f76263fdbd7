// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <mutex>
#include <string_view>

#include "platform/AppKit/Images/NSImageRep.hpp"
#include "platform/PDFKit/PDFDocument.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The first page of a PDF, as it is shown. It is transparent where the page paints nothing.
///
///     const auto rep = NSPDFImageRep::imageRepWithContentsOfFile(path, Deadline::after(8), &error);
///     const NSData pdf = rep ? rep->PDFRepresentation(&error) : NSData();
class NSPDFImageRep final : public NSImageRep {
 public:
  /// Opens a file, which is read while the representation is used. Null when it is no PDF, has no pages or is
  /// locked; `*error` says why. Everything has to end at `deadline`.
  static SharedPointer<NSPDFImageRep> imageRepWithContentsOfFile(const NSString &path, const Deadline &deadline,
                                                                 NSError *error = nullptr);
  /// Opens data, as above.
  static SharedPointer<NSPDFImageRep> imageRepWithData(const NSData &data, const Deadline &deadline,
                                                       NSError *error = nullptr);
  ~NSPDFImageRep() override;

  const ClassDescription &classDescription() const override;
  NSImageRepClass representationClass() const override { return NSImageRepClass::PDF; }
  NSSize size() const override { return size_; }
  bool hasAlpha() const override { return true; }
  /// The number of pages.
  std::uint32_t pageCount() const;
  /// The PDF itself; nil when the file cannot be read any more, `*error` says why.
  NSData PDFRepresentation(NSError *error = nullptr) const;

 private:
  NSPDFImageRep(std::unique_ptr<PDFDocument> document, const NSString &path, const NSData &data);
  static SharedPointer<NSPDFImageRep> imageRepWithDocument(std::unique_ptr<PDFDocument> document,
                                                           const NSString &path, const NSData &data,
                                                           NSError *error);
  bool draw(NSGraphicsContext &context, const NSRect &rect, const NSRect &from,
            NSCompositingOperation operation, double fraction, NSError *error) const override;

  const std::unique_ptr<PDFDocument> document_;
  /// Where the PDF is read from; nil when it is data.
  const NSString path_;
  const NSData data_;
  NSSize size_;
  /// One thread at a time uses the document.
  mutable std::mutex mutex_;
};

}  // namespace nimbo
