// SPDX-License-Identifier: Apache-2.0
//
// Documents of word processors as rich text, for the main thread of a process.
//
//     DocumentAttributes attributes;
//     const auto text = attributedStringWithWordProcessorDocument(path, Deadline::after(15), &attributes,
//     &error); if (!text) NSLog(error.localizedFailureReason);
#pragma once

#include "platform/AppKit/DocumentAttributes.hpp"
#include "platform/AppKit/NSAttributedString.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/System/Deadline.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The text of a document of any kind that the installed LibreOffice reads (docx, doc, odt, sxw, wpd ...), as
/// `attributedStringWithFlatOpenDocument` has it; it is read by `OfficeConversion::sharedConversion`. The
/// document's type is that of its file's extension: "NSOfficeOpenXML", "NSDocFormat", else "NSOpenDocument".
/// Nil when it cannot be read; `*error` says why: `unsupportedType` without LibreOffice.
NSAttributedString attributedStringWithWordProcessorDocument(const NSString &path,
                                                             const Deadline &deadline = {},
                                                             DocumentAttributes *attributes = nullptr,
                                                             NSError *error = nullptr);

}  // namespace nimbo
