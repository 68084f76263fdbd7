// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSKeyword.hpp"

#include <array>
#include <limits>

#include "platform/CSS/CSSNameLookup.hpp"

namespace nimbo {

namespace {

#define NIMBO_CSS_KEYWORD_NAME(value, name) name,
constexpr auto kNames = std::to_array<std::string_view>({"", NIMBO_CSS_KEYWORDS(NIMBO_CSS_KEYWORD_NAME)});
#undef NIMBO_CSS_KEYWORD_NAME
static_assert(kNames.size() - 1 <= std::numeric_limits<std::uint8_t>::max());

/// Some old names with a vendor's prefix are still in use.
#define NIMBO_CSS_KEYWORD_ROW(value, name) {name, CSSKeyword::k##value},
constexpr detail::CSSNameLookup kKeywords(std::to_array<detail::CSSNamedValue<CSSKeyword>>({
    NIMBO_CSS_KEYWORDS(NIMBO_CSS_KEYWORD_ROW){"-webkit-box", CSSKeyword::kFlex},
    {"-webkit-flex", CSSKeyword::kFlex},
    {"-webkit-inline-box", CSSKeyword::kInlineFlex},
    {"-webkit-inline-flex", CSSKeyword::kInlineFlex},
    {"-webkit-isolate", CSSKeyword::kIsolate},
    {"-webkit-match-parent", CSSKeyword::kMatchParent},
    {"-webkit-plaintext", CSSKeyword::kPlaintext},
    {"-webkit-sticky", CSSKeyword::kSticky},
}));
#undef NIMBO_CSS_KEYWORD_ROW

}  // namespace

CSSKeyword keywordNamed(std::u16string_view name) {
  const CSSKeyword *const keyword = kKeywords.find(name);
  return keyword ? *keyword : CSSKeyword::kUnknown;
}

std::string_view nameOfCSSKeyword(CSSKeyword keyword) {
  return kNames[static_cast<std::size_t>(keyword)];
}

}  // namespace nimbo
