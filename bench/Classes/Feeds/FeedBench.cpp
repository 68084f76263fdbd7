// SPDX-License-Identifier: Apache-2.0
//
// The items of feeds of some MB, beside a SAX pass of libxml2 over the same bytes, which only counts elements
// and bytes of texts, and the Universal Feed Parser for Python, which makes of them what we do. All must find
// as many items before times count; the best round of each is compared. What each shape of feed takes per byte
// as it grows comes last.
//
//   bench-feeds [ROUNDS]

#include <libxml/parser.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "Classes/Feeds/FeedReading.hpp"
#include "Classes/Feeds/NSString+FeedExtensions.hpp"
#include "bench/Compare.hpp"

namespace {

using namespace nimbo;

/// A feed: what stands around its items, and one of them.
struct Shape {
  const char *name;
  std::string start, item, end;
};

std::string repeated(std::string_view text, int times) {
  std::string all;
  while (times-- > 0) all += text;
  return all;
}

const std::string kParagraph =
    "<p>Oaks are patient: a <a href=\"http://example.org/tree?a=1&amp;b=2\">young tree</a> wants <b>light</b>, "
    "water &amp; time, and no more than what a careful gardener has in any case.</p>\n";

std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text)
    result += c == '<' ? "&lt;" : c == '>' ? "&gt;" : c == '&' ? "&amp;" : std::string(1, c);
  return result;
}

std::vector<Shape> shapes() {
  const std::string rss =
      "<?xml version=\"1.0\"?><rss version=\"2.0\" xmlns:content=\"http://purl.org/rss/1.0/modules/content/\" "
      "xmlns:dc=\"http://purl.org/dc/elements/1.1/\"><channel><title>Leaves</title>\n";
  const std::string fields =
      "<title>Trees &amp; "
      "leaves</title>\n<link>http://example.org/2006/12/24/trees</link>\n<guid>http://example.org/"
      "?p=7</guid>\n<dc:creator>Anna Example</dc:creator>\n<pubDate>Sun, 24 Dec 2006 18:30:00 +0000</pubDate>\n"
      "<category>Trees</category>\n<category>Leaves</category>\n";
  return {
      {"RSS, CDATA sections", rss,
       "<item>" + fields + "<content:encoded><![CDATA[" + repeated(kParagraph, 8) +
           "]]></content:encoded></item>\n",
       "</channel></rss>"},
      {"RSS, escaped markup", rss,
       "<item>" + fields + "<description>" + escaped(repeated(kParagraph, 8)) + "</description></item>\n",
       "</channel></rss>"},
      {"RSS, short texts", rss, "<item>" + fields + "<description>Oaks are patient.</description></item>\n",
       "</channel></rss>"},
      {"Atom, inline markup", "<feed xmlns=\"http://www.w3.org/2005/Atom\"><title>Leaves</title>\n",
       "<entry><title>Trees</title><link rel=\"alternate\" "
       "href=\"http://example.org/trees\"/><id>tag:example.org,"
       "2006:7</id><updated>2006-12-24T18:30:00Z</updated><author><name>Anna Example</name></author><content "
       "type=\"xhtml\"><div xmlns=\"http://www.w3.org/1999/xhtml\">" +
           repeated(kParagraph, 8) + "</div></content></entry>\n",
       "</feed>"}};
}

struct ElementCount {
  std::uint64_t items = 0, ends = 0, bytesOfTexts = 0;
};

std::uint64_t itemsByLibxml(const std::string &bytes) {
  xmlSAXHandler handler{};
  handler.initialized = XML_SAX2_MAGIC;
  handler.startElementNs = [](void *context, const xmlChar *name, const xmlChar *, const xmlChar *, int,
                              const xmlChar **, int, int, const xmlChar **) {
    const auto *const word = reinterpret_cast<const char *>(name);
    static_cast<ElementCount *>(context)->items +=
        std::strcmp(word, "item") == 0 || std::strcmp(word, "entry") == 0;
  };
  // Who reads a feed wants its texts.
  const auto takeText = [](void *context, const xmlChar *, int length) {
    static_cast<ElementCount *>(context)->bytesOfTexts += static_cast<std::uint64_t>(length);
  };
  handler.characters = handler.ignorableWhitespace = handler.cdataBlock = takeText;
  handler.endElementNs = [](void *context, const xmlChar *, const xmlChar *, const xmlChar *) {
    ++static_cast<ElementCount *>(context)->ends;
  };
  ElementCount count;
  xmlSAXUserParseMemory(&handler, &count, bytes.data(), static_cast<int>(bytes.size()));
  return count.items;
}

