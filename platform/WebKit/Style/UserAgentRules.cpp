// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/UserAgentRules.hpp"

#include "platform/Foundation/NSString.hpp"

namespace nimbo::detail {

namespace {

constexpr std::u16string_view kUserAgentSheet =
#include "UserAgentStyleSheet.css.inc"
    ;
constexpr std::u16string_view kQuirksSheet =
#include "QuirksStyleSheet.css.inc"
    ;

}  // namespace

UserAgentRules::UserAgentRules(CSSMode mode) {
  // The sheets themselves are written in the standard way.
  const CSSSheetReading reading = {{&names_, CSSMode::kStandard, false}, CSSMedium()};
  sheet_ = CSSStyleSheet(NSString::stringWithCharacters(kUserAgentSheet), reading);
  index_.add(sheet_);
  if (mode == CSSMode::kQuirks) {
    quirks_ = CSSStyleSheet(NSString::stringWithCharacters(kQuirksSheet), reading);
    index_.add(quirks_);
  }
  index_.finish();
}

const UserAgentRules &UserAgentRules::rulesOfMode(CSSMode mode) {
  if (mode == CSSMode::kQuirks) {
    static const UserAgentRules quirks(CSSMode::kQuirks);
    return quirks;
  }
  static const UserAgentRules standard(CSSMode::kStandard);
  return standard;
}

}  // namespace nimbo::detail
