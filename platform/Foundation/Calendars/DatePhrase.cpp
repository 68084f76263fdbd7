// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Calendars/DatePhrase.hpp"

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "platform/Foundation/Calendars/DateTokens.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {
namespace {

using enum DateKeyword;
using View = std::u16string_view;
using Kind = DateToken::Kind;

constexpr std::size_t kYearDigits = 4;
constexpr std::int32_t kMonthsOfYear = 12;
constexpr std::int32_t kHoursOfHalfDay = 12;
/// Most letters of a zone's abbreviation.
constexpr std::size_t kLongestAbbreviation = 5;

/// Reads the tokens of a text from left to right. A `read...` that answers false does not know what stands
/// there; another one may, if it has not moved on, and else the text is no date.
class PhraseReader {
 public:
  explicit PhraseReader(std::span<const DateToken> tokens) : tokens_(tokens) {}

  std::optional<DateFields> read() {
    while (at_ < tokens_.size())
      if (!readNext()) return std::nullopt;
    return fields_;
  }

 private:
  // What stands at a place, counted from the next token.
  const DateToken *token(std::size_t ahead = 0) const {
    return at_ + ahead < tokens_.size() ? &tokens_[at_ + ahead] : nullptr;
  }
  bool isGlued(std::size_t ahead) const { return token(ahead) && token(ahead)->isGlued; }
  bool isNumber(std::size_t ahead, std::size_t mostDigits = 2) const {
    const DateToken *const one = token(ahead);
    return one && one->kind == Kind::kNumber && one->text.size() <= mostDigits;
  }
  bool isGluedNumber(std::size_t ahead, std::size_t mostDigits = 2) const {
    return isNumber(ahead, mostDigits) && isGlued(ahead);
  }
  bool isSign(std::size_t ahead, View signs) const {
    const DateToken *const one = token(ahead);
    return one && one->kind == Kind::kSign && signs.find(one->text[0]) != signs.npos;
  }
  bool isGluedSign(std::size_t ahead, View signs) const { return isSign(ahead, signs) && isGlued(ahead); }
  bool isWord(std::size_t ahead, View word) const { return token(ahead) && token(ahead)->word == word; }
  std::optional<std::int32_t> keyword(std::size_t ahead, DateKeyword kind) const {
    const DateToken *const one = token(ahead);
    return one && one->kind == Kind::kWord ? dateKeyword(one->word, kind) : std::nullopt;
  }
  std::optional<DateUnit> unitAt(std::size_t ahead) const {
    const auto unit = keyword(ahead, kUnit);
    return unit ? std::optional(static_cast<DateUnit>(*unit)) : std::nullopt;
  }

  /// Sets a field that nothing has set before.
  template <class Field>
  static bool set(std::optional<Field> &field, const Field &value) {
    if (field) return false;
    field = value;
    return true;
  }

  /// Passes over tokens that are understood.
  bool skip(std::size_t count) {
    at_ += count;
    return true;
  }

  bool readNext() {
    if (readDistance()) return true;
    switch (token()->kind) {
      case Kind::kNumber:
        return readNumber();
      case Kind::kWord:
        return readWord();
      case Kind::kSign:
        return readSign();
    }
    return false;
  }

  bool readSign() {
    if (at_ == endOfTime_ && readOffset()) return true;
    if (isSign(0, u"\'\u2019") && isGluedNumber(1)) {
      at_ += 2;
      return setYear(tokens_[at_ - 1]);
    }
    // The year of "-0044-03-15" is one before Christ, which is not read.
    if (at_ == 0 && isSign(0, u"-") && isGluedNumber(1, kYearDigits)) return false;
    return isSign(0, u",.-/@|\u00b7\u2022\u2013\u2014") && skip(1);
  }

  bool readNumber() {
    if (isGluedSign(1, u":")) return readClock();
    if (keyword(1, kPartMark)) return readMarkedPart();
    if (isNumber(0) && isHour()) return readHour();
    for (const View separator : {u"/", u"-", u"."})
      if (isGluedSign(1, separator) && isGluedNumber(2, kYearDigits)) return readNumericDate(separator);
    if (isSpacedDate()) {
      at_ += 5;
      return setDayAndMonth(tokens_[at_ - 5], tokens_[at_ - 3]) && setYear(tokens_[at_ - 1]);
    }
    return readDayOrYear();
  }

