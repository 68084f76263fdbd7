// SPDX-License-Identifier: Apache-2.0
// How fast plain text is made of HTML, beside the scanner alone on the same pages and the three text browsers
// on all of them in one file, in turns in one run; and how the time grows on hostile pages from 1 KB to 100 MB.
//
//     bench-plain-text FOLDER [COMMAND]     the pages of a folder; and the command "quiverleaf" as a whole
//     bench-plain-text --growth             hostile pages
//
// Times are those of the processor, because the machine may be busy.
#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "Classes/Markup/ScanTags.hpp"
#include "Classes/PlainText/NSString+Html2Text.hpp"
#include "bench/ProcessorTime.hpp"

using namespace nimbo;

namespace {

constexpr int kRounds = 21;
constexpr int kBrowserRounds = 5;

void check(bool good, const char *what) {
  if (good) return;
  std::fprintf(stderr, "%s\n", what);
  std::exit(1);
}

double secondsOf(const timeval &time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// The processor's time in this process, and in its children that have ended.
double secondsWithChildren() {
  rusage children;
  ::getrusage(RUSAGE_CHILDREN, &children);
  return bench::processorSeconds() + secondsOf(children.ru_utime) + secondsOf(children.ru_stime);
}

template <class Work>
double seconds(Work work) {
  const double begin = secondsWithChildren();
  work();
  return secondsWithChildren() - begin;
}

template <class Work>
double medianSeconds(int rounds, Work work) {
  std::vector<double> times;
  for (int i = 0; i < rounds; ++i) times.push_back(seconds(work));
  std::ranges::nth_element(times, times.begin() + rounds / 2);
  return times[static_cast<std::size_t>(rounds / 2)];
}

std::string bytesOfFile(const std::filesystem::path &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> bytesOfPages(const char *folder) {
  std::vector<std::string> pages;
  for (const auto &entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) pages.push_back(bytesOfFile(entry.path()));
  }
  return pages;
}

struct Browser {
  const char *name;
  std::string command;
};

const Browser kBrowsers[] = {
    {"w3m", "w3m -dump -T text/html -I UTF-8 -O UTF-8 "},
    {"lynx", "lynx -dump -nolist -force_html -display_charset=utf-8 "},
    {"html2text", "html2text -utf8 "},
};

double browserSeconds(const Browser &browser, const std::filesystem::path &page) {
  const std::string command = browser.command + page.string() + " >/dev/null 2>&1";
  return medianSeconds(kBrowserRounds, [&] { check(std::system(command.c_str()) == 0, browser.name); });
}

void comparePages(const char *folder, const char *ownCommand) {
  const std::vector<std::string> files = bytesOfPages(folder);
  std::vector<NSString> pages;
  std::string all;
  for (const std::string &bytes : files) {
    pages.push_back(NSString::stringWithLossyUTF8String(bytes));
    all += bytes;
  }
  const NSString together = NSString::stringWithLossyUTF8String(all);
  std::size_t units = 0, tags = 0, textUnits = 0;
  for (const NSString &page : pages) units += page.length();
  const auto scan = [&] {
    tags = 0;
    for (const NSString &page : pages) scanTags(page, [&](const TagShape &) { ++tags; });
  };
  const auto convert = [&] {
    textUnits = 0;
    for (const NSString &page : pages) textUnits += stringByConvertingHtml2PlainText(page).length();
  };
  scan();
  convert();
  check(tags > 0 && textUnits > 0 && textUnits < units, "no text");
  const NSString text = stringByConvertingHtml2PlainText(together);
  check(text.view().find(u'<') == text.view().npos || text.length() < together.length() / 2,
        "markup in the text");
  const double scanTime = medianSeconds(kRounds, scan);
  const double convertTime = medianSeconds(kRounds, convert);
  const double megabytes = static_cast<double>(all.size()) / 1e6;
  std::printf("%zu pages, %.1f MB, %zu tags, %zu units of text\n", pages.size(), megabytes, tags, textUnits);
  std::printf("scanner    %8.1f MB/s\n", megabytes / scanTime);
  std::printf("plain text %8.1f MB/s, %.2f of the scanner\n", megabytes / convertTime, scanTime / convertTime);

  const std::filesystem::path path = std::filesystem::temp_directory_path() / "plain-text-bench.html";
  const std::filesystem::path empty = std::filesystem::temp_directory_path() / "plain-text-bench-empty.html";
  std::ofstream(path, std::ios::binary) << all;
  std::ofstream(empty, std::ios::binary) << "<p>x</p>";
  const double oursTogether =
      medianSeconds(kRounds, [&] { textUnits = stringByConvertingHtml2PlainText(together).length(); });
  double ownStart = 0, ownWhole = 0;
  if (ownCommand) {
    const Browser own{"quiverleaf", std::string(ownCommand) + " text "};
    ownStart = browserSeconds(own, empty);
    ownWhole = browserSeconds(own, path);
    std::printf("quiverleaf as a process: %.1f ms for a page of 8 bytes, %.1f MB/s\n", ownStart * 1e3,
                megabytes / ownWhole);
  }
  for (const Browser &browser : kBrowsers) {
    const double start = browserSeconds(browser, empty);
    const double whole = browserSeconds(browser, path);
    std::printf(
        "%-10s %8.1f MB/s, %.1f with its start; plain text is %.0f times as fast, %.0f with its start\n",
        browser.name, megabytes / (whole - start), megabytes / whole, (whole - start) / oursTogether,
        whole / oursTogether);
    if (ownCommand)
      std::printf("%-10s as a process takes %.1f of quiverleaf's time, %.2f for the page of 8 bytes\n",
                  browser.name, whole / ownWhole, start / ownStart);
  }
  std::filesystem::remove(path);
  std::filesystem::remove(empty);
}

void measureGrowth() {
  constexpr std::string_view kShapes[] = {
      "<",
      "&",
      "&amp;",
      "<p>",
      "<b>x</b> ",
      "word ",
      "\n   ",
      "<!-- ",
      "<script",
      "<script>",
      "<a title='",
      "<title>",
      "<select><option>x<option selected>y",
      "<textarea>",
      "<pre>\r\n",
      "<div style='display:none'>",
      "<li hidden>",
      "<p style='font-size:1pt'>x",
      "<noscript>",
      "&nbsp;&shy;",
      "<img alt='x'>",
      "<xmp>",
  };
  std::printf("%-38s nanoseconds a byte at 1 KB, 100 KB, 10 MB, 100 MB; with junk removed\n", "shape");
  for (const std::string_view shape : kShapes) {
    std::printf("%-38.*s", static_cast<int>(shape.size()),
                shape.front() == '\n' ? "white space" : shape.data());
    for (const bool removeJunk : {false, true}) {
      for (const std::size_t size :
           {std::size_t{1000}, std::size_t{100000}, std::size_t{10000000}, std::size_t{100000000}}) {
        std::string bytes;
        bytes.reserve(size + shape.size());
        while (bytes.size() < size) bytes += shape;
        const NSString page = NSString::stringWithLossyUTF8String(bytes);
        const int rounds = size < 1000000 ? 101 : 3;
        const double time = medianSeconds(rounds, [&] {
          bool junkFound;
          stringByConvertingHtml2PlainTextNonUmlauted(page, false, false, false, removeJunk, &junkFound, true);
        });
        std::printf(" %7.2f", time * 1e9 / static_cast<double>(bytes.size()));
        std::fflush(stdout);
      }
      std::printf(" |");
    }
    std::printf("\n");
  }
}

}  // namespace

int main(int argc, char **argv) {
  const std::vector<std::string_view> arguments(argv + 1, argv + argc);
  if (arguments.size() == 1 && arguments[0] == "--growth") {
    measureGrowth();
  } else if (arguments.size() == 1 || arguments.size() == 2) {
    comparePages(argv[1], argv[2]);
  } else {
    check(false, "bench-plain-text FOLDER [COMMAND] | --growth");
  }
}
