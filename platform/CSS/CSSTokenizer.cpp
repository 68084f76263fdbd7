// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSTokenizer.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

namespace {

constexpr std::size_t kMaximumEscapeDigits = 6;
constexpr unichar kReplacement = 0xfffd;

/// What a unit may begin or continue.
enum UnitClass : std::uint8_t {
  kOther,
  kSpace,
  kQuote,
  kNameStart,
  kDigit,
  kHyphen,
  kSign,
  kPoint,
  kHashSign,
  kAt,
  kLess,
  kBackslash,
  kPunctuation,
};

constexpr std::array<UnitClass, 128> kClasses = [] {
  std::array<UnitClass, 128> classes{};
  const auto set = [&](std::string_view units, UnitClass unitClass) {
    for (const char c : units) classes[static_cast<unsigned char>(c)] = unitClass;
  };
  set(" \t\n\r\f", kSpace);
  set("\"'", kQuote);
  set("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_", kNameStart);
  set("0123456789", kDigit);
  set("-", kHyphen);
  set("+", kSign);
  set(".", kPoint);
  set("#", kHashSign);
  set("@", kAt);
  set("<", kLess);
  set("\\", kBackslash);
  set(":;,[](){}", kPunctuation);
  classes[0] = kNameStart;
  return classes;
}();

UnitClass classOf(unichar c) {
  return c < kClasses.size() ? kClasses[c] : kNameStart;
}

bool isSpace(unichar c) {
  return classOf(c) == kSpace;
}

bool isLineBreak(unichar c) {
  return c == u'\n' || c == u'\r' || c == u'\f';
}

bool isNameStart(unichar c) {
  return classOf(c) == kNameStart;
}

constexpr std::array<bool, 128> kNameUnits = [] {
  std::array<bool, 128> units{};
  for (std::size_t c = 1; c < units.size(); ++c)
    units[c] = kClasses[c] == kNameStart || kClasses[c] == kDigit || kClasses[c] == kHyphen;
  return units;
}();

/// A unit of a name that stands for itself: any but U+0000, which becomes another.
bool isPlainNameUnit(unichar c) {
  return c < kNameUnits.size() ? kNameUnits[c] : true;
}

CSSTokenType punctuation(unichar c) {
  switch (c) {
    case u':':
      return CSSTokenType::kColon;
    case u';':
      return CSSTokenType::kSemicolon;
    case u',':
      return CSSTokenType::kComma;
    case u'[':
      return CSSTokenType::kLeftSquare;
    case u']':
      return CSSTokenType::kRightSquare;
    case u'(':
      return CSSTokenType::kLeftParenthesis;
    case u')':
      return CSSTokenType::kRightParenthesis;
    case u'{':
      return CSSTokenType::kLeftBrace;
    default:
      return CSSTokenType::kRightBrace;
  }
}

bool isPrintable(unichar c) {
  return !(c <= 0x08 || c == 0x0b || (c >= 0x0e && c <= 0x1f) || c == 0x7f) || c == 0;
}

void appendScalar(std::u16string &text, std::uint32_t scalar) {
  if (scalar == 0 || scalar > 0x10ffff || (scalar >= 0xd800 && scalar < 0xe000)) scalar = kReplacement;
  if (scalar < 0x10000) {
    text += static_cast<unichar>(scalar);
  } else {
    text += static_cast<unichar>(0xd7c0 + (scalar >> 10));
    text += static_cast<unichar>(0xdc00 + (scalar & 0x3ff));
  }
}

/// The number of units of a line break at the location; 0 for none.
std::size_t lineBreakLength(std::u16string_view text, std::size_t location) {
  if (location >= text.size() || !isLineBreak(text[location])) return 0;
  return text.substr(location, 2) == u"\r\n" ? 2 : 1;
}

}  // namespace

std::u16string unescapedCSS(std::u16string_view raw) {
  std::u16string text;
  text.reserve(raw.size());
  for (std::size_t i = 0; i < raw.size();) {
    const unichar c = raw[i++];
    if (c != u'\\') {
      text += c == 0 ? kReplacement : c;
      continue;
    }
    if (i == raw.size()) {
      text += kReplacement;
      break;
    }
    if (const std::size_t length = lineBreakLength(raw, i)) {
      i += length;
      continue;
    }
    const std::size_t first = i;
    std::uint32_t scalar = 0;
    for (; i < raw.size() && i - first < kMaximumEscapeDigits && isASCIIHexDigit(raw[i]); ++i)
      scalar = scalar << 4 | hexDigitValue(raw[i]);
    if (i == first) {
      text += raw[i] == 0 ? kReplacement : raw[i];
      ++i;
      continue;
    }
    appendScalar(text, scalar);
    if (i < raw.size() && isSpace(raw[i])) i += std::max<std::size_t>(1, lineBreakLength(raw, i));
  }
  return text;
}

std::u16string_view CSSTokenizer::text(const CSSToken &token, CSSArena &arena) const {
  const std::u16string_view raw = rawText(token);
  return token.hasEscapes ? arena.copy(std::u16string_view(unescapedCSS(raw))) : raw;
}

