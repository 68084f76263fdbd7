// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/SearchEngines.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/Foundation/NSStringCase.hpp"
#include "platform/Foundation/NSStringJoining.hpp"

namespace nimbo {
namespace {

/// The kinds of rows, as they are written in the table.
enum class SearchEngineKind { host, prefix, contentHost, contentPath };

struct SearchEngineRow {
  SearchEngineKind kind;
  std::u16string_view text;
};

constexpr auto kRows = [] {
  using enum SearchEngineKind;
  return std::to_array<SearchEngineRow>({
#include "SearchEngines.inc"
  });
}();

}  // namespace

bool isSearchEngineHostAndPath(const NSString &host, const NSString &escapedPath) {
  const NSString small = lowercaseString(host);
  std::u16string_view name = small.view();
  if (name.ends_with(u'.')) name.remove_suffix(1);
  const NSString page = stringByConcatenating(name, escapedPath);
  const auto matches = [&](const SearchEngineRow &row) {
    switch (row.kind) {
      case SearchEngineKind::host:
      case SearchEngineKind::contentHost:
        return name == row.text;
      case SearchEngineKind::prefix:
        return name.starts_with(row.text);
      case SearchEngineKind::contentPath:
        return page.view().starts_with(row.text);
    }
    return false;
  };
  const auto isContent = [](const SearchEngineRow &row) {
    return row.kind == SearchEngineKind::contentHost || row.kind == SearchEngineKind::contentPath;
  };
  bool isEngine = false;
  for (const SearchEngineRow &row : kRows) {
    if (!matches(row)) continue;
    if (isContent(row)) return false;
    isEngine = true;
  }
  return isEngine;
}

}  // namespace nimbo
