// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSStringCollation.hpp"

#include <unicode/ucol.h>

#include <cstdlib>
#include <new>

namespace nimbo {
namespace {

const char *collationLocale() {
  for (const char *name : {"LC_ALL", "LC_COLLATE", "LANG"})
    if (const char *value = std::getenv(name); value && value[0]) return value;
  return "";
}

/// Lives as long as the process. ICU compares with one collator from any number of threads.
const UCollator *userCollator() {
  static const UCollator *const collator = [] {
    UErrorCode status = U_ZERO_ERROR;
    UCollator *const made = ucol_open(collationLocale(), &status);
    if (U_FAILURE(status)) throw std::bad_alloc();
    ucol_setStrength(made, UCOL_SECONDARY);
    ucol_setAttribute(made, UCOL_NORMALIZATION_MODE, UCOL_ON, &status);
    return made;
  }();
  return collator;
}

}  // namespace

NSComparisonResult localizedCaseInsensitiveCompare(const NSString &a, const NSString &b) {
  return comparisonResult(ucol_strcoll(userCollator(), a.characters(), static_cast<std::int32_t>(a.length()),
                                       b.characters(), static_cast<std::int32_t>(b.length())));
}

}  // namespace nimbo
