// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/PlainText/PlainTextKernels.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {

/// The text that a conversion writes: runs of text, and the breaks between them.
///
/// It never needs more room than was asked for at first: nothing is written for a tag that is longer than the
/// tag, nothing for a text but the text and a space for blanks or for a tag in front of it.
class PlainTextWriter {
 public:
  /// What is to be written in front of the next text, if any comes.
  enum class Pending : std::uint8_t { kNothing, kSpace, kLineFeed };

  /// A place to come back to.
  struct Mark {
    std::uint32_t position = 0;
    Pending pending = Pending::kNothing;
  };

  /// Makes room for the text of a page of this length.
  void reserve(std::uint32_t pageLength);
  /// Forgets what was written.
  void restart();
  /// What was written; the writer is empty afterwards.
  NSString string() &&;

  bool hasText() const { return hasText_; }
  std::u16string_view textSince(std::uint32_t position) const {
    return {units_ + position, length_ - position};
  }
  Mark mark() const { return {length_, pending_}; }
  std::uint32_t length() const { return length_; }
  /// Where the last break ended, or the last line of a text as it is.
  std::uint32_t lineMark() const { return lineMark_; }
  void goBackTo(const Mark &mark) {
    length_ = std::min(length_, mark.position);
    lineMark_ = std::min(lineMark_, length_);
    pending_ = mark.pending;
  }

  void writeLineFeeds(std::uint32_t count);
  /// A line feed in front of the next text, where no line begins.
  void endLine() { pending_ = isAtLineStart() ? Pending::kNothing : Pending::kLineFeed; }
  /// A space where the text does not end in white space; a break when it is written.
  void writeCellSpace();
  /// The same, but only when text follows in the same line.
  void separate() {
    if (pending_ == Pending::kNothing && !endsInWhiteSpace()) pending_ = Pending::kSpace;
  }

  /// A text whose blanks are shown as one space each time, and not at the ends of lines. `readable` units stand
  /// there. Stops at an "&" if asked for; answers how many units it took.
  std::uint32_t writeCollapsed(std::u16string_view text, std::size_t readable, bool stopsAtAmpersand);
  /// A text whose lines are kept where two line breaks, or a unit that looks like a mark of a line, say that
  /// they mean something; its blanks become one space.
  void writeReformatted(std::u16string_view text);
  /// A text as it is, but for the end of its lines.
  void writePreformatted(std::u16string_view text);
  /// A space and the text as it is.
  unichar *beginSimpleRun() {
    units_[length_++] = u' ';
    return units_ + length_;
  }
  void endSimpleRun(std::uint32_t length) {
    length_ += length;
    hasText_ = true;
  }

 private:
  bool isAtLineStart() const { return length_ == 0 || units_[length_ - 1] == u'\n'; }
  bool endsInWhiteSpace() const { return length_ == 0 || whites_.contains(units_[length_ - 1]); }
  bool endsInBlank() const { return length_ == 0 || isBlank(units_[length_ - 1]); }
  static bool isBlank(unichar c) { return detail::isCollapsible(c); }
  void append(unichar c) { units_[length_++] = c; }
  void writePending() {
    if (pending_ == Pending::kNothing) return;
    if (pending_ == Pending::kSpace)
      append(u' ');
    else
      writeLineFeeds(1);
    pending_ = Pending::kNothing;
  }
  void noteText(std::uint32_t from);
  void writeLineBreaks(std::uint32_t count, std::u16string_view rest);

  NSMutableString storage_;
  unichar *units_ = nullptr;
  std::uint32_t length_ = 0;
  std::uint32_t lineMark_ = 0;
  Pending pending_ = Pending::kNothing;
  bool hasText_ = false;
  const CharacterSetRep &whites_ = *whiteCharacterSetRep();
  const CharacterSetRep &spaces_ = *spaceCharacterSetRep();
};

}  // namespace nimbo
