// SPDX-License-Identifier: Apache-2.0
//
// RTF read and written: plain text, text in many languages, text whose look changes every few words, and
// tables. Each is as long as the argument says, in megabytes; twice as much of it shows that the time grows
// with the length.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/Compare.hpp"
#include "platform/AppKit/NSAttributedStringRTF.hpp"

using namespace nimbo;

namespace {

constexpr double kMegabyte = 1e6;
constexpr int kRounds = 5;

struct Sample {
  const char *name;
  NSAttributedString text;
};

Interned<TextAttributes> look(unsigned number, const Interned<NSParagraphStyle> &paragraph) {
  TextAttributes attributes;
  attributes.font = {number % 3 ? u"Helvetica"_ns : u"Times New Roman"_ns, 10 + number % 7 / 2.0};
  if (number % 2) attributes.font.weight = kBoldFontWeight;
  attributes.font.isItalic = number % 5 == 0;
  if (number % 4 == 1) attributes.foregroundColor = NSColor{static_cast<std::uint8_t>(number * 40), 0, 128};
  attributes.paragraphStyle = paragraph;
  return Interned(attributes);
}

/// Text of so many units: words, of which each so many look alike, in paragraphs; `cells` to a row when not 0.
NSAttributedString made(std::size_t units, std::u16string_view words, unsigned wordsOfRun, unsigned cells) {
  NSMutableAttributedString builder;
  std::size_t wordCount = 0, paragraphs = 0;
  Interned<NSTextTable> table(NSTextTable{1, cells, false, {}});
  while (builder.length() < units) {
    NSParagraphStyle style;
    if (cells) {
      NSTextTableBlock block;
      block.table = table;
      block.startingRow = static_cast<std::uint32_t>(paragraphs / cells);
      block.startingColumn = static_cast<std::uint32_t>(paragraphs % cells);
      style.textBlocks.emplace_back(block);
    } else if (paragraphs % 4 == 3) {
      style.alignment = NSTextAlignment::justified;
      style.headIndent = 36;
    }
    const Interned<NSParagraphStyle> paragraph(style);
    for (unsigned word = 0; word < (cells ? 4 : 60); ++word, ++wordCount)
      builder.append(words, look(static_cast<unsigned>(wordCount / wordsOfRun), paragraph));
    builder.append(u"\n", look(0, paragraph));
    ++paragraphs;
  }
  return std::move(builder).attributedString();
}

void measure(const Sample &sample) {
  const NSRange all{0, sample.text.length()};
  const NSData rtf = RTFFromRange(sample.text, all);
  if (initWithRTF(rtf) != sample.text) {
    std::fprintf(stderr, "%s: not read as it was written\n", sample.name);
    std::exit(1);
  }
  double reading = 1e9, writing = 1e9;
  for (int round = 0; round < kRounds; ++round) {
    NSAttributedString text;
    NSData data;
    reading = std::min(reading, bench::secondsOf([&] { text = initWithRTF(rtf); }));
    writing = std::min(writing, bench::secondsOf([&] { data = RTFFromRange(text, all); }));
    if (data != rtf) {
      std::fprintf(stderr, "%s: not written as before\n", sample.name);
      std::exit(1);
    }
  }
  const double megabytes = rtf.length() / kMegabyte;
  std::printf("%-24s %8.1f MB %8zu runs   read %7.0f MB/s   write %7.0f MB/s\n", sample.name, megabytes,
              sample.text.runs().size(), megabytes / reading, megabytes / writing);
}

}  // namespace

int main(int count, char **arguments) {
  const double megabytes = count > 1 ? std::atof(arguments[1]) : 16;
  for (const double factor : {1.0, 2.0}) {
    const auto bytes = static_cast<std::size_t>(megabytes * factor * kMegabyte);
    measure({"plain", made(bytes, u"lorem ipsum ", 1'000'000, 0)});
    measure({"many languages", made(bytes / 6, u"\u4e2d\u6587 na\u00efve \u0434\u0430 ", 1'000'000, 0)});
    measure({"ten words a run", made(bytes / 2, u"lorem ipsum ", 10, 0)});
    measure({"a word a run", made(bytes / 4, u"lorem ipsum ", 1, 0)});
    measure({"tables", made(bytes / 4, u"lorem ipsum ", 4, 5)});
  }
  return 0;
}
