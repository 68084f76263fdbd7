// SPDX-License-Identifier: Apache-2.0
#include "helper/PDFDocument+Conversion.hpp"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "helper/TextCleaning.hpp"

namespace nimbo {
inline namespace Conversion {

namespace {

/// How many pages, or rows of pages, a reason names.
constexpr std::size_t kMaximumNames = 10;

/// "page 3 has", "pages 2, 4 to 6 and 9 have", "pages 1, 3, ... and 70 more have"; the numbers grow, and there
/// are some.
std::string pagesHave(const std::vector<std::uint32_t> &numbers) {
  std::vector<std::string> names;
  std::size_t next = 0;
  while (next < numbers.size() && names.size() < kMaximumNames) {
    const std::size_t first = next++;
    while (next < numbers.size() && numbers[next] == numbers[next - 1] + 1) ++next;
    const std::string last = next == first + 1 ? "" : " to " + std::to_string(numbers[next - 1]);
    names.push_back(std::to_string(numbers[first]) + last);
  }
  if (next < numbers.size()) names.push_back(std::to_string(numbers.size() - next) + " more");
  std::string text = names.front();
  for (std::size_t i = 1; i < names.size(); ++i) text += (i + 1 < names.size() ? ", " : " and ") + names[i];
  return numbers.size() == 1 ? "page " + text + " has" : "pages " + text + " have";
}

/// Room that is made for each page's text at once, and the number of pages for which that is done.
constexpr std::uint32_t kUnitsPerPage = 2048;
constexpr std::uint32_t kMaximumPagesWithRoom = 4096;

Deadline deadlineAfter(double timeoutSeconds) {
  return timeoutSeconds > 0 ? Deadline::after(timeoutSeconds) : Deadline::never();
}

}  // namespace

NSString fixedAndNormalizedString(PDFDocument &document) {
  return fixedAndNormalizedStringUsingTimeout(document, 0);
}

NSString fixedAndNormalizedStringUsingTimeout(PDFDocument &document, double timeoutSeconds, NSError *error) {
  return fixedAndNormalizedStringOfPages(document, {0, document.pageCount()}, timeoutSeconds, error);
}

NSString fixedAndNormalizedStringOfPages(PDFDocument &document, const NSRange &pages, double timeoutSeconds,
                                         NSError *error) {
  const std::uint32_t count = std::min(document.pageCount(), pages.length);
  NSMutableString text;
  text.reserve(std::size_t{std::min(count, kMaximumPagesWithRoom)} * kUnitsPerPage);
  const auto append = [&text](const NSString &page) {
    if (page.length() == 0) return true;
    NSMutableString cleaned(page);
    cleanText(cleaned);
    cleaned.appendCharacter(u'\n');
    text.append(cleaned.view());
    return true;
  };
  document.readPages(pages, deadlineAfter(timeoutSeconds), append, error);
  return count > 0 ? std::move(text).string() : NSString();
}

NSArray fixedAndNormalizedPages(PDFDocument &document, const NSRange &pages, double timeoutSeconds,
                                NSError *error) {
  NSArray texts = NSArray::array();
  std::vector<std::uint32_t> withoutText;
  const auto add = [&](const NSString &page) {
    if (page.length() == 0)
      withoutText.push_back(pages.location + static_cast<std::uint32_t>(texts.count()) + 1);
    texts.addObject(page ? cleanedText(page) : NSString::string());
    return true;
  };
  NSError failure;
  document.readPages(pages, deadlineAfter(timeoutSeconds), add, &failure);
  if (!failure && !withoutText.empty())
    setError(&failure, ErrorCode::incomplete, pagesHave(withoutText) + " no text layer");
  if (error && failure) *error = failure;
  return texts;
}

}  // namespace Conversion
}  // namespace nimbo
