// SPDX-License-Identifier: Apache-2.0
//
// The searches of text against the plain ways to do the same, and the scans for single units against memchr by
// the byte.
//
//   bench-character-search [MEGABYTES [ROUNDS]]

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Characters/FastSearches.hpp"
#include "Classes/Characters/UnicharSearches.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Finding.hpp"
#include "bench/Compare.hpp"
#include "platform/Foundation/NSStringSearch.hpp"

namespace {

using namespace nimbo;
using bench::bytesOf;
using bench::compare;
constexpr double kUnitsPerMegabyte = 1e6 / sizeof(unichar);

std::size_t plainCaseInsensitiveSearch(std::u16string_view h, std::u16string_view n) {
  const unichar *const table = initUpperCharsTable();
  for (std::size_t p = 0; p + n.size() <= h.size(); ++p) {
    std::size_t i = 0;
    while (i < n.size() && table[h[p + i]] == table[n[i]]) ++i;
    if (i == n.size()) return p;
  }
  return h.size();
}

}  // namespace

int main(int argc, char **argv) {
  const double megabytes = argc > 1 ? std::atof(argv[1]) : 8;
  const int rounds = argc > 2 ? std::atoi(argv[2]) : 30;
  const auto length = static_cast<std::uint32_t>(megabytes * kUnitsPerMegabyte);
  if (length < 64 || rounds < 1) return std::fprintf(stderr, "too little to measure\n"), 1;

  // Prose with a needle at its very end.
  const std::u16string_view prose =
      u"It was the best of times, it was the worst of times, we had everything before us. ";
  const std::u16string_view needle = u"Quiverleaf", otherCase = u"qUIVERLEAF";
  std::u16string text;
  while (text.size() < length) text += prose;
  text.resize(length - needle.size());
  const auto place = static_cast<std::uint32_t>(text.size());
  text += needle;
  // A needle whose ends are as common as letters are.
  const std::u16string_view common = u"this Quiverleaf";
  std::u16string commonText = text.substr(0, length - common.size());
  commonText += common;

  const unichar *const h = text.data();
  const std::u16string_view view = text;
  const std::span<const std::byte> bytes = bytesOf(view);
  const auto lenN = static_cast<std::uint32_t>(needle.size());
  const auto lenC = static_cast<std::uint32_t>(common.size());

  compare("a rare needle, exact",
          {{"std::u16string_view::find", [&] { return view.find(needle); }, place, bytes},
           {"fastContainsUnichars", [&] { return fastContainsUnichars(h, length, needle.data(), lenN) - h; },
            place, bytes},
           {"fastUnicharsContainChars",
            [&] { return fastUnicharsContainChars(h, length, "Quiverleaf", lenN) - h; }, place, bytes}},
          rounds);
  compare("a needle of common ends, exact",
          {{"std::u16string_view::find", [&] { return std::u16string_view(commonText).find(common); },
            length - lenC, bytes},
           {"fastContainsUnichars",
            [&] {
              return fastContainsUnichars(commonText.data(), length, common.data(), lenC) - commonText.data();
            },
            length - lenC, bytes}},
          rounds);
  compare(
      "a rare needle, without regard to case",
      {{"plain loop over the table", [&] { return plainCaseInsensitiveSearch(view, otherCase); }, place, bytes},
       {"fastCaseInsensitiveContainsUnichars",
        [&] { return fastCaseInsensitiveContainsUnichars(h, length, otherCase.data(), lenN) - h; }, place,
        bytes},
       {"fastCaseInsensitiveUnicharsContainChars",
        [&] { return fastCaseInsensitiveUnicharsContainChars(h, length, "qUIVERLEAF", lenN) - h; }, place,
        bytes}},
      rounds);

  const auto occurrences = static_cast<std::uint64_t>(std::count(text.begin(), text.end(), u'w'));
  const auto folded = occurrences + static_cast<std::uint64_t>(std::count(text.begin(), text.end(), u'W'));
  const std::string ascii(text.begin(), text.end());
  compare(
      "single units, speed per byte",
      {{"memchr",
        [&] { return static_cast<const char *>(std::memchr(ascii.data(), 'Q', ascii.size())) - ascii.data(); },
        place, bytesOf(std::string_view(ascii))},
       {"findUnichar", [&] { return findUnichar(h, length, u'Q'); }, place, bytes},
       {"findUnicharNoCase", [&] { return findUnicharNoCase(h, length, u'Q'); }, place, bytes},
       {"findLastUnichar, none", [&] { return findLastUnichar(h, length, u'#'); }, NSNotFound, bytes},
       {"countUnichar", [&] { return countUnichar(h, length, u'w'); }, occurrences, bytes},
       {"countUnicharNoCase", [&] { return countUnicharNoCase(h, length, u'W'); }, folded, bytes},
       {"countUnichars of two",
        [&] {
          const UnicharCounts counts = countUnichars(h, length, u'w', u'<');
          return std::uint64_t{counts.first} + counts.second;
        },
        occurrences, bytes},
       {"isAsciiUnichars", [&] { return isAsciiUnichars(h, length); }, 1, bytes}},
      rounds);

  // Needles whose ends fit at nearly every place, and fail behind them.
  const std::u16string same(length, u'a'), half(5000, u'a');
  const std::u16string_view sameView = same;
  const auto ends = [](const unichar *found) { return std::uint64_t{found != nullptr}; };
  for (const std::u16string &dense :
       {std::u16string(u"aba"), std::u16string(u"aaaaaaab"), std::u16string(u"aaaabaaa"), half + u"b" + half}) {
    const auto lenD = static_cast<std::uint32_t>(dense.size());
    // In no time bearable for all units, when the needle is long.
    const std::u16string_view searched = sameView.substr(0, lenD > 100 ? 20000 : length);
    const auto lenS = static_cast<std::uint32_t>(searched.size());
    const std::string title = "a run of one unit, a needle of " + std::to_string(lenD);
    compare(
        title.c_str(),
        {{"std::u16string_view::find", [&] { return std::uint64_t{searched.find(dense) != searched.npos}; }, 0,
          bytesOf(searched)},
         {"fastContainsUnichars, of as many units",
          [&] { return ends(fastContainsUnichars(searched.data(), lenS, dense.data(), lenD)); }, 0,
          bytesOf(searched)},
         {"fastContainsUnichars",
          [&] { return ends(fastContainsUnichars(same.data(), length, dense.data(), lenD)); }, 0,
          bytesOf(sameView)},
         {"fastCaseInsensitiveContainsUnichars",
          [&] { return ends(fastCaseInsensitiveContainsUnichars(same.data(), length, dense.data(), lenD)); }, 0,
          bytesOf(sameView)},
         {"rangeOfString", [&] { return rangeOfString(sameView, dense, 0).location; }, NSNotFound,
          bytesOf(sameView)},
         {"rangeOfString, without regard to case",
          [&] { return rangeOfString(sameView, dense, NSCaseInsensitiveSearch).location; }, NSNotFound,
          bytesOf(sameView)}},
        rounds);
  }

  // One position is where the search ends.
  const NSString string = NSString::stringWithCharacters(view);
  const NSString list = u"#$%&*+/0123456789=@Q\\^_`{|}~"_ns;
  compare(
      "others of strings",
      {{"std::u16string_view::find_first_of", [&] { return view.find_first_of(list.view()); }, place, bytes},
       {"findOneOf", [&] { return findOneOf(string, list); }, place, bytes},
       {"findOneOf, without regard to case", [&] { return findOneOf(string, list, true); }, place, bytes},
       {"rangeOfString, without regard to case",
        [&] { return rangeOfString(view, otherCase, NSCaseInsensitiveSearch).location; }, place, bytes}},
      rounds);
  return 0;
}
