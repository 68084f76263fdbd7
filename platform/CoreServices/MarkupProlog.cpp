// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/MarkupProlog.hpp"

#include <algorithm>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

/// Where the low bytes of UTF-16 stand, 0 or 1, when the text begins with "<" in it, maybe behind its mark.
/// Otherwise nothing.
std::size_t lowByteOfUTF16(std::string_view head) {
  using namespace std::literals;
  for (const std::string_view start : {"<\0"sv, "\xff\xfe<\0"sv})
    if (head.starts_with(start)) return 0;
  for (const std::string_view start : {"\0<"sv, "\xfe\xff\0<"sv})
    if (head.starts_with(start)) return 1;
  return std::string_view::npos;
}

bool isASCII(char c) {
  return static_cast<unsigned char>(c) < 0x80;
}

/// Takes what ends with `end` off the front; all, when that is not there.
std::string_view takeUpTo(std::string_view &text, std::string_view end) {
  const std::size_t at = text.find(end);
  const std::string_view taken = text.substr(0, at == std::string_view::npos ? at : at + end.size());
  text.remove_prefix(taken.size());
  return taken;
}

}  // namespace

std::string unhiddenMarkup(std::string_view head) {
  constexpr std::string_view kMark = "\xef\xbb\xbf";
  std::string narrow;
  if (const std::size_t low = lowByteOfUTF16(head); low != std::string_view::npos) {
    for (std::size_t i = 0; i + 1 < head.size(); i += 2)
      narrow.push_back(head[i + 1 - low] == 0 && isASCII(head[i + low]) ? head[i + low] : '?');
    if (!narrow.starts_with('<')) narrow.erase(0, 1);
    head = narrow;
  }
  if (head.starts_with(kMark)) head.remove_prefix(kMark.size());
  bool isHidden = !narrow.empty();
  std::string plain;
  while (true) {
    const auto isBlank = [](char c) { return isASCIIWhiteSpace(c); };
    head.remove_prefix(static_cast<std::size_t>(std::ranges::find_if_not(head, isBlank) - head.begin()));
    if (head.starts_with("<!--")) {
      takeUpTo(head, "-->");
      isHidden = true;
    } else if (head.starts_with("<?")) {
      plain += takeUpTo(head, "?>");
    } else {
      break;
    }
  }
  return isHidden && head.starts_with('<') ? plain.append(head) : std::string();
}

}  // namespace nimbo