double CSSTokenizer::number(const CSSToken &token) const {
  constexpr std::size_t kUsualLength = 64;
  const std::size_t end = token.type == CSSTokenType::kDimension    ? token.contentLocation
                          : token.type == CSSTokenType::kPercentage ? token.end - 1
                                                                    : token.end;
  std::u16string_view units = source_.substr(token.location, end - token.location);
  const bool isNegative = units.starts_with(u'-');
  if (token.hasSign) units.remove_prefix(1);
  if (units.size() <= 9 && token.flag) {
    std::uint32_t value = 0;
    for (const unichar c : units) value = value * 10 + digitValue(c);
    return isNegative ? -static_cast<double>(value) : static_cast<double>(value);
  }
  char usual[kUsualLength];
  std::string longer;
  char *digits = usual;
  if (units.size() > kUsualLength) {
    longer.resize(units.size());
    digits = longer.data();
  }
  std::ranges::transform(units, digits, [](unichar c) { return static_cast<char>(c); });
  double value = 0;
  const auto result = std::from_chars(digits, digits + units.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    // What is too large is the largest, and what is too small is nothing.
    const std::size_t exponent = units.find_first_of(u"eE");
    const bool isSmall = exponent != units.npos ? units.substr(exponent + 1).starts_with(u'-')
                                                : units[units.find_first_not_of(u'0')] == u'.';
    value = isSmall ? 0 : std::numeric_limits<float>::max();
  }
  value = std::min<double>(value, std::numeric_limits<float>::max());
  return isNegative ? -value : value;
}

bool CSSTokenizer::isValidEscape(std::size_t location) const {
  return at(location) == u'\\' && !isLineBreak(at(location + 1));
}

bool CSSTokenizer::startsIdentifier(std::size_t location) const {
  if (location >= source_.size()) return false;
  const unichar c = source_[location];
  if (c == u'-') {
    if (location + 1 >= source_.size()) return false;
    const unichar second = source_[location + 1];
    return second == u'-' || isNameStart(second) || isValidEscape(location + 1);
  }
  return isNameStart(c) || isValidEscape(location);
}

bool CSSTokenizer::startsNumber(std::size_t location) const {
  if (at(location) == u'+' || at(location) == u'-') ++location;
  if (at(location) == u'.') ++location;
  return isASCIIDigit(at(location));
}

/// Whether there is more text behind the comments.
bool CSSTokenizer::skipComments() {
  while (source_.substr(location_, 2) == u"/*") {
    const std::size_t end = source_.find(u"*/", location_ + 2);
    location_ = static_cast<std::uint32_t>(end == source_.npos ? source_.size() : end + 2);
  }
  return location_ < source_.size();
}

CSSToken CSSTokenizer::next() {
  CSSToken token;
  const bool hasMore = location_ < source_.size() && (source_[location_] != u'/' || skipComments());
  token.location = token.contentLocation = token.contentEnd = location_;
  token.type = hasMore ? read(token) : CSSTokenType::kEnd;
  token.end = location_;
  return token;
}

CSSTokenType CSSTokenizer::read(CSSToken &token) {
  const unichar c = source_[location_];
  switch (classOf(c)) {
    case kSpace:
      do ++location_;
      while (location_ < source_.size() && isSpace(source_[location_]));
      return CSSTokenType::kWhiteSpace;
    case kQuote:
      return readString(token, c);
    case kNameStart:
      return readIdentLike(token);
    case kDigit:
      return readNumeric(token);
    case kHyphen:
      if (startsNumber(location_)) return readNumeric(token);
      if (source_.substr(location_, 3) == u"-->") {
        location_ += 3;
        return CSSTokenType::kCDC;
      }
      if (startsIdentifier(location_)) return readIdentLike(token);
      break;
    case kSign:
    case kPoint:
      if (startsNumber(location_)) return readNumeric(token);
      break;
    case kHashSign:
      if (isPlainNameUnit(at(location_ + 1)) || isValidEscape(location_ + 1) ||
          (location_ + 1 < source_.size() && source_[location_ + 1] == 0)) {
        token.flag = startsIdentifier(location_ + 1);
        ++location_;
        readName(token);
        return CSSTokenType::kHash;
      }
      break;
    case kAt:
      if (startsIdentifier(location_ + 1)) {
        ++location_;
        readName(token);
        return CSSTokenType::kAtKeyword;
      }
      break;
    case kLess:
      if (source_.substr(location_, 4) == u"<!--") {
        location_ += 4;
        return CSSTokenType::kCDO;
      }
      break;
    case kBackslash:
      if (isValidEscape(location_)) return readIdentLike(token);
      break;
    case kPunctuation:
      ++location_;
      return punctuation(c);
    case kOther:
      break;
  }
  ++location_;
  return CSSTokenType::kDelim;
}

void CSSTokenizer::readEscape() {
  ++location_;
  const std::uint32_t first = location_;
  while (location_ < source_.size() && location_ - first < kMaximumEscapeDigits &&
         isASCIIHexDigit(source_[location_]))
    ++location_;
  if (location_ == first) {
    if (location_ < source_.size()) ++location_;
  } else if (location_ < source_.size() && isSpace(source_[location_])) {
    location_ += static_cast<std::uint32_t>(std::max<std::size_t>(1, lineBreakLength(source_, location_)));
  }
}

