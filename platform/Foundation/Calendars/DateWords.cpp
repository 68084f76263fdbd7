// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Calendars/DateWords.hpp"

#include <unicode/udat.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <span>
#include <utility>
#include <vector>

#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/UnicharMapping.hpp"

namespace nimbo::detail {
namespace {

using View = std::u16string_view;
using enum DateKeyword;

/// Shorter words are too common to stand for a name that they begin.
constexpr std::size_t kShortestBeginning = 3;

struct Keyword {
  DateKeyword kind;
  std::int32_t value;
  /// Folded words, with a blank behind each.
  View words;
};

constexpr std::int32_t valueOf(DateUnit unit) {
  return static_cast<std::int32_t>(unit);
}

constexpr Keyword kKeywords[] = {
    {kFiller, 0,
     u"a the of on at in and am um den der dem des vom und le la les du de del d et e el y em og och en "
     u"feira \u0433 "},
    {kDay, -2, u"vorgestern "},
    {kDay, -1, u"yesterday gestern hier "},
    {kDay, 0, u"today heute aujourd'hui "},
    {kDay, 1, u"tomorrow morgen demain "},
    {kDay, 2, u"ubermorgen uebermorgen "},
    {kNow, 0, u"now jetzt maintenant "},
    {kUnit, valueOf(DateUnit::kSecond), u"second seconds sec secs sekunde sekunden seconde secondes "},
    {kUnit, valueOf(DateUnit::kMinute), u"minute minutes min mins minuten "},
    {kUnit, valueOf(DateUnit::kHour), u"hour hours hr hrs stunde stunden heure heures "},
    {kUnit, valueOf(DateUnit::kDay), u"day days tag tage tagen jour jours "},
    {kUnit, valueOf(DateUnit::kWeek), u"week weeks woche wochen semaine semaines "},
    {kUnit, valueOf(DateUnit::kMonth), u"month months monat monate monaten mois "},
    {kUnit, valueOf(DateUnit::kYear), u"year years jahr jahre jahren an ans annee annees "},
    {kOne, 1, u"a an one ein eine einem einen einer un une "},
    {kAgo, 0, u"ago "},
    {kDirection, -1, u"vor "},
    {kDirection, 1, u"in dans "},
    {kModifier, -1, u"last previous letzte letzten letzter letztes vorige vorigen voriger dernier derniere "},
    {kModifier, 0, u"this diese diesen dieser dieses ce cet cette "},
    {kModifier, 1, u"next nachste nachsten nachster nachstes kommende kommenden prochain prochaine "},
    {kTimeOfDay, 0, u"midnight mitternacht minuit "},
    {kTimeOfDay, 12, u"noon midday mittag mittags midi "},
    {kMeridian, 0, u"am \uc624\uc804 "},
    {kMeridian, 12, u"pm \uc624\ud6c4 "},
    {kOClock, 0, u"h uhr o'clock heures "},
    {kOrdinal, 0, u"st nd rd th er ere e eme \u00ba \u00aa \u00b0 "},
    {kPartMark, valueOf(DateUnit::kYear), u"\u5e74 \ub144 "},
    {kPartMark, valueOf(DateUnit::kMonth), u"\u6708 \uc6d4 "},
    {kPartMark, valueOf(DateUnit::kDay), u"\u65e5 \uc77c "},
    {kPartMark, valueOf(DateUnit::kHour), u"\u6642 \u65f6 \uc2dc "},
    {kPartMark, valueOf(DateUnit::kMinute), u"\u5206 \ubd84 "},
    {kPartMark, valueOf(DateUnit::kSecond), u"\u79d2 \ucd08 "},
};

bool isAmong(View word, View words) {
  for (std::size_t start = 0; start < words.size();) {
    const std::size_t end = words.find(u' ', start);
    if (words.substr(start, end - start) == word) return true;
    start = end + 1;
  }
  return false;
}

/// The names of one language's months or weekdays: folded, with the number of each.
using Names = std::vector<std::pair<std::u16string, CalendarName>>;

struct FormatCloser {
  void operator()(UDateFormat *format) const { udat_close(format); }
};
using Format = std::unique_ptr<UDateFormat, FormatCloser>;

View symbol(const UDateFormat *format, UDateFormatSymbolType type, std::int32_t index,
            std::span<unichar> buffer) {
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t length =
      udat_getSymbols(format, type, index, buffer.data(), static_cast<std::int32_t>(buffer.size()), &status);
  return U_SUCCESS(status) ? View(buffer.data(), static_cast<std::size_t>(length)) : View();
}

/// The first word of a name, folded, without the full stop of an abbreviation.
std::u16string foldedName(View name) {
  return foldedDateWord(name.substr(0, name.find_first_of(u".- ")));
}

/// The symbols of these types; those of the first `wholeTypes` are not abbreviated.
Names namesOf(const UDateFormat *format, std::span<const UDateFormatSymbolType> types, std::size_t wholeTypes) {
  Names names;
  std::array<unichar, 64> buffer{};
  for (std::size_t i = 0; i < types.size(); ++i) {
    const std::int32_t count = udat_countSymbols(format, types[i]);
    const bool isOfWeekdays = types[i] == UDAT_WEEKDAYS || types[i] == UDAT_SHORT_WEEKDAYS;
    // Weekdays are numbered from 1 on, and the place 0 is empty.
    for (std::int32_t index = isOfWeekdays ? 1 : 0; index < count; ++index) {
      std::u16string name = foldedName(symbol(format, types[i], index, buffer));
      if (name.empty() || isASCIIDigit(name[0])) continue;
      names.emplace_back(std::move(name), CalendarName{isOfWeekdays ? index - 1 : index + 1, i < wholeTypes});
    }
  }
  return names;
}

struct Language {
  Names months;
  Names weekdays;
};

const std::vector<Language> &languages() {
  static const std::vector<Language> all = [] {
    constexpr std::array kMonths = {UDAT_MONTHS, UDAT_STANDALONE_MONTHS, UDAT_SHORT_MONTHS,
                                    UDAT_STANDALONE_SHORT_MONTHS};
    constexpr std::array kWeekdays = {UDAT_WEEKDAYS, UDAT_SHORT_WEEKDAYS};
    std::vector<Language> made;
    for (const char *const name :
         {"en", "de", "fr", "es", "it", "pt", "nl", "da", "sv", "nb", "fi", "pl", "cs", "hu", "el", "ru"}) {
      UErrorCode status = U_ZERO_ERROR;
      const Format format(udat_open(UDAT_DEFAULT, UDAT_DEFAULT, name, u"UTC", 3, nullptr, 0, &status));
      if (U_FAILURE(status)) throw std::bad_alloc();
      made.push_back({namesOf(format.get(), kMonths, 2), namesOf(format.get(), kWeekdays, 1)});
    }
    // What is written in German and ICU does not have.
    made[1].months.insert(made[1].months.end(),
                          {{u"mrz", {3, false}}, {u"janner", {1, true}}, {u"feber", {2, true}}});
    made[1].weekdays.emplace_back(u"sonnabend", CalendarName{6, true});
    return made;
  }();
  return all;
}

/// What a language calls so; of a beginning nothing when several names have it.
std::optional<CalendarName> nameIn(const Names &names, View folded, bool isBeginning) {
  std::optional<CalendarName> found;
  for (const auto &[name, meaning] : names) {
    if (isBeginning ? !name.starts_with(folded) : name != folded) continue;
    if (found && found->number != meaning.number) return std::nullopt;
    if (!found) found = meaning;
  }
  if (found && isBeginning) found->isWhole = false;
  return found;
}

std::optional<CalendarName> nameOf(Names Language::*names, View folded) {
  for (const bool isBeginning : {false, true}) {
    if (isBeginning && folded.size() < kShortestBeginning) break;
    for (const Language &language : languages())
      if (const auto found = nameIn(language.*names, folded, isBeginning)) return found;
  }
  return std::nullopt;
}

}  // namespace

std::u16string foldedDateWord(View word) {
  std::u16string folded;
  for (const unichar c : word) {
    const bool isCombiningMark = c >= u'\u0300' && c <= u'\u036f';
    if (!isCombiningMark) folded += c == u'\u2019' ? u'\'' : unicharByFoldingDiacritics(lowercaseUnichar(c));
  }
  return folded;
}

std::optional<std::int32_t> dateKeyword(View folded, DateKeyword kind) {
  for (const Keyword &keyword : kKeywords)
    if (keyword.kind == kind && isAmong(folded, keyword.words)) return keyword.value;
  return std::nullopt;
}

std::optional<CalendarName> monthNamed(View folded) {
  return nameOf(&Language::months, folded);
}

std::optional<CalendarName> weekdayNamed(View folded) {
  return nameOf(&Language::weekdays, folded);
}

}  // namespace nimbo::detail
