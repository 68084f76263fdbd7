// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/PropertyLists/TextPropertyList.hpp"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/PropertyLists/PropertyListLimits.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/UTF16Text.hpp"
#include "platform/Foundation/Unicode/UTF8.hpp"

namespace nimbo {
namespace {

constexpr unichar kByteOrderMark = 0xfeff;

std::string atLine(std::size_t line, const std::string &reason) {
  return "line " + std::to_string(line) + ": " + reason;
}

NSString decode(const NSData &data) {
  if (const auto order = orderOfUTF16(data.view()))
    return NSString::stringWithCharacters(unitsOfUTF16(data.view(), *order));
  NSString text = NSString::stringWithUTF8String(data.view());
  if (text) return text;
  std::string_view rest = data.view();
  std::size_t line = 1;
  while (const std::size_t length = utf8SequenceLength(rest)) {
    line += rest[0] == '\n';
    rest.remove_prefix(length);
  }
  throw PropertyListError{atLine(line, "invalid UTF-8")};
}

bool isWhiteSpace(unichar unit) {
  return isASCIIWhiteSpace(unit) || unit == 0x2028 || unit == 0x2029;
}

/// Units that a string may hold without quotes.
bool isBare(unichar unit) {
  return isASCIIAlphanumeric(unit) ||
         (unit != 0 && unit < 0x80 &&
          std::string_view("_$+/:.-").find(static_cast<char>(unit)) != std::string_view::npos);
}

class Reader {
 public:
  explicit Reader(const NSString &text) : text_(text.view()) {
    if (text_.starts_with(kByteOrderMark)) at_ = 1;
  }

  id read() {
    limits_.countValues(1);
    skipWhiteSpace();
    const std::size_t start = at_;
    id propertyList = value(0);
    if (propertyList.string() && take('=')) {
      at_ = start;
      propertyList = dictionary(PropertyListLimits::enterContainer(0), &Reader::takeEnd);
    }
    skipWhiteSpace();
    if (at_ < text_.size()) fail("more text after the property list");
    return propertyList;
  }

 private:
  [[noreturn]] void fail(const char *reason) const {
    const auto begin = text_.begin();
    const auto line = 1 + std::count(begin, begin + static_cast<std::ptrdiff_t>(at_), u'\n');
    throw PropertyListError{atLine(static_cast<std::size_t>(line), reason)};
  }

  bool atEnd() const { return at_ >= text_.size(); }

  /// White space and comments.
  void skipWhiteSpace() {
    for (; !atEnd(); ++at_) {
      const std::u16string_view rest = text_.substr(at_, 2);
      if (rest == u"//" || rest == u"/*") {
        const std::u16string_view end = rest == u"//" ? u"\n" : u"*/";
        const std::size_t found = text_.find(end, at_ + 2);
        if (found == std::u16string_view::npos && end == u"*/") fail("a comment without an end");
        if (found == std::u16string_view::npos) {
          at_ = text_.size();
          return;
        }
        at_ = found + end.size() - 1;
      } else if (!isWhiteSpace(text_[at_])) {
        return;
      }
    }
  }

  /// Takes `unit` when it comes next, after white space.
  bool take(unichar unit) {
    skipWhiteSpace();
    if (atEnd() || text_[at_] != unit) return false;
    ++at_;
    return true;
  }

  /// `depth` is the number of containers around the value.
  id value(std::uint32_t depth) {
    if (take('(')) return array(PropertyListLimits::enterContainer(depth));
    if (take('{')) return dictionary(PropertyListLimits::enterContainer(depth));
    if (take('<')) return data();
    return string();
  }

  id array(std::uint32_t depth) {
    std::vector<id> elements;
    while (!take(')')) {
      limits_.countValues(1);
      elements.push_back(value(depth));
      if (take(',')) continue;
      if (!take(')')) fail("expected ',' or ')' in an array");
      break;
    }
    return NSArray(std::move(elements));
  }

  bool takeBrace() { return take('}'); }
  bool takeEnd() {
    skipWhiteSpace();
    return atEnd();
  }

  id dictionary(std::uint32_t depth, bool (Reader::*takeEndOfPairs)() = &Reader::takeBrace) {
    NSDictionary result = NSDictionary::dictionary();
    while (!(this->*takeEndOfPairs)()) {
      limits_.countValues(2);
      const NSString key = string();
      if (!take('=')) fail("expected '=' after a key");
      id object = value(depth);
      if (!take(';')) fail("expected ';' after a value");
      result.setObject(std::move(object), key);
    }
    return result;
  }

  id data() {
    std::vector<std::uint8_t> bytes;
    while (!take('>')) {
      const std::uint32_t high = atEnd() ? 16 : hexDigitValue(text_[at_++]);
      skipWhiteSpace();
      const std::uint32_t low = atEnd() ? 16 : hexDigitValue(text_[at_++]);
      if (high > 15 || low > 15) fail("expected pairs of hexadecimal digits and '>' in data");
      bytes.push_back(static_cast<std::uint8_t>(high << 4 | low));
    }
    return NSData::dataWithBytes(bytes.data(), bytes.size());
  }

  NSString string() {
    if (take('"')) return quotedString('"');
    if (take('\'')) return quotedString('\'');
    const std::size_t first = at_;
    while (!atEnd() && isBare(text_[at_])) ++at_;
    if (at_ == first) fail(atEnd() ? "unexpected end" : "unexpected character");
    return NSString::stringWithCharacters(text_.substr(first, at_ - first));
  }

  NSString quotedString(unichar quote) {
    const unichar stops[] = {quote, '\\'};
    NSMutableString result;
    for (;;) {
      const std::size_t end = text_.find_first_of(std::u16string_view(stops, 2), at_);
      if (end == std::u16string_view::npos) fail("a string without an end");
      result.append(text_.substr(at_, end - at_));
      at_ = end + 1;
      if (text_[end] == quote) return std::move(result).string();
      result.appendCharacter(escapedUnit());
    }
  }

  /// After the backslash. A unit that has no meaning of its own stands for itself.
  unichar escapedUnit() {
    if (atEnd()) fail("a string without an end");
    const unichar unit = text_[at_];
    if (hexDigitValue(unit) < 8) return number(8, 3);
    ++at_;
    switch (unit) {
      case 'a':
        return '\a';
      case 'b':
        return '\b';
      case 'f':
        return '\f';
      case 'n':
        return '\n';
      case 'r':
        return '\r';
      case 't':
        return '\t';
      case 'v':
        return '\v';
      case 'U':
        return number(16, 4);
      default:
        return unit;
    }
  }

  /// One to `maximumDigits` digits.
  unichar number(std::uint32_t base, int maximumDigits) {
    std::uint32_t result = 0;
    int count = 0;
    for (; count < maximumDigits && !atEnd() && hexDigitValue(text_[at_]) < base; ++count)
      result = result * base + hexDigitValue(text_[at_++]);
    if (count == 0) fail("an escape without digits");
    if (base == 8 && result > 0xff) fail("an octal escape out of range");
    return static_cast<unichar>(result);
  }

  std::u16string_view text_;
  std::size_t at_ = 0;
  PropertyListLimits limits_;
};

}  // namespace

id propertyListFromTextData(const NSData &data) {
  const NSString text = decode(data);
  return Reader(text).read();
}

}  // namespace nimbo
