// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/SearchEngines.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "Classes/URLs/HostPatterns.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

/// The kinds of rows, as they are written in the table.
enum class SearchEngineKind { engine, content };

struct SearchEngineRow {
  SearchEngineKind kind;
  std::string_view hostAndPath;
};

constexpr auto kRows = [] {
  using enum SearchEngineKind;
  return std::to_array<SearchEngineRow>({
#include "SearchEngines.inc"
  });
}();

bool isAtPathOrBelow(std::u16string_view path, std::string_view top) {
  return path.size() >= top.size() && std::ranges::equal(path.substr(0, top.size()), top) &&
         (path.size() == top.size() || top.empty() || top.ends_with('/') || path[top.size()] == u'/');
}

}  // namespace

bool isSearchEngineHostAndPath(const NSString &host, const NSString &escapedPath) {
  constexpr std::string_view kWeb = "www.";
  std::u16string_view name = host.view();
  if (startsWithASCIINoCase(name, kWeb)) name.remove_prefix(kWeb.size());
  if (name.empty()) return false;
  const char16_t initial = toASCIILower(name[0]);
  bool isEngine = false;
  for (const auto &[kind, hostAndPath] : kRows) {
    if (static_cast<char16_t>(hostAndPath[0]) != initial) continue;
    const std::size_t slash = std::min(hostAndPath.find('/'), hostAndPath.size());
    if (!isHostOfPattern(name, hostAndPath.substr(0, slash)) ||
        !isAtPathOrBelow(escapedPath.view(), hostAndPath.substr(slash)))
      continue;
    if (kind == SearchEngineKind::content) return false;
    isEngine = true;
  }
  return isEngine;
}

}  // namespace nimbo
