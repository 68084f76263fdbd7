// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/TextImage.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace nimbo {
namespace {

TEST(TextImage, DrawsALine) {
  NSError error;
  const CGImage small = imageWithText(u"ace"_ns, 14, 500, {1, 0, 0, 1}, &error);
  ASSERT_TRUE(small) << error.localizedFailureReason.UTF8String();
  int greatest = 0;
  for (std::size_t i = 0; i < small.height() * small.bytesPerRow(); i += 4) {
    greatest = std::max<int>(greatest, small.pixels()[i]);
    EXPECT_EQ(small.pixels()[i + 1], 0);
  }
  EXPECT_GT(greatest, 200);
  // High and low letters make no difference, and characters of markup are but characters.
  EXPECT_EQ(imageWithText(u"Agf"_ns, 14, 500, {}).height(), small.height());
  EXPECT_GT(imageWithText(u"<b>ace</b>&amp;"_ns, 14, 500, {}).width(), small.width() * 3);
}

TEST(TextImage, ShortensInTheMiddle) {
  const NSString text = u"A name that is much too long for the place where it has to stand.jpeg"_ns;
  const CGImage whole = imageWithText(text, 14, 5000, {});
  const CGImage cut = imageWithText(text, 14, 200, {});
  EXPECT_GT(whole.width(), 400u);
  EXPECT_LE(cut.width(), 200u);
  EXPECT_GT(cut.width(), 150u);
}

TEST(TextImage, HasAsMuchOfBothEndsAsFits) {
  const std::u16string text = u"abcdefghijklmnopqrst";
  const auto drawn = [](const std::u16string &units, std::uint32_t width) {
    return imageWithText(NSString::stringWithCharacters(units), 14, width, {});
  };
  const auto shortened = [&](std::size_t count) {
    return text.substr(0, (count + 1) / 2) + u"\u2026" + text.substr(text.size() - count / 2);
  };
  const std::uint32_t whole = drawn(text, 5000).width();
  for (const std::uint32_t width : {whole / 4, whole / 2, whole - 1}) {
    std::size_t count = text.size() - 1;
    while (count > 1 && drawn(shortened(count), 5000).width() > width) --count;
    const CGImage expected = drawn(shortened(count), 5000), cut = drawn(text, width);
    ASSERT_EQ(cut.width(), expected.width()) << count;
    ASSERT_EQ(cut.height(), expected.height()) << count;
    EXPECT_TRUE(std::equal(cut.pixels(), cut.pixels() + cut.bytesPerRow() * cut.height(), expected.pixels()))
        << count;
  }
  EXPECT_EQ(drawn(text, whole).width(), whole);
  EXPECT_FALSE(drawn(u"WWWW", drawn(u"\u2026", 500).width())) << "no more than what stands for the rest";
}

TEST(TextImage, HasBlanksForWhatIsNoText) {
  const auto width = [](const NSString &text) { return imageWithText(text, 14, 500, {}).width(); };
  EXPECT_GT(width(u"e"_ns), 0u);
  EXPECT_GT(width(u"a b"_ns), width(u"ab"_ns));
  for (const NSString &text : {u"a\u0001b"_ns, u"a\u007fb"_ns, u"a\tb"_ns, u"a\u001fb"_ns})
    EXPECT_EQ(width(text), width(u"a b"_ns));
}

TEST(TextImage, SaysWhenThereIsNothing) {
  const std::pair<NSString, double> cases[] = {{NSString(), 14}, {u""_ns, 14},   {u" \t"_ns, 14},
                                               {u"a"_ns, 0},     {u"a"_ns, 1e9}, {u"a"_ns, -1}};
  for (const auto &[text, size] : cases) {
    NSError error;
    EXPECT_FALSE(imageWithText(text, size, 200, {}, &error)) << text.UTF8String() << size;
    EXPECT_TRUE(error);
  }
  NSError error;
  EXPECT_FALSE(imageWithText(u"abc"_ns, 14, 2, {}, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::incomplete);
}

}  // namespace
}  // namespace nimbo
