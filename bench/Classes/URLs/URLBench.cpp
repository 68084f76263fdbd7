// SPDX-License-Identifier: Apache-2.0
//
// Normalising links, one call a link, against libraries that parse them: uriparser, libcurl and GLib. Then what
// a link costs from the markup to the target's string, the same links resolved by libcurl and GLib beside it.
// Then escaping and unescaping, on text that needs no change, against a copy of it. What ours give is checked
// before its time counts. Peers run in turn, and the best round of each is compared.
//
//   bench-url [FOLDER [ROUNDS]]
//
// The links are those of the HTML files in the folder ("href" and "src" in quotes), or a few of each kind.

#include <curl/curl.h>
#include <glib.h>
#include <uriparser/Uri.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Classes/URLs/NSString+HtmlExtensions+URLs.hpp"
#include "Classes/URLs/NSString+URLUtilities/Escaping.hpp"
#include "Classes/URLs/NSString+URLUtilities/Simplifying.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Relative.hpp"
#include "Classes/URLs/URLEscaping.hpp"
#include "Classes/URLs/URLNormalizing.hpp"

namespace {

std::uint64_t allocations = 0;

}  // namespace

// The C library's own functions, and what stands before them: everything that takes memory comes through here.
extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *memory, std::size_t size);
void *malloc(std::size_t size) {
  ++allocations;
  return __libc_malloc(size);
}
void *calloc(std::size_t count, std::size_t size) {
  ++allocations;
  return __libc_calloc(count, size);
}
void *realloc(void *memory, std::size_t size) {
  ++allocations;
  return __libc_realloc(memory, size);
}
}

namespace {

using namespace nimbo;
using Clock = std::chrono::steady_clock;

constexpr std::uint32_t kStackLength = 256;
constexpr std::size_t kTextLength = 4'000'000;

struct Contestant {
  const char *name;
  std::function<std::uint64_t()> run;
  /// Of one call.
  double bestSeconds = 1e9;
};

/// Runs the contestants in turn, each so many times that the clock is fine enough; each must give the same
/// answer every time.
void race(std::vector<Contestant> &contestants, int rounds, int callsPerRound = 1) {
  std::vector<std::uint64_t> answers;
  for (const Contestant &c : contestants) answers.push_back(c.run());
  for (int round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < contestants.size(); ++i) {
      const auto start = Clock::now();
      std::uint64_t answer = 0;
      for (int call = 0; call < callsPerRound; ++call) answer = contestants[i].run();
      const std::chrono::duration<double> elapsed = Clock::now() - start;
      if (answer != answers[i]) std::fprintf(stderr, "%s: wrong answer\n", contestants[i].name), std::exit(1);
      contestants[i].bestSeconds = std::min(contestants[i].bestSeconds, elapsed.count() / callsPerRound);
    }
  }
}

void require(bool good, const char *what) {
  if (good) return;
  std::fprintf(stderr, "%s: wrong\n", what);
  std::exit(1);
}

/// Links and what they become.
constexpr std::pair<const char *, const char *> kKnownLinks[] = {
    {"http://www.example.org/path/to/a/page.html?first=1&second=2#part",
     "http://www.example.org/path/to/a/page.html?first=1&second=2#part"},
    {"/news/2024/12/07/a-page-with-a-rather-long-title-123456/",
     "/news/2024/12/07/a-page-with-a-rather-long-title-123456/"},
    {"style.css", "style.css"},
    {"#top", "#top"},
    {"https://user@example.org:8080/", "https://user@example.org:8080/"},
    {"//cdn.example.org/lib/1.2.3/lib.min.js", "//cdn.example.org/lib/1.2.3/lib.min.js"},
    {"mailto:someone@example.org?subject=Hello%20there", "mailto:someone@example.org?subject=Hello%20there"},
    {"https://example.org/share?u=https%3A%2F%2Fexample.com%2Fa&amp;title=A%20title&amp;lang=en",
     "https://example.org/share?u=https://example.com/a&title=A%20title&lang=en"},
    {" http:\\\\example.org\\a b.html\n", "http://example.org/a%20b.html"},
    {"\\\"https://example.org/news\\\"\\u003e", "https://example.org/news"},
};

