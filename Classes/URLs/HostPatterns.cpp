// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/HostPatterns.hpp"

#include <algorithm>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

using View = std::u16string_view;

bool isCountryCode(View label) {
  return label.size() == 2 && std::ranges::all_of(label, isASCIILetter<char16_t>);
}

/// "com", "de", "co.uk", "com.br"; also that of a language.
bool isDomainOfCountry(View domain) {
  const std::size_t dot = domain.find(u'.');
  if (dot == View::npos) return isCountryCode(domain) || equalsOneOfASCIINoCase(domain, {"com", "cat"});
  return equalsOneOfASCIINoCase(domain.substr(0, dot), {"co", "com"}) && isCountryCode(domain.substr(dot + 1));
}

}  // namespace

bool isHostOfPattern(View host, std::string_view pattern) {
  if (host.ends_with(u'.')) host.remove_suffix(1);
  if (!pattern.ends_with('*')) return equalsASCIINoCase(host, pattern);
  pattern.remove_suffix(1);
  return startsWithASCIINoCase(host, pattern) && isDomainOfCountry(host.substr(pattern.size()));
}

bool isHostOfPatternOrBelow(View host, std::string_view pattern) {
  while (!isHostOfPattern(host, pattern)) {
    const std::size_t dot = host.find(u'.');
    if (dot == View::npos) return false;
    host.remove_prefix(dot + 1);
  }
  return true;
}

}  // namespace nimbo
