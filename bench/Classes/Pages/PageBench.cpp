// SPDX-License-Identifier: Apache-2.0
//
// All facts and links of real pages, in one pass and by the functions one after the other, beside a scan that
// does nothing with the tags; and how long it takes for each unit as hostile pages grow. Answers are checked
// before times count. Peers run in turn, and the best round of each is compared.
//
//   bench-page FOLDER [ROUNDS [MEGABYTES]]

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "Classes/Encodings/MarkupDecoding.hpp"
#include "Classes/Markup/ScanTags.hpp"
#include "Classes/Pages/NSString+HtmlExtensions.hpp"
#include "Classes/Pages/NSString+HtmlLinkThumbsAndTitles.hpp"
#include "Classes/Pages/PageContents.hpp"
#include "bench/ProcessorTime.hpp"

using namespace nimbo;
using namespace nimbo::bench;

namespace {

void check(bool good, const std::string &what) {
  if (good) return;
  std::fprintf(stderr, "%s\n", what.c_str());
  std::exit(1);
}

struct Page {
  std::string name;
  NSString string;
};

std::vector<Page> pagesIn(const char *folder) {
  std::vector<Page> pages;
  for (const auto &entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    const NSData data = NSData::dataWithBytes(bytes.data(), bytes.size());
    const NSString string = decodeMarkup(data, 0).string;
    if (string.length() > 0) pages.push_back({entry.path().filename(), string});
  }
  return pages;
}

std::size_t countTags(const NSString &page) {
  std::size_t tags = 0;
  scanTags(page, [&](const TagShape &) { ++tags; });
  return tags;
}

/// What the functions on links find in a pass each.
std::size_t countLinksOneByOne(const NSString &page) {
  return htmlLinksAndFramesBaseURL(page, nullptr).size() + htmlImages(page).size() +
         htmlEmbeddedObjects(page).size();
}

struct Contestant {
  const char *name;
  std::function<void(const NSString &)> run;
  double bestSeconds = 1e9;
};

void compare(const std::vector<Page> &pages, int rounds) {
  std::size_t sink = 0;
  double units = 0;
  std::vector<double> ratios;
  for (const Page &page : pages) {
    units += page.string.length();
    const PageContents contents = contentsOfPage(page.string);
    check(contents.facts.title == htmlTitle(page.string), page.name + ": another title");
    check(contents.links.size() >= countLinksOneByOne(page.string), page.name + ": fewer links");
    double scan = 1e9, read = 1e9;
    for (int round = 0; round < rounds; ++round) {
      scan = std::min(scan, processorSecondsOf([&] { sink += countTags(page.string); }));
      read = std::min(read, processorSecondsOf([&] { sink += contentsOfPage(page.string).links.size(); }));
    }
    ratios.push_back(read / scan);
    std::printf("  %-40s %8u units, %5zu links: %5.2f scans\n", page.name.c_str(), page.string.length(),
                contents.links.size(), ratios.back());
  }
  std::vector<Contestant> contestants = {
      {"scan", [&](const NSString &page) { sink += countTags(page); }},
      {"contentsOfPage", [&](const NSString &page) { sink += contentsOfPage(page).links.size(); }},
      {"contentsOfPage with texts",
       [&](const NSString &page) {
         sink += contentsOfPage(page, {.preservingMeaning = true, .withDetails = true}).links.size();
       }},
      {"htmlTitle", [&](const NSString &page) { sink += htmlTitle(page).length(); }},
      {"htmlLinksBaseURL", [&](const NSString &page) { sink += htmlLinksBaseURL(page, nullptr).size(); }},
      {"getLinkThumbs",
       [&](const NSString &page) {
         NSDictionary thumbs, titles;
         getLinkThumbs(page, &thumbs, &titles, NSURL(), false);
         sink += titles.count();
       }},
  };
  for (int round = 0; round < rounds; ++round)
    for (Contestant &one : contestants)
      one.bestSeconds = std::min(one.bestSeconds, processorSecondsOf([&] {
                                   for (const Page &page : pages) one.run(page.string);
                                 }));
  std::ranges::sort(ratios);
  std::printf("%zu pages, %.1f MB of UTF-16; contentsOfPage takes %.2f scans of the median page\n",
              pages.size(), 2 * units / 1e6, ratios[ratios.size() / 2]);
  for (const Contestant &one : contestants)
    std::printf("  %-28s %8.3f GB/s  %7.2f x the time of the scan\n", one.name,
                2 * units / one.bestSeconds / 1e9, one.bestSeconds / contestants[0].bestSeconds);
}

void measureGrowth(double megabytes) {
  constexpr std::u16string_view kShapes[] = {
      u"<a href=a>",
      u"<a href=",
      u"<a href='",
      u"<a href=a>text</a>",
      u"<meta name=a content=b>",
      u"<meta name=keywords content='",
      u"<meta name=a content='<",
      u"<title>a</title>",
      u"<base href=http://e.org/>",
      u"<link rel='shortcut icon' href=a>",
      u"<script src=a></script>",
      u"<style>@import ",
      u"<style>@import</style>",
      u"<img src=a alt=b>",
      u"<rss>",
  };
  std::printf("ns per unit, from 1 KB of UTF-16 in steps of 10: contentsOfPage with texts; getLinkThumbs\n");
  for (const std::u16string_view shape : kShapes) {
    std::printf("  %-36s", NSString::stringWithCharacters(shape).UTF8String().c_str());
    for (const bool areThumbs : {false, true}) {
      for (double bytes = 1000; bytes <= megabytes * 1e6; bytes *= 10) {
        std::u16string text;
        while (2 * static_cast<double>(text.size()) < bytes) text += shape;
        const NSString page = NSString::stringWithCharacters(text);
        double best = 1e9;
        for (int round = 0; round < 3; ++round)
          best = std::min(best, processorSecondsOf([&] {
                            NSDictionary thumbs, titles;
                            if (areThumbs)
                              getLinkThumbs(page, &thumbs, &titles, NSURL(), true);
                            else
                              contentsOfPage(page, {.withDetails = true});
                          }));
        std::printf(" %7.2f", best * 1e9 / static_cast<double>(text.size()));
        std::fflush(stdout);
      }
      std::printf(" |");
    }
    std::printf("\n");
  }
}

}  // namespace

int main(int argc, char **argv) {
  const int rounds = argc > 2 ? std::atoi(argv[2]) : 20;
  const double megabytes = argc > 3 ? std::atof(argv[3]) : 100;
  const std::vector<Page> pages = argc > 1 ? pagesIn(argv[1]) : std::vector<Page>();
  check(!pages.empty() && rounds > 0, "bench-page FOLDER [ROUNDS [MEGABYTES]]");
  compare(pages, rounds);
  measureGrowth(megabytes);
}
