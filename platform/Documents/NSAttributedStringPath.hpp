// SPDX-License-Identifier: Apache-2.0
//
// Documents of every readable kind as attributed text. One thread reads documents at a time.
//
//     NSError error;
//     DocumentAttributes attributes;
//     const DocumentReading reading{.deadline = Deadline::after(10)};
//     const NSAttributedString text = initWithPath(u"/tmp/letter.docx"_ns, reading, &attributes, &error);
//     if (!text) NSLog(error.localizedFailureReason);
#pragma once

#include <cstdint>
#include <functional>

#include "platform/AppKit/DocumentAttributes.hpp"
#include "platform/AppKit/NSAttributedString.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NSURL.hpp"
#include "platform/Foundation/System/Deadline.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Makes text of a page's bytes; the name of their encoding, as it came with them, may be nil.
using MarkupDecoder =
    std::function<NSString(const NSData &data, const NSString &textEncodingName, const NSURL &URL)>;

/// How documents are read.
struct DocumentReading {
  /// For pages; without one their encoding is found as that of plain text.
  MarkupDecoder decodeMarkup = {};
  /// For pages, the options of `initWithHTML` but the base URL.
  NSDictionary pageOptions = {};
  /// When a document that LibreOffice reads has to be read.
  Deadline deadline = {};
};

/// The largest file that is read.
inline constexpr std::uint64_t kMaximumDocumentBytes = std::uint64_t{256} << 20;

/// The document at `path`: RTF, RTFD folders, pages and web archives; what LibreOffice reads, where it is
/// installed; plain text in the encoding that it seems to have. What the content says counts before the name
/// where that is certain: RTF is often named as something else. `*documentAttributes`, unless it is null, gets
/// what the document says of itself. Nil for what is none of these, cannot be read or is too large; `*error`
/// says why, or what of the document is missing in the answer. Raises `std::bad_alloc`.
NSAttributedString initWithPath(const NSString &path, const DocumentReading &reading = DocumentReading(),
                                DocumentAttributes *documentAttributes = nullptr, NSError *error = nullptr);

}  // namespace nimbo
