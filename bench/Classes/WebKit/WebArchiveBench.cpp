// SPDX-License-Identifier: Apache-2.0
// How fast the text of web archives is, from their bytes on, beside the conversion of their markup alone.
//
//     bench-web-archive FOLDER    the pages of a folder, each as an archive
//
// Times are those of the processor, because the machine may be busy.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "Classes/PlainText/NSString+Html2Text.hpp"
#include "Classes/WebKit/WebArchive+SearchableText.hpp"
#include "Classes/WebKit/WebArchive+WebKitAdditions.hpp"
#include "bench/ProcessorTime.hpp"

using namespace nimbo;
using namespace nimbo::bench;

namespace {

constexpr int kRounds = 31;

/// Runs both in turns, and gives the median of what each takes.
template <class First, class Second>
std::pair<double, double> medianSeconds(First first, Second second) {
  std::vector<double> times[2];
  for (int i = 0; i < kRounds; ++i) {
    const double begin = processorSeconds();
    first();
    const double middle = processorSeconds();
    second();
    times[0].push_back(middle - begin);
    times[1].push_back(processorSeconds() - middle);
  }
  for (auto &all : times) std::ranges::sort(all);
  return {times[0][kRounds / 2], times[1][kRounds / 2]};
}

NSData archiveOfFile(const std::filesystem::path &path) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  return WebArchive::archiveWithMainResource(
             WebResource::resourceWithData(NSData::dataWithBytes(bytes.data(), bytes.size()),
                                           NSURL::URLWithString(u"http://example.org/"_ns), u"text/html"_ns))
      .data();
}

NSString textOfMarkup(const NSString &markup) {
  return stringByConvertingHtml2PlainTextNonUmlauted(markup, false, true, true, false);
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: bench-web-archive FOLDER\n");
    return 1;
  }
  std::vector<NSData> archives;
  std::vector<NSString> sources;
  double bytes = 0;
  for (const auto &entry : std::filesystem::recursive_directory_iterator(argv[1])) {
    if (!entry.is_regular_file()) continue;
    const NSData data = archiveOfFile(entry.path());
    const WebArchive archive = WebArchive::archiveWithData(data);
    const NSString source = documentSource(archive);
    if (!source) continue;
    const NSString text = textOfMarkup(source);
    if (searchableText(archive).view() != u"\n\n" + std::u16string(text.view())) {
      std::fprintf(stderr, "%s: wrong text\n", entry.path().c_str());
      return 1;
    }
    archives.push_back(data);
    sources.push_back(source);
    bytes += archive.mainResource().data().length();
  }
  const auto [ofMarkup, ofArchives] = medianSeconds(
      [&] {
        for (const NSString &source : sources) textOfMarkup(source);
      },
      [&] {
        for (const NSData &data : archives) searchableText(WebArchive::archiveWithData(data));
      });
  std::printf("%zu pages, %.1f MB\n", archives.size(), bytes / 1e6);
  std::printf("converted from their markup   %6.0f MB/s\n", bytes / 1e6 / ofMarkup);
  std::printf("read, decoded and converted   %6.0f MB/s, %.2f times\n", bytes / 1e6 / ofArchives,
              ofMarkup / ofArchives);
  return 0;
}
