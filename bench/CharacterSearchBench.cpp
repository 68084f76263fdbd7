// SPDX-License-Identifier: Apache-2.0
//
// The searches of text against the plain ways to do the same, and the scans for single units against memchr by
// the byte. Each must find the right thing before its time counts. Peers run in turn, and the best round of
// each is compared.
//
//   bench-character-search [MEGABYTES [ROUNDS]]

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "Classes/CharacterTables.hpp"
#include "Classes/FastSearches.hpp"
#include "Classes/UnicharSearches.hpp"

namespace {

using namespace nimbo;
using Clock = std::chrono::steady_clock;

constexpr double kUnitsPerMegabyte = 1e6 / sizeof(unichar);

struct Contestant {
  const char *name;
  std::function<std::uint64_t()> run;
  std::uint64_t expected;
  double bytes;
  double bestSeconds = 1e9;

  double gigabytesPerSecond() const { return bytes / bestSeconds / 1e9; }
};

/// Runs the contestants in turn; prints the speed of each, and how often that of the first it is.
void compare(const char *title, std::vector<Contestant> contestants, int rounds) {
  std::printf("%s\n", title);
  for (int round = 0; round < rounds; ++round) {
    for (Contestant &c : contestants) {
      const auto start = Clock::now();
      const std::uint64_t answer = c.run();
      const std::chrono::duration<double> elapsed = Clock::now() - start;
      if (answer != c.expected) {
        std::fprintf(stderr, "%s: wrong answer %llu\n", c.name, static_cast<unsigned long long>(answer));
        std::exit(1);
      }
      c.bestSeconds = std::min(c.bestSeconds, elapsed.count());
    }
  }
  for (const Contestant &c : contestants) {
    std::printf("  %-42s %8.2f GB/s  %6.2f x\n", c.name, c.gigabytesPerSecond(),
                c.gigabytesPerSecond() / contestants[0].gigabytesPerSecond());
  }
}

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
  const double bytes = length * double{sizeof(unichar)};
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
        place, bytes / sizeof(unichar)},
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
  return 0;
}
