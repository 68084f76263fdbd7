// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <ostream>
#include <string_view>
#include <vector>

#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/Markup/TagScanner.hpp"
#include "platform/Foundation/NSStringSearch.hpp"

namespace nimbo {

/// What a handler was told.
struct TagCall {
  int kind = kClosingCall;
  NSRange name{NSNotFound, 0}, tag{}, text{};

  friend bool operator==(const TagCall &, const TagCall &) = default;
  friend std::ostream &operator<<(std::ostream &out, const TagCall &call) {
    return out << "kind " << call.kind << " name " << call.name.location << "+" << call.name.length << " tag "
               << call.tag.location << "+" << call.tag.length << " text " << call.text.location;
  }
};

/// The plain twin of `GetTagsOfString`: one unit after the other, each search from scratch. The text of a call
/// has only its location.
class PlainTagScanner {
 public:
  explicit PlainTagScanner(std::u16string_view units) : s_(units) {}

  std::vector<TagCall> calls() {
    if (s_.empty()) return {};
    for (std::size_t i = 0; i < s_.size();) i = step(i);
    if (kind_ > kOrdinaryTag) {
      add({NSNotFound, 0}, s_.size());
      textStart_ = s_.size();
    }
    tagStart_ = s_.size();
    kind_ = kClosingCall;
    add({NSNotFound, 0}, s_.size());
    return calls_;
  }

 private:
  static constexpr std::size_t npos = std::u16string_view::npos;

  std::size_t step(std::size_t i) {
    switch (s_[i]) {
      case u'"':
        if (kind_ == kOrdinaryTag) toggle(inDoubleQuotes_);
        return i + 1;
      case u'\'':
        if (kind_ == kOrdinaryTag) toggle(inSingleQuotes_);
        return i + 1;
      case u'=':
        if (kind_ == kOrdinaryTag && !inSingleQuotes_ && !inDoubleQuotes_) afterEquals_ = true;
        return i + 1;
      case u'<':
        if (kind_ == kClosingCall) return open(i);
        afterEquals_ = false;
        return i + 1;
      case u'>':
        return kind_ != kClosingCall && !inSingleQuotes_ && !inDoubleQuotes_ && closes(i) ? close(i) : i + 1;
      default:
        if (!whiteCharacterSetRep()->contains(s_[i])) afterEquals_ = false;
        return i + 1;
    }
  }

  // The other kind of quote inside a value never opens one, since "=" is forgotten when a value begins.
  void toggle(bool &inQuotes) {
    if (afterEquals_ && !inQuotes) {
      inQuotes = true;
      afterEquals_ = false;
    } else {
      inQuotes = false;
    }
  }

  std::size_t open(std::size_t i) {
    tagStart_ = i;
    kind_ = kOrdinaryTag;
    if (i + 2 < s_.size() && s_[i + 1] == u'!') {
      if (s_[i + 2] == u'-') {
        kind_ = kComment;
        isShortComment_ = i + 3 >= s_.size() || s_[i + 3] != u'-';
        return i + 3;
      }
      if (s_[i + 2] == u'[') {
        kind_ = kMarkedSection;
        return i + 3;
      }
    }
    return i + 1;
  }

  bool closes(std::size_t i) const {
    const std::u16string_view before = s_.substr(0, i);
    if (kind_ == kComment) {
      if (before.ends_with(u'!')) return !isShortComment_ && before.ends_with(u"--!");
      return before.ends_with(isShortComment_ ? u"-" : u"--");
    }
    return kind_ == kOrdinaryTag || before.ends_with(u"]") || before.ends_with(u"]--");
  }

  std::size_t close(std::size_t i) {
    std::size_t end = i + 1;
    NSRange name{NSNotFound, 0};
    if (kind_ == kOrdinaryTag) {
      name = nameOfTag(end);
      end = endOfElement(name, end);
    }
    add(name, end);
    textStart_ = end;
    kind_ = kClosingCall;
    afterEquals_ = inSingleQuotes_ = inDoubleQuotes_ = false;
    return end;
  }

  NSRange nameOfTag(std::size_t end) const {
    std::size_t first = tagStart_;
    while (first < end && !alphaCharacterSetRep()->contains(s_[first])) ++first;
    if (first == end) return {NSNotFound, 0};
    std::size_t last = first;
    while (last < end && s_[last] != u'>' && s_[last] != u'/' && !whiteCharacterSetRep()->contains(s_[last]))
      ++last;
    return rangeOf(first, last);
  }

  std::size_t endOfElement(NSRange nameRange, std::size_t end) const {
    if (nameRange.length == 0) return end;
    std::u16string name(s_.substr(nameRange.location, nameRange.length));
    for (unichar &c : name) c = c >= u'A' && c <= u'Z' ? static_cast<unichar>(c + 32) : c;
    if ((name != u"script" && name != u"style") || s_[tagStart_ + 1] == u'/' || s_[end - 2] == u'/') return end;

    const std::u16string endTag = u"</" + name;
    NSRange found = rangeOfString(s_, endTag, NSCaseInsensitiveSearch, rangeOf(tagStart_ + 1, s_.size()));
    if (found.location == NSNotFound) return end;
    const std::size_t comment = s_.substr(0, found.location).find(u"<!-", tagStart_);
    const std::size_t commentEnd = comment == npos ? npos : s_.find(u"-->", comment);
    if (commentEnd != npos) {
      const NSRange later = rangeOfString(s_, endTag, NSCaseInsensitiveSearch, rangeOf(commentEnd, s_.size()));
      if (later.location != NSNotFound) found = later;
    }
    return std::min(s_.find(u'>', found.location + found.length), s_.size()) + 1;
  }

  static NSRange rangeOf(std::size_t first, std::size_t end) {
    return {static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(end - first)};
  }

  void add(NSRange name, std::size_t end) {
    calls_.push_back({kind_, name, rangeOf(tagStart_, end), {static_cast<std::uint32_t>(textStart_), 0}});
  }

  std::u16string_view s_;
  std::vector<TagCall> calls_;
  int kind_ = kClosingCall;  // of the tag that is open: none
  std::size_t tagStart_ = 0, textStart_ = 0;
  bool inSingleQuotes_ = false, inDoubleQuotes_ = false, afterEquals_ = false, isShortComment_ = false;
};

/// What the scanner tells a handler that stops it with so many calls.
inline std::vector<TagCall> callsOfScanner(const NSString &string, bool isMutable,
                                           std::size_t callsUntilStop = static_cast<std::size_t>(-1)) {
  struct Record {
    std::vector<TagCall> calls;
    std::size_t callsUntilStop;
  } record{{}, callsUntilStop};
  GetTagsOfString(
      string,
      [](const NSString &, const unichar *, std::uint32_t nameLocation, std::uint32_t nameLength,
         std::uint32_t tagLocation, std::uint32_t tagLength, std::uint32_t textLocation, int kind,
         void *context) {
        auto &[calls, most] = *static_cast<Record *>(context);
        calls.push_back({kind, {nameLocation, nameLength}, {tagLocation, tagLength}, {textLocation, 0}});
        return calls.size() == most;
      },
      &record, isMutable);
  return record.calls;
}

}  // namespace nimbo
