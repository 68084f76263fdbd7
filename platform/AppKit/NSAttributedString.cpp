// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/NSAttributedString.hpp"

#include <algorithm>

namespace nimbo {

namespace {

/// The first run that ends behind the index.
template <class Runs>
auto runAtIndex(Runs &&runs, std::uint32_t index) {
  return std::upper_bound(runs.begin(), runs.end(), index,
                          [](std::uint32_t i, const AttributeRun &run) { return i < run.end; });
}

NSRange cutRange(NSRange range, std::uint32_t length) {
  const std::uint32_t location = std::min(range.location, length);
  return {location, std::min(range.length, length - location)};
}

}  // namespace

detail::AttributedStringStorage::~AttributedStringStorage() {
  const std::size_t released = runs.size();
  runs.clear();
  sweepInternedRecords(released);
}

NSAttributedString::NSAttributedString(NSString string, std::vector<AttributeRun> runs)
    : storage_(makeShared<detail::AttributedStringStorage>(std::move(string), std::move(runs))) {}

NSAttributedString::NSAttributedString(const NSString &string, const Interned<TextAttributes> &attributes) {
  if (!string) return;
  std::vector<AttributeRun> runs;
  if (string.length() > 0) runs.push_back({string.length(), attributes});
  *this = NSAttributedString(string, std::move(runs));
}

Interned<TextAttributes> NSAttributedString::attributesAtIndex(std::uint32_t index, NSRange *range) const {
  const auto all = runs();
  const auto run = runAtIndex(all, index);
  if (range) {
    range->location = run == all.begin() ? 0 : std::prev(run)->end;
    range->length = run->end - range->location;
  }
  return run->attributes;
}

NSAttributedString NSAttributedString::attributedSubstringFromRange(NSRange range) const {
  range = cutRange(range, length());
  if (range.length == length()) return *this;
  const std::uint32_t end = range.location + range.length;
  std::vector<AttributeRun> part;
  const auto all = runs();
  for (auto run = runAtIndex(all, range.location); run != all.end(); ++run) {
    const bool isLast = run->end >= end;
    if (range.length > 0) part.push_back({std::min(run->end, end) - range.location, run->attributes});
    if (isLast) break;
  }
  return {string().substringWithRange(range), std::move(part)};
}

bool NSAttributedString::containsAttachments() const noexcept {
  return std::ranges::any_of(
      runs(), [](const AttributeRun &run) { return static_cast<bool>(run.attributes->attachment); });
}

bool NSAttributedString::operator==(const NSAttributedString &other) const {
  if (storage_ == other.storage_) return true;
  return storage_ && other.storage_ && storage_->string == other.storage_->string &&
         storage_->runs == other.storage_->runs;
}

void NSMutableAttributedString::reserve(std::size_t units, std::size_t runs) {
  text_.reserve(units);
  runs_.reserve(runs);
}

void NSMutableAttributedString::append(std::u16string_view units, const Interned<TextAttributes> &attributes) {
  if (units.empty()) return;
  text_.append(units);
  if (!runs_.empty() && runs_.back().attributes == attributes)
    runs_.back().end = text_.length();
  else
    runs_.push_back({text_.length(), attributes});
}

void NSMutableAttributedString::append(const NSAttributedString &text) {
  std::uint32_t start = 0;
  const NSString string = text.string();
  for (const AttributeRun &run : text.runs()) {
    append(string.view().substr(start, run.end - start), run.attributes);
    start = run.end;
  }
}

void NSMutableAttributedString::setAttributes(const Interned<TextAttributes> &attributes, NSRange range) {
  range = cutRange(range, length());
  if (range.length == 0) return;
  const std::uint32_t end = range.location + range.length;
  const auto first = runAtIndex(runs_, range.location);
  const auto last = runAtIndex(runs_, end - 1);
  const std::uint32_t start = first == runs_.begin() ? 0 : std::prev(first)->end;
  // What stays of the outermost runs, and the neighbours, may have the same attributes.
  std::vector<AttributeRun> runs;
  const auto add = [&](std::uint32_t runEnd, const Interned<TextAttributes> &runAttributes) {
    if (!runs.empty() && runs.back().attributes == runAttributes)
      runs.back().end = runEnd;
    else
      runs.push_back({runEnd, runAttributes});
  };
  auto from = first;
  if (start < range.location)
    add(range.location, first->attributes);
  else if (first != runs_.begin())
    --from, add(from->end, from->attributes);
  add(end, attributes);
  auto to = std::next(last);
  if (last->end > end)
    add(last->end, last->attributes);
  else if (to != runs_.end())
    add(to->end, to->attributes), ++to;
  const auto place = runs_.erase(from, to);
  runs_.insert(place, runs.begin(), runs.end());
}

void NSMutableAttributedString::truncate(std::uint32_t length) {
  if (length >= text_.length()) return;
  text_.setLength(length);
  while (runs_.size() > 1 && runs_[runs_.size() - 2].end >= length) runs_.pop_back();
  if (length == 0)
    runs_.clear();
  else
    runs_.back().end = length;
}

NSAttributedString NSMutableAttributedString::attributedString() && {
  return {std::move(text_).string(), std::exchange(runs_, {})};
}

const Interned<TextAttributes> &NSMutableAttributedString::interned(const TextAttributes &attributes) {
  if (*lastInterned_ != attributes) lastInterned_ = Interned(attributes);
  return lastInterned_;
}

}  // namespace nimbo
