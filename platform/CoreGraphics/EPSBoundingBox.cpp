// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreGraphics/EPSBoundingBox.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace nimbo {

namespace {

/// Four numbers, the lower left and the upper right corner.
std::optional<NSRect> boxOfNumbers(std::string_view text) {
  double numbers[4] = {};
  for (double &number : numbers) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    if (text.starts_with('+')) text.remove_prefix(1);
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (failure != std::errc() || !std::isfinite(number)) return {};
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  }
  const NSRect box = {{numbers[0], numbers[1]}, {numbers[2] - numbers[0], numbers[3] - numbers[1]}};
  if (!(box.size.width > 0) || !(box.size.height > 0)) return {};
  return box;
}

/// The box in the first of the comments at the beginning that has one. "(atend)" leaves it to those at the end,
/// of which the last counts.
std::optional<NSRect> boxInComments(std::string_view text, std::string_view name, bool isEnd) {
  constexpr std::string_view kMark = "%%";
  std::optional<NSRect> box;
  int documents = 0;
  for (std::size_t at = text.find(kMark); at != text.npos; at = text.find(kMark, at + 1)) {
    if (at > 0 && text[at - 1] != '\n' && text[at - 1] != '\r') continue;
    std::string_view line = text.substr(at);
    line = line.substr(0, line.find_first_of("\r\n"));
    if (line.starts_with("%%BeginDocument")) {
      ++documents;
    } else if (line.starts_with("%%EndDocument")) {
      // The end may begin inside a document.
      if (documents > 0)
        --documents;
      else
        box.reset();
    } else if (documents == 0 && line.starts_with(name)) {
      line.remove_prefix(name.size());
      if (!isEnd && line.find("(atend)") != line.npos) return {};
      if (const auto named = boxOfNumbers(line)) box = named;
      if (!isEnd && box) return box;
    }
  }
  return box;
}

}  // namespace

std::optional<NSRect> boundingBoxOfPostScript(std::string_view postScript) {
  constexpr std::size_t kCommentBytes = std::size_t{64} << 10;
  const std::string_view head = postScript.substr(0, kCommentBytes);
  const std::string_view tail = postScript.substr(postScript.size() - head.size());
  for (const std::string_view name : {"%%HiResBoundingBox:", "%%BoundingBox:"})
    for (const bool isEnd : {false, true})
      if (const auto box = boxInComments(isEnd ? tail : head, name, isEnd)) return box;
  return {};
}

}  // namespace nimbo
