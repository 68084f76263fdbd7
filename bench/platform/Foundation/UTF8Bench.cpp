// SPDX-License-Identifier: Apache-2.0
//
// Strings out of UTF-8 and back, short ones first, against ICU's conversions, which make a string of the
// standard library each. What a copy of the units takes shows what making a string is of that.
//
//   bench-utf8 [ROUNDS]

#include <unicode/ustring.h>

#include <random>
#include <string>
#include <vector>

#include "bench/Compare.hpp"
#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/Unicode/UTF8.hpp"

namespace {

using namespace nimbo;

/// The units that the strings of one round have together, about.
constexpr std::size_t kTextUnits = 200'000;
constexpr std::size_t kLengths[] = {8, 200, 100'000};

/// Words of random letters, so that no branch can be learnt by heart.
struct Sample {
  const char *name;
  std::u16string_view letters;
  std::u16string_view separators;
  unsigned longestWord = 11;
};

constexpr std::u16string_view kLatin = u"abcdefghijklmnopqrstuvwxyzetaoinshrdluetaoinshrdlu";
constexpr Sample kSamples[] = {
    {"ASCII", kLatin, u"     ,."},
    {"English", kLatin, u"          ,.\u2013\u2019"},
    {"German", u"abcdefghijklmnopqrstuvwxyzetaoinshrdlu\u00e4\u00f6\u00fc", u"     ,."},
    {"Russian",
     u"\u0430\u0431\u0432\u0433\u0434\u0435\u0436\u0437\u0438\u0439\u043a\u043b\u043c\u043d\u043e\u043f"
     u"\u0440\u0441\u0442\u0443",
     u"     ,."},
    {"Chinese", u"\u6625\u7720\u4e0d\u89c9\u6653\u5904\u95fb\u557c\u9e1f\u591c\u6765\u98ce\u96e8\u58f0",
     u"\uff0c\uff0c\u3002", 20},
    {"emoji", u"\U0001f600\U0001f340\U0001f431\U0001f31e", u"\U0001f600"},
    {"mixed", u"<p class=\"text\">a\u00e4\u00f6\u0416\u0443\u043a\u20ac\u6625\u7720\U0001f600</p>\n",
     u"   \u2013"},
};

/// The characters, in one or two units each.
std::vector<std::u16string_view> charactersOf(std::u16string_view units) {
  std::vector<std::u16string_view> characters;
  for (std::size_t i = 0; i < units.size(); i += characters.back().size())
    characters.push_back(units.substr(i, isHighSurrogate(units[i]) ? 2 : 1));
  return characters;
}

std::vector<std::u16string> stringsOf(const Sample &sample, std::size_t length) {
  std::mt19937 random(5);
  const auto letters = charactersOf(sample.letters), separators = charactersOf(sample.separators);
  std::u16string text;
  while (text.size() < kTextUnits + length) {
    for (unsigned left = 1 + random() % sample.longestWord; left > 0; --left)
      text += letters[random() % letters.size()];
    text += separators[random() % separators.size()];
  }
  std::vector<std::u16string> strings;
  for (std::size_t at = 0; at < kTextUnits; at += strings.back().size())
    strings.push_back(text.substr(at, isHighSurrogate(text[at + length - 1]) ? length - 1 : length));
  return strings;
}

std::u16string decodedByICU(std::string_view bytes) {
  std::u16string units(bytes.size(), u'\0');
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8(units.data(), static_cast<std::int32_t>(units.size()), &length, bytes.data(),
                static_cast<std::int32_t>(bytes.size()), &status);
  units.resize(U_SUCCESS(status) ? static_cast<std::size_t>(length) : 0);
  return units;
}

std::string encodedByICU(std::u16string_view units) {
  std::string bytes(3 * units.size(), '\0');
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strToUTF8(bytes.data(), static_cast<std::int32_t>(bytes.size()), &length, units.data(),
              static_cast<std::int32_t>(units.size()), &status);
  bytes.resize(U_SUCCESS(status) ? static_cast<std::size_t>(length) : 0);
  return bytes;
}

/// The lengths of what `convert` makes of each text.
template <class Text, class Convert>
std::uint64_t sumOfLengths(const std::vector<Text> &texts, Convert convert) {
  std::uint64_t sum = 0;
  for (const Text &text : texts) sum += convert(text);
  return sum;
}

/// False when the answers differ.
bool compareBoth(const Sample &sample, std::size_t length, int rounds) {
  const std::vector<std::u16string> strings = stringsOf(sample, length);
  std::vector<std::string> encoded;
  std::vector<NSString> ours;
  std::string allBytes;
  std::u16string allUnits;
  for (const std::u16string &units : strings) {
    encoded.push_back(encodedByICU(units));
    ours.push_back(NSString::stringWithUTF8String(encoded.back()));
    if (ours.back().view() != units || ours.back().UTF8String() != encoded.back()) return false;
    allBytes += encoded.back();
    allUnits += units;
  }
  const std::string title = std::string(sample.name) + ", " + std::to_string(length) + " units";
  bench::compare(
      (title + ", decoded").c_str(),
      {{"u_strFromUTF8",
        [&] {
          return sumOfLengths(encoded, [](const std::string &bytes) { return decodedByICU(bytes).size(); });
        },
        allUnits.size(), bench::bytesOf(std::string_view(allBytes))},
       {"stringWithUTF8String",
        [&] {
          return sumOfLengths(
              encoded, [](const std::string &bytes) { return NSString::stringWithUTF8String(bytes).length(); });
        },
        allUnits.size(), bench::bytesOf(std::string_view(allBytes))}},
      rounds);
  bench::compare(
      (title + ", encoded").c_str(),
      {{"u_strToUTF8",
        [&] {
          return sumOfLengths(strings, [](const std::u16string &units) { return encodedByICU(units).size(); });
        },
        allBytes.size(), bench::bytesOf(std::u16string_view(allUnits))},
       {"UTF8String",
        [&] { return sumOfLengths(ours, [](const NSString &string) { return string.UTF8String().size(); }); },
        allBytes.size(), bench::bytesOf(std::u16string_view(allUnits))}},
      rounds);
  return true;
}

}  // namespace

int main(int argc, char **argv) {
  const int rounds = argc > 1 ? std::atoi(argv[1]) : 40;
  if (rounds < 1) return 1;
  for (const std::size_t length : kLengths)
    for (const Sample &sample : kSamples)
      if (!compareBoth(sample, length, rounds)) return std::fprintf(stderr, "the answers differ\n"), 1;
  return 0;
}
