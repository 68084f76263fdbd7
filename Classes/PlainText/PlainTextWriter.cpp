// SPDX-License-Identifier: Apache-2.0
#include "Classes/PlainText/PlainTextWriter.hpp"

#include <algorithm>
#include <utility>

#include "Classes/Characters/UnicharKernels.hpp"
#include "Classes/Characters/UnitPredicates.hpp"

namespace nimbo {

namespace {

/// A lone line break in front of one of these ends a line.
constexpr std::u16string_view kLineBeginnings = u"/>} -";

}  // namespace

void PlainTextWriter::reserve(std::uint32_t pageLength) {
  storage_.setLength(pageLength + 1 + static_cast<std::uint32_t>(detail::kPlainUnitsSlack));
  units_ = storage_.mutableCharacters();
}

void PlainTextWriter::restart() {
  length_ = 0;
  lineMark_ = 0;
  pending_ = Pending::kNothing;
  hasText_ = false;
}

NSString PlainTextWriter::string() && {
  storage_.setLength(length_);
  return std::move(storage_).string();
}

void PlainTextWriter::writeLineFeeds(std::uint32_t count) {
  pending_ = Pending::kNothing;
  while (count-- > 0) append(u'\n');
  lineMark_ = length_;
}

void PlainTextWriter::writeCellSpace() {
  if (pending_ == Pending::kLineFeed || (pending_ == Pending::kNothing && endsInWhiteSpace())) return;
  pending_ = Pending::kNothing;
  append(u' ');
  lineMark_ = length_;
}

void PlainTextWriter::noteText(std::uint32_t from) {
  hasText_ = hasText_ || !std::all_of(units_ + from, units_ + length_, IsPartOfSet{&whites_});
}

std::uint32_t PlainTextWriter::writeCollapsed(std::u16string_view text, std::size_t readable,
                                              bool stopsAtAmpersand) {
  const unichar *const units = text.data();
  const std::size_t length = text.size();
  const std::uint32_t textStart = length_;
  std::size_t i = 0;
  while (i < length) {
    const std::size_t first = i;
    while (i < length && isBlank(units[i])) ++i;
    if (i > first) {
      if (pending_ == Pending::kNothing && !endsInBlank()) pending_ = Pending::kSpace;
      if (i == length) break;
    }
    if (units[i] == detail::kSoftHyphen) {
      ++i;
      continue;
    }
    if (stopsAtAmpersand && units[i] == u'&') break;
    writePending();
    const std::size_t count =
        detail::copyPlainUnits(units + i, length - i, readable - i, units_ + length_, stopsAtAmpersand);
    length_ += static_cast<std::uint32_t>(count);
    i += count;
    if (!hasText_) noteText(length_ - static_cast<std::uint32_t>(count));
  }
  // A space was copied before it could be known that nothing follows it.
  if (i > 0 && length_ > textStart && units_[length_ - 1] == u' ') {
    --length_;
    pending_ = Pending::kSpace;
  }
  return static_cast<std::uint32_t>(i);
}

void PlainTextWriter::writeLineBreaks(std::uint32_t count, std::u16string_view rest) {
  if (count > 1) {
    append(u'\n');
    append(u'\n');
  } else if (!rest.empty() && kLineBeginnings.find(rest.front()) != rest.npos) {
    append(u'\n');
  } else if (!endsInWhiteSpace()) {
    append(u' ');
  }
}

void PlainTextWriter::writeReformatted(std::u16string_view text) {
  const std::uint32_t textStart = length_;
  writePending();
  for (std::size_t i = 0; i < text.size();) {
    if (isLineBreak(text[i])) {
      std::uint32_t breaks = 0;
      for (std::uint32_t units; (units = lengthOfLineBreak(text, i)) > 0; i += units) ++breaks;
      writeLineBreaks(breaks, text.substr(i));
    } else if (spaces_.contains(text[i])) {
      const bool continues = i == 0 && endsInWhiteSpace();
      while (i < text.size() && spaces_.contains(text[i])) ++i;
      if (!continues) append(u' ');
    } else {
      if (text[i] != detail::kSoftHyphen) append(text[i]);
      ++i;
    }
  }
  if (!hasText_) noteText(textStart);
}

void PlainTextWriter::writePreformatted(std::u16string_view text) {
  const std::uint32_t textStart = length_;
  if (!text.empty()) writePending();
  while (!text.empty()) {
    const std::size_t count =
        detail::findOneOfChoice(text.data(), text.size(), detail::UnicharChoice::only(u'\r'));
    std::copy_n(text.data(), count, units_ + length_);
    length_ += static_cast<std::uint32_t>(count);
    text.remove_prefix(count);
    if (text.empty()) break;
    append(u'\n');
    text.remove_prefix(lengthOfLineBreak(text, 0));
  }
  const std::size_t lastFeed = textSince(textStart).rfind(u'\n');
  if (lastFeed != std::u16string_view::npos) lineMark_ = textStart + static_cast<std::uint32_t>(lastFeed) + 1;
  if (!hasText_) noteText(textStart);
}

}  // namespace nimbo
