// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Unicode/UTF8Conversion.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/Foundation/Unicode/UTF16Text.hpp"
#include "platform/Foundation/Unicode/UTF8.hpp"
#include "tests/support/ExactBuffer.hpp"
#include "tests/support/VectorTargets.hpp"

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

void compareWithTwin(std::string_view bytes, std::size_t capacity) {
  const ExactBuffer<char> input(bytes);
  const auto output = std::make_unique<char16_t[]>(capacity);
  const ConversionProgress done = convertUTF8ToUTF16(input.data(), bytes.size(), output.get(), capacity);
  const Outcome expected = decodePlainly(bytes, capacity);
  ASSERT_EQ(done.end, expected.end) << testing::PrintToString(bytes) << ' ' << capacity;
  ASSERT_EQ(done.consumed, expected.consumed) << testing::PrintToString(bytes);
  ASSERT_EQ(std::u16string_view(output.get(), done.written), expected.text) << testing::PrintToString(bytes);
}

/// The obvious encoder.
ConversionProgress encodePlainly(std::u16string_view units, std::size_t capacity, std::string &bytes) {
  ConversionProgress result{ConversionEnd::complete, 0, 0};
  while (result.consumed < units.size()) {
    const std::u16string_view rest = units.substr(result.consumed);
    char32_t character = rest[0];
    if (isHighSurrogate(rest[0]) && rest.size() > 1 && isLowSurrogate(rest[1])) {
      character = 0x10000 + (rest[0] - 0xd800u) * 0x400 + (rest[1] - 0xdc00u);
    } else if (isSurrogate(rest[0])) {
      result.end = isHighSurrogate(rest[0]) && rest.size() == 1 ? ConversionEnd::cut : ConversionEnd::malformed;
      break;
    }
    char sequence[4];
    const std::size_t size = putUTF8(character, sequence);
    if (bytes.size() + size > capacity) {
      result.end = ConversionEnd::outputFull;
      break;
    }
    bytes.append(sequence, size);
    result.consumed += character > 0xffff ? 2 : 1;
  }
  result.written = bytes.size();
  return result;
}

void compareEncodingWithTwin(std::u16string_view units, std::size_t capacity) {
  const ExactBuffer<char16_t> input(units);
  const auto output = std::make_unique<char[]>(capacity);
  const ConversionProgress done = convertUTF16ToUTF8(input.data(), units.size(), output.get(), capacity);
  std::string expectedBytes;
  const ConversionProgress expected = encodePlainly(units, capacity, expectedBytes);
  ASSERT_EQ(done.end, expected.end) << testing::PrintToString(units) << ' ' << capacity;
  ASSERT_EQ(done.consumed, expected.consumed) << testing::PrintToString(units) << ' ' << capacity;
  ASSERT_EQ(std::string_view(output.get(), done.written), expectedBytes) << testing::PrintToString(units);
}

std::string inUTF8(std::u16string_view units) {
  std::string bytes;
  encodePlainly(units, 4 * units.size(), bytes);
  return bytes;
}

/// Runs of each kind that the loops take together, and what comes between them.
const std::u16string kMixed =
    u"Plain text that is longer than two blocks, \u00fc, \u0416, and \u6625\u7720 with \U0001f600 in "
    u"it\uffff\x7f. "
    u"\u0421\u044a\u0435\u0448\u044c \u0436\u0435 \u0435\u0449\u0451 \u044d\u0442\u0438\u0445, "
    u"\u043c\u044f\u0433"
    u"\u043a\u0438\u0445 \u0444\u0440\u0430\u043d\u0446\u0443\u0437\u0441\u043a\u0438\u0445 "
    u"\u6625\u7720\u4e0d\u89c9\u6653\uff0c\u5904\u5904\u95fb\u557c\u9e1f\u3002\u591ca\u6765\u98ce\u96e8\u58f0"
    u"\u00e4"
    u"\u82b1\u843d\u77e5\u591a\u5c11\ud7ff\ue000\u0800\u07ff\U0001f340\U0001f431\U0010ffff\U00010000\U0001f31e"
    u"\u0080";