std::vector<std::string> linksOfFolder(const char *folder) {
  std::vector<std::string> links;
  for (const auto &entry : std::filesystem::recursive_directory_iterator(folder)) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string page{std::istreambuf_iterator<char>(file), {}};
    for (const std::string_view attribute : {"href=", "src="}) {
      for (std::size_t at = page.find(attribute); at != page.npos; at = page.find(attribute, at)) {
        at += attribute.size();
        if (at == page.size() || (page[at] != '"' && page[at] != '\'')) continue;
        const std::size_t end = page.find(page[at], at + 1);
        if (end != page.npos) links.push_back(page.substr(at + 1, end - at - 1));
      }
    }
  }
  return links;
}

std::uint64_t parseWithUriparser(const std::vector<std::string> &links) {
  std::uint64_t parsed = 0;
  for (const std::string &link : links) {
    UriUriA uri;
    const char *errorPosition = nullptr;
    if (uriParseSingleUriA(&uri, link.c_str(), &errorPosition) != URI_SUCCESS) continue;
    ++parsed;
    uriFreeUriMembersA(&uri);
  }
  return parsed;
}

std::uint64_t parseWithCurl(const std::vector<std::string> &links) {
  std::uint64_t parsed = 0;
  for (const std::string &link : links) {
    CURLU *const url = curl_url();
    parsed += curl_url_set(url, CURLUPART_URL, link.c_str(), CURLU_NON_SUPPORT_SCHEME | CURLU_ALLOW_SPACE) ==
              CURLUE_OK;
    curl_url_cleanup(url);
  }
  return parsed;
}

std::uint64_t parseWithGLib(const std::vector<std::string> &links) {
  std::uint64_t parsed = 0;
  for (const std::string &link : links) {
    if (GUri *const uri = g_uri_parse(link.c_str(), G_URI_FLAGS_PARSE_RELAXED, nullptr)) {
      ++parsed;
      g_uri_unref(uri);
    }
  }
  return parsed;
}

constexpr const char *kBase = "https://www.example.org/folder/page.html?query#part";

std::uint64_t resolveWithCurl(const std::vector<std::string> &links) {
  std::uint64_t length = 0;
  for (const std::string &link : links) {
    CURLU *const url = curl_url();
    char *target = nullptr;
    if (curl_url_set(url, CURLUPART_URL, kBase, 0) == CURLUE_OK &&
        curl_url_set(url, CURLUPART_URL, link.c_str(), CURLU_NON_SUPPORT_SCHEME | CURLU_ALLOW_SPACE) ==
            CURLUE_OK &&
        curl_url_get(url, CURLUPART_URL, &target, 0) == CURLUE_OK)
      length += std::strlen(target);
    curl_free(target);
    curl_url_cleanup(url);
  }
  return length;
}

std::uint64_t resolveWithGLib(const std::vector<std::string> &links) {
  std::uint64_t length = 0;
  for (const std::string &link : links) {
    if (char *const target = g_uri_resolve_relative(kBase, link.c_str(), G_URI_FLAGS_PARSE_RELAXED, nullptr)) {
      length += std::strlen(target);
      g_free(target);
    }
  }
  return length;
}

std::uint64_t resolve(const std::vector<NSString> &links, const NSURL &base, bool simplified) {
  std::uint64_t length = 0;
  for (const NSString &link : links) {
    const NSString target = URLRelativeTo(normalizedStringURL(link), base).absoluteString();
    length += simplified ? URLUtilities::simplifiedStringURL(target).length() : target.length();
  }
  return length;
}

