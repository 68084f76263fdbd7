// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace nimbo {

/// Tells in words what the first line is in which two texts differ; empty when they are equal.
inline std::string firstDifference(std::string_view expected, std::string_view actual) {
  constexpr std::size_t kLongestQuote = 100;
  const auto quoted = [](std::string_view line) {
    return '"' + std::string(line.substr(0, kLongestQuote)) + (line.size() > kLongestQuote ? "..." : "") + '"';
  };
  for (std::size_t number = 1; expected != actual; ++number) {
    const std::string line = "line " + std::to_string(number);
    const std::size_t expectedEnd = std::min(expected.find('\n'), expected.size());
    const std::size_t actualEnd = std::min(actual.find('\n'), actual.size());
    if (actual.empty()) return line + ' ' + quoted(expected.substr(0, expectedEnd)) + " is missing";
    if (expected.empty()) return line + ' ' + quoted(actual.substr(0, actualEnd)) + " is too much";
    if (expected.substr(0, expectedEnd) != actual.substr(0, actualEnd))
      return line + " is " + quoted(actual.substr(0, actualEnd)) + " instead of " +
             quoted(expected.substr(0, expectedEnd));
    if ((expectedEnd < expected.size()) != (actualEnd < actual.size()) &&
        std::max(expected.size() - expectedEnd, actual.size() - actualEnd) == 1)
      return line + (actualEnd < actual.size() ? " has a line feed too much" : " lacks its line feed");
    expected.remove_prefix(std::min(expectedEnd + 1, expected.size()));
    actual.remove_prefix(std::min(actualEnd + 1, actual.size()));
  }
  return {};
}

}  // namespace nimbo
