// SPDX-License-Identifier: Apache-2.0
#include "Classes/CharacterTables.hpp"

#include <gtest/gtest.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "Classes/NSString+NSStringNimboExtensions+Characters.hpp"

namespace nimbo {
namespace {

/// A mapped string as an entry: its unit when it is one, else the unit it was made from.
unichar entryOf(const icu::UnicodeString &mapped, unichar c) {
  return mapped.length() == 1 ? mapped.charAt(0) : c;
}

icu::UnicodeString withoutMarks(unichar c) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::UnicodeString decomposed =
      icu::Normalizer2::getNFDInstance(status)->normalize(icu::UnicodeString(char16_t{c}), status);
  icu::UnicodeString rest;
  for (std::int32_t i = 0; i < decomposed.length(); i = decomposed.moveIndex32(i, 1)) {
    const std::int8_t type = u_charType(decomposed.char32At(i));
    const bool isMark =
        type == U_NON_SPACING_MARK || type == U_COMBINING_SPACING_MARK || type == U_ENCLOSING_MARK;
    if (!isMark) rest.append(decomposed.char32At(i));
  }
  return rest;
}

TEST(CharacterTables, AgreeWithUnicodeForEachUnit) {
  const icu::Locale root = icu::Locale::getRoot();
  for (std::uint32_t code = 0; code <= 0xffff; ++code) {
    const auto c = static_cast<unichar>(code);
    const auto type = static_cast<UCharCategory>(u_charType(c));
    const icu::UnicodeString unit(char16_t{c});
    const bool isMark = type >= U_NON_SPACING_MARK && type <= U_COMBINING_SPACING_MARK;

    const unichar upper = type == U_LOWERCASE_LETTER ? entryOf(icu::UnicodeString(unit).toUpper(root), c) : c;
    const unichar lower = type == U_UPPERCASE_LETTER ? entryOf(icu::UnicodeString(unit).toLower(root), c) : c;
    const unichar plain = u_isalpha(c) || isMark ? entryOf(withoutMarks(c), c) : c;
    ASSERT_EQ(toUpper(c), upper) << std::hex << code;
    ASSERT_EQ(toLower(c), lower) << std::hex << code;
    ASSERT_EQ(umlautsToAscii(c), plain) << std::hex << code;
    ASSERT_EQ(umlautsToUpperAscii(c), toUpper(plain)) << std::hex << code;
    ASSERT_EQ(umlautsToLowerAscii(c), toLower(plain)) << std::hex << code;
  }
}

TEST(CharacterTables, FoldKnownLetters) {
  const struct {
    unichar c, upper, lower, plain, ascii, lowerAscii, upperAscii;
  } cases[] = {
      {u'A', u'A', u'a', u'A', u'A', u'a', u'A'},
      {u'z', u'Z', u'z', u'z', u'z', u'z', u'Z'},
      {u'[', u'[', u'[', u'[', u'[', u'[', u'['},
      {u'@', u'@', u'@', u'@', u'@', u'@', u'@'},
      {u'\x7f', u'\x7f', u'\x7f', u'\x7f', u'\x7f', u'\x7f', u'\x7f'},
      {u'é', u'É', u'é', u'e', u'e', u'e', u'E'},
      {u'Ä', u'Ä', u'ä', u'A', u'A', u'a', u'A'},
      {u'ß', u'ß', u'ß', u'ß', u' ', u' ', u' '},
      {u'ł', u'Ł', u'ł', u'ł', u' ', u' ', u' '},
      {u'ø', u'Ø', u'ø', u'ø', u' ', u' ', u' '},
      {u'€', u'€', u'€', u'€', u' ', u' ', u' '},
      {u'ÿ', u'Ÿ', u'ÿ', u'y', u'y', u'y', u'Y'},
      {u'ſ', u'S', u'ſ', u'ſ', u' ', u' ', u' '},
      {u'ı', u'I', u'ı', u'ı', u' ', u' ', u' '},
      // Lower case has two units; the umlauts table has a say before.
      {u'\u0130', u'\u0130', u'\u0130', u'I', u'I', u'i', u'I'},
      {u'\u212b', u'\u212b', u'å', u'A', u'A', u'a', u'A'},
      // Letters in titlecase, numbers and symbols with case.
      {u'ǅ', u'ǅ', u'ǅ', u'ǅ', u' ', u' ', u' '},
      {u'ⅷ', u'ⅷ', u'ⅷ', u'ⅷ', u' ', u' ', u' '},
      {u'ⓐ', u'ⓐ', u'ⓐ', u'ⓐ', u' ', u' ', u' '},
      {u'が', u'が', u'が', u'か', u' ', u' ', u' '},
      {u'\u0301', u'\u0301', u'\u0301', u'\u0301', u' ', u' ', u' '},
      {u'한', u'한', u'한', u'한', u' ', u' ', u' '},
      {0xd800, 0xd800, 0xd800, 0xd800, u' ', u' ', u' '},
      {0xffff, 0xffff, 0xffff, 0xffff, u' ', u' ', u' '},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(static_cast<unsigned>(c.c));
    EXPECT_EQ(toUpper(c.c), c.upper);
    EXPECT_EQ(toLower(c.c), c.lower);
    EXPECT_EQ(umlautsToAscii(c.c), c.plain);
    EXPECT_EQ(toAscii(c.c), c.ascii);
    EXPECT_EQ(toLowerAscii(c.c), c.lowerAscii);
    EXPECT_EQ(toUpperAscii(c.c), c.upperAscii);
  }
  EXPECT_EQ(umlautsToUpperAscii(u'é'), u'E');
  EXPECT_EQ(umlautsToLowerAscii(u'Ł'), u'ł');
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
