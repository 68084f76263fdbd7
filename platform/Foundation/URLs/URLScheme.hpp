// SPDX-License-Identifier: Apache-2.0
//
// Schemes of URLs. Any thread may ask.
//
//     schemeOfStringURL(u"http://example.org");  // "http"
//     schemeOfStringURL(u"page.html");  // ""
//     const bool isHTTP = equalsASCIINoCase(schemeOfStringURL(string.view()), "http");
#pragma once

#include <algorithm>
#include <string_view>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace NIMBO_PUBLIC nimbo {

/// What stands before the first ":" of a URL when it makes a scheme: a letter, then letters, digits, "+",
/// "-" and ".". Empty when there is none.
constexpr std::u16string_view schemeOfStringURL(std::u16string_view url NIMBO_LIFETIMEBOUND) {
  if (url.empty() || !isASCIILetter(url.front())) return {};
  const auto isPart = [](char16_t c) { return isASCIIAlphanumeric(c) || c == u'+' || c == u'-' || c == u'.'; };
  const auto end = std::ranges::find_if_not(url, isPart);
  return end != url.end() && *end == u':' ? std::u16string_view(url.begin(), end) : std::u16string_view();
}

}  // namespace nimbo
