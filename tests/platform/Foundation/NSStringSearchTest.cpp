// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSStringSearch.hpp"

#include <gtest/gtest.h>
#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "tests/support/GrowthRatio.hpp"

namespace nimbo {
namespace {

/// The plain twin folds a whole text, notes where its characters begin, and looks at every place.
class PlainText {
 public:
  explicit PlainText(std::u16string_view units) : units_(units) {
    for (std::size_t i = 0; i < units.size();) {
      const std::size_t start = i;
      UChar32 c;
      U16_NEXT(units, i, units.size(), c);
      char16_t fold[8];
      UErrorCode error = U_ZERO_ERROR;
      const std::int32_t length = u_strFoldCase(
          fold, 8, units.data() + start, static_cast<std::int32_t>(i - start), U_FOLD_CASE_DEFAULT, &error);
      for (std::int32_t k = 0; k < length; ++k) {
        beginnings_.push_back(k == 0 ? start : kInside);
        folded_.push_back(fold[k]);
      }
    }
    beginnings_.push_back(units.size());
  }

  NSRange range(std::u16string_view find, std::uint32_t options) const {
    const bool isFolded = options & NSCaseInsensitiveSearch;
    const std::u16string wanted = isFolded ? PlainText(find).folded_ : std::u16string(find);
    const std::u16string_view text = isFolded ? std::u16string_view(folded_) : units_;
    const auto placeOf = [&](std::size_t i) { return isFolded ? beginnings_[i] : i; };
    NSRange found{NSNotFound, 0};
    for (std::size_t i = 0; i + wanted.size() <= text.size(); ++i) {
      const std::size_t start = placeOf(i), end = placeOf(i + wanted.size());
      if (start == kInside || end == kInside || text.compare(i, wanted.size(), wanted) != 0) continue;
      const bool backwards = options & NSBackwardsSearch;
      if ((options & NSAnchoredSearch) && (backwards ? end != units_.size() : start != 0)) continue;
      found = {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end - start)};
      if (!backwards) break;
    }
    return found;
  }

 private:
  static constexpr std::size_t kInside = static_cast<std::size_t>(-1);

  std::u16string_view units_;
  std::u16string folded_;
  std::vector<std::size_t> beginnings_;
};

void expectAsPlain(std::u16string_view text, std::u16string_view find) {
  const PlainText plain(text);
  for (std::uint32_t options = 0; options < 16; ++options) {
    if (options & 2) continue;
    const NSRange found = rangeOfString(text, find, options), expected = plain.range(find, options);
    ASSERT_EQ(found.location, expected.location) << options;
    ASSERT_EQ(found.length, expected.length) << options;
  }
}

std::u16string repeated(std::u16string_view unit, std::size_t length) {
  std::u16string text;
  while (text.size() < length) text += unit;
  return text;
}

TEST(NSStringSearch, AgreesWithThePlainSearchOnRandomText) {
  // What folds to several units, to those of others, in pairs; halves of pairs.
  const std::vector<std::u16string> pieces = {
      u"a",          u"A",          u"b",      u"s",      u"S",      u"\u00df", u"\u1e9e", u"\ufb06",
      u"\U00010400", u"\U00010428", u"\xd801", u"\xdc28", u"\u0130", u"\u0390", u"\u03b9", u"\u0308"};
  std::mt19937 random(11);
  for (int round = 0; round < 20000; ++round) {
    const std::size_t first = random() % pieces.size(), kinds = 1 + random() % pieces.size();
    const auto text = [&](std::size_t length) {
      std::u16string result;
      while (length-- > 0) result += pieces[(first + random() % kinds) % pieces.size()];
      return result;
    };
    expectAsPlain(text(random() % 40), text(1 + random() % 4));
    if (::testing::Test::HasFatalFailure()) return;
  }
}

TEST(NSStringSearch, AgreesWithThePlainSearchOnTextThatRepeatsItself) {
  std::mt19937 random(13);
  const std::u16string_view periods[] = {u"a",       u"ab",        u"aab",       u"\u00df",
                                         u"s\u00df", u"aA\ufb06t", u"\U00010428"};
  for (int round = 0; round < 600; ++round) {
    const std::u16string_view period = periods[random() % std::size(periods)];
    std::u16string text = repeated(period, 1500), find = repeated(period, 1 + random() % 80);
    find.insert(random() % (find.size() + 1), random() % 3 ? u"x" : u"");
    expectAsPlain(text, find);
    text.insert(random() % text.size(), find);
    expectAsPlain(text, find);
    std::ranges::replace(find, u'a', u'A');
    text[random() % text.size()] = u'\xd801';
    expectAsPlain(text, find);
    if (::testing::Test::HasFatalFailure()) return;
  }
}

TEST(NSStringSearch, TakesTimeByTheLengthOfTheText) {
  for (std::uint32_t options = 0; options < 16; ++options) {
    if (options & 2) continue;
    for (const bool endsDifferently : {false, true}) {
      expectLinearTime(8000, [&](std::size_t length) {
        const std::u16string text(length, u'a'), half(length / 4, u'a');
        const std::u16string find = endsDifferently ? half + half + u"b" : u"b" + half + half;
        EXPECT_EQ(rangeOfString(text, find, options).location, NSNotFound);
      });
    }
  }
}

}  // namespace
}  // namespace nimbo
