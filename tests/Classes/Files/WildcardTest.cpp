// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/Wildcard.hpp"

#include <fnmatch.h>
#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <string>
#include <string_view>

#include "tests/support/GrowthRatio.hpp"

namespace nimbo {
namespace {

bool matches(const NSString &pattern, const NSString &name) {
  return Wildcard(pattern).matches(name);
}

TEST(Wildcard, MatchesWholeNames) {
  const struct {
    NSString pattern, name;
    bool expected;
  } cases[] = {
      {u"*.html"_ns, u"Index.HTML"_ns, true},
      {u"*.html"_ns, u"index.html.gz"_ns, false},
      {u"*"_ns, u".hidden"_ns, true},
      {u"*"_ns, u""_ns, true},
      {u""_ns, u""_ns, true},
      {u""_ns, u"a"_ns, false},
      {NSString(), u""_ns, false},
      {u"ÉTÉ-[À-Ý].txt"_ns, u"été-é.TXT"_ns, true},
      {u"?"_ns, u"\U0001f600"_ns, true},
      {u"[\U0001f600-\U0001f64f]"_ns, u"\U0001f610"_ns, true},
      {u"[!\U0001f600-\U0001f64f]"_ns, u"\U0001f610"_ns, false},
      {u"a?b"_ns, NSString::stringWithFileSystemRepresentation("a\xff\x62"), true},
      {u"a\\*"_ns, u"a*"_ns, true},
      {u"a\\*"_ns, u"ab"_ns, false},
      {u"a\\"_ns, u"a\\"_ns, true},
      {u"[a-"_ns, u"[a-"_ns, true},
      {u"[]]["_ns, u"]["_ns, true},
  };
  for (const auto &[pattern, name, expected] : cases)
    EXPECT_EQ(matches(pattern, name), expected) << pattern.UTF8String() << " " << name.UTF8String();
}

TEST(Wildcard, AgreesWithTheSystem) {
  // What a "\\" at the end means, and a "[" without an end behind a "*", is not agreed upon.
  const char *const parts[] = {"a",    "B",    "-",    "!",    "]",     "*",       "*",      "**",  "?",
                               "[ab]", "[!b]", "[^c]", "[]a]", "[a-c]", "[!A-B-]", "[\\]a]", "\\*", "\\["};
  const std::string_view alphabet = "AbC-[]!*";
  std::mt19937 random(1);
  int matched = 0;
  for (int i = 0; i < 300'000; ++i) {
    std::string pattern, name;
    for (std::size_t count = random() % 6; count > 0; --count) pattern += parts[random() % std::size(parts)];
    for (std::size_t count = random() % 6; count > 0; --count) name += alphabet[random() % alphabet.size()];
    const bool expected = ::fnmatch(pattern.c_str(), name.c_str(), FNM_CASEFOLD) == 0;
    matched += expected;
    ASSERT_EQ(matches(NSString::stringWithUTF8String(pattern), NSString::stringWithUTF8String(name)), expected)
        << pattern << "  " << name;
  }
  EXPECT_GT(matched, 3'000);
}

TEST(Wildcard, TakesLinearTimeInThePattern) {
  const NSString name = NSString::stringWithUTF8String(std::string(250, 'a'));
  for (const char *part : {"*a", "[", "[ab"}) {
    expectLinearTime(2'000, [&](std::size_t count) {
      std::string pattern = "*";
      for (std::size_t i = 0; i < count; ++i) pattern += part;
      EXPECT_FALSE(matches(NSString::stringWithUTF8String(pattern), name));
    });
  }
}

}  // namespace
}  // namespace nimbo