  // 18:30, 18:30:00, 18:30:00.25.
  bool readClock() {
    if (!isNumber(0) || !isGluedNumber(2)) return false;
    TimeOfDay time{token()->number, token(2)->number};
    at_ += 3;
    if (isGluedSign(0, u":")) {
      if (!isGluedNumber(1)) return false;
      time.second = token(1)->number;
      at_ += 2;
      if (isGluedSign(0, u".,") && isGluedNumber(1, View::npos)) {
        time.second += fractionOfDigits(token(1)->text);
        at_ += 2;
      }
    }
    if (keyword(0, kOClock)) return skip(1) && setTime(time);
    return setTimeWithMeridian(time);
  }

  // 18.30 Uhr.
  bool isHourAndMinute() const { return isGluedSign(1, u".") && isGluedNumber(2) && keyword(3, kOClock); }

  bool isHour() const { return meridianAt(1) || keyword(1, kOClock) || isHourAndMinute(); }

  // 3 pm, 18h, 18h30, 18 Uhr 30, 18.30 Uhr.
  bool readHour() {
    TimeOfDay time{token()->number};
    if (meridianAt(1)) return skip(1) && setTimeWithMeridian(time);
    if (isHourAndMinute()) {
      time.minute = token(2)->number;
      return skip(4) && setTime(time);
    }
    at_ += 2;
    if (isGluedNumber(0) || (isNumber(0) && tokens_[at_ - 1].word.size() > 1 && !isDayAt(0))) {
      time.minute = token()->number;
      ++at_;
    }
    return setTime(time);
  }

  /// Whether the number there is the day in front of a month.
  bool isDayAt(std::size_t ahead) const {
    return isGluedSign(ahead + 1, u"./-") || (token(ahead + 1) && monthNamed(token(ahead + 1)->word));
  }

  struct Meridian {
    std::int32_t firstHour = 0;
    std::size_t tokens = 1;
  };

  /// "pm" or "p.m.", and not the German "am" of "am 3. Mai".
  std::optional<Meridian> meridianAt(std::size_t ahead) const {
    if (isNumber(ahead + 1) && isGluedSign(ahead + 2, u".") && isWord(ahead, u"am")) return std::nullopt;
    if (const auto hour = keyword(ahead, kMeridian)) return Meridian{*hour};
    if (!isGluedSign(ahead + 1, u".") || !isWord(ahead + 2, u"m")) return std::nullopt;
    const auto hour = dateKeyword(token(ahead)->word + u"m", kMeridian);
    return hour ? std::optional(Meridian{*hour, isSign(ahead + 3, u".") ? 4U : 3U}) : std::nullopt;
  }

  bool setTimeWithMeridian(TimeOfDay time) {
    auto half = std::exchange(halfOfDay_, std::nullopt);
    if (const auto meridian = meridianAt(0)) {
      if (!set(half, meridian->firstHour)) return false;
      at_ += meridian->tokens;
    }
    // A clock of 24 hours needs none, and some feeds have both.
    if (half && time.hour <= kHoursOfHalfDay) time.hour = time.hour % kHoursOfHalfDay + *half;
    return setTime(time);
  }

  bool setTime(const TimeOfDay &time) {
    endOfTime_ = at_;
    return set(fields_.time, time);
  }

  /// A number with its unit behind it, as in Chinese.
  bool readMarkedPart() {
    const std::int32_t number = token()->number;
    const auto unit = static_cast<DateUnit>(*keyword(1, kPartMark));
    at_ += 2;
    switch (unit) {
      case DateUnit::kYear:
        return set(fields_.year, number);
      case DateUnit::kMonth:
        return setMonth(number);
      case DateUnit::kDay:
        return set(fields_.day, number);
      case DateUnit::kHour:
        return setTimeWithMeridian({number});
      default:
        break;
    }
    if (!fields_.time) return false;
    if (unit == DateUnit::kMinute) fields_.time->minute = number;
    if (unit == DateUnit::kSecond) fields_.time->second = number;
    endOfTime_ = at_;
    return true;
  }

