// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Unicode/UTF8Conversion.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Foundation/Unicode/UTF8.hpp"

using namespace std::literals;

namespace nimbo {
namespace {

struct Outcome {
  ConversionEnd end;
  std::size_t consumed;
  std::u16string text;
};

/// Whether some bytes could complete these to a valid sequence: tried out.
bool isCut(std::string_view bytes) {
  if (bytes.empty() || bytes.size() > 3) return false;
  constexpr std::string_view kContinuations = "\x80\x90\xa0\xbf";
  for (const char second : kContinuations) {
    std::string whole(bytes);
    whole += second;
    whole.resize(4, '\x80');
    if (utf8SequenceLength(whole) > bytes.size()) return true;
  }
  return false;
}

/// The obvious decoder.
Outcome decodePlainly(std::string_view bytes, std::size_t capacity) {
  Outcome result{ConversionEnd::complete, 0, {}};
  while (result.consumed < bytes.size()) {
    const std::string_view rest = bytes.substr(result.consumed);
    const std::size_t length = utf8SequenceLength(rest);
    if (result.text.size() == capacity) {
      result.end = ConversionEnd::outputFull;
      break;
    }
    if (length == 0) {
      result.end = isCut(rest) ? ConversionEnd::cut : ConversionEnd::malformed;
      break;
    }
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(rest[i]); };
    char32_t character = length == 1 ? byte(0) : byte(0) & (0x7f >> length);
    for (std::size_t i = 1; i < length; ++i) character = character << 6 | (byte(i) & 0x3f);
    if (length == 4 && result.text.size() + 2 > capacity) {
      result.end = ConversionEnd::outputFull;
      break;
    }
    if (length == 4) {
      result.text += static_cast<char16_t>(0xd800 + ((character - 0x10000) >> 10));
      result.text += static_cast<char16_t>(0xdc00 + (character & 0x3ff));
    } else {
      result.text += static_cast<char16_t>(character);
    }
    result.consumed += length;
  }
  return result;
}

/// A copy on the heap of exactly this size, so that the address sanitizer sees every step outside.
template <class Unit>
std::unique_ptr<Unit[]> exactly(std::basic_string_view<Unit> text) {
  auto copy = std::make_unique<Unit[]>(text.size());
  std::copy(text.begin(), text.end(), copy.get());
  return copy;
}

void compareWithTwin(std::string_view bytes, std::size_t capacity) {
  const auto input = exactly(bytes);
  const auto output = std::make_unique<char16_t[]>(capacity);
  const ConversionProgress done = convertUTF8ToUTF16(input.get(), bytes.size(), output.get(), capacity);
  const Outcome expected = decodePlainly(bytes, capacity);
  ASSERT_EQ(done.end, expected.end) << testing::PrintToString(bytes) << ' ' << capacity;
  ASSERT_EQ(done.consumed, expected.consumed) << testing::PrintToString(bytes);
  ASSERT_EQ(std::u16string_view(output.get(), done.written), expected.text) << testing::PrintToString(bytes);
}

const std::string kMixed =
    "Plain text that is longer than a block, \xc3\xbc, \xd0\x96, and \xe6\x98\xa5\xe7\x9c\xa0 with "
    "\xf0\x9f\x98\x80 in it\xef\xbf\xbf\x7f\xf4\x8f\xbf\xbf.";

TEST(UTF8Conversion, EveryCutAndEveryCapacity) {
  for (std::size_t length = 0; length <= kMixed.size(); ++length)
    compareWithTwin(std::string_view(kMixed).substr(0, length), length);
  for (std::size_t start = 0; start <= kMixed.size(); ++start)
    compareWithTwin(std::string_view(kMixed).substr(start), kMixed.size());
  for (std::size_t capacity = 0; capacity <= kMixed.size(); ++capacity) compareWithTwin(kMixed, capacity);
}

TEST(UTF8Conversion, EverySequenceOfTwoBytesAndTheEdgesOfLongerOnes) {
  // Behind ASCII of several lengths, and before some, so that every loop meets them.
  const std::string_view around = "0123456789abcdefghij";
  const auto compare = [&](const std::string &sequence, std::size_t before) {
    const std::string text = std::string(around.substr(0, before)) + sequence;
    compareWithTwin(text, text.size());
    compareWithTwin(text + std::string(around), 60);
  };
  for (int lead = 0x80; lead <= 0xff; ++lead)
    for (int second = 0; second <= 0xff; ++second)
      compare({static_cast<char>(lead), static_cast<char>(second)}, static_cast<std::size_t>(second % 19));
  constexpr std::string_view kEdges = "\x00\x7f\x80\x8f\x90\x9f\xa0\xbf\xc0\xff"sv;
  for (int lead = 0xe0; lead <= 0xf8; ++lead)
    for (const char second : kEdges)
      for (const char third : kEdges) {
        compare({static_cast<char>(lead), second, third}, 3);
        for (const char fourth : kEdges) compare({static_cast<char>(lead), second, third, fourth}, 17);
      }
}

TEST(UTF8Conversion, RandomMixturesMatchTheTwin) {
  std::mt19937 random(7);
  constexpr std::string_view kPieces[] = {"a",
                                          "0123456789abcdefghijklmn",
                                          "\xc3\xa4",
                                          "\xe6\x98\xa5",
                                          "\xf0\x9f\x98\x80",
                                          "\xff",
                                          "\xed\xa0\x80",
                                          "\xe6\x98",
                                          "\xc0\xaf"};
  for (int round = 0; round < 2000; ++round) {
    std::string text;
    while (text.size() < random() % 120) text += kPieces[random() % (random() % 8 ? 5 : std::size(kPieces))];
    compareWithTwin(text, random() % 4 ? text.size() : random() % (text.size() + 1));
  }
}

TEST(UTF8Conversion, BackFromUTF16) {
  const Outcome whole = decodePlainly(kMixed, kMixed.size());
  const auto units = exactly(std::u16string_view(whole.text));
  for (std::size_t capacity = 0; capacity <= kMixed.size(); ++capacity) {
    const auto output = std::make_unique<char[]>(capacity);
    const auto done = convertUTF16ToUTF8(units.get(), whole.text.size(), output.get(), capacity);
    ASSERT_EQ(done.end, capacity < kMixed.size() ? ConversionEnd::outputFull : ConversionEnd::complete);
    ASSERT_TRUE(kMixed.starts_with({output.get(), done.written})) << capacity;
    ASSERT_EQ(decodePlainly(kMixed.substr(0, done.written), kMixed.size()).text.size(), done.consumed);
    ASSERT_LT(capacity - done.written, 4u);
  }
  struct Case {
    std::u16string units;
    ConversionEnd end;
    std::size_t consumed;
  };
  const Case cases[] = {{u"ab\xd83d", ConversionEnd::cut, 2},
                        {u"ab\xd83dx", ConversionEnd::malformed, 2},
                        {u"\xdc00"
                         u"a",
                         ConversionEnd::malformed, 0},
                        {u"0123456789abcdefgh\xdc00", ConversionEnd::malformed, 18}};
  for (const Case &each : cases) {
    char output[64];
    const auto done = convertUTF16ToUTF8(each.units.data(), each.units.size(), output, sizeof output);
    EXPECT_EQ(done.end, each.end);
    EXPECT_EQ(done.consumed, each.consumed);
    EXPECT_EQ(done.written, each.consumed);
  }
}

}  // namespace
}  // namespace nimbo
