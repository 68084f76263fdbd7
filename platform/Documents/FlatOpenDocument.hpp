// SPDX-License-Identifier: Apache-2.0
//
// Rich text out of flat OpenDocument XML, as LibreOffice writes it. Any thread may read.
//
//     DocumentAttributes attributes;
//     const NSAttributedString text = attributedStringWithFlatOpenDocument(xml, &attributes, &error);
//     if (!text) NSLog(error.localizedFailureReason);
#pragma once

#include "platform/AppKit/DocumentAttributes.hpp"
#include "platform/AppKit/NSAttributedString.hpp"
#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The text with headings, character and paragraph styles, links, lists, tables and pictures; line breaks are
/// U+2028, page breaks U+000C, footnotes follow the text, and what tracked changes have deleted is left out. Of
/// sheets the text is their tables, of slides the text of their shapes. `*attributes` gets what the document
/// says about itself. Nil when the data is no such document; `*error` says why. It also says when a part is
/// left out (`incomplete`).
NSAttributedString attributedStringWithFlatOpenDocument(const NSData &data,
                                                        DocumentAttributes *attributes = nullptr,
                                                        NSError *error = nullptr);

}  // namespace nimbo
