// SPDX-License-Identifier: Apache-2.0
#include "helper/PDFDocument+Conversion.hpp"

#include <algorithm>
#include <chrono>
#include <exception>
#include <utility>

#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions.hpp"

namespace nimbo {
inline namespace Conversion {

namespace {

using Clock = std::chrono::steady_clock;

/// Room that is made for each page's text at once, and the number of pages for which that is done.
constexpr std::uint32_t kUnitsPerPage = 2048;
constexpr std::uint32_t kMaximumPagesWithRoom = 4096;

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

void appendPageText(const PDFPage &page, NSMutableString &text) {
  const NSString string = page.string();
  if (string.length() == 0) return;
  NSMutableString cleaned(string);
  fixAndNormalizeString(cleaned);
  cleaned.appendCharacter(u'\n');
  text.appendCharacters(cleaned.characters(), cleaned.length());
}

}  // namespace

NSString fixedAndNormalizedString(PDFDocument &document) {
  return fixedAndNormalizedStringUsingTimeout(document, 0);
}

NSString fixedAndNormalizedStringUsingTimeout(PDFDocument &document, double timeoutSeconds) {
  const std::uint32_t pages = document.pageCount();
  if (pages == 0) return {};
  const bool timing = timeoutSeconds > 0;
  const Clock::time_point start = Clock::now();
  NSMutableString text;
  text.reserve(std::min(pages, kMaximumPagesWithRoom) * kUnitsPerPage);
  for (std::uint32_t index = 0; index < pages; ++index) {
    const Clock::time_point pageStart = Clock::now();
    try {
      appendPageText(document.pageAtIndex(index), text);
    } catch (const std::exception &) {
      // The page contributes nothing.
    }
    // The forecast for the next page: as long as this one took.
    if (timing && secondsSince(start) + secondsSince(pageStart) >= timeoutSeconds) break;
  }
  return std::move(text).string();
}

}  // namespace Conversion
}  // namespace nimbo
