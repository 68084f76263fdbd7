// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/URLParameters.hpp"

#include <algorithm>
#include <array>

#include "Classes/URLs/HostPatterns.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

namespace {

struct URLName {
  URLNameKind kind;
  /// A "*" at the end stands for anything.
  std::string_view name;
  /// As of `isHostOfPatternOrBelow`; empty for all.
  std::string_view host;
};

/// Whether an entry stands in front of others by what is looked for first.
constexpr bool isBefore(const URLName &a, const URLName &b) {
  return a.kind != b.kind ? a.kind < b.kind : a.name[0] < b.name[0];
}

constexpr auto kNames = [] {
  using enum URLNameKind;
  auto names = std::to_array<URLName>({
#include "URLParameters.inc"
  });
  std::sort(names.begin(), names.end(), isBefore);
  return names;
}();

}  // namespace

bool isURLNameOfKind(std::u16string_view name, URLNameKind kind, std::u16string_view host) {
  if (name.empty() || name[0] > 0x7f) return false;
  const char first[] = {static_cast<char>(toASCIILower(name[0]))};
  const auto [begin, end] =
      std::equal_range(kNames.begin(), kNames.end(), URLName{kind, {first, 1}, {}}, isBefore);
  return std::any_of(begin, end, [&](const URLName &entry) {
    const bool isNamed = entry.name.ends_with('*')
                             ? startsWithASCIINoCase(name, entry.name.substr(0, entry.name.size() - 1))
                             : equalsASCIINoCase(name, entry.name);
    return isNamed && (entry.host.empty() || isHostOfPatternOrBelow(host, entry.host));
  });
}

}  // namespace nimbo
