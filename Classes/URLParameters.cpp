// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLParameters.hpp"

#include <algorithm>

#include "Classes/URLStringParts.hpp"

namespace nimbo {

namespace {

struct URLName {
  URLNameKind kind;
  std::u16string_view name;
  bool isPrefix;
};

constexpr URLName kNames[] = {
#include "URLParameters.inc"
};

}  // namespace

bool isURLNameOfKind(std::u16string_view name, URLNameKind kind) {
  return std::ranges::any_of(kNames, [&](const URLName &entry) {
    if (entry.kind != kind || name.size() < entry.name.size()) return false;
    return (entry.isPrefix || name.size() == entry.name.size()) &&
           isNamed(name.substr(0, entry.name.size()), entry.name);
  });
}

}  // namespace nimbo
