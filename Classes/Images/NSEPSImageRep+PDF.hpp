// SPDX-License-Identifier: Apache-2.0
//
// PostScript pictures as PDF. Any thread may call.
//
//     NSError error;
//     const auto pdf = initPDFImageRep(*EPSImageRep(image), Deadline::after(8), &error);
//     if (!pdf) NSLog(error.localizedFailureReason);
#pragma once

#include "platform/AppKit/Images/NSEPSImageRep.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace PDF {

/// What the picture has been converted to; null when that has not been done yet.
SharedPointer<NSPDFImageRep> PDFImageRep(const NSEPSImageRep &representation);
/// The PDF of `PDFImageRep`; nil when there is none, or it cannot be read any more: `*error` says why.
NSData PDFRepresentation(const NSEPSImageRep &representation, NSError *error = nullptr);
/// Converts the picture, unless that has been done. Null when it fails, or is not done by the deadline;
/// `*error` says which.
SharedPointer<NSPDFImageRep> initPDFImageRep(const NSEPSImageRep &representation, const Deadline &deadline = {},
                                             NSError *error = nullptr);

}  // namespace PDF
}  // namespace nimbo
