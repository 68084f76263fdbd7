// SPDX-License-Identifier: Apache-2.0
#include "importers/Packages/DocumentText.hpp"

#include <algorithm>
#include <utility>

namespace nimbo {
namespace {

/// Empty cells beyond so many in a row are not told from each other.
constexpr std::uint32_t kMaximumTabs = 64;

}  // namespace

template <class Text>
void DocumentText::appendCounted(Text text) {
  if (text.empty()) return;
  const std::uint32_t before = text_.length();
  separate();
  text_.append(text);
  text_.setLength(before + budget_->spendText(text_.length() - before));
}

void DocumentText::append(std::string_view text) {
  appendCounted(text);
}

void DocumentText::append(std::u16string_view text) {
  appendCounted(text);
}

void DocumentText::endLine() noexcept {
  if (tabs_ == 0) endsLine_ = true;
}

void DocumentText::endCell() noexcept {
  endsLine_ = false;
  tabs_ = std::min(tabs_ + 1, kMaximumTabs);
}

void DocumentText::endRow() noexcept {
  endsRow_ = true;
  tabs_ = 0;
}

void DocumentText::appendLines(std::u16string_view lines) {
  if (lines.empty()) return;
  endRow();
  separate();
  text_.append(lines);
  endRow();
}

NSString DocumentText::string() && {
  return text_.length() > 0 ? std::move(text_).string() : NSString();
}

void DocumentText::separate() {
  if ((endsLine_ || endsRow_) && text_.length() > 0) text_.appendCharacter(u'\n');
  for (; tabs_ > 0; --tabs_) text_.appendCharacter(u'\t');
  endsLine_ = endsRow_ = false;
}

}  // namespace nimbo
