// SPDX-License-Identifier: Apache-2.0
//
// The tree of pages against Gumbo's, on the pages of a folder and on one page of all of them; and its time for
// each unit as pages grow, also of shapes that are made to be slow. The texts of both trees must agree before
// times count. Speeds are of the pages in UTF-8. Peers run in turn, and the best round of each is compared.
//
//   bench-html-tree FOLDER [ROUNDS [MEGABYTES]]

#include <gumbo.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "bench/ProcessorTime.hpp"
#include "bench/RealPages.hpp"
#include "platform/WebKit/HTMLDocument.hpp"

namespace {

using namespace nimbo;
using namespace nimbo::bench;

std::size_t textBytes(const HTMLDocument &document) {
  std::size_t bytes = 0;
  for (HTMLNodeIndex i = 0; i != kNoHTMLNode; i = document.nextInTree(i)) {
    const HTMLNode &node = document.node(i);
    if (node.kind == HTMLNodeKind::text)
      bytes += NSString::stringWithCharacters(document.text(node)).UTF8String().size();
  }
  return bytes;
}

std::size_t textBytes(const GumboNode *node) {
  std::size_t bytes = 0;
  std::vector<const GumboNode *> waiting = {node};
  while (!waiting.empty()) {
    const GumboNode *const one = waiting.back();
    waiting.pop_back();
    if (one->type == GUMBO_NODE_TEXT || one->type == GUMBO_NODE_WHITESPACE || one->type == GUMBO_NODE_CDATA)
      bytes += std::string_view(one->v.text.text).size();
    const GumboVector *const children = one->type == GUMBO_NODE_DOCUMENT  ? &one->v.document.children
                                        : one->type == GUMBO_NODE_ELEMENT ? &one->v.element.children
                                                                          : nullptr;
    for (unsigned i = 0; children && i < children->length; ++i)
      waiting.push_back(static_cast<const GumboNode *>(children->data[i]));
  }
  return bytes;
}

template <class Use>
void parseByGumbo(const Page &page, Use use) {
  GumboOptions options = kGumboDefaultOptions;
  options.max_errors = 0;
  GumboOutput *const output = gumbo_parse_with_options(&options, page.bytes.data(), page.bytes.size());
  use(output->document);
  gumbo_destroy_output(&options, output);
}

struct Contestant {
  const char *name;
  std::function<void(const Page &)> run;
  double bestSeconds = 1e9;
};

void compare(const char *title, const Pages &pages, int rounds) {
  double bytes = 0;
  for (const Page &page : pages) bytes += static_cast<double>(page.bytes.size());
  std::vector<Contestant> contestants = {
      {"Gumbo", [](const Page &page) { parseByGumbo(page, [](const GumboNode *) {}); }},
      {"HTMLDocument", [](const Page &page) { HTMLDocument::documentWithText(page.string.view()); }}};
  for (int round = 0; round < rounds; ++round)
    for (Contestant &one : contestants) {
      const double start = processorSeconds();
      for (const Page &page : pages) one.run(page);
      one.bestSeconds = std::min(one.bestSeconds, processorSeconds() - start);
    }
  std::printf("%s: %zu, %.1f MB of UTF-8\n", title, pages.size(), bytes / 1e6);
  for (const Contestant &one : contestants)
    std::printf("  %-42s %9.1f MB/s  %7.2f times as fast as the first\n", one.name,
                bytes / one.bestSeconds / 1e6, contestants[0].bestSeconds / one.bestSeconds);
}

/// Whether both trees of all pages have the same amount of text, but for what newer rules of HTML change.
bool isAgreed(const Pages &pages) {
  std::size_t ours = 0, theirs = 0;
  for (const Page &page : pages) {
    ours += textBytes(HTMLDocument::documentWithText(page.string.view()));
    parseByGumbo(page, [&](const GumboNode *node) { theirs += textBytes(node); });
  }
  std::printf("bytes of text: %zu, Gumbo's %zu\n", ours, theirs);
  return std::max(ours, theirs) - std::min(ours, theirs) <= ours / 200;
}

struct Shape {
  const char *name;
  std::u16string start, unit;
};

/// Nanoseconds for each unit of pages of 10 KB, 100 KB ... of UTF-16.
void printGrowth(const Shape &shape, std::size_t maximumBytes) {
  std::printf("  %-42s", shape.name);
  double nodes = 0;
  for (std::size_t bytes = 10'000; bytes <= maximumBytes; bytes *= 10) {
    std::u16string text = shape.start;
    while (text.size() < bytes / sizeof(unichar)) text += shape.unit;
    double best = 1e9;
    for (int round = 0; round < 3; ++round) {
      const double start = processorSeconds();
      nodes = HTMLDocument::documentWithText(text).nodeCount();
      best = std::min(best, processorSeconds() - start);
    }
    std::printf(" %8.2f", best * 1e9 / static_cast<double>(text.size()));
    std::fflush(stdout);
    nodes /= static_cast<double>(text.size());
  }
  std::printf("  %6.3f nodes\n", nodes);
}

}  // namespace

int main(int argc, char **argv) {
  const int rounds = argc > 2 ? std::atoi(argv[2]) : 20;
  const double megabytes = argc > 3 ? std::atof(argv[3]) : 10;
  const Pages pages = argc > 1 ? pagesIn(argv[1]) : Pages();
  if (pages.empty() || rounds < 1) return std::fprintf(stderr, "no pages to measure\n"), 1;
  if (!isAgreed(pages)) return std::fprintf(stderr, "the trees have different texts\n"), 1;
  compare("pages", pages, rounds);

  constexpr std::size_t kLargePageUnits = 20'000'000;
  std::u16string all = u"<!DOCTYPE html><body>";
  while (all.size() < kLargePageUnits)
    for (const Page &page : pages) all.append(u"<div>").append(page.string.view()).append(u"</div>");
  compare("a large page of all of them", {pageOfText(NSString::stringWithCharacters(all))}, 2);

  const Shape shapes[] = {
      {"pages", u"", all.substr(0, 4'000'000)},
      {"text", u"", u"Plain words and nothing else. "},
      {"nested blocks", u"", u"<div>"},
      {"nested links", u"", u"<a>"},
      {"nested tables", u"", u"<table><td>"},
      {"unclosed formatting", u"", u"<p><b><i><u>x"},
      {"unclosed formatting with attributes", u"", u"<p><b a=1><b a=2><b a=3><b a=4><i a=5>x"},
      {"misnested formatting", u"", u"<b><p></b>"},
      {"misnested formatting over many blocks", u"<b><b><b><b><div><div><div><div><div>", u"<b></b></b><div>"},
      {"text in front of a table", u"<table>", u"x&amp;<tr><td>y&amp;"},
      {"attributes", u"<p", u" a=1 b c='&amp;'"},
      {"attributes of other names", u"<p>", u"<p a1 b2 c3 d4 e5 f6 g7 h8 i9>"},
      {"\"<\"", u"", u"<"},
      {"\"&\"", u"", u"&"},
      {"comments", u"", u"<!--x-->"},
      {"an unclosed comment", u"<!--", u"- >x<!"},
      {"selects", u"", u"<select><option>x"},
      {"templates", u"", u"<template>"},
      {"graphics", u"<svg>", u"<g></x>"},
      {"frames", u"<frameset>", u"<frameset>"},
      {"end tags", u"<div><span><div><span>", u"</x></p></li></b>"},
  };
  std::printf("ns per unit, from 10 KB of UTF-16 in steps of 10; nodes per unit\n");
  for (const Shape &shape : shapes) printGrowth(shape, static_cast<std::size_t>(megabytes * 1e6));
  return 0;
}