  /// Whether a day, a month and a year stand there with full stops and blanks between them.
  bool isSpacedDate() const {
    return isGluedSign(1, u".") && isNumber(2) && isGluedSign(3, u".") && isNumber(4, kYearDigits);
  }

  // 24/12/2006, 2006-12-24, 24.12., 24/12, 12/2006.
  bool readNumericDate(View separator) {
    const DateToken &first = *token(), &second = *token(2);
    at_ += 3;
    if (isGluedSign(0, separator) && isGluedNumber(1, kYearDigits)) {
      const DateToken &third = *token(1);
      at_ += 2;
      // Behind the year stands the month, whatever its number.
      return isYear(first) ? setYear(first) && setMonth(second.number) && set(fields_.day, third.number)
                           : setYear(third) && setDayAndMonth(first, second);
    }
    if (isYear(first)) return setYear(first) && setMonth(second.number);
    if (isYear(second)) return setYear(second) && setMonth(first.number);
    // Others are decimal numbers and ranges.
    return (separator == u"/" || isGluedSign(0, u".")) && setDayAndMonth(first, second);
  }

  static bool isYear(const DateToken &number) { return number.text.size() > 2 || number.number > 31; }

  bool setYear(const DateToken &number) {
    if (number.text.size() == kYearDigits) return set(fields_.year, number.number);
    return number.text.size() == 2 && set(fields_.year, yearOfTwoDigits(number.number));
  }
  bool setMonth(std::int32_t number) { return set(fields_.month, CalendarName{number, true}); }
  /// The month stands behind the day unless it can only be in front of it.
  bool setDayAndMonth(const DateToken &first, const DateToken &second) {
    const bool isMonthFirst = second.number > kMonthsOfYear && first.number <= kMonthsOfYear;
    const DateToken &day = isMonthFirst ? second : first, &month = isMonthFirst ? first : second;
    return setMonth(month.number) && set(fields_.day, day.number);
  }

  bool readDayOrYear() {
    const DateToken &number = *token();
    ++at_;
    const bool isOrdinal = keyword(0, kOrdinal) && isGlued(0);
    if (isOrdinal) ++at_;
    if (isOrdinal || (!isYear(number) && !fields_.day)) return set(fields_.day, number.number);
    return setYear(number);
  }

  bool readWord() {
    if (at_ == endOfTime_ && readZone()) return true;
    if (readRelative()) return true;
    if (const auto hour = keyword(0, kTimeOfDay)) return skip(1) && setTime({*hour});
    const std::u16string &word = token()->word;
    if (const auto month = monthNamed(word)) return readMonth(*month);
    if (const auto weekday = weekdayNamed(word)) return readWeekday(*weekday);
    if (const auto meridian = meridianAt(0); meridian && isBeforeTime(meridian->tokens)) {
      halfOfDay_ = meridian->firstHour;
      return skip(meridian->tokens);
    }
    const bool isTimeMark = word == u"t" && isGluedNumber(1) && isGluedSign(2, u":");
    if (isTimeMark || keyword(0, kFiller)) return skip(1);
    return readZone() || readUnknownZone();
  }

  bool isBeforeTime(std::size_t ahead) const {
    return isNumber(ahead) && (isGluedSign(ahead + 1, u":") || keyword(ahead + 1, kPartMark));
  }

  bool readMonth(const CalendarName &month) {
    // "mar" is Tuesday, too, in French.
    if (fields_.month && monthWord_ && !fields_.weekday) {
      fields_.weekday = weekdayNamed(monthWord_->word);
      if (fields_.weekday) fields_.month.reset();
    }
    monthWord_ = token();
    return skip(1) && set(fields_.month, month);
  }

  bool readWeekday(const CalendarName &weekday) {
    ++at_;
    if (const auto direction = keyword(0, kModifier)) {
      if (!set(fields_.weekdayDirection, *direction)) return false;
      ++at_;
    }
    return set(fields_.weekday, weekday);
  }

