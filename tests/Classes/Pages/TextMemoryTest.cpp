// SPDX-License-Identifier: Apache-2.0
//
// What large inputs cost: the most memory that an operation holds beside its input, its answer included.
#include "Classes/Encodings/MarkupDecoding.hpp"
#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "Classes/Markup/ScanTags.hpp"
#include "Classes/PlainText/NSString+Html2Text.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Files.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Normalizing.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "tests/support/PeakMemory.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

constexpr std::size_t kBytes = 100'000'000;

/// What an operation is done with; the file holds paragraphs in any case.
struct Input {
  NSData data;
  NSString string;
  NSString path;
};

struct Operation {
  const char *name;
  /// How the input begins, what it repeats, and how it ends.
  std::string_view head, body, tail;
  bool (*run)(const Input &input);
  /// The most memory, in bytes for one of the input.
  double ceiling;
};

constexpr std::string_view kParagraph = "<p class=leaf>A <b>quiver</b> &amp; <a href=\"x\">arrows</a></p>\n";

id listOf(const Input &input) {
  return NSPropertyListSerialization::propertyListFromData(input.data);
}

bool isList(const Input &input) {
  return static_cast<bool>(listOf(input));
}

bool isNoList(const Input &input) {
  return !listOf(input);
}

bool isWritten(const Input &input) {
  return NSPropertyListSerialization::dataWithPropertyList(input.string, NSPropertyListFormat::xml).length() >
         kBytes;
}

bool hasPlainText(const Input &input) {
  return !stringByConvertingHtml2PlainText(input.string).identicalTo(input.string);
}

constexpr Operation kOperations[] = {
    {"reading a file", "", "x", "",
     [](const Input &i) { return NSData::dataWithContentsOfFile(i.path).length() > 0; }, 1.1},
    {"reading its text", "", "x", "",
     [](const Input &i) { return stringWithContentsOfFile(i.path, 0).length() > 0; }, 3.3},
    {"decoding", "", kParagraph, "",
     [](const Input &i) { return decodeMarkup(i.data, 0, NSUTF8StringEncoding).string.length() > 0; }, 2.2},
    {"scanning", "", "<!-- a", "",
     [](const Input &i) { return scanTags(i.string, [](const TagShape &) {}), true; }, 0.1},
    {"plain text", "", kParagraph, "", hasPlainText, 1.1},
    {"encoding entities", "", "a<", "",
     [](const Input &i) { return stringByConvertingCharactersToStandardEntities(i.string).length() > kBytes; },
     5.2},
    {"normalizing", "", "e\xcc\x81", "",
     [](const Input &i) { return fixedAndNormalizedString(i.string).length() < i.string.length(); }, 2.2},
    {"an XML string", "<plist><string>", "aaaaaa&amp;", "</string></plist>", isList, 3.3},
    {"XML of values", "<plist><array>", "<string>a leaf of the quiver of leaves</string>", "</array></plist>",
     isList, 7},
    {"XML of too many values", "<plist><array>", "<true/>", "</array></plist>", isNoList, 1},
    {"text of values", "(", "\"a leaf of the quiver of leaves\",", "a)", isList, 6},
    {"text that never ends", "\"", "a\\n", "", isNoList, 4},
    {"writing XML", "", "a", "", isWritten, 3.5},
};

std::string bytesOf(std::string_view head, std::string_view body, std::string_view tail) {
  std::string bytes(head);
  bytes.reserve(kBytes + body.size() + tail.size());
  while (bytes.size() < kBytes) bytes += body;
  return bytes += tail;
}

TEST(Memory, OfLargeTextsIsBounded) {
  const TemporaryFolder folder;
  const NSString path = folder.write("large.html", bytesOf("", kParagraph, ""));
  for (const Operation &each : kOperations) {
    SCOPED_TRACE(each.name);
    const std::string bytes = bytesOf(each.head, each.body, each.tail);
    const Input input = {NSData::dataWithBytes(bytes.data(), bytes.size()),
                         NSString::stringWithUTF8String(bytes), path};
    const std::size_t peak = peakMemoryOf([&] { return each.run(input); });
    EXPECT_LE(static_cast<double>(peak), each.ceiling * kBytes);
  }
}

}  // namespace
}  // namespace nimbo
