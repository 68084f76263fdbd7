// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mutex>
#include <string_view>

#include "platform/AppKit/Images/NSPDFImageRep.hpp"

namespace NIMBO_PUBLIC nimbo {

/// PostScript, an EPS file or another one. It is converted to PDF when it is first drawn, which the key
/// "pdfImageRep" shows: nil before. Its size is that of the bounding box that it names, else of its first page.
///
///     const auto rep = NSEPSImageRep::imageRepWithData(data, Deadline::after(8), &error);
///     const auto pdf = rep ? rep->convertToPDF(Deadline::after(8), &error) : SharedPointer<NSPDFImageRep>();
class NSEPSImageRep final : public NSImageRep {
 public:
  /// Null when the data is no PostScript, or names no bounding box and cannot be converted; `*error` says why.
  /// Everything has to end at `deadline`.
  static SharedPointer<NSEPSImageRep> imageRepWithData(const NSData &data, const Deadline &deadline,
                                                       NSError *error = nullptr);
  ~NSEPSImageRep() override;
  /// Whether a file that begins so is PostScript, perhaps with a preview before it.
  static bool canInitWithFirstBytes(std::string_view bytes);
  /// Whether PostScript that begins so is one picture for inside other documents.
  static bool isEncapsulated(std::string_view bytes);

  const ClassDescription &classDescription() const override;
  NSImageRepClass representationClass() const override { return NSImageRepClass::EPS; }
  NSSize size() const override { return box_.size; }
  bool hasAlpha() const override { return true; }
  /// The bounding box in points.
  NSRect boundingBox() const { return box_; }
  /// The file itself.
  const NSData &EPSRepresentation() const NIMBO_LIFETIMEBOUND { return data_; }
  /// What it has been converted to; null before.
  SharedPointer<NSPDFImageRep> PDFImageRepIfMade() const;
  /// Converts it, unless that has been done. Null when it fails; `*error` says why.
  SharedPointer<NSPDFImageRep> convertToPDF(const Deadline &deadline = {}, NSError *error = nullptr) const;

 private:
  NSEPSImageRep(const NSData &data, const Deadline &deadline) : data_(data), deadline_(deadline) {}
  bool draw(NSGraphicsContext &context, const NSRect &rect, const NSRect &from,
            NSCompositingOperation operation, double fraction, NSError *error) const override;

  const NSData data_;
  const Deadline deadline_;
  NSRect box_;
  /// For the conversion, which is done once.
  mutable std::mutex mutex_;
  mutable SharedPointer<NSPDFImageRep> pdfImageRep_;
};

}  // namespace nimbo
