// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions.hpp"
#include "platform/Foundation/NSStringNormalization.hpp"
#include "tests/support/VectorTargets.hpp"

namespace nimbo {
namespace {

TEST(FixAndNormalizeString, BlanksStrayUnitsAndComposes) {
  const struct {
    NSString text, expected;
  } cases[] = {
      {u"a\U0001d538b"_ns, u"a  b"_ns},
      {NSString::stringWithCharacters(u"\xdfff\xd800"), u"  "_ns},
      {u"\ud7ff\ue000\uf3ff\uf400\uf8ff\uf900"_ns, u"\ud7ff\ue000\uf3ff  \u8c48"_ns},
      {u"e\uf412\u0301"_ns, u"e \u0301"_ns},
  };
  for (const auto &c : cases) EXPECT_EQ(fixedAndNormalizedString(c.text), c.expected) << c.text.UTF8String();
  EXPECT_FALSE(fixedAndNormalizedString(NSString()));
}

TEST(FixAndNormalizeString, KeepsPairsWhenAsked) {
  // Also the pair across the end of a stretch of units that are looked at one by one.
  for (std::size_t before = 0; before < 70; ++before) {
    const std::u16string x(before, u'x'), strays(40, u'\xf412');
    for (const std::u16string &start : {x, strays + x}) {
      NSMutableString fixed(NSString::stringWithCharacters(start + u"\U0001d538\xdc00\xd800\xd835"));
      fixAndNormalizeStringKeepingPairs(fixed);
      EXPECT_EQ(fixed.view(), std::u16string(start.size() - before, u' ') + x + u"\U0001d538   ") << before;
    }
  }
}

TEST(FixAndNormalizeString, BlanksEveryStrayUnitOfLongText) {
  forEachVectorTarget([] {
    for (std::uint32_t c = 0xd700; c <= 0xffff; ++c) {
      const auto unit = static_cast<unichar>(c);
      const bool isStray = (c >= 0xd800 && c <= 0xdfff) || (c >= 0xf400 && c <= 0xf8ff);
      std::u16string text(200, u'x');
      text[c % text.size()] = unit;
      const NSString fixed = fixedAndNormalizedString(NSString::stringWithCharacters(text));
      if (isStray) text[c % text.size()] = u' ';
      ASSERT_EQ(fixed, precomposedStringWithCanonicalMapping(NSString::stringWithCharacters(text))) << c;
    }
  });
}

}  // namespace
}  // namespace nimbo
