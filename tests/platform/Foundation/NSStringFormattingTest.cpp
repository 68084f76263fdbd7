// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSStringFormatting.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include "platform/Foundation/NSException.hpp"
#include "platform/Foundation/NSLog.hpp"

namespace nimbo {
namespace {

TEST(NSStringFormatting, WritesArgumentsOfEveryKind) {
  const NSString name = u"na%@me"_ns;
  EXPECT_EQ(stringWithFormat(u"%@-%d.%@", name, 7u, u"txt"), u"na%@me-7.txt"_ns);
  EXPECT_EQ(stringWithFormat(u"%@%@%@", std::u16string(u"\xd83d"), "\xc3\xa4\xff", std::string("z")),
            NSString::stringWithCharacters(u"\xd83d\u00e4\ufffdz"));
  EXPECT_EQ(stringWithFormat(u"%@|%@|%@", NSString(), NSString::string(), u""), u"(null)||"_ns);
  EXPECT_EQ(stringWithFormat(u"%d %d %@", std::numeric_limits<std::int64_t>::min(),
                             std::numeric_limits<std::uint64_t>::max(), std::int8_t{-1}),
            u"-9223372036854775808 18446744073709551615 -1"_ns);
  EXPECT_EQ(stringWithFormat(u"%@ %@ %@ %@", 0.1, -1e300, 2.0, -std::nan("")), u"0.1 -1e+300 2 nan"_ns);
  EXPECT_EQ(stringWithFormat(u"100 %%%%"), u"100 %%"_ns);
  EXPECT_TRUE(stringWithFormat(u"").identicalTo(NSString::string()));
}

TEST(NSStringFormatting, AppendsToWhatIsThere) {
  NSMutableString list;
  for (int i = 1; i <= 3; ++i) appendFormat(list, u"%d%@", i, i < 3 ? u", " : u".");
  EXPECT_EQ(list.view(), u"1, 2, 3.");
}

TEST(NSStringFormatting, TakesTranslationsAsTheyAre) {
  EXPECT_EQ(stringWithFormat(u"%@ of %d%%, %@"_ns, u"half", 50), u"half of 50%, "_ns);
  EXPECT_EQ(stringWithFormat(u"%d; %@; %i %"_ns, u"text", 2), u"%d; text; %i %"_ns);
  EXPECT_EQ(stringWithFormat(u"%%@"_ns, u"unasked"), u"%@"_ns);
  EXPECT_EQ(stringWithFormat(NSString(), u"unasked"), u""_ns);
}

template <class Argument>
constexpr bool isFormatted = requires(const Argument &argument) {
  FormatArgument(argument);
};
static_assert(isFormatted<NSString> && isFormatted<char[3]> && isFormatted<char16_t[3]> && isFormatted<short>);
static_assert(!isFormatted<bool> && !isFormatted<char> && !isFormatted<char16_t> && !isFormatted<void *>);

TEST(NSLog, WritesFormatsAndExceptions) {
  testing::internal::CaptureStderr();
  NSLog(u"%@ is no date", u"then");
  NSLog("100%@");
  logException("read:", "Reader", NSException(u"Damaged"_ns, u"It is %@"_ns));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "then is no date\n100%@\nread: (Reader):\nDamaged\nIt is %@\n");
}

}  // namespace
}  // namespace nimbo
