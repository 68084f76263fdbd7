// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSStringCollation.hpp"

#include <unicode/ucol.h>

#include <cstdlib>
#include <new>
#include <optional>
#include <string>

#include "platform/Foundation/Unicode/OrderedMarks.hpp"

namespace nimbo {
namespace {

const char *collationLocale() {
  for (const char *name : {"LC_ALL", "LC_COLLATE", "LANG"})
    if (const char *value = std::getenv(name); value && value[0]) return value;
  return "";
}

/// Null when there is none for the locale, or none without regard to case, as of "en_US_POSIX".
UCollator *openCollator(const char *locale) {
  UErrorCode status = U_ZERO_ERROR;
  UCollator *const made = ucol_open(locale, &status);
  ucol_setStrength(made, UCOL_SECONDARY);
  ucol_setAttribute(made, UCOL_CASE_LEVEL, UCOL_OFF, &status);
  ucol_setAttribute(made, UCOL_NORMALIZATION_MODE, UCOL_ON, &status);
  if (U_SUCCESS(status) && ucol_strcoll(made, u"a", 1, u"A", 1) == UCOL_EQUAL) return made;
  if (made) ucol_close(made);
  return nullptr;
}

/// Lives as long as the process. ICU compares with one collator from any number of threads. Languages that ICU
/// does not take are in the order that serves all.
const UCollator *userCollator() {
  static const UCollator *const collator = [] {
    const std::string locale = collationLocale();
    for (const std::string &name : {locale, locale.substr(0, locale.find_first_of(".@")), std::string()})
      if (const UCollator *const made = openCollator(name.c_str())) return made;
    throw std::bad_alloc();
  }();
  return collator;
}

/// The text as ICU compares it in linear time: behind a letter with very many marks it looks through all of
/// them for each.
class Collated {
 public:
  explicit Collated(const NSString &string)
      : cut_(detail::withLongRunsOfMarksOrdered(string.view(), decomposer(), detail::LongRun::kOrderedAndCut)),
        units_(cut_ ? *cut_ : string.view()) {}
  Collated(const Collated &) = delete;

  const unichar *units() const { return units_.data(); }
  std::int32_t length() const { return static_cast<std::int32_t>(units_.size()); }

 private:
  static const UNormalizer2 *decomposer() {
    UErrorCode status = U_ZERO_ERROR;
    const UNormalizer2 *const instance = unorm2_getNFDInstance(&status);
    if (U_FAILURE(status)) throw std::bad_alloc();
    return instance;
  }

  std::optional<std::u16string> cut_;
  std::u16string_view units_;
};

}  // namespace

NSComparisonResult localizedCaseInsensitiveCompare(const NSString &a, const NSString &b) {
  const Collated left(a), right(b);
  return comparisonResult(
      ucol_strcoll(userCollator(), left.units(), left.length(), right.units(), right.length()));
}

}  // namespace nimbo
