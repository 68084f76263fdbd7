// SPDX-License-Identifier: Apache-2.0
//
// The conversions of character references against a copy of the same bytes, and against the decoder that the
// tests compare with. Each must give the right text before its time counts. Peers run in turn, and the best
// round of each is compared. Speeds are those of the input.
//
//   bench-entity [MEGABYTES [ROUNDS]]

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "Classes/Entities/EntityConversion.hpp"
#include "Classes/Pages/NSString+HtmlExtensions.hpp"
#include "bench/Compare.hpp"
#include "tests/Classes/Entities/PlainEntityDecoder.hpp"

namespace {

using namespace nimbo;
using bench::Contestant;

constexpr double kUnitsPerMegabyte = 1e6 / sizeof(unichar);

std::u16string repeated(std::u16string_view piece, std::size_t length) {
  std::u16string text;
  while (text.size() < length) text += piece;
  text.resize(length);
  return text;
}

/// A way to decode: its name and its flags.
struct Decoding {
  const char *name;
  bool standard, onlyNumeric, nonUmlauted;
};

constexpr Decoding kDecodings[] = {
    {"all", true, false, false},
    {"markup stays", false, false, false},
    {"only numeric", true, true, false},
    {"non-umlauted", true, false, true},
};

void require(bool good, const char *what) {
  if (good) return;
  std::fprintf(stderr, "%s: wrong text\n", what);
  std::exit(1);
}

void compareDecodings(const char *title, const std::u16string &text, int rounds) {
  std::u16string output(text.size(), u'\0');
  const auto length = static_cast<std::uint32_t>(text.size());
  const auto bytes = bench::bytesOf(std::u16string_view(text));
  std::vector<Contestant> contestants = {{"memcpy",
                                          [&] {
                                            std::memcpy(output.data(), text.data(), length * sizeof(unichar));
                                            return output.size();
                                          },
                                          length, bytes}};
  for (const Decoding &one : kDecodings) {
    const auto run = [&] {
      return convertEntities2Characters(text.data(), output.data(), 0, length, one.standard, one.onlyNumeric,
                                        one.nonUmlauted);
    };
    const std::u16string expected = plainlyDecoded(text, one.standard, one.onlyNumeric, one.nonUmlauted);
    require(std::u16string_view(output.data(), run()) == expected, one.name);
    contestants.push_back({one.name, run, expected.size(), bytes});
  }
  contestants.push_back({"the plain decoder", [&] { return plainlyDecoded(text, true, false, false).size(); },
                         contestants[1].expected, bytes});
  bench::compare(title, contestants, rounds);
}

void compareEncoders(const char *title, const std::u16string &text, int rounds) {
  const NSString string = NSString::stringWithCharacters(text);
  const auto bytes = bench::bytesOf(string.view());
  std::vector<Contestant> contestants = {
      {"a copy", [&] { return NSString::stringWithCharacters(text).length(); }, string.length(), bytes}};
  const struct {
    const char *name;
    NSString (*encode)(const NSString &);
  } encoders[] = {{"markup", stringByConvertingCharactersToStandardEntities},
                  {"high characters", stringByConvertingHighCharactersToEntities},
                  {"named", stringByConvertingCharactersToEntities}};
  for (const auto &one : encoders) {
    const NSString encoded = one.encode(string);
    require(plainlyDecoded(encoded.view(), true, false, false) == text, one.name);
    contestants.push_back(
        {one.name, [&string, one] { return one.encode(string).length(); }, encoded.length(), bytes});
  }
  bench::compare(title, contestants, rounds);
}

}  // namespace

int main(int argc, char **argv) {
  const double megabytes = argc > 1 ? std::atof(argv[1]) : 8;
  const int rounds = argc > 2 ? std::atoi(argv[2]) : 15;
  const auto length = static_cast<std::size_t>(megabytes * kUnitsPerMegabyte);
  if (length < 64 || rounds < 1) return std::fprintf(stderr, "too little to measure\n"), 1;

  const std::u16string prose = u"It was the best of times, it was the worst of times, we had everything. ";
  const std::u16string french = u"C'\u00e9tait le meilleur et le pire des temps, l'\u00e2ge de la sagesse. ";
  compareDecodings("decode plain text", repeated(prose, length), rounds);
  compareDecodings("decode plain text with accents", repeated(french, length), rounds);
  compareDecodings("decode a reference in a hundred units", repeated(prose + u"&amp; &eacute; ", length),
                   rounds);
  compareDecodings("decode names only", repeated(u"&eacute;&uuml;&nbsp;&Dagger;&pi;&frac12;", length), rounds);
  compareDecodings("decode numbers only", repeated(u"&#233;&#x20AC;&#8212;", length), rounds);
  compareDecodings("decode markup only", repeated(u"&lt;&gt;&amp;&quot;", length), rounds);
  compareDecodings("decode nothing but \"&\"", repeated(u"&", length), rounds);
  compareDecodings("decode unknown names", repeated(u"&abcdefg&abcdef;", length), rounds);

  compareEncoders("encode plain text", repeated(prose, length), rounds);
  compareEncoders("encode plain text with accents and markup", repeated(french + u"<p> ", length), rounds);
  compareEncoders("encode nothing but accents", repeated(u"\u00e9\u00fc\u00e0\u2014", length), rounds);
  compareEncoders("encode ideographs", repeated(u"\u4e2d\u6587\u5b57", length), rounds);
  compareEncoders("encode nothing but markup", repeated(u"<&\">", length), rounds);
  return 0;
}
