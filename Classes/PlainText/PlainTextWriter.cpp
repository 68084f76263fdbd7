// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/PlainTextWriter.hpp"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "Classes/Characters/UnicharKernels.hpp"
#include "Classes/Characters/UnitPredicates.hpp"
#include "platform/Foundation/Unicode/NumericReference.hpp"
#include "platform/Foundation/Vectors/UnicharRanges.hpp"

namespace nimbo::detail {

namespace {

/// A single line break in front of one of these stays.
constexpr std::u16string_view kLineBeginnings = u"/>} -";

constexpr UnicharRange kUpperControls[] = {{u'\x80', u'\x9f'}};

}  // namespace

void PlainTextWriter::grow(std::size_t markupLength) {
  // More than is asked for, so that the next texts need not ask again.
  const std::size_t capacity = length_ + markupLength + 2 * kSlack;
  if (capacity > NSNotFound) throw std::length_error("text too long");
  capacity_ = static_cast<std::uint32_t>(capacity);
  storage_.setLength(capacity_);
  units_ = storage_.mutableCharacters();
}

void PlainTextWriter::restart() {
  length_ = 0;
  lineMark_ = 0;
  keptEnd_ = 0;
  pending_ = PendingBreak::kNothing;
  hasText_ = false;
}

void PlainTextWriter::meanWindowsCharacters() {
  for (std::size_t i = 0;; ++i) {
    i += findUnicharInRanges(units_ + i, length_ - i, kUpperControls);
    if (i == length_) return;
    units_[i] = windowsCharacter(units_[i]);
  }
}

NSString PlainTextWriter::string() && {
  meanWindowsCharacters();
  storage_.setLength(length_);
  units_ = nullptr;
  capacity_ = 0;
  restart();
  return std::move(storage_).string();
}

void PlainTextWriter::writeLineFeeds(std::uint32_t count) {
  pending_ = PendingBreak::kNothing;
  while (count-- > 0) append(u'\n');
  lineMark_ = length_;
}

void PlainTextWriter::trimLine() {
  while (length_ > keptEnd_ && spaces_.contains(units_[length_ - 1])) --length_;
}

std::uint32_t PlainTextWriter::lineFeedsAtEnd() const {
  if (length_ == 0) return 2;
  std::uint32_t count = 0;
  while (count < std::min(length_, 2u) && units_[length_ - 1 - count] == u'\n') ++count;
  return count;
}

void PlainTextWriter::writePendingBreak() {
  if (pending_ == PendingBreak::kSpace) {
    append(u' ');
    pending_ = PendingBreak::kNothing;
    return;
  }
  std::uint32_t count = pending_ == PendingBreak::kEmptyLine ? 2 : 1;
  if (isTidy_) {
    trimLine();
    count -= std::min(count, lineFeedsAtEnd());
  }
  writeLineFeeds(count);
}

void PlainTextWriter::breakLine() {
  if (pending_ != PendingBreak::kSpace) writePending();
  trimLine();
  writeLineFeeds(lineFeedsAtEnd() < 2 ? 1 : 0);
}

void PlainTextWriter::writeCellSpace() {
  if (pending_ == PendingBreak::kLineFeed || (pending_ == PendingBreak::kNothing && endsInWhiteSpace())) return;
  pending_ = PendingBreak::kNothing;
  append(u' ');
  lineMark_ = length_;
}

void PlainTextWriter::noteText(std::uint32_t position) {
  hasText_ = hasText_ || !std::all_of(units_ + position, units_ + length_, IsPartOfSet{&whites_});
}

std::uint32_t PlainTextWriter::writeCollapsed(std::u16string_view text, std::size_t readable,
                                              bool stopsAtAmpersand) {
  const unichar *const units = text.data();
  const std::size_t length = text.size();
  bool isWritten = false;
  std::size_t i = 0;
  while (i < length) {
    const std::size_t first = i;
    while (i < length && isCollapsible(units[i])) ++i;
    if (i > first) {
      if (pending_ == PendingBreak::kNothing && !endsInBlank()) pending_ = PendingBreak::kSpace;
      if (i == length) break;
    }
    if (units[i] == kSoftHyphen) {
      ++i;
      continue;
    }
    if (stopsAtAmpersand && units[i] == u'&') break;
    writePending();
    const std::size_t count =
        copyPlainUnits(units + i, length - i, readable - i, units_ + length_, stopsAtAmpersand);
    length_ += static_cast<std::uint32_t>(count);
    i += count;
    isWritten = true;
    if (!hasText_) noteText(length_ - static_cast<std::uint32_t>(count));
  }
  // A space was copied before it could be known that nothing follows it.
  if (isWritten && units_[length_ - 1] == u' ') {
    --length_;
    pending_ = PendingBreak::kSpace;
  }
  return static_cast<std::uint32_t>(i);
}

void PlainTextWriter::writeReformattedBreaks(std::uint32_t count, std::u16string_view rest) {
  const bool stays = !rest.empty() && kLineBeginnings.find(rest.front()) != rest.npos;
  if (isTidy_) {
    if (count > 1)
      endParagraph();
    else if (stays)
      endLine();
    else
      separate();
  } else if (count > 1) {
    append(u'\n');
    append(u'\n');
  } else if (stays) {
    append(u'\n');
  } else if (!endsInWhiteSpace()) {
    append(u' ');
  }
}

void PlainTextWriter::writeReformatted(std::u16string_view text) {
  // A tidy text may end without any, and then leaves its breaks to the next one.
  if (!isTidy_) writePending();
  const std::uint32_t textStart = length_;
  for (std::size_t i = 0; i < text.size();) {
    if (isLineBreak(text[i])) {
      std::uint32_t breaks = 0;
      for (std::uint32_t units; (units = lengthOfLineBreak(text, i)) > 0; i += units) ++breaks;
      writeReformattedBreaks(breaks, text.substr(i));
    } else if (spaces_.contains(text[i])) {
      const bool continues = i == 0 && endsInWhiteSpace();
      while (i < text.size() && spaces_.contains(text[i])) ++i;
      if (isTidy_)
        separate();
      else if (!continues)
        append(u' ');
    } else {
      if (text[i] != kSoftHyphen) {
        writePending();
        append(text[i]);
      }
      ++i;
    }
  }
  if (!hasText_) noteText(textStart);
}

void PlainTextWriter::writePreformatted(std::u16string_view text) {
  if (!text.empty()) writePending();
  const std::uint32_t textStart = length_;
  while (!text.empty()) {
    const std::size_t count = findOneOfChoice(text.data(), text.size(), UnicharChoice::only(u'\r'));
    std::copy_n(text.data(), count, units_ + length_);
    length_ += static_cast<std::uint32_t>(count);
    text.remove_prefix(count);
    if (text.empty()) break;
    append(u'\n');
    text.remove_prefix(lengthOfLineBreak(text, 0));
  }
  const std::size_t lastBreak = textSince(textStart).rfind(u'\n');
  if (lastBreak != std::u16string_view::npos) lineMark_ = textStart + static_cast<std::uint32_t>(lastBreak) + 1;
  keptEnd_ = length_;
  if (!hasText_) noteText(textStart);
}

}  // namespace nimbo::detail
