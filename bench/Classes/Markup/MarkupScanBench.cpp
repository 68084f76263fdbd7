// SPDX-License-Identifier: Apache-2.0
//
// The tag scanner over real pages, against a vector search for "<" alone and against whole HTML parsers, which
// do more; and its time for each unit as texts grow, also of shapes that are made to be slow. Answers are
// checked before times count. Peers run in turn, and the best round of each is compared.
//
//   bench-markup-scan FOLDER [ROUNDS [MEGABYTES]]

#include <gumbo.h>
#include <libxml/HTMLparser.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "Classes/Characters/UnicharSearches.hpp"
#include "Classes/Markup/ScanTags.hpp"
#include "Classes/Markup/TagHandlers.hpp"
#include "bench/ProcessorTime.hpp"
#include "bench/RealPages.hpp"

namespace {

using namespace nimbo;
using namespace nimbo::bench;

std::uint64_t searchLess(const NSString &page) {
  std::uint64_t count = 0;
  const unichar *const units = page.characters();
  for (std::uint32_t i = 0, found; i < page.length(); i += found + 1, ++count)
    if ((found = findUnichar(units + i, page.length() - i, u'<')) == NSNotFound) break;
  return count;
}

std::uint64_t scanByLambda(const NSString &page) {
  std::uint64_t count = 0;
  scanTags(page, [&](const TagShape &) { ++count; });
  return count;
}

void countTag(const TagShape &, std::uint64_t &count) {
  ++count;
}

std::uint64_t scanByHandler(const NSString &page) {
  std::uint64_t count = 0;
  GetTagsOfString(page, tagHandler<countTag>, &count, false);
  return count;
}

/// As a browser gets a page: in pieces.
void parseByLibxml(const std::string &page, htmlSAXHandler *handler) {
  constexpr std::size_t kPieceBytes = 16384;
  htmlParserCtxtPtr parser =
      htmlCreatePushParserCtxt(handler, nullptr, nullptr, 0, nullptr, XML_CHAR_ENCODING_UTF8);
  htmlCtxtUseOptions(parser, HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING | HTML_PARSE_RECOVER);
  for (std::size_t i = 0; i < page.size(); i += kPieceBytes)
    htmlParseChunk(parser, page.data() + i, static_cast<int>(std::min(kPieceBytes, page.size() - i)), 0);
  htmlParseChunk(parser, nullptr, 0, 1);
  if (parser->myDoc) xmlFreeDoc(parser->myDoc);
  htmlFreeParserCtxt(parser);
}

void parseByGumbo(const std::string &page) {
  GumboOptions options = kGumboDefaultOptions;
  options.max_errors = 0;
  GumboOutput *const output = gumbo_parse_with_options(&options, page.data(), page.size());
  gumbo_destroy_output(&options, output);
}

struct Contestant {
  const char *name;
  std::function<void(const Page &)> run;
  double bestSeconds = 1e9;
};

void compare(const char *title, const Pages &pages, int rounds, std::vector<Contestant> contestants) {
  double bytes = 0;
  for (const Page &page : pages) bytes += sizeof(unichar) * static_cast<double>(page.string.length());
  for (int round = 0; round < rounds; ++round)
    for (Contestant &one : contestants)
      one.bestSeconds = std::min(one.bestSeconds, processorSecondsOf([&] {
                                   for (const Page &page : pages) one.run(page);
                                 }));
  std::printf("%s: %zu, %.1f MB of UTF-16\n", title, pages.size(), bytes / 1e6);
  for (const Contestant &one : contestants)
    std::printf("  %-42s %9.3f GB/s  %7.2f x the time of the first\n", one.name, bytes / one.bestSeconds / 1e9,
                one.bestSeconds / contestants[0].bestSeconds);
}

void compareScanners(const char *title, const Pages &pages, int rounds, bool withParsers) {
  std::uint64_t sink = 0;
  for (const Page &page : pages) {
    if (scanByLambda(page.string) == scanByHandler(page.string)) continue;
    std::fprintf(stderr, "the two forms of the scanner differ\n");
    std::exit(1);
  }
  std::vector<Contestant> contestants = {
      {"search for \"<\"", [&](const Page &page) { sink += searchLess(page.string); }},
      {"scanTags", [&](const Page &page) { sink += scanByLambda(page.string); }},
      {"GetTagsOfString", [&](const Page &page) { sink += scanByHandler(page.string); }}};
  compare(title, pages, rounds, contestants);
  if (!withParsers) return;
  contestants.erase(contestants.begin());
  htmlSAXHandler silent{};
  contestants.push_back(
      {"libxml2, no handlers", [&](const Page &page) { parseByLibxml(page.bytes, &silent); }});
  contestants.push_back({"libxml2, tree", [](const Page &page) { parseByLibxml(page.bytes, nullptr); }});
  contestants.push_back({"Gumbo", [](const Page &page) { parseByGumbo(page.bytes); }});
  compare(title, pages, std::max(rounds / 4, 2), contestants);
}

struct Shape {
  const char *name;
  std::u16string unit, end;
  /// Half of the text is blank, behind the rest.
  bool isHalfBlank = false;
};

/// Nanoseconds for each unit of texts of 1 KB, 10 KB ... of UTF-16.
void printGrowth(const Shape &shape, std::size_t maximumBytes) {
  std::printf("  %-42s", shape.name);
  for (std::size_t bytes = 1000; bytes <= maximumBytes; bytes *= 10) {
    std::u16string text;
    while (text.size() < bytes / sizeof(unichar) / (shape.isHalfBlank ? 2 : 1)) text += shape.unit;
    text += shape.end;
    if (shape.isHalfBlank) text.append(text.size(), u' ');
    double best = 1e9;
    for (int round = 0; round < 3; ++round)
      best = std::min(best, processorSecondsOf([&] {
                        // Small ones often enough for the clock.
                        for (std::size_t done = 0; done < 100'000; done += bytes)
                          scanTags(text, [](const TagShape &) {});
                      }));
    const double scans = static_cast<double>((100'000 + bytes - 1) / bytes);
    std::printf(" %8.3f", best * 1e9 / scans / static_cast<double>(text.size()));
    std::fflush(stdout);
  }
  std::printf("\n");
}

}  // namespace

int main(int argc, char **argv) {
  const int rounds = argc > 2 ? std::atoi(argv[2]) : 20;
  const double megabytes = argc > 3 ? std::atof(argv[3]) : 100;
  const Pages pages = argc > 1 ? pagesIn(argv[1]) : Pages();
  if (pages.empty() || rounds < 1) return std::fprintf(stderr, "no pages to measure\n"), 1;
  xmlInitParser();

  compareScanners("pages", pages, rounds, true);
  Pages texts;
  std::u16string real;
  for (const Page &page : pages) {
    real += page.string.view();
    std::u16string text(page.string.view());
    std::erase(text, u'<');
    texts.push_back({{}, NSString::stringWithCharacters(text)});
  }
  compareScanners("the same without \"<\"", texts, rounds, false);

  const std::u16string script = u"<script>", comment = u"<script><!--</script>";
  const Shape shapes[] = {
      {"pages", real, u""},
      {"\"<\" alone", u"<", u""},
      {"tags", u"<a>", u""},
      {"tags, closed at last", u"<", u">"},
      {"quotes that never close in turn", u"<a =\"<a ='", u""},
      {"comments without end", u"<!-- ->", u""},
      {"sections without end", u"<![ ] >", u""},
      {"scripts without end", script, u""},
      {"scripts with beginnings of ends", script + u"</scrip</\u017fcrip", u""},
      {"scripts with comments", comment, u""},
      {"scripts with comments, ended at last", comment, u"-->"},
      {"the same in front of blanks", comment, u"-->", true},
      {"scripts and styles in turn", u"<script><style>", u""},
      {"scripts and styles, all of one ended", u"<script><style></style>", u""},
      {"end tags in their start tags", u"<style a='</style>' b=", u">"},
      {"\"&\" alone", u"&", u""},
  };
  std::printf("ns per unit, from 1 KB of UTF-16 in steps of 10\n");
  for (const Shape &shape : shapes) printGrowth(shape, static_cast<std::size_t>(megabytes * 1e6));
  return 0;
}
