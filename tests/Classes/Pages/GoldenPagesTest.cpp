// SPDX-License-Identifier: Apache-2.0
//
// What is made of the pages in tests/data/html stands in files beside them: forum.html, forum.txt. Each of them
// ends with a line feed of its own. What may stand there says the table of projections.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "Classes/Encodings/NSString+XmlExtensions+Encoding.hpp"
#include "Classes/Markup/ScanTags.hpp"
#include "Classes/PlainText/NSString+Html2Text.hpp"
#include "Classes/PlainText/PlainTextHandler.hpp"
#include "Classes/Stripping/NSString+HtmlExtensions+Stripping.hpp"
#include "platform/Foundation/NSStringJoining.hpp"
#include "tests/support/TextDifference.hpp"

namespace nimbo {
namespace {

using Path = std::filesystem::path;

const Path kFolder = Path(QUIVERLEAF_TEST_DATA) / "html";

/// What is worth an entry in an index.
NSString indexedText(const NSString &page) {
  bool junkFound = false;
  const PlainTextOptions options{.nonUmlauted = true, .onlyBody = true, .removeJunk = true, .googleTags = true};
  const NSString text = _convertHtml2PlainTextUsingHandler(page, PlainTextHandler, options, &junkFound);
  return junkFound ? stringByConcatenating(text, u"\n(and junk)") : text;
}

/// A line for each tag: its kind, its name, where its text begins and where it does itself, and its first
/// units.
NSString tags(const NSString &page) {
  std::string lines;
  scanTags(page, [&](const TagShape &tag) {
    const auto utf8 = [](std::u16string_view units) {
      return NSString::stringWithCharacters(units).UTF8String();
    };
    std::string start = utf8(tag.tag().substr(0, 20));
    std::ranges::replace(start, '\n', ' ');
    lines += std::to_string(tag.kind()) + " " + (tag.name().empty() ? "-" : utf8(tag.name())) + " " +
             std::to_string(tag.textLocation()) + " " + std::to_string(tag.tagRange().location) + "+" +
             std::to_string(tag.tagRange().length) + " " + start + "\n";
  });
  return NSString::stringWithUTF8String(lines);
}

struct Projection {
  const char *extension;
  NSString (*make)(const NSString &page);
};

constexpr Projection kProjections[] = {
    {".txt", stringByConvertingHtml2PlainText},
    {".reformatted", stringByConvertingHtml2ReformattedPlainText},
    {".simplified", stringByConvertingHtml2SimplifiedPlainText},
    {".indexed", indexedText},
    {".stripped", stripTags},
    {".objectless", stripObjects},
    {".tags", tags},
};

std::vector<Path> filesInFolder(bool arePages) {
  std::vector<Path> files;
  for (const auto &entry : std::filesystem::directory_iterator(kFolder)) {
    if ((entry.path().extension() == ".html") == arePages) files.push_back(entry.path().filename());
  }
  std::ranges::sort(files);
  return files;
}

std::string bytesOfFile(const Path &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class GoldenPages : public testing::TestWithParam<Path> {};

TEST_P(GoldenPages, AreWhatStandsBesideThem) {
  const Path golden = kFolder / GetParam();
  const auto projection = std::ranges::find(kProjections, golden.extension().string(), &Projection::extension);
  ASSERT_NE(projection, std::end(kProjections)) << "no projection has the extension";
  const NSString path = NSString::stringWithUTF8String(Path(golden).replace_extension(".html").string());
  const NSString page = stringWithMarkupContentsOfFile(path, NSUTF8StringEncoding);
  ASSERT_TRUE(page) << "there is no page";
  EXPECT_EQ(firstDifference(bytesOfFile(golden), projection->make(page).UTF8String() + "\n"), "");
}

INSTANTIATE_TEST_SUITE_P(Files, GoldenPages, testing::ValuesIn(filesInFolder(false)), [](const auto &file) {
  std::string name = file.param.string();
  std::ranges::replace_if(
      name, [](unsigned char c) { return !std::isalnum(c); }, '_');
  return name;
});

TEST(GoldenPagesFolder, HasATextOfEachPage) {
  for (Path page : filesInFolder(true)) {
    page.replace_extension(".txt");
    EXPECT_TRUE(std::filesystem::exists(kFolder / page)) << page;
  }
}

}  // namespace
}  // namespace nimbo
