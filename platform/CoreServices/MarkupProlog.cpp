// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/MarkupProlog.hpp"

#include <algorithm>

#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/UTF16Text.hpp"

namespace nimbo {
namespace {

constexpr std::string_view kMark = "\xef\xbb\xbf";

/// Markup of one byte a character when the text is UTF-16 that begins with "<"; else empty.
std::string narrowMarkup(std::string_view head) {
  std::string narrow;
  if (const auto order = orderOfUTF16(head))
    for (const char16_t unit : unitsOfUTF16(head, *order))
      narrow.push_back(unit < 0x80 ? static_cast<char>(unit) : '?');
  return narrow.starts_with('<') ? narrow : std::string();
}

void removeWhiteSpace(std::string_view &text) {
  const auto isBlank = [](char c) { return isASCIIWhiteSpace(c); };
  text.remove_prefix(static_cast<std::size_t>(std::ranges::find_if_not(text, isBlank) - text.begin()));
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
  const std::string narrow = narrowMarkup(head);
  if (!narrow.empty()) head = narrow;
  if (head.starts_with(kMark)) head.remove_prefix(kMark.size());
  bool isHidden = !narrow.empty();
  std::string plain;
  while (true) {
    removeWhiteSpace(head);
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

std::optional<std::string_view> firstElementOfMarkup(std::string_view head) {
  if (head.starts_with(kMark)) head.remove_prefix(kMark.size());
  while (true) {
    removeWhiteSpace(head);
    if (head.starts_with("<!--")) {
      takeUpTo(head, "-->");
    } else if (head.starts_with("<!")) {
      // A document type may hold declarations of its own.
      if (head.find('[') < head.find('>')) takeUpTo(head, "]");
      takeUpTo(head, ">");
    } else if (head.starts_with("<?")) {
      takeUpTo(head, "?>");
    } else {
      break;
    }
  }
  if (head.empty()) return std::nullopt;
  if (!head.starts_with('<')) return std::string_view();
  const std::string_view name = head.substr(1, head.find_first_of(" \t\r\n/>", 1) - 1);
  return name.substr(name.find(':') + 1);
}

}  // namespace nimbo