/// The seconds that the Universal Feed Parser takes, which counts its items, too; 0 when it is not there.
double secondsOfFeedParser(const std::string &bytes, std::uint64_t items) {
  const std::filesystem::path path = std::filesystem::temp_directory_path() / "bench-feeds.xml";
  std::ofstream(path, std::ios::binary) << bytes;
  const std::string command =
      "python3 -c 'import feedparser,sys,time; d=open(sys.argv[1],\"rb\").read(); s=time.perf_counter(); "
      "n=len(feedparser.parse(d).entries); print(n, time.perf_counter()-s)' " +
      path.string();
  std::FILE *const pipe = popen(command.c_str(), "r");
  unsigned long long found = 0;
  double seconds = 0;
  const bool isThere = pipe && std::fscanf(pipe, "%llu %lf", &found, &seconds) == 2;
  if (pipe) pclose(pipe);
  std::filesystem::remove(path);
  if (isThere && found != items) std::exit(std::fprintf(stderr, "feedparser finds %llu items\n", found));
  return isThere ? seconds : 0;
}

std::string feedOf(const Shape &shape, std::size_t bytes) {
  std::string feed = shape.start;
  while (feed.size() < bytes) feed += shape.item;
  return feed + shape.end;
}

void compareReaders(const Shape &shape, int rounds) {
  constexpr std::size_t kBytes = 4'000'000, kBytesForPython = 400'000;
  const std::string bytes = feedOf(shape, kBytes);
  const NSString text = NSString::stringWithUTF8String(bytes);
  const std::uint64_t items = itemsByLibxml(bytes);
  const std::span<const std::byte> read = bench::bytesOf(std::string_view(bytes));
  bench::compare(shape.name,
                 {{"libxml2, SAX", [&] { return itemsByLibxml(bytes); }, items, read},
                  {"getItemsOfFeed", [&] { return getItemsOfFeed(text).count(); }, items, read},
                  {"readFeed", [&] { return readFeed(text)->items.size(); }, items, read},
                  {"readFeed, UTF-8",
                   [&] { return readFeed(NSString::stringWithUTF8String(bytes))->items.size(); }, items, read}},
                 rounds);
  const std::string small = feedOf(shape, kBytesForPython);
  const NSString smallText = NSString::stringWithUTF8String(small);
  const double python = secondsOfFeedParser(small, readFeed(smallText)->items.size());
  double best = 1e9;
  for (int round = 0; round < rounds; ++round)
    best = std::min(best, bench::secondsOf([&] { static_cast<void>(getItemsOfFeed(smallText)); }));
  if (python > 0) std::printf("getItemsOfFeed is %.0f times as fast as feedparser\n\n", python / best);
}

void printGrowth() {
  const std::string item = "<item><title>a</title></item>";
  std::vector<Shape> odd = shapes();
  odd.push_back({"items without end tags", "<rss>", "<item><title>", ""});
  odd.push_back({"one item without end", "<rss><item><description>", "text &amp; ", ""});
  odd.push_back({"sections that end twice", "<rss>", "<item><title><![CDATA[]><script>]]>", ""});
  odd.push_back({"comments in front of sections", "<rss>", "<!-- <![CDATA[ -->", ""});
  odd.push_back({"comments without end", "<rss>", "<!-- <![CDATA[", ""});
  odd.push_back({"sections without end", "<rss><item>", "<title><![CDATA[", ""});
  odd.push_back({"names of prefixes", "<rss>", "<item xmlns:a='b'><a:b>", ""});
  odd.push_back({"nested elements of one name", "<rss><item><content>", "<content>", ""});
  odd.push_back({"end tags that may be missing", "<rss>", "<item><title>a<guid>b<author>c<link>", ""});
  odd.push_back({"such tags in one item", "<rss><item>", "<title>a<guid>b<author>c<link>", ""});
  odd.push_back({"ampersands", "<rss><item><title>", "&", "</title></item>"});
  std::printf("ns per byte, from 100 KB in steps of 10\n");
  for (const Shape &shape : odd) {
    std::printf("  %-42s", shape.name);
    for (std::size_t bytes = 100'000; bytes <= 10'000'000; bytes *= 10) {
      const NSString text = NSString::stringWithUTF8String(feedOf(shape, bytes));
      double best = 1e9;
      for (int round = 0; round < 3; ++round)
        best = std::min(best, bench::secondsOf([&] { static_cast<void>(readFeed(text)); }));
      std::printf(" %8.3f", best * 1e9 / static_cast<double>(bytes));
      std::fflush(stdout);
    }
    std::printf("\n");
  }
}

}  // namespace

int main(int argc, char **argv) {
  const int rounds = argc > 1 ? std::atoi(argv[1]) : 10;
  if (rounds < 1) return std::fprintf(stderr, "no rounds\n"), 1;
  xmlInitParser();
  for (const Shape &shape : shapes()) compareReaders(shape, rounds);
  printGrowth();
  return 0;
}
