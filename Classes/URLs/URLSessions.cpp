// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/URLSessions.hpp"

#include <algorithm>
#include <cstddef>

#include "Classes/URLs/URLParameters.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

namespace {

using View = std::u16string_view;

bool isGenericName(View name) {
  return equalsOneOfASCIINoCase(name,
                                {"s_sid", "sessid", "session", "session_id", "sessionid", "sessionkey", "sid"});
}

bool isUUID(View value) {
  constexpr std::size_t kLength = 36;
  const auto isHyphenPlace = [](std::size_t i) { return i == 8 || i == 13 || i == 18 || i == 23; };
  if (value.size() != kLength) return false;
  for (std::size_t i = 0; i < kLength; ++i)
    if (isHyphenPlace(i) ? value[i] != u'-' : !isASCIIHexDigit(value[i])) return false;
  return true;
}

/// Words and numbers of people have few runs of digits, and seldom so many letters without a break.
bool looksLikeIdentifier(View value) {
  constexpr std::size_t kFewest = 16, kFewestRuns = 3;
  if (isUUID(value)) return true;
  if (value.size() < kFewest || !std::ranges::all_of(value, isASCIIAlphanumeric<char16_t>)) return false;
  std::size_t runs = isASCIIDigit(value.front()) ? 1 : 0;
  for (std::size_t i = 1; i < value.size(); ++i)
    if (isASCIIDigit(value[i]) && !isASCIIDigit(value[i - 1])) ++runs;
  return runs >= kFewestRuns;
}

}  // namespace

bool isSessionParameter(View parameter) {
  const std::size_t nameEnd = std::min(parameter.find(u'='), parameter.size());
  const View name = parameter.substr(0, nameEnd);
  if (!isURLNameOfKind(name, URLNameKind::session)) return false;
  return !isGenericName(name) || looksLikeIdentifier(parameter.substr(std::min(nameEnd + 1, parameter.size())));
}

}  // namespace nimbo
