// SPDX-License-Identifier: Apache-2.0
//
// The scanner behind `GetTagsOfString` and `scanTags`.
#pragma once

#include <cstdint>
#include <string_view>

#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/Characters/UnicharSearches.hpp"
#include "Classes/Markup/MarkupMarks.hpp"
#include "Classes/Markup/RawTextElements.hpp"
#include "Classes/Markup/RetracedTagEnds.hpp"
#include "Classes/Markup/TagShape.hpp"

namespace nimbo::detail {

/// Where CDATA sections end.
enum class SectionEnd : std::uint8_t {
  kOfAnySection,  ///< At "]>", as all marked sections.
  kOfXML,         ///< At "]]>" alone.
};

/// One walk over the markup, which is not empty. `Handler` is called with each `TagShape` and answers whether
/// to stop.
template <class Handler>
class TagScan {
 public:
  TagScan(std::u16string_view markup, Handler &handler, SectionEnd sectionEnd)
      : units_(markup.data()),
        length_(static_cast<std::uint32_t>(markup.size())),
        handler_(handler),
        sectionEnd_(sectionEnd),
        marks_(units_, length_),
        rawText_(units_, length_),
        retracedEnds_(units_, length_) {}

  void run() {
    std::uint32_t less = 0;
    while ((less = marks_.nextLess(less)) < length_) {
      const TagKind kind = kindAt(less);
      const std::uint32_t end = kind == kOrdinaryTag ? endOfTag(less + 1) : endOfSection(kind, less);
      if (end == length_) {
        if (kind != kOrdinaryTag) report(kNoName, {less, length_ - less}, kind);
        break;
      }
      NSRange name = kNoName, tag{less, end + 1 - less};
      if (kind == kOrdinaryTag) {
        name = nameOfTag(tag);
        tag.length = rawText_.lengthOfElement(tag, name);
      }
      if (report(name, tag, kind)) return;
      less = textLocation_;
      if (less <= end) goBack(less, end);
    }
    report(kNoName, {length_, 0}, kClosingCall);
  }

 private:
  static constexpr NSRange kNoName{NSNotFound, 0};

  TagKind kindAt(std::uint32_t less) const {
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
  std::uint32_t endOfSection(TagKind kind, std::uint32_t less) {
    if (sectionEnd_ == SectionEnd::kOfXML && markupFrom(less).starts_with(kCDATAStart))
      return endOfCDATASection(less + static_cast<std::uint32_t>(kCDATAStart.size()));
    const std::uint32_t from = less + 3;
    const bool isShortComment = kind == kComment && (from >= length_ || units_[from] != u'-');
    for (std::uint32_t i = marks_.nextGreater(from); i < length_; i = marks_.nextGreater(i + 1)) {
      const unichar *const before = units_ + i;
      if (kind == kMarkedSection) {
        if (before[-1] == u']' || (before[-1] == u'-' && before[-2] == u'-' && before[-3] == u']')) return i;
      } else if (before[-1] == u'-') {
        if (isShortComment || before[-2] == u'-') return i;
      } else if (before[-1] == u'!') {
        if (!isShortComment && before[-2] == u'-' && before[-3] == u'-') return i;
      }
    }
    return length_;
  }

  std::uint32_t endOfCDATASection(std::uint32_t from) const {
    for (std::uint32_t i = from; i < length_; ++i) {
      const std::uint32_t bracket = findUnichar(units_ + i, length_ - i, u']');
      if (bracket == NSNotFound) break;
      i += bracket;
      if (markupFrom(i).starts_with(kCDATAEnd)) return i + 2;
    }
    return length_;
  }

  std::u16string_view markupFrom(std::uint32_t location) const {
    return {units_ + location, length_ - location};
  }

  /// A raw-text element may end inside its own start tag: the scan goes on from there.
  void goBack(std::uint32_t location, std::uint32_t endOfStartTag) {
    marks_.goBack(location);
    if (retracedUntil_ < endOfStartTag) retracedUntil_ = endOfStartTag;
  }

  NSRange nameOfTag(NSRange tag) const {
    const std::uint32_t end = tag.location + tag.length;
    std::uint32_t first = tag.location;
    while (first < end && !alphas_.contains(units_[first])) ++first;
    if (first == end) return kNoName;
    std::uint32_t i = first;
    while (i < end && units_[i] != u'>' && units_[i] != u'/' && !whites_.contains(units_[i])) ++i;
    return {first, i - first};
  }

  /// Calls the handler, and answers whether it stops the scan.
  bool report(NSRange name, NSRange tag, TagKind kind) {
    const bool stops = handler_(TagShape({units_, length_}, name, tag, textLocation_, kind));
    textLocation_ = tag.location + tag.length;
    return stops;
  }

  const unichar *const units_;
  const std::uint32_t length_;
  Handler &handler_;
  const SectionEnd sectionEnd_;
  MarkupMarks marks_;
  RawTextElements rawText_;
  RetracedTagEnds retracedEnds_;
  /// In front of it, ends of tags have been looked for before.
  std::uint32_t retracedUntil_ = 0;
  const CharacterSetRep &alphas_ = *alphaCharacterSetRep();
  const CharacterSetRep &whites_ = *whiteCharacterSetRep();
  /// Behind the last tag.
  std::uint32_t textLocation_ = 0;
};

}  // namespace nimbo::detail
