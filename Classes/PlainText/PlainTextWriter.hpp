// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/PlainText/PlainTextKernels.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo::detail {

/// The text that a conversion writes: texts, and the breaks between them. A break that takes effect only when
/// text follows is pending until then.
class PlainTextWriter {
 public:
  enum class PendingBreak : std::uint8_t { kNothing, kSpace, kLineFeed, kEmptyLine };

  /// A tidy writer leaves no blanks at the ends of lines.
  explicit PlainTextWriter(bool isTidy) : isTidy_(isTidy) {}

  /// A state that the writer can go back to.
  struct Mark {
    std::uint32_t position = 0;
    PendingBreak pending = PendingBreak::kNothing;
  };

  /// Makes room for all that may be written for so many units of markup. A tag writes no more units than it
  /// has, a text no more than its own and one space.
  void makeRoom(std::size_t markupLength) {
    if (capacity_ - length_ < markupLength + kSlack) grow(markupLength);
  }
  /// Forgets what was written.
  void restart();
  /// What was written, with the characters of Windows in the place of upper controls, which no page means; the
  /// writer is empty afterwards.
  NSString string() &&;

  /// Whether anything but white space was written.
  bool hasText() const { return hasText_; }
  std::u16string_view textSince(std::uint32_t position) const {
    return {units_ + position, length_ - position};
  }
  std::uint32_t length() const { return length_; }
  /// Where the last break ended, or the last line break within a text that keeps its white space.
  std::uint32_t lineMark() const { return lineMark_; }
  Mark mark() const { return {length_, pending_}; }
  /// Forgets what was written since the mark.
  void goBackTo(const Mark &mark) {
    length_ = std::min(length_, mark.position);
    lineMark_ = std::min(lineMark_, length_);
    pending_ = mark.pending;
  }

  /// Breaks the line here, pending breaks forgotten.
  void writeLineFeeds(std::uint32_t count);
  /// Breaks the line in front of the next text, unless a line begins here.
  void endLine() {
    if (pending_ != PendingBreak::kEmptyLine)
      pending_ = isAtLineStart() ? PendingBreak::kNothing : PendingBreak::kLineFeed;
  }
  /// Puts an empty line in front of the next text, unless there is one or the output is empty.
  void endParagraph() { pending_ = length_ == 0 ? PendingBreak::kNothing : PendingBreak::kEmptyLine; }
  /// Writes an empty line, in a tidy text in front of the next one.
  void endTitle() {
    if (isTidy_)
      endParagraph();
    else
      writeLineFeeds(2);
  }
  /// Breaks the line here unless that makes a second empty line, after a break that is pending.
  void breakLine();
  /// Writes a space here, unless the output ends in white space or a line feed is pending.
  void writeCellSpace();
  /// Writes a space in front of the next text in the same line, unless the output ends in white space.
  void separate() {
    if (pending_ == PendingBreak::kNothing && !endsInWhiteSpace()) pending_ = PendingBreak::kSpace;
  }

  /// Writes a text with one space for all blanks in a row, and none at the ends of lines. `readable` units
  /// stand there. Stops at an "&" when asked to; answers how many units of the text it took.
  std::uint32_t writeCollapsed(std::u16string_view text, std::size_t readable, bool stopsAtAmpersand);
  /// Writes a text with one space for all blanks in a row. Two or more line breaks in a row become an empty
  /// line; a single one stays in front of a unit that looks like the beginning of a line, else it is a space.
  void writeReformatted(std::u16string_view text);
  /// Writes a text as it is, with line feeds for its line breaks.
  void writePreformatted(std::u16string_view text);
  /// Writes a space, and answers where a text can be written behind it. `endSimpleText` must follow.
  unichar *beginSimpleText() {
    units_[length_++] = u' ';
    return units_ + length_;
  }
  /// Tells how many units were written.
  void endSimpleText(std::uint32_t length) {
    length_ += length;
    hasText_ = true;
  }

 private:
  /// What may be written beyond the length of the markup: pending breaks, and the units that vectors write
  /// behind a text.
  static constexpr std::size_t kSlack = 2 * kPlainUnitsSlack;

  bool isAtLineStart() const { return length_ == 0 || units_[length_ - 1] == u'\n'; }
  bool endsInWhiteSpace() const { return length_ == 0 || whites_.contains(units_[length_ - 1]); }
  bool endsInBlank() const { return length_ == 0 || isCollapsible(units_[length_ - 1]); }
  void grow(std::size_t markupLength);
  void append(unichar c) { units_[length_++] = c; }
  void writePending() {
    if (pending_ != PendingBreak::kNothing) writePendingBreak();
  }
  void writePendingBreak();
  void meanWindowsCharacters();
  /// Takes blanks from the end of the line, but not from texts that keep their white space.
  void trimLine();
  /// How many line feeds the output ends in, up to 2, as it begins behind as many.
  std::uint32_t lineFeedsAtEnd() const;
  /// Looks for text in what was written since the position.
  void noteText(std::uint32_t position);
  /// Writes what stands for so many line breaks in a row when reformatting; `rest` is the text behind them.
  void writeReformattedBreaks(std::uint32_t count, std::u16string_view rest);

  NSMutableString storage_;
  unichar *units_ = nullptr;
  std::uint32_t capacity_ = 0;
  std::uint32_t length_ = 0;
  std::uint32_t lineMark_ = 0;
  PendingBreak pending_ = PendingBreak::kNothing;
  bool hasText_ = false;
  const bool isTidy_;
  /// Where the last text that keeps its white space ends.
  std::uint32_t keptEnd_ = 0;
  const CharacterSetRep &whites_ = *whiteCharacterSetRep();
  const CharacterSetRep &spaces_ = *spaceCharacterSetRep();
};

}  // namespace nimbo::detail
