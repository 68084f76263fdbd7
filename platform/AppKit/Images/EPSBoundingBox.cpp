// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Images/EPSBoundingBox.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace nimbo::detail {

namespace {

constexpr std::string_view kBinaryHeader = "\xc5\xd0\xd3\xc6";

std::uint32_t littleEndian(std::string_view bytes, std::size_t offset) {
  std::uint32_t value = 0;
  for (std::size_t i = 4; i-- > 0;) value = value << 8 | static_cast<std::uint8_t>(bytes[offset + i]);
  return value;
}

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

/// The box in the first comment of the name that has one: "(atend)" has none.
std::optional<NSRect> boxInComments(std::string_view text, std::string_view name) {
  for (std::size_t at = text.find(name); at != text.npos; at = text.find(name, at + 1)) {
    if (at > 0 && text[at - 1] != '\n' && text[at - 1] != '\r') continue;
    std::string_view line = text.substr(at + name.size());
    line = line.substr(0, line.find_first_of("\r\n"));
    if (const auto box = boxOfNumbers(line)) return box;
  }
  return {};
}

}  // namespace

std::string_view postScriptPart(std::string_view file) {
  constexpr std::size_t kHeaderBytes = 12;
  if (!file.starts_with(kBinaryHeader)) return file;
  if (file.size() < kHeaderBytes) return {};
  const std::uint32_t start = littleEndian(file, 4);
  return start <= file.size() ? file.substr(start, littleEndian(file, 8)) : std::string_view();
}

std::optional<NSRect> boundingBoxOfPostScript(std::string_view postScript) {
  const std::string_view head = postScript.substr(0, kEPSCommentBytes);
  const std::string_view tail = postScript.substr(postScript.size() - head.size());
  for (const std::string_view name : {"%%HiResBoundingBox:", "%%BoundingBox:"})
    for (const std::string_view part : {head, tail})
      if (const auto box = boxInComments(part, name)) return box;
  return {};
}

}  // namespace nimbo::detail
