// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Unicode/BidiLine.hpp"

#include <gtest/gtest.h>

#include <string>

namespace nimbo {
namespace {

/// The letters A to M are Hebrew ones, those from N on Arabic ones.
char32_t written(char letter) {
  if (letter >= 'A' && letter <= 'M') return 0x5d0 + static_cast<char32_t>(letter - 'A');
  if (letter >= 'N' && letter <= 'Z') return 0x62d + static_cast<char32_t>(letter - 'N');
  return static_cast<char32_t>(letter);
}

TEST(BidiLine, IsReadInItsOrder) {
  const struct {
    const char *seen;
    bool isRightToLeft;
    const char *read;
  } cases[] = {
      {"", true, ""},
      {"CBA", true, "ABC"},
      {"CBA", false, "ABC"},
      {".FE ,DC BA", true, "AB CD, EF."},
      {"one BA two", false, "one AB two"},
      {"BA one DC", true, "CD one AB"},
      {"one 25 BA", false, "one 25 AB"},
      {".10:30 DC 1,234.5 BA", true, "AB 1,234.5 CD 10:30."},
      {"DC 25/12/2023 BA", true, "AB 25/12/2023 CD"},
      {"50% BA", true, "AB 50%"},
      {"%50 ON", true, "NO 50%"},
      {"BA $50 C", true, "C $50 AB"},
      {"BA windows 11 C", true, "C windows 11 AB"},
      {"BA word 50% C", true, "C word 50% AB"},
      {"BA 11 C one", true, "one C 11 AB"},
      {"PO one (two) N", true, "N one (two) OP"},
      {"PO one )two( N", true, "N one )two( OP"},
      {"C http://a.b/c?d=e BA", true, "AB http://a.b/c?d=e C"},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.seen);
    std::u32string seen;
    for (const char *letter = c.seen; *letter; ++letter) seen.push_back(written(*letter));
    std::string read;
    for (const BidiPlace &place : logicalOrderOfVisualLine(seen, c.isRightToLeft))
      read.push_back(c.seen[place.index]);
    EXPECT_EQ(read, c.read);
  }
  // What would end or nest a line is a blank in it.
  EXPECT_EQ(logicalOrderOfVisualLine(U"\u05d0\u2029\u202b\n\u05d1", true).size(), 5u);
}

TEST(BidiLine, ShowsItsDirection) {
  const struct {
    std::u32string_view seen;
    std::optional<bool> isRightToLeft;
  } cases[] = {
      {U"", std::nullopt},
      {U"12 (3)", std::nullopt},
      {U"\u05d1\u05d0 one \u05d1", true},
      {U"one \u05d1 two", false},
      {U"one \u05d1\u05d0", std::nullopt},
      {U".one \u05d1\u05d0", true},
      {U"one \u05d1\u05d0. ", false},
      {U"\u05d1\u05d0 one?", false},
  };
  for (const auto &c : cases) EXPECT_EQ(isVisualLineRightToLeft(c.seen), c.isRightToLeft);
}

}  // namespace
}  // namespace nimbo
