// SPDX-License-Identifier: Apache-2.0
#include "Classes/Characters/UnicharSearches.hpp"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "Classes/Characters/CharacterTables.hpp"
#include "tests/support/ExactBuffer.hpp"
#include "tests/support/VectorTargets.hpp"

namespace nimbo {
namespace {

struct Answers {
  std::uint32_t first = NSNotFound, last = NSNotFound, count = 0;

  friend bool operator==(const Answers &, const Answers &) = default;
};

/// The plain twin: the units that `isWanted`.
template <typename Wanted>
Answers plainAnswers(std::u16string_view run, Wanted isWanted) {
  Answers answers;
  for (std::uint32_t i = 0; i < run.size(); ++i) {
    if (!isWanted(run[i])) continue;
    if (answers.count++ == 0) answers.first = i;
    answers.last = i;
  }
  return answers;
}

void expectAsPlain(std::u16string_view run, unichar c, std::size_t shift) {
  const ExactBuffer<unichar> buffer(run, shift);
  const unichar *const units = buffer.data();
  const auto length = static_cast<std::uint32_t>(run.size());
  const Answers exact = plainAnswers(run, [c](unichar u) { return u == c; });
  const Answers noCase = plainAnswers(run, [c](unichar u) { return toUpper(u) == c; });
  const Answers other = plainAnswers(run, [](unichar u) { return u == u'a'; });
  const Answers notAscii = plainAnswers(run, [](unichar u) { return u >= 0x80; });

  ASSERT_EQ(findUnichar(units, length, c), exact.first);
  ASSERT_EQ(findLastUnichar(units, length, c), exact.last);
  ASSERT_EQ(countUnichar(units, length, c), exact.count);
  ASSERT_EQ(findUnicharNoCase(units, length, c), noCase.first);
  ASSERT_EQ(findLastUnicharNoCase(units, length, c), noCase.last);
  ASSERT_EQ(countUnicharNoCase(units, length, c), noCase.count);
  ASSERT_EQ(countUnichars(units, length, c, u'a'), (UnicharCounts{exact.count, other.count}));
  ASSERT_EQ(isAsciiUnichars(units, length), notAscii.count == 0);
}

TEST(UnicharSearches, FindAtEachPlaceOfEachLength) {
  EXPECT_EQ(findLastUnichar(nullptr, 0, u'a'), NSNotFound);
  EXPECT_TRUE(isAsciiUnichars(nullptr, 0));
  forEachVectorTarget([] {
    for (std::size_t length = 0; length <= 170; ++length) {
      expectAsPlain(std::u16string(length, u'a'), u'S', length % 5);
      for (std::size_t place = 0; place < length; ++place) {
        std::u16string run(length, u'a');
        run[place] = u"Ss\u017f\x80"[place % 4];
        expectAsPlain(run, u'S', place % 9);
        if (::testing::Test::HasFatalFailure()) return;
      }
    }
  });
}

TEST(UnicharSearches, AgreeWithPlainOnesOnRandomRuns) {
  const std::u16string_view alphabet = u"aAsS\u017f\u0422\u0442\u1c84\u1c85\x7f\x80\xd800\xffff\u0000";
  forEachVectorTarget([&] {
    std::mt19937 random(11);
    for (int round = 0; round < 2000; ++round) {
      std::u16string run;
      for (std::uint32_t n = random() % 300; n > 0; --n) run += alphabet[random() % alphabet.size()];
      expectAsPlain(run, alphabet[random() % alphabet.size()], round % 9);
      if (::testing::Test::HasFatalFailure()) return;
    }
  });
}

TEST(UnicharSearches, CountMoreThanALaneHolds) {
  // Each lane of the widest vectors counts past 65535, and past it again for the rest.
  const std::uint32_t length = 2 * 65536 * 32 + 17;
  const std::u16string run(length, u'<');
  EXPECT_EQ(countUnichar(run.data(), length, u'<'), length);
  EXPECT_EQ(countUnichars(run.data(), length, u'>', u'<'), (UnicharCounts{0, length}));
}

}  // namespace
}  // namespace nimbo