void CSSTokenizer::readName(CSSToken &token) {
  token.contentLocation = location_;
  for (;;) {
    while (location_ < source_.size() && isPlainNameUnit(source_[location_])) ++location_;
    if (location_ >= source_.size()) break;
    if (source_[location_] == 0) {
      ++location_;
    } else if (isValidEscape(location_)) {
      readEscape();
    } else {
      break;
    }
    token.hasEscapes = true;
  }
  token.contentEnd = location_;
}

CSSTokenType CSSTokenizer::readString(CSSToken &token, unichar quote) {
  token.contentLocation = ++location_;
  for (; location_ < source_.size(); ++location_) {
    const unichar c = source_[location_];
    if (c == quote) {
      token.contentEnd = location_++;
      return CSSTokenType::kString;
    }
    if (isLineBreak(c)) {
      token.contentEnd = location_;
      return CSSTokenType::kBadString;
    }
    if (c == 0) token.hasEscapes = true;
    if (c == u'\\') {
      token.hasEscapes = true;
      if (location_ + 1 == source_.size()) break;
      // An escaped quote and an escaped line break are passed over, a whole "\r\n" too.
      location_ +=
          static_cast<std::uint32_t>(std::max<std::size_t>(1, lineBreakLength(source_, location_ + 1)));
    }
  }
  // A backslash at the text's end is no part of the string.
  token.contentEnd = location_;
  location_ = static_cast<std::uint32_t>(source_.size());
  return CSSTokenType::kString;
}

CSSTokenType CSSTokenizer::readNumeric(CSSToken &token) {
  const auto skipDigits = [this] {
    while (location_ < source_.size() && isASCIIDigit(source_[location_])) ++location_;
  };
  token.hasSign = source_[location_] == u'+' || source_[location_] == u'-';
  token.flag = true;
  if (token.hasSign) ++location_;
  skipDigits();
  if (at(location_) == u'.' && isASCIIDigit(at(location_ + 1))) {
    token.flag = false;
    ++location_;
    skipDigits();
  }
  if ((at(location_) | 0x20) == u'e') {
    const bool isSigned = at(location_ + 1) == u'+' || at(location_ + 1) == u'-';
    if (isASCIIDigit(at(location_ + (isSigned ? 2u : 1u)))) {
      token.flag = false;
      location_ += isSigned ? 2 : 1;
      skipDigits();
    }
  }
  if (startsIdentifier(location_)) {
    readName(token);
    return CSSTokenType::kDimension;
  }
  token.contentLocation = token.contentEnd = location_;
  if (at(location_) != u'%') return CSSTokenType::kNumber;
  ++location_;
  return CSSTokenType::kPercentage;
}

CSSTokenType CSSTokenizer::readIdentLike(CSSToken &token) {
  readName(token);
  if (at(location_) != u'(') return CSSTokenType::kIdent;
  ++location_;
  const std::u16string_view name = rawText(token);
  const bool isURL = token.hasEscapes ? equalsASCIINoCase(std::u16string_view(unescapedCSS(name)), "url")
                                      : equalsASCIINoCase(name, "url");
  if (isURL) {
    std::size_t content = location_;
    while (content < source_.size() && isSpace(source_[content])) ++content;
    if (at(content) != u'"' && at(content) != u'\'') return readURL(token);
  }
  return CSSTokenType::kFunction;
}

CSSTokenType CSSTokenizer::readURL(CSSToken &token) {
  const auto skipSpace = [this] {
    while (location_ < source_.size() && isSpace(source_[location_])) ++location_;
  };
  skipSpace();
  token.hasEscapes = false;
  token.contentLocation = location_;
  while (location_ < source_.size()) {
    const unichar c = source_[location_];
    if (c == u')') break;
    if (isSpace(c)) {
      token.contentEnd = location_;
      skipSpace();
      if (location_ < source_.size() && source_[location_] != u')') return readBadURL(token);
      if (location_ < source_.size()) ++location_;
      return CSSTokenType::kURL;
    }
    if (c == u'"' || c == u'\'' || c == u'(' || !isPrintable(c)) return readBadURL(token);
    if (c == u'\\') {
      if (!isValidEscape(location_)) return readBadURL(token);
      token.hasEscapes = true;
      readEscape();
      continue;
    }
    if (c == 0) token.hasEscapes = true;
    ++location_;
  }
  token.contentEnd = location_;
  if (location_ < source_.size()) ++location_;
  return CSSTokenType::kURL;
}

CSSTokenType CSSTokenizer::readBadURL(CSSToken &token) {
  while (location_ < source_.size() && source_[location_] != u')') {
    if (isValidEscape(location_)) {
      readEscape();
    } else {
      ++location_;
    }
  }
  if (location_ < source_.size()) ++location_;
  token.contentEnd = token.contentLocation;
  return CSSTokenType::kBadURL;
}

}  // namespace nimbo
