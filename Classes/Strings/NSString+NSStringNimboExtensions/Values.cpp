// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSString+NSStringNimboExtensions/Values.hpp"

#include <algorithm>
#include <utility>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Characters/FastComparisons.hpp"
#include "Classes/Strings/LineIteration.hpp"
#include "Classes/Strings/UnitEditing.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
inline namespace NSStringNimboExtensions {

namespace {

constexpr std::int32_t kLettersInAlphabet = 26;

bool isEqualNoCase(const NSString &a, const NSString &b) {
  return a.length() == b.length() &&
         fastCaseInsensitiveCompareUnichars(a.characters(), a.length(), b.characters(), b.length()) == 0;
}

/// Whether the text begins as a whole number that is not 0.
bool beginsWithNumberNotZero(std::u16string_view units) {
  auto position = std::find_if_not(units.begin(), units.end(), isWhite());
  if (position != units.end() && (*position == u'-' || *position == u'+')) ++position;
  position = std::find_if_not(position, units.end(), IsUnit{u'0'});
  return position != units.end() && isASCIIDigit(*position);
}

constexpr unichar rotated(unichar c, std::int32_t places, unichar first) {
  return static_cast<unichar>(first + (c - first + places) % kLettersInAlphabet);
}

/// Collects a text that is to replace another one, and takes memory only from where the two differ.
class Replacement {
 public:
  explicit Replacement(const NSString &replaced) : replaced_(replaced) {}

  bool isEmpty() const { return same_ == 0 && !differs_; }

  void append(std::u16string_view units) {
    if (!differs_ && replaced_.view().substr(same_).starts_with(units)) {
      same_ += static_cast<std::uint32_t>(units.size());
      return;
    }
    if (!std::exchange(differs_, true)) units_.append(replaced_.view().substr(0, same_));
    units_.append(units);
  }

  NSString takeString() {
    return differs_ ? std::move(units_).string() : replaced_.substringWithRange({0, same_});
  }

 private:
  const NSString &replaced_;
  /// How many units both begin with, as far as it has been looked.
  std::uint32_t same_ = 0;
  bool differs_ = false;
  NSMutableString units_;
};

/// Joins the lines of a mailing, one at a time.
class MailingReformatter {
 public:
  explicit MailingReformatter(const NSString &mailing) : result_(mailing) {}

  void addLine(std::u16string_view line) {
    const auto length = static_cast<std::uint32_t>(line.size());
    const NSRange kept = trimmedRange(line, {0, length}, isWhite_, Ends::kRight);
    line = line.substr(0, kept.length);
    if (line.empty()) {
      if (!result_.isEmpty()) pendingFeeds_ = 2;
      canGoOn_ = false;
      return;
    }
    const bool isQuoted = line.front() == u'>';
    const bool isItem = isWhite_(line.front()) || line.front() == u'-' || line.front() == u'*';
    if (canGoOn_ && !isQuoted && !isItem)
      result_.append(u" ");
    else
      for (; pendingFeeds_ > 0; --pendingFeeds_) result_.append(u"\n");
    result_.append(line);
    pendingFeeds_ = 1;
    canGoOn_ = !isQuoted;
  }

  NSString takeResult() { return result_.takeString(); }

 private:
  Replacement result_;
  const IsPartOfSet isWhite_ = isWhite();
  int pendingFeeds_ = 0;
  /// Whether the last line is one that the next may continue.
  bool canGoOn_ = false;
};

}  // namespace

bool boolValue(const NSString &string) {
  return beginsWithNumberNotZero(string.view()) ||
         typedValueForKeys(string, {u"on"_ns, u"yes"_ns, u"true"_ns}) != NSNotFound;
}

std::uint32_t typedValueForKeys(const NSString &string, std::initializer_list<NSString> keys) {
  if (!string) return NSNotFound;
  std::uint32_t position = 0;
  for (const NSString &key : keys) {
    if (!key) break;
    if (isEqualNoCase(string, key)) return position;
    ++position;
  }
  return NSNotFound;
}

NSString stringByRotating(const NSString &string, std::int32_t n) {
  const std::int32_t places = (n % kLettersInAlphabet + kLettersInAlphabet) % kLettersInAlphabet;
  if (places == 0) return string;
  return stringByMappingUnits(string, [places](unichar c) {
    if (isASCIILowercase(c)) return rotated(c, places, u'a');
    if (isASCIIUppercase(c)) return rotated(c, places, u'A');
    return c;
  });
}

NSString stringByRotating13(const NSString &string) {
  return stringByRotating(string, 13);
}

NSString reformattedMailing(const NSString &string) {
  return answerOr(string, [&] {
    MailingReformatter reformatter(string);
    visitLines(string.view(), [&](std::u16string_view line) { reformatter.addLine(line); });
    return reformatter.takeResult();
  });
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