  bool readRelative() {
    if (const auto day = keyword(0, kDay)) return set(fields_.dayOffset, *day) && skip(1);
    if (keyword(0, kNow)) return set(fields_.shift, {0, DateUnit::kSecond}) && skip(1);
    if (const auto modifier = keyword(0, kModifier)) {
      if (const auto unit = unitAt(1)) return set(fields_.shift, {*modifier, *unit}) && skip(2);
      return token(1) && weekdayNamed(token(1)->word) && set(fields_.weekdayDirection, *modifier) && skip(1);
    }
    const auto modifier = keyword(1, kModifier);
    const auto unit = modifier ? unitAt(0) : std::nullopt;
    return unit && set(fields_.shift, {*modifier, *unit}) && skip(2);
  }

  /// "3 days", "a week": two tokens.
  std::optional<DateShift> distanceAt(std::size_t ahead) const {
    const auto unit = unitAt(ahead + 1);
    if (!unit) return std::nullopt;
    if (isNumber(ahead, kYearDigits)) return DateShift{token(ahead)->number, *unit};
    const auto one = keyword(ahead, kOne);
    return one ? std::optional(DateShift{*one, *unit}) : std::nullopt;
  }

  // 3 days ago, vor 3 Tagen, il y a 3 jours, in 3 days.
  bool readDistance() {
    const auto take = [&](std::size_t before, std::int32_t direction, std::size_t behind) {
      auto shift = distanceAt(before);
      if (!shift) return false;
      shift->count *= direction;
      return set(fields_.shift, *shift) && skip(before + 2 + behind);
    };
    if (keyword(2, kAgo) && take(0, -1, 1)) return true;
    if (const auto direction = keyword(0, kDirection)) return take(1, *direction, 0);
    return isWord(0, u"il") && isWord(1, u"y") && isWord(2, u"a") && take(3, -1, 0);
  }

  /// The tokens, as many as these, as they stand in the text.
  View textOf(std::size_t count) const {
    const View last = tokens_[at_ + count - 1].text;
    return {token()->text.data(), static_cast<std::size_t>(last.data() + last.size() - token()->text.data())};
  }

  bool setZone(const CalendarZone &zone, std::size_t tokens) {
    fields_.zone = zone;
    endOfTime_ = at_ += tokens;
    return true;
  }

  // +01:00, +0100; also behind "GMT".
  bool readOffset() {
    if (!isSign(0, u"+-\u2212") || !isGluedNumber(1, kYearDigits)) return false;
    if (fields_.zone && fields_.zone->secondsAheadOfUTC != 0) return false;
    const std::size_t length = isGluedSign(2, u":") && isGluedNumber(3) ? 4 : 2;
    const auto zone = zoneNamed(textOf(length));
    return zone && setZone(*zone, length);
  }

  bool readZone() {
    if (fields_.zone) return false;
    std::size_t length = 1;
    if (isGluedSign(1, u"/") && isGlued(2))
      while (isGlued(length) && (token(length)->kind != Kind::kSign || isSign(length, u"/_-+"))) ++length;
    const View name = textOf(length);
    const bool isClear = length > 1 || isCapitals(name) || (at_ == endOfTime_ && name.size() != 2);
    const auto zone = isClear ? zoneNamed(name) : std::nullopt;
    return zone && setZone(*zone, length);
  }

  /// What mail means by a zone that is not known is UTC.
  bool readUnknownZone() {
    const View name = token()->text;
    if (at_ != endOfTime_ || fields_.zone || !isCapitals(name) || name.size() > kLongestAbbreviation)
      return false;
    return setZone({0, {}}, 1);
  }

  static bool isCapitals(View name) { return std::ranges::all_of(name, isASCIIUppercase<unichar>); }

  std::span<const DateToken> tokens_;
  std::size_t at_ = 0;
  DateFields fields_;
  /// Where the time ends that was just read, or its zone: what follows may be a zone.
  std::size_t endOfTime_ = View::npos;
  /// The first hour of the half of a day that stands in front of its time.
  std::optional<std::int32_t> halfOfDay_;
  /// The token of the month.
  const DateToken *monthWord_ = nullptr;
};

}  // namespace

std::optional<DateFields> readDatePhrase(View text) {
  const auto tokens = dateTokens(text);
  return tokens ? PhraseReader(*tokens).read() : std::nullopt;
}

}  // namespace nimbo::detail
