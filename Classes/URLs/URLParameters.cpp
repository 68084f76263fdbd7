// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/URLParameters.hpp"

#include <algorithm>
#include <array>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

namespace {

struct URLName {
  URLNameKind kind;
  /// A "*" at the end stands for anything.
  std::string_view name;
};

constexpr auto kNames = [] {
  using enum URLNameKind;
  return std::to_array<URLName>({
#include "URLParameters.inc"
  });
}();

}  // namespace

bool isURLNameOfKind(std::u16string_view name, URLNameKind kind) {
  return std::ranges::any_of(kNames, [&](const URLName &entry) {
    if (entry.kind != kind) return false;
    if (!entry.name.ends_with('*')) return equalsASCIINoCase(name, entry.name);
    return startsWithASCIINoCase(name, entry.name.substr(0, entry.name.size() - 1));
  });
}

}  // namespace nimbo