std::uint64_t normalizeUnits(const std::vector<NSString> &links) {
  std::array<unichar, kMaxURLGrowth * kStackLength> out;
  std::uint64_t length = 0;
  for (const NSString &link : links)
    if (link.length() <= kStackLength)
      length += normalizeURLUnits(link.characters(), link.length(), false, out.data());
  return length;
}

std::uint64_t normalizeStrings(const std::vector<NSString> &links) {
  std::uint64_t length = 0;
  for (const NSString &link : links) length += normalizedStringURL(link).length();
  return length;
}

/// Prints how much memory the calls up to 256 units took: nothing by the worker, a result that is new by the
/// string form.
void countAllocations(const std::vector<NSString> &links) {
  std::uint64_t before = allocations;
  normalizeUnits(links);
  std::printf("  allocations of the worker: %llu\n", static_cast<unsigned long long>(allocations - before));
  require(allocations == before, "the worker's allocations");
  std::uint64_t unchanged = 0, takenUnchanged = 0, changed = 0, takenChanged = 0;
  for (const NSString &link : links) {
    if (link.length() > kStackLength) continue;
    before = allocations;
    const NSString result = normalizedStringURL(link);
    const std::uint64_t taken = allocations - before;
    const bool isNew = result && !result.identicalTo(link);
    ++(isNew ? changed : unchanged);
    (isNew ? takenChanged : takenUnchanged) += taken;
  }
  std::printf("  of the string form: %llu for %llu clean links, %llu for %llu others\n",
              static_cast<unsigned long long>(takenUnchanged), static_cast<unsigned long long>(unchanged),
              static_cast<unsigned long long>(takenChanged), static_cast<unsigned long long>(changed));
  require(takenUnchanged == 0 && takenChanged == changed, "the string form's allocations");
}

void compareLinks(const std::vector<std::string> &links, int rounds) {
  std::vector<NSString> strings;
  for (const std::string &link : links) strings.push_back(NSString::stringWithLossyUTF8String(link));
  for (const auto &[link, clean] : kKnownLinks)
    require(normalizedStringURL(NSString::stringWithUTF8String(link)).UTF8String() == clean, link);
  std::printf("%zu links\n", links.size());
  countAllocations(strings);
  std::vector<Contestant> contestants = {
      {"normalizedStringURL", [&] { return normalizeStrings(strings); }},
      {"normalizeURLUnits", [&] { return normalizeUnits(strings); }},
      {"uriparser, uriParseSingleUriA", [&] { return parseWithUriparser(links); }},
      {"libcurl, curl_url_set", [&] { return parseWithCurl(links); }},
      {"GLib, g_uri_parse", [&] { return parseWithGLib(links); }},
  };
  race(contestants, rounds);
  for (const Contestant &c : contestants)
    std::printf("  %-36s %8.1f ns a link  %6.2f x\n", c.name,
                c.bestSeconds / static_cast<double>(links.size()) * 1e9,
                c.bestSeconds / contestants[0].bestSeconds);
  std::printf("  accepted: uriparser %llu, libcurl %llu, GLib %llu\n",
              static_cast<unsigned long long>(parseWithUriparser(links)),
              static_cast<unsigned long long>(parseWithCurl(links)),
              static_cast<unsigned long long>(parseWithGLib(links)));
}

/// From the markup to the target's string.
void compareResolving(const char *title, const std::vector<std::string> &links, int rounds) {
  std::vector<NSString> strings;
  for (const std::string &link : links) strings.push_back(NSString::stringWithLossyUTF8String(link));
  const NSURL base = NSURL::URLWithString(NSString::stringWithUTF8String(kBase));
  require(URLRelativeTo(u"../a b?c"_ns, base).absoluteString() == u"https://www.example.org/a%20b?c"_ns, title);
  std::vector<Contestant> contestants = {
      {"to the target", [&] { return resolve(strings, base, false); }},
      {"to the target's simplified form", [&] { return resolve(strings, base, true); }},
      {"libcurl", [&] { return resolveWithCurl(links); }},
      {"GLib", [&] { return resolveWithGLib(links); }},
  };
  race(contestants, rounds);
  std::printf("%s, %zu links resolved\n", title, links.size());
  for (const Contestant &c : contestants)
    std::printf("  %-36s %8.1f ns a link  %6.2f x\n", c.name,
                c.bestSeconds / static_cast<double>(links.size()) * 1e9,
                c.bestSeconds / contestants[0].bestSeconds);
}

