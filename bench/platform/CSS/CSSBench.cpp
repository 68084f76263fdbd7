// SPDX-License-Identifier: Apache-2.0
// How fast a style sheet of a framework's kind is read and matched, in millions of characters a second: tokens
// alone, rules with all names kept, rules for a page that has few of the names; and the styles of pages with
// many elements. The sheet is made here. Times are those of the processor, the best of several rounds.
//
//     bench-css            the sheet, and the styles of a page
//     bench-css FOLDER     the ".css" files of a folder beside it
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

#include "bench/ProcessorTime.hpp"
#include "platform/CSS/CSSRuleIndex.hpp"
#include "platform/CSS/CSSStyleSheet.hpp"

using namespace nimbo;
using namespace nimbo::bench;

namespace {

constexpr int kRounds = 30;

template <class Work>
double bestSeconds(Work work) {
  double best = std::numeric_limits<double>::infinity();
  for (int round = 0; round < kRounds; ++round) {
    best = std::min(best, processorSecondsOf(work));
  }
  return best;
}

/// Utilities in several widths, components with states, variables: what frameworks are made of.
std::string frameworkSheet() {
  const char *const kWidths[] = {"", "-sm", "-md", "-lg", "-xl", "-xxl"};
  const char *const kSides[] = {"top", "right", "bottom", "left"};
  std::string sheet = "@charset \"utf-8\";\n:root{";
  for (int i = 0; i < 100; ++i)
    sheet += "--fw-color-" + std::to_string(i) + ":#" + std::to_string(100000 + 8000 * i) + ";";
  sheet += "}\n*,*::before,*::after{box-sizing:border-box}\n";
  for (int width = 0; width < 6; ++width) {
    const std::string suffix = kWidths[width];
    if (width > 0) sheet += "@media (min-width:" + std::to_string(400 + 200 * width) + "px){\n";
    for (int i = 0; i <= 12; ++i) {
      const std::string n = std::to_string(i);
      sheet += ".col" + suffix + "-" + n + "{flex:0 0 auto;width:" + std::to_string(100.0 * i / 12) + "%}\n";
      for (const char *const side : kSides) {
        for (const char *const property : {"margin", "padding"})
          sheet += "." + std::string(1, property[0]) + side[0] + suffix + "-" + n + "{" + property + "-" +
                   side + ":" + std::to_string(i) + ".25rem!important}\n";
      }
      sheet += ".fs" + suffix + "-" + n + "{font-size:calc(1." + n + "rem + ." + n + "vw)!important}\n";
    }
    if (width > 0) sheet += "}\n";
  }
  for (int i = 0; i < 400; ++i) {
    const std::string name = ".component-" + std::to_string(i);
    sheet +=
        name +
        "{display:inline-block;padding:.375rem .75rem;font-weight:400;line-height:1.5;color:#212529;"
        "text-align:center;vertical-align:middle;cursor:pointer;background-color:transparent;border:1px solid "
        "transparent;transition:color .15s ease-in-out,background-color .15s ease-in-out}\n" +
        name + ":hover," + name + ":focus{color:var(--fw-color-" + std::to_string(i % 100) +
        ");text-decoration:none}\n" + name +
        ">.item:not(:last-child) a[href^=\"http\"]{font-family:system-ui,"
        "-apple-system,\"Segoe UI\",sans-serif;background:rgba(0,0,0," +
        std::to_string(i % 9) + "e-1)}\n" + name + " .title+.body{margin:0 auto;border-top:1px solid rgb(" +
        std::to_string(i % 256) + " 0 0 / 50%)}\n";
  }
  return sheet;
}

std::string markOf(double seconds, std::size_t units) {
  char text[64];
  std::snprintf(text, sizeof text, "%7.1f M/s", static_cast<double>(units) / seconds / 1e6);
  return text;
}

/// A page of nested divisions with classes, some of which the sheet has.
void fillPage(CSSElements &elements, std::size_t count) {
  std::vector<std::u16string> classes;
  for (int i = 0; i < 40; ++i) {
    const std::string name =
        i % 2 ? "component-" + std::to_string(i) : "mt-" + std::to_string(i % 13) + " col-md-6";
    classes.emplace_back(name.begin(), name.end());
  }
  const CSSAttribute link[] = {{u"href", u"http://host/"}};
  elements.begin(u"html", {}, CSSElements::Kind::kHTML);
  for (std::size_t i = 1; i < count;) {
    for (std::size_t depth = 0; depth < 8; ++depth, ++i) {
      const std::u16string_view value = classes[(i * 13 + i / 7) % classes.size()];
      const CSSAttribute attributes[] = {{u"class", value}};
      if (depth == 7)
        elements.begin(u"a", link, CSSElements::Kind::kHTML);
      else
        elements.begin(u"div", attributes, CSSElements::Kind::kHTML);
    }
    for (std::size_t depth = 0; depth < 8; ++depth) elements.end();
  }
  elements.end();
}

void measureSheet(const char *title, const NSString &sheet) {
  std::size_t tokens = 0, rules = 0, knownRules = 0;
  const double tokenSeconds = bestSeconds([&] {
    CSSTokenizer tokenizer(sheet.view());
    for (tokens = 0; tokenizer.next().type != CSSTokenType::kEnd;) ++tokens;
  });
  const double ruleSeconds = bestSeconds([&] {
    CSSNames names;
    CSSSheetReading reading;
    reading.selectors.names = &names;
    rules = CSSStyleSheet(sheet, reading).rules().size();
  });
  CSSNames names;
  CSSElements elements(names, CSSMode::kStandard);
  fillPage(elements, 10000);
  CSSSheetReading reading;
  reading.selectors = {.names = &names, .mode = CSSMode::kStandard, .onlyKnownNames = true};
  const double knownSeconds = bestSeconds([&] { knownRules = CSSStyleSheet(sheet, reading).rules().size(); });
  std::printf("%s: %u characters, %zu tokens, %zu rules\n", title, sheet.length(), tokens, rules);
  std::printf("  tokens              %s\n", markOf(tokenSeconds, sheet.length()).c_str());
  std::printf("  rules               %s\n", markOf(ruleSeconds, sheet.length()).c_str());
  std::printf("  rules for a page    %s, %zu rules\n", markOf(knownSeconds, sheet.length()).c_str(),
              knownRules);
  const CSSStyleSheet read(sheet, reading);
  CSSRuleIndex index;
  index.add(read);
  index.finish();
  std::size_t matches = 0;
  const double matchSeconds = bestSeconds([&] {
    CSSSelectorMatcher matcher(elements);
    std::vector<CSSMatch> found;
    matches = 0;
    for (CSSElementIndex i = 0; i < elements.size(); ++i) {
      found.clear();
      index.match(matcher, i, found);
      matches += found.size();
    }
  });
  std::printf("  matching            %7.0f ns an element, %zu matches of %zu elements\n",
              matchSeconds / static_cast<double>(elements.size()) * 1e9, matches, elements.size());
}

/// Declarations as "style" attributes have them.
void measureStyles() {
  constexpr std::u16string_view kStyles[] = {u"color: #333; font-size: 12px", u"display:none",
                                             u"margin:0 auto;width:50%",
                                             u"position:absolute; left:-9999px; top:auto"};
  constexpr int kTimes = 10000;
  std::size_t units = 0, count = 0;
  for (const std::u16string_view style : kStyles) units += style.size();
  const double raw = bestSeconds([&] {
    for (int i = 0; i < kTimes; ++i) {
      for (const std::u16string_view style : kStyles) {
        CSSRawDeclarations declarations(style);
        while (declarations.next()) ++count;
      }
    }
  });
  const double whole = bestSeconds([&] {
    CSSArena arena;
    std::vector<CSSDeclaration> declarations;
    for (int i = 0; i < kTimes; ++i) {
      declarations.clear();
      for (const std::u16string_view style : kStyles)
        readDeclarations(style, CSSMode::kStandard, arena, declarations);
    }
    count += declarations.size();
  });
  if (count == 0) std::exit(1);
  std::printf("style attributes\n  taken apart         %s\n  read                %s\n",
              markOf(raw, units * kTimes).c_str(), markOf(whole, units * kTimes).c_str());
}

}  // namespace

int main(int count, char **arguments) {
  measureSheet("made sheet", NSString::stringWithUTF8String(frameworkSheet()));
  measureStyles();
  if (count < 2) return 0;
  for (const auto &entry : std::filesystem::recursive_directory_iterator(arguments[1])) {
    if (!entry.is_regular_file() || entry.path().extension() != ".css") continue;
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    measureSheet(entry.path().filename().c_str(), NSString::stringWithLossyUTF8String(bytes));
  }
  return 0;
}
