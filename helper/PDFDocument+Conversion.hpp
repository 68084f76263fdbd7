// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/PDFKit/PDFDocument.hpp"

namespace nimbo {
inline namespace Conversion {

/// The document's text for searching: each page that has any, cleaned by `cleanText`, and a line
/// feed after it. A page that cannot be read contributes nothing. Nil when the document has no pages.
NSString fixedAndNormalizedString(PDFDocument &document);

/// As above, but stops after a page when another one as slow as it would end after `timeoutSeconds`, and
/// answers what it has got; the first page is always read. No time limit when `timeoutSeconds` is not above 0.
/// `*error` says which pages are missing, as `readPages` does.
NSString fixedAndNormalizedStringUsingTimeout(PDFDocument &document, double timeoutSeconds,
                                              NSError *error = nullptr);

/// The same of the pages whose indices are in the range; nil when it is empty.
NSString fixedAndNormalizedStringOfPages(PDFDocument &document, const NSRange &pages, double timeoutSeconds,
                                         NSError *error = nullptr);

/// The cleaned text of each of these pages, empty where there is none or it cannot be read; those behind the
/// last one that was read within `timeoutSeconds` are missing. `*error` says which these are, else which pages
/// have no text layer.
NSArray fixedAndNormalizedPages(PDFDocument &document, const NSRange &pages, double timeoutSeconds,
                                NSError *error = nullptr);

}  // namespace Conversion
}  // namespace nimbo
