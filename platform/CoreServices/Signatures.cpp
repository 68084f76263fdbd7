// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/Signatures.hpp"

#include <algorithm>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

constexpr std::string_view kMailFields[] = {"date",     "delivered-to", "from",    "message-id", "mime-version",
                                            "received", "return-path",  "subject", "to"};
constexpr int kMailFieldsNeeded = 2;

bool isMailField(std::string_view name) {
  return std::ranges::any_of(kMailFields,
                             [&](std::string_view field) { return equalsASCIINoCase(name, field); });
}

}  // namespace

bool beginsLikeMail(std::string_view head) {
  int found = 0;
  while (!head.empty()) {
    const std::size_t end = head.find('\n');
    std::string_view line = head.substr(0, end);
    head.remove_prefix(end == std::string_view::npos ? head.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.empty()) break;
    if (line.front() == ' ' || line.front() == '\t') continue;
    const std::string_view name = line.substr(0, line.find(':'));
    if (name.size() == line.size() || name.empty() ||
        !std::ranges::all_of(name, [](char c) { return c > ' ' && c < 0x7f; }))
      return false;
    if (isMailField(name)) ++found;
  }
  return found >= kMailFieldsNeeded;
}

bool beginsLikeProse(std::string_view text) {
  const std::size_t start = text.find_first_not_of(" \t\r\n");
  if (start == std::string_view::npos) return false;
  const char first = text[start];
  return isASCIIAlphanumeric(first) || static_cast<unsigned char>(first) >= 0x80 || first == '"' ||
         first == '\'' || text.substr(start).starts_with("# ");
}

}  // namespace nimbo
