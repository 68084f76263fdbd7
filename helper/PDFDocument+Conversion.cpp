// SPDX-License-Identifier: Apache-2.0
#include "helper/PDFDocument+Conversion.hpp"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions.hpp"

namespace nimbo {
inline namespace Conversion {

namespace {

/// Room that is made for each page's text at once, and the number of pages for which that is done.
constexpr std::uint32_t kUnitsPerPage = 2048;
constexpr std::uint32_t kMaximumPagesWithRoom = 4096;

}  // namespace

NSString fixedAndNormalizedString(PDFDocument &document) {
  return fixedAndNormalizedStringUsingTimeout(document, 0);
}

NSString fixedAndNormalizedStringUsingTimeout(PDFDocument &document, double timeoutSeconds, NSError *error) {
  const std::uint32_t pages = document.pageCount();
  const Deadline deadline = timeoutSeconds > 0 ? Deadline::after(timeoutSeconds) : Deadline::never();
  NSMutableString text;
  text.reserve(std::size_t{std::min(pages, kMaximumPagesWithRoom)} * kUnitsPerPage);
  const auto append = [&text](const NSString &page) {
    NSMutableString cleaned(page);
    fixAndNormalizeString(cleaned);
    cleaned.appendCharacter(u'\n');
    text.append(cleaned.view());
    return true;
  };
  document.readPages(deadline, append, error);
  return pages > 0 ? std::move(text).string() : NSString();
}

}  // namespace Conversion
}  // namespace nimbo
