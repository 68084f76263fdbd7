// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSJSONSerialization.hpp"

#include <charconv>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

namespace {

/// What makes a text no JSON.
struct Fault {
  ErrorCode code;
  std::string_view reason;
};

class Reader {
 public:
  explicit Reader(std::u16string_view text) : text_(text) {
    if (text_.starts_with(u'\ufeff')) ++at_;
  }

  id readAll() {
    skipWhiteSpace();
    if (at_ == text_.size()) throw Fault{ErrorCode::incomplete, "the text is empty"};
    id value = readValue(0);
    skipWhiteSpace();
    if (at_ != text_.size()) throw Fault{ErrorCode::damaged, "something follows the value"};
    return value;
  }

 private:
  static Fault damaged() { return {ErrorCode::damaged, "the text is no JSON"}; }

  void skipWhiteSpace() {
    while (at_ < text_.size() &&
           (text_[at_] == u' ' || text_[at_] == u'\t' || text_[at_] == u'\n' || text_[at_] == u'\r'))
      ++at_;
  }
  unichar peek() const { return at_ < text_.size() ? text_[at_] : u'\0'; }
  /// Whether the next unit is this one, which is not 0 and is then passed.
  bool take(unichar c) {
    skipWhiteSpace();
    if (peek() != c) return false;
    ++at_;
    return true;
  }
  void expect(unichar c) {
    if (!take(c)) throw damaged();
  }

  id readValue(std::uint32_t depth) {
    if (depth > NSJSONSerialization::kMaximumDepth)
      throw Fault{ErrorCode::tooLarge, "too many values stand inside of each other"};
    skipWhiteSpace();
    switch (peek()) {
      case u'{':
        return readObject(depth);
      case u'[':
        return readArray(depth);
      case u'"':
        return readString();
      case u't':
        return readWord(u"true", true);
      case u'f':
        return readWord(u"false", false);
      case u'n':
        return readWord(u"null", NSNull());
      default:
        return readNumber();
    }
  }

  id readObject(std::uint32_t depth) {
    NSDictionary object = NSDictionary::dictionary();
    ++at_;
    if (take(u'}')) return object;
    do {
      skipWhiteSpace();
      if (peek() != u'"') throw damaged();
      const NSString key = readString();
      expect(u':');
      object.setObject(readValue(depth + 1), key);
    } while (take(u','));
    expect(u'}');
    return object;
  }

  id readArray(std::uint32_t depth) {
    std::vector<id> elements;
    ++at_;
    if (take(u']')) return NSArray::array();
    do elements.push_back(readValue(depth + 1));
    while (take(u','));
    expect(u']');
    return NSArray(std::move(elements));
  }

  id readWord(std::u16string_view word, id value) {
    if (text_.substr(at_, word.size()) != word) throw damaged();
    at_ += word.size();
    return value;
  }

  id readNumber() {
    std::string digits;
    bool isReal = false;
    for (; isASCIIDigit(peek()) || std::u16string_view(u"+-.eE").find(peek()) != std::u16string_view::npos;
         ++at_) {
      isReal = isReal || !(isASCIIDigit(peek()) || peek() == u'-');
      digits += static_cast<char>(peek());
    }
    const std::size_t first = digits.starts_with('-') ? 1 : 0;
    if (digits.size() == first || !isASCIIDigit(digits[first]) || !isASCIIDigit(digits.back()) ||
        (digits[first] == '0' && digits.size() > first + 1 && isASCIIDigit(digits[first + 1])))
      throw damaged();
    const char *const end = digits.data() + digits.size();
    if (std::int64_t integer = 0; !isReal) {
      const auto [stop, fault] = std::from_chars(digits.data(), end, integer);
      if (stop == end && fault == std::errc()) return integer;
    }
    double real = 0;
    const auto [stop, fault] = std::from_chars(digits.data(), end, real);
    // A digit follows the full stop, too.
    const std::size_t fullStop = digits.find('.');
    const bool isCut = fullStop != digits.npos && !isASCIIDigit(digits[fullStop + 1]);
    if (isCut || stop != end || fault != std::errc()) throw damaged();
    return real;
  }

  /// The next unit is the first quote.
  NSString readString() {
    NSMutableString string;
    ++at_;
    while (true) {
      const std::size_t start = at_;
      while (at_ < text_.size() && text_[at_] != u'"' && text_[at_] != u'\\' && text_[at_] >= u' ') ++at_;
      string.append(text_.substr(start, at_ - start));
      if (at_ == text_.size() || text_[at_] < u' ') throw damaged();
      if (text_[at_++] == u'"') return std::move(string).string();
      string.appendCharacter(readEscape());
    }
  }

  unichar readEscape() {
    const unichar letter = peek();
    ++at_;
    constexpr std::u16string_view kLetters = u"\"\\/bfnrt", kUnits = u"\"\\/\b\f\n\r\t";
    if (const std::size_t index = kLetters.find(letter); index != kLetters.npos) return kUnits[index];
    if (letter != u'u' || text_.size() - at_ < 4) throw damaged();
    std::uint32_t unit = 0;
    for (const std::size_t end = at_ + 4; at_ < end; ++at_) {
      if (!isASCIIHexDigit(text_[at_])) throw damaged();
      unit = unit << 4 | hexDigitValue(text_[at_]);
    }
    return static_cast<unichar>(unit);
  }

  const std::u16string_view text_;
  std::size_t at_ = 0;
};

}  // namespace

id NSJSONSerialization::JSONObjectWithString(const NSString &text, NSError *error) {
  try {
    return Reader(text.view()).readAll();
  } catch (const Fault &fault) {
    setError(error, fault.code, fault.reason);
    return {};
  }
}

}  // namespace nimbo
