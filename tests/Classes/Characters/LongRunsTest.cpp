// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

#include "Classes/Characters/FastSearches.hpp"
#include "Classes/Characters/UnicharSearches.hpp"
#include "tests/support/LongestRun.hpp"

// The sanitizers look at each access, which takes minutes here.
#if !defined(__SANITIZE_ADDRESS__)

namespace nimbo {
namespace {

constexpr std::uint32_t kLength = LongestRun::kLength;

TEST(LongRuns, AreSearchedToTheirEnd) {
  constexpr std::u16string_view kEnd = u"Quiver\u00e9";
  constexpr auto kEndLength = static_cast<std::uint32_t>(kEnd.size());
  constexpr std::uint32_t kZeros = kLength - kEndLength;
  const LongestRun run;
  std::ranges::copy(kEnd, run.units() + kZeros);
  const unichar *const units = run.units();
  EXPECT_EQ(findUnichar(units, kLength, u'Q'), kZeros);
  EXPECT_EQ(findUnicharNoCase(units, kLength, u'\u00c9'), kLength - 1);
  EXPECT_EQ(findLastUnichar(units, kLength, u'\0'), kZeros - 1);
  EXPECT_EQ(findLastUnichar(units, kLength, u'#'), NSNotFound);
  EXPECT_EQ(countUnichar(units, kLength, u'\0'), kZeros);
  EXPECT_EQ(countUnichars(units, kLength, u'\0', u'Q'), (UnicharCounts{kZeros, 1}));
  EXPECT_FALSE(isAsciiUnichars(units, kLength));
  EXPECT_TRUE(isAsciiUnichars(units, kLength - 1));
  EXPECT_EQ(fastContainsUnichars(units, kLength, kEnd.data(), kEndLength), units + kZeros);
  EXPECT_EQ(fastUnicharsContainChars(units, kLength, "Quiver", 6), units + kZeros);
  EXPECT_EQ(fastCaseInsensitiveContainsUnichars(units, kLength, u"qUIVER\u00c9", kEndLength), units + kZeros);
  EXPECT_EQ(fastCaseInsensitiveUnicharsContainChars(units, kLength, "qUIVERx", 7), nullptr);
}

}  // namespace
}  // namespace nimbo

#endif
