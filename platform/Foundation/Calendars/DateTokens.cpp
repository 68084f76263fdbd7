// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Calendars/DateTokens.hpp"

#include <unicode/uchar.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

#include "platform/Foundation/Calendars/DateWords.hpp"
#include "platform/Foundation/NSRange.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {
namespace {

/// Enough for a fraction of a second.
constexpr std::size_t kMostDigits = 9;

bool isApostrophe(unichar c) {
  return c == u'\'' || c == u'\u2019';
}

/// Letters, marks on them, the degree sign that ends ordinal numbers, and lone surrogates, which make the word
/// unknown.
bool isOfWord(unichar c) {
  if (c < 0x80) return isASCIILetter(c);
  return u_isalpha(c) || c == u'\u00b0' || (c >= u'\u0300' && c <= u'\u036f');
}

}  // namespace

std::optional<std::vector<DateToken>> dateTokens(std::u16string_view text) {
  std::vector<DateToken> tokens;
  bool isGlued = false;
  for (std::size_t start = 0; start < text.size();) {
    if (u_isUWhiteSpace(text[start])) {
      isGlued = false;
      ++start;
      continue;
    }
    std::size_t end = start + 1;
    DateToken token;
    token.isGlued = std::exchange(isGlued, true);
    const auto extend = [&](auto isPart) {
      while (end < text.size() && isPart(end)) ++end;
    };
    if (isASCIIDigit(text[start])) {
      token.kind = DateToken::Kind::kNumber;
      extend([&](std::size_t i) { return isASCIIDigit(text[i]); });
      if (end - start > kMostDigits) return std::nullopt;
      for (const unichar digit : text.substr(start, end - start))
        token.number = token.number * 10 + static_cast<std::int32_t>(digitValue(digit));
    } else if (isOfWord(text[start])) {
      token.kind = DateToken::Kind::kWord;
      extend([&](std::size_t i) {
        return isOfWord(text[i]) || (isApostrophe(text[i]) && i + 1 < text.size() && isOfWord(text[i + 1]));
      });
      token.word = foldedDateWord(text.substr(start, end - start));
    }
    token.text = text.substr(start, end - start);
    tokens.push_back(std::move(token));
    start = end;
  }
  return tokens;
}

}  // namespace nimbo::detail