std::u16string repeated(std::u16string_view piece, std::size_t length) {
  std::u16string text;
  while (text.size() < length) text += piece;
  return text;
}

/// Text in which no form of escaping or unescaping finds anything to do.
void compareEscaping(const char *title, std::u16string_view piece, std::size_t length, int rounds) {
  const NSString text = NSString::stringWithCharacters(repeated(piece, length));
  const std::uint32_t count = text.length();
  const std::unique_ptr<unichar[]> units(new unichar[count]);
  std::copy_n(text.characters(), count, units.get());
  const auto stringForm = [&text](NSString (*convert)(const NSString &)) {
    require(convert(text) == text, "escaping");
    return [&text, convert] { return std::uint64_t{convert(text).length()}; };
  };
  std::vector<Contestant> contestants = {
      {"memcpy",
       [&] {
         std::memcpy(units.get(), text.characters(), count * sizeof(unichar));
         return std::uint64_t{units[count / 2]};
       }},
      {"convertPercentEscapesOfURL, in place",
       [&] { return std::uint64_t{convertPercentEscapesOfURL(units.get(), count, true)}; }},
      {"a new string",
       [&] { return std::uint64_t{NSString::stringWithCharacters(text.characters(), count).length()}; }},
      {"unescaping, ASCII", stringForm(stringByReplacingASCIIPercentEscapesOfURL)},
      {"unescaping, standard", stringForm(stringByReplacingStandardPercentEscapesOfURL)},
      {"escaping, ASCII", stringForm(stringByAddingASCIIPercentEscapesToURL)},
      {"escaping, standard", stringForm(stringByAddingStandardPercentEscapesToURL)},
  };
  race(contestants, rounds, count < 1000 ? 1000 : 1);
  std::printf("%s, %u units\n", title, count);
  for (const Contestant &c : contestants)
    std::printf("  %-36s %8.2f GB/s  time %5.2f x memcpy, %5.2f x a new string\n", c.name,
                count * sizeof(unichar) / c.bestSeconds / 1e9, c.bestSeconds / contestants[0].bestSeconds,
                c.bestSeconds / contestants[2].bestSeconds);
}

}  // namespace

int main(int argc, char **argv) {
  std::vector<std::string> links;
  if (argc > 1) links = linksOfFolder(argv[1]);
  for (int i = 0; links.empty() || (argc < 2 && i < 200); ++i)
    for (const auto &[link, clean] : kKnownLinks) links.emplace_back(link);
  const int rounds = argc > 2 ? std::atoi(argv[2]) : 25;
  if (rounds < 1) return std::fprintf(stderr, "too little to measure\n"), 1;
  compareLinks(links, rounds);
  compareResolving("all", links, rounds);
  std::vector<std::string> absolute;
  std::ranges::copy_if(links, std::back_inserter(absolute),
                       [](const std::string &link) { return link.starts_with("http"); });
  compareResolving("absolute", absolute, rounds);
  compareEscaping("a short text", u"PlainLetters0123456789", 200, rounds);
  compareEscaping("letters and digits", u"PlainLetters0123456789", 100'000, rounds);
  compareEscaping("letters and digits", u"PlainLetters0123456789", kTextLength, rounds);
  compareEscaping("letters with accents", u"\u00c9crit\u00e9t\u00e9", kTextLength, rounds);
  return 0;
}
