// SPDX-License-Identifier: Apache-2.0
//
// The scanner behind `GetTagsOfString`, as a template that lets the compiler put the handler into the loop.
#pragma once

#include <cstdint>

#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/Markup/MarkupMarks.hpp"
#include "Classes/Markup/RawTextElements.hpp"
#include "Classes/Markup/RetracedTagEnds.hpp"
#include "Classes/Markup/TagScanner.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What a `TagHandler` is told, but for the string and its units.
struct ScannedTag {
  std::uint32_t nameLocation = NSNotFound;
  std::uint32_t nameLength = 0;
  std::uint32_t tagLocation = 0;
  std::uint32_t tagLength = 0;
  std::uint32_t textLocation = 0;
  int kind = kClosingCall;
};

namespace detail {

/// One walk over the units. `Handler` is called with each `ScannedTag` and answers whether to stop.
template <class Handler>
class TagScan {
 public:
  TagScan(const unichar *units, std::uint32_t length, Handler &handler)
      : units_(units),
        length_(length),
        handler_(handler),
        marks_(units, length),
        rawText_(units, length),
        retracedEnds_(units, length) {}

  void run() {
    std::uint32_t i = 0;
    while ((i = marks_.nextLess(i)) < length_) {
      tag_.tagLocation = i;
      tag_.kind = kindAt(i);
      const std::uint32_t end = tag_.kind == kOrdinaryTag ? endOfTag(i + 1) : endOfSection(i + 3);
      if (end == length_) {
        if (tag_.kind != kOrdinaryTag) reportUnterminated();
        break;
      }
      tag_.tagLength = end + 1 - i;
      if (tag_.kind == kOrdinaryTag) {
        findName();
        tag_.tagLength =
            rawText_.lengthOfElement(tag_.tagLocation, tag_.tagLength, tag_.nameLocation, tag_.nameLength);
      }
      if (report()) return;
      i = tag_.textLocation;
      if (i <= end) goBack(i, end);
    }
    tag_.tagLocation = length_;
    tag_.tagLength = 0;
    tag_.kind = kClosingCall;
    handler_(tag_);
  }

 private:
  int kindAt(std::uint32_t less) const {
    if (length_ - less <= 2 || units_[less + 1] != u'!') return kOrdinaryTag;
    if (units_[less + 2] == u'-') return kComment;
    return units_[less + 2] == u'[' ? kMarkedSection : kOrdinaryTag;
  }

  /// Where the ">" of an ordinary tag stands; the length when it has none. A quote opens a value only behind
  /// "=" and white space, and then hides everything up to its twin.
  std::uint32_t endOfTag(std::uint32_t from) {
    if (from < retracedUntil_) return retracedEnds_.endFrom(from);
    for (std::uint32_t i = from; (i = marks_.nextGreaterOrEquals(i)) < length_; ++i) {
      if (units_[i] == u'>') return i;
      std::uint32_t value = i + 1;
      while (value < length_ && whites_.contains(units_[value])) ++value;
      if (value == length_) break;
      if (units_[value] == u'"')
        i = marks_.nextQuote(value + 1);
      else if (units_[value] == u'\'')
        i = marks_.nextApostrophe(value + 1);
      if (i == length_) break;
    }
    return length_;
  }

  /// Where the ">" of a comment or marked section stands; the length when it has none.
  std::uint32_t endOfSection(std::uint32_t from) {
    const bool isShortComment = tag_.kind == kComment && (from >= length_ || units_[from] != u'-');
    for (std::uint32_t i = marks_.nextGreater(from); i < length_; i = marks_.nextGreater(i + 1)) {
      const unichar *const before = units_ + i;
      if (tag_.kind == kMarkedSection) {
        if (before[-1] == u']' || (before[-1] == u'-' && before[-2] == u'-' && before[-3] == u']')) return i;
      } else if (before[-1] == u'-') {
        if (isShortComment || before[-2] == u'-') return i;
      } else if (before[-1] == u'!') {
        if (!isShortComment && before[-2] == u'-' && before[-3] == u'-') return i;
      }
    }
    return length_;
  }

  /// A raw-text element may end inside its own start tag.
  void goBack(std::uint32_t position, std::uint32_t endOfStartTag) {
    marks_.goBack(position);
    if (retracedUntil_ < endOfStartTag) retracedUntil_ = endOfStartTag;
  }

  void findName() {
    const std::uint32_t end = tag_.tagLocation + tag_.tagLength;
    std::uint32_t i = tag_.tagLocation;
    while (i < end && !alphas_.contains(units_[i])) ++i;
    if (i == end) return;
    tag_.nameLocation = i;
    while (i < end && units_[i] != u'>' && units_[i] != u'/' && !whites_.contains(units_[i])) ++i;
    tag_.nameLength = i - tag_.nameLocation;
  }

  /// Calls the handler, and makes ready for the next tag.
  bool report() {
    const bool stops = handler_(tag_);
    tag_.textLocation = tag_.tagLocation + tag_.tagLength;
    tag_.nameLocation = NSNotFound;
    tag_.nameLength = 0;
    return stops;
  }

  void reportUnterminated() {
    tag_.tagLength = length_ - tag_.tagLocation;
    report();
  }

  const unichar *const units_;
  const std::uint32_t length_;
  Handler &handler_;
  MarkupMarks marks_;
  RawTextElements rawText_;
  RetracedTagEnds retracedEnds_;
  /// Up to there ends of tags have been looked for before.
  std::uint32_t retracedUntil_ = 0;
  const CharacterSetRep &alphas_ = *alphaCharacterSetRep();
  const CharacterSetRep &whites_ = *whiteCharacterSetRep();
  ScannedTag tag_;
};

}  // namespace detail

/// As `GetTagsOfString` for units that are there, not empty, and stay as they are: `handler(const ScannedTag
/// &)` answers whether to stop. Raises what the handler raises, and `std::bad_alloc` when the marks of odd
/// markup need more memory than there is.
template <class Handler>
void scanTags(const unichar *units, std::uint32_t length, Handler &&handler) {
  detail::TagScan(units, length, handler).run();
}

}  // namespace nimbo