TEST(UTF8Conversion, EveryCutAndEveryCapacity) {
  const std::string bytes = inUTF8(kMixed);
  forEachVectorTarget([&] {
    for (std::size_t i = 0; i <= bytes.size(); ++i) {
      compareWithTwin(std::string_view(bytes).substr(0, i), i);
      compareWithTwin(std::string_view(bytes).substr(i), bytes.size());
      compareWithTwin(bytes, i);
      compareEncodingWithTwin(kMixed, i);
    }
    for (std::size_t i = 0; i <= kMixed.size(); ++i) {
      compareEncodingWithTwin(std::u16string_view(kMixed).substr(0, i), 3 * i);
      compareEncodingWithTwin(std::u16string_view(kMixed).substr(i), 4 * kMixed.size());
    }
  });
}

TEST(UTF8Conversion, EverySequenceOfTwoBytesAndTheEdgesOfLongerOnes) {
  // Behind ASCII of several lengths, before some, and among other letters, so that every loop meets them.
  const std::string_view around = "0123456789abcdefghij";
  const std::string foreign = inUTF8(kMixed.substr(kMixed.find(u'\u0421')));
  const auto compare = [&](const std::string &sequence, std::size_t before) {
    const std::string text = std::string(around.substr(0, before)) + sequence;
    compareWithTwin(text, text.size());
    compareWithTwin(text + std::string(around), 60);
    for (std::size_t start = 0; start < 26; start += 13) {
      const std::string dense = foreign.substr(start, 30 - before) + sequence + foreign;
      compareWithTwin(dense, dense.size());
    }
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

TEST(UTF8Conversion, RandomMixturesMatchTheTwins) {
  std::mt19937 random(7);
  constexpr std::string_view kPieces[] = {"a",
                                          "0123456789abcdefghijklmn",
                                          "\xc3\xa4",
                                          "\xe6\x98\xa5",
                                          "\xd0\xb1\xd0\xb2",
                                          "\xf0\x9f\x98\x80",
                                          "\xff",
                                          "\xed\xa0\x80",
                                          "\xe6\x98",
                                          "\xc0\xaf"};
  constexpr std::u16string_view kUnits =
      u"a0\u007f\u0080\u00e4\u07ff\u0800\u6625\ud7ff\ue000\uffff\xd83d\xde00";
  forEachVectorTarget([&] {
    for (int round = 0; round < 1000; ++round) {
      // A few kinds at a time, so that some texts are nothing but what the blocks take.
      const std::size_t first = random() % 6, kinds = 1 + random() % (random() % 8 ? 6 - first : 10 - first);
      std::string bytes;
      while (bytes.size() < random() % 300) bytes += kPieces[first + random() % kinds];
      compareWithTwin(bytes, random() % 4 ? bytes.size() : random() % (bytes.size() + 1));
      std::u16string units;
      const std::size_t firstUnit = random() % kUnits.size(),
                        unitKinds = 1 + random() % (kUnits.size() - firstUnit);
      while (units.size() < random() % 200)
        units.append(1 + random() % 12, kUnits[firstUnit + random() % unitKinds]);
      compareEncodingWithTwin(units, random() % 4 ? 3 * units.size() : random() % (3 * units.size() + 1));
    }
  });
}

struct WholeCase {
  std::string_view bytes;
  std::optional<std::u16string_view> refused, replaced, escaped;
};

TEST(UTF8Conversion, InvalidBytesAreRefusedReplacedOrEscaped) {
  const WholeCase cases[] = {
      {"", u"", u"", u""},
      {"a\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80", u"a\u00e4\u20ac\U0001f600", u"a\u00e4\u20ac\U0001f600",
       u"a\u00e4\u20ac\U0001f600"},
      {"\xff", {}, u"\ufffd", u"\xdcff"},
      {"a\xc0\x80", {}, u"a\ufffd\ufffd", u"a\xdcc0\xdc80"},
      {"\xed\xa0\x80", {}, u"\ufffd\ufffd\ufffd", u"\xdced\xdca0\xdc80"},
      // What could go on is one character that is missing, however long it is.
      {"x\xe2\x82", {}, u"x\ufffd", u"x\xdce2\xdc82"},
      {"x\xf0\x9f\x98y", {}, u"x\ufffdy", u"x\xdcf0\xdc9f\xdc98y"},
      {"\xf0\x9f\xe2\x82\xac\xf4\x90", {}, u"\ufffd\u20ac\ufffd\ufffd", u"\xdcf0\xdc9f\u20ac\xdcf4\xdc90"},
      {"\xf5\x80", {}, u"\ufffd\ufffd", u"\xdcf5\xdc80"},
  };
  for (const WholeCase &each : cases) {
    SCOPED_TRACE(testing::PrintToString(each.bytes));
    const auto decoded = [&](InvalidInput invalid) -> std::optional<std::u16string> {
      std::u16string units(each.bytes.size(), u'?');
      const auto length = decodeUTF8(each.bytes, units.data(), invalid);
      return length ? std::optional(units.substr(0, *length)) : std::nullopt;
    };
    EXPECT_EQ(decoded(InvalidInput::refused), each.refused);
    EXPECT_EQ(decoded(InvalidInput::replaced), each.replaced);
    EXPECT_EQ(decoded(InvalidInput::escaped), each.escaped);
    EXPECT_EQ(encodeUTF8(*each.escaped, InvalidInput::escaped), each.bytes);
  }
}

TEST(UTF8Conversion, LoneSurrogatesAreRefusedReplacedOrEscaped) {
  // On both sides of the length from which the bytes are counted first.
  for (const std::size_t length : {0, 7, 200, 255, 256, 400, 5000}) {
    for (const bool isMixed : {false, true}) {
      std::u16string front;
      while (front.size() < length) front += isMixed ? kMixed : u"ASCII ";
      const std::string bytes = inUTF8(front);
      EXPECT_EQ(encodeUTF8(front, InvalidInput::refused), bytes);
      for (const char16_t lone : {u'\xd83d', u'\xdc7f', u'\xdc80', u'\xdcff', u'\xdd00'}) {
        const std::u16string text = front + lone + u"z" + front;
        EXPECT_EQ(encodeUTF8(text, InvalidInput::refused), std::nullopt);
        EXPECT_EQ(encodeUTF8(text, InvalidInput::replaced), bytes + "\xef\xbf\xbdz" + bytes);
        const auto escaped = encodeUTF8(text, InvalidInput::escaped);
        if (lone == u'\xdc80' || lone == u'\xdcff')
          EXPECT_EQ(escaped, bytes + static_cast<char>(lone - 0xdc00) + 'z' + bytes);
        else
          EXPECT_EQ(escaped, std::nullopt);
      }
    }
  }
}

TEST(UTF16Text, GoesByItsMarkOrItsFirstCharacter) {
  using enum std::endian;
  const std::pair<std::string_view, std::optional<std::endian>> orders[] = {
      {"", {}},          {"a", {}},         {"\0\0"sv, {}},       {"ab", {}},       {"\0a"sv, big},
      {"a\0"sv, little}, {"\xfe\xff", big}, {"\xff\xfe", little}, {"\xfe\xfe", {}},
  };
  for (const auto &[bytes, order] : orders)
    EXPECT_EQ(orderOfUTF16(bytes), order) << testing::PrintToString(bytes);
  const std::tuple<std::string_view, std::endian, std::u16string_view> texts[] = {
      {"", big, u""},
      {"a", little, u""},
      {"\0a"sv, big, u"a"},
      {"\0ab"sv, big, u"a"},
      {"a\0"sv, little, u"a"},
      {"\xff\xfe", little, u""},
      {"\xff\xfe\x61\0"sv, little, u"a"},
      {"\xff\xfe\x61\0"sv, big, u"a"},
      {"\xfe\xff\0a\xfe\xff"sv, big, u"a\ufeff"},
      {"\xfe\xff\0a"sv, little, u"a"},
  };
  for (const auto &[bytes, order, text] : texts)
    EXPECT_EQ(unitsOfUTF16(bytes, order), text) << testing::PrintToString(bytes);
}

}  // namespace
}  // namespace nimbo
