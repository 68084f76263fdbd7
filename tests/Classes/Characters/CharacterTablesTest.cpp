// SPDX-License-Identifier: Apache-2.0
#include "Classes/Characters/CharacterTables.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <thread>
#include <vector>

#include "Classes/Characters/FoldCandidates.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Characters.hpp"
#include "platform/Foundation/NSCharacterSet.hpp"
#include "platform/Foundation/Unicode/UnicharMapping.hpp"

namespace nimbo {
namespace {

TEST(CharacterTables, FoldOnlyTheirLetters) {
  const NSCharacterSet letters = NSCharacterSet::letterCharacterSet();
  const NSCharacterSet lowercase = NSCharacterSet::lowercaseLetterCharacterSet();
  const NSCharacterSet uppercase = NSCharacterSet::uppercaseLetterCharacterSet();
  for (std::uint32_t code = 0; code <= 0xffff; ++code) {
    const auto c = static_cast<unichar>(code);
    const bool hasLower = uppercase.characterIsMember(c) && !isTitlecaseUnichar(c);
    ASSERT_EQ(toUpper(c), lowercase.characterIsMember(c) ? uppercaseUnichar(c) : c) << std::hex << code;
    ASSERT_EQ(toLower(c), hasLower ? lowercaseUnichar(c) : c) << std::hex << code;
    const unichar plain = letters.characterIsMember(c) ? unicharByFoldingDiacritics(c) : c;
    ASSERT_EQ(umlautsToAscii(c), plain) << std::hex << code;
    ASSERT_EQ(umlautsToUpperAscii(c), toUpper(plain)) << std::hex << code;
    ASSERT_EQ(umlautsToLowerAscii(c), toLower(plain)) << std::hex << code;
    const unichar ascii = plain < 0x80 ? plain : u' ';
    ASSERT_EQ(toAscii(c), ascii) << std::hex << code;
    ASSERT_EQ(toUpperAscii(c), toUpper(ascii)) << std::hex << code;
    ASSERT_EQ(toLowerAscii(c), toLower(ascii)) << std::hex << code;
    // A choice of units stands for the table in searches.
    const detail::UnicharChoice choice = detail::foldCandidates(toUpper(c));
    ASSERT_EQ(std::count(choice.units.begin(), choice.units.begin() + choice.count, c), 1) << std::hex << code;
  }
}

TEST(CharacterTables, AreMadeOnceForAllThreads) {
  using Make = const unichar *();
  Make *const inits[] = {initUmlautsCharsTable, initUpperCharsTable, initLowerCharsTable,
                         initUpperUmlautsCharsTable, initLowerUmlautsCharsTable};
  Make *const methods[] = {umlautsCharsTable, upperCharsTable, lowerCharsTable, upperUmlautsCharsTable,
                           lowerUmlautsCharsTable};
  std::vector<const unichar *> seen(8 * std::size(inits));
  std::vector<std::thread> threads;
  for (std::size_t t = 0; t < 8; ++t) {
    threads.emplace_back([&, t] {
      for (std::size_t i = 0; i < std::size(inits); ++i) {
        // Half of them from the combined tables on, which make the others.
        const std::size_t table = t % 2 ? std::size(inits) - 1 - i : i;
        seen[t * std::size(inits) + table] = inits[table]();
      }
    });
  }
  for (std::thread &thread : threads) thread.join();
  for (std::size_t i = 0; i < seen.size(); ++i) {
    EXPECT_EQ(seen[i], seen[i % std::size(inits)]);
    EXPECT_EQ(seen[i], methods[i % std::size(inits)]());
    EXPECT_EQ(seen[i][0xffff], 0xffff);
  }
}

}  // namespace
}  // namespace nimbo
