// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/NSAttributedString.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "platform/AppKit/DocumentAttributes.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {
namespace {

TextAttributes withSize(double pointSize) {
  TextAttributes attributes;
  attributes.font.pointSize = pointSize;
  return attributes;
}

Interned<TextAttributes> interned(double pointSize) {
  return Interned(withSize(pointSize));
}

TEST(Interned, EqualRecordsAreOneWhateverTheirFields) {
  NSTextTableBlock block;
  block.table = Interned(NSTextTable{1, 2, true, {50, NSTextBlockWidth::Unit::percent}});
  block.borderColors[NSLeftEdge] = NSColor{1, 2, 3};
  NSParagraphStyle style;
  style.tabStops = {{NSTextTabType::decimal, 72}};
  style.textLists = {{u"{disc}"_ns, 1, 1}};
  style.textBlocks = {Interned(block)};
  TextAttributes attributes = withSize(13);
  attributes.paragraphStyle = Interned(style);
  attributes.attachment = NSTextAttachment(
      NSFileWrapper::regularFileWithContents(NSData::dataWithBytes("x", 1), u"a.txt"_ns), NSSize{1, 2});
  TextAttributes same = withSize(13);
  same.paragraphStyle = Interned(style);
  same.attachment = NSTextAttachment(
      NSFileWrapper::regularFileWithContents(NSData::dataWithBytes("x", 1), u"a.txt"_ns), NSSize{1, 2});
  EXPECT_EQ(Interned(attributes), Interned(same));
  EXPECT_EQ(&*Interned(attributes), &*Interned(same));
  style.textBlocks.push_back(style.textBlocks[0]);
  same.paragraphStyle = Interned(style);
  EXPECT_NE(Interned(attributes), Interned(same));
  EXPECT_EQ(Interned(TextAttributes()), Interned<TextAttributes>());
  attributes = withSize(-0.0);
  EXPECT_EQ(Interned(attributes), interned(0.0)) << "equal numbers of different bits";
}

TEST(Interned, HeldRecordsSurviveManyOthers) {
  // So many that their table grows several times.
  constexpr int kHeld = 40'000;
  std::vector<Interned<TextAttributes>> held;
  for (int i = 0; i < kHeld; ++i) {
    held.push_back(interned(i + 0.5));
    ASSERT_EQ(held.back(), interned(i + 0.5)) << i;
  }
  for (int i = 0; i < kHeld; ++i) interned(i + 1000);
  for (int i = 0; i < kHeld; ++i) {
    ASSERT_EQ(held[static_cast<std::size_t>(i)]->font.pointSize, i + 0.5);
    ASSERT_EQ(held[static_cast<std::size_t>(i)], interned(i + 0.5)) << i;
  }
}

TEST(Interned, ThreadsGetTheSameRecords) {
  constexpr int kRecords = 3000;
  std::vector<std::vector<Interned<TextAttributes>>> made(4);
  std::vector<std::thread> threads;
  for (auto &records : made)
    threads.emplace_back([&records] {
      for (int i = 0; i < kRecords; ++i) {
        records.push_back(interned(2 + i % 1500));
        interned(100'000 + i);
      }
    });
  for (std::thread &thread : threads) thread.join();
  for (const auto &records : made) EXPECT_EQ(records, made[0]);
}

/// A twin of the builder: attributes unit by unit.
struct PlainText {
  std::u16string units;
  std::vector<Interned<TextAttributes>> attributes;

  void check(std::u16string_view text, std::span<const AttributeRun> runs) const {
    ASSERT_EQ(text, units);
    std::uint32_t at = 0;
    for (const AttributeRun &run : runs) {
      ASSERT_LT(at, run.end) << "an empty run";
      ASSERT_TRUE(at == 0 || attributes[at - 1] != run.attributes) << "equal neighbours";
      for (; at < run.end; ++at) ASSERT_EQ(attributes[at], run.attributes) << at;
    }
    ASSERT_EQ(at, units.size());
  }
};

TEST(AttributedString, BuilderDoesAsAListOfUnitsDoes) {
  std::mt19937 random(1);
  const auto below = [&](std::size_t end) { return static_cast<std::uint32_t>(random() % end); };
  for (int round = 0; round < 300; ++round) {
    NSMutableAttributedString builder;
    PlainText twin;
    for (int step = 0; step < 40; ++step) {
      const auto attributes = interned(10 + below(3));
      switch (below(5)) {
        case 0: {
          const NSRange range{below(twin.units.size() + 3), below(8)};
          builder.setAttributes(attributes, range);
          for (std::size_t i = range.location; i < range.location + range.length && i < twin.units.size(); ++i)
            twin.attributes[i] = attributes;
          break;
        }
        case 1: {
          const std::uint32_t length = below(twin.units.size() + 2);
          builder.truncate(length);
          twin.units.resize(std::min<std::size_t>(twin.units.size(), length));
          twin.attributes.resize(twin.units.size());
          break;
        }
        default: {
          const std::u16string units(below(4), static_cast<char16_t>(u'a' + step % 26));
          builder.append(units, *attributes);
          twin.units += units;
          twin.attributes.insert(twin.attributes.end(), units.size(), attributes);
        }
      }
      twin.check(builder.view(), builder.runs());
      if (HasFatalFailure()) return;
    }
    const NSAttributedString text = std::move(builder).attributedString();
    const NSRange range{below(twin.units.size() + 2), below(30)};
    PlainText part;
    part.units = twin.units.substr(std::min<std::size_t>(range.location, twin.units.size()), range.length);
    if (!part.units.empty())
      part.attributes.assign(
          twin.attributes.begin() + range.location,
          twin.attributes.begin() + range.location + static_cast<std::ptrdiff_t>(part.units.size()));
    const NSAttributedString cut = text.attributedSubstringFromRange(range);
    part.check(cut.string().view(), cut.runs());
    NSMutableAttributedString again;
    again.append(cut);
    again.append(text);
    EXPECT_EQ(std::move(again).attributedString().attributedSubstringFromRange({cut.length(), text.length()}),
              text);
    for (std::uint32_t i = 0; i < text.length(); ++i) {
      NSRange run;
      EXPECT_EQ(text.attributesAtIndex(i, &run), twin.attributes[i]);
      EXPECT_TRUE(run.location <= i && i < run.location + run.length);
    }
  }
}

TEST(AttributedString, NilEmptyAndPlainDiffer) {
  const NSAttributedString empty(u""_ns), plain(u"a"_ns), large(u"a"_ns, interned(20));
  EXPECT_FALSE(NSAttributedString());
  EXPECT_FALSE(NSAttributedString(NSString()));
  EXPECT_TRUE(empty);
  EXPECT_TRUE(NSMutableAttributedString().attributedString()) << "a builder is never nil";
  EXPECT_NE(empty, NSAttributedString());
  EXPECT_EQ(NSAttributedString(), NSAttributedString());
  EXPECT_NE(plain, large);
  EXPECT_EQ(plain, NSAttributedString(u"a"_ns));
  EXPECT_EQ(large.attributedSubstringFromRange({1, 5}).length(), 0u);
  EXPECT_TRUE(large.attributedSubstringFromRange({0, 5}).identicalTo(large));
  TextAttributes attributes;
  attributes.attachment =
      NSTextAttachment(NSFileWrapper::regularFileWithContents(NSData::dataWithBytes("x", 1), u"a.txt"_ns));
  NSMutableAttributedString builder;
  builder.append(large);
  builder.append(NSAttachmentCharacter, Interned(attributes));
  EXPECT_TRUE(std::move(builder).attributedString().containsAttachments());
  EXPECT_FALSE(large.containsAttachments());
}

TEST(TextList, Markers) {
  struct Case {
    NSString format;
    std::int32_t number;
    NSString marker;
    bool isOrdered;
  };
  for (const Case &c : {
           Case{u"{disc}"_ns, 7, u"\u2022"_ns, false},
           Case{u"{circle}"_ns, 1, u"\u25e6"_ns, false},
           Case{u"{square}"_ns, 1, u"\u25aa"_ns, false},
           Case{u"{hyphen}"_ns, 1, u"\u2043"_ns, false},
           Case{u"{check}"_ns, 1, u"\u2713"_ns, false},
           Case{u"{diamond}"_ns, 1, u"\u25c6"_ns, false},
           Case{u"{box}"_ns, 1, u"\u25a1"_ns, false},
           Case{u"{decimal}."_ns, -7, u"-7."_ns, true},
           Case{u"({lower-alpha})"_ns, 26, u"(z)"_ns, true},
           Case{u"{upper-latin}"_ns, 703, u"AAA"_ns, true},
           Case{u"{lower-alpha}"_ns, 0, u"0"_ns, true},
           Case{u"{upper-roman}."_ns, 1994, u"MCMXCIV."_ns, true},
           Case{u"{lower-roman}"_ns, 4000, u"4000"_ns, true},
           Case{u"{lower-roman}"_ns, 3888, u"mmmdccclxxxviii"_ns, true},
           Case{u"{lower-roman}"_ns, 3999, u"mmmcmxcix"_ns, true},
           Case{u"{upper-roman}"_ns, 444, u"CDXLIV"_ns, true},
           Case{u"{lower-roman}"_ns, 0, u"0"_ns, true},
           Case{u"{lower-latin}"_ns, 27, u"aa"_ns, true},
           Case{u"{lower-hexadecimal}"_ns, 171, u"ab"_ns, true},
           Case{u"{}"_ns, 1, u"{}"_ns, false},
           Case{u"{octal}"_ns, 8, u"10"_ns, true},
           Case{u"{upper-hexadecimal}"_ns, 255, u"FF"_ns, true},
           Case{u"*"_ns, 1, u"*"_ns, false},
           Case{u"{open"_ns, 1, u"{open"_ns, false},
       }) {
    const NSTextList list{c.format, 1, 1};
    EXPECT_EQ(list.markerForItemNumber(c.number), c.marker) << c.format.UTF8String();
    EXPECT_EQ(list.isOrdered(), c.isOrdered) << c.format.UTF8String();
  }
}

TEST(DocumentAttributes, SurviveADictionary) {
  DocumentAttributes attributes;
  EXPECT_EQ(attributes.dictionary().count(), 0u);
  attributes = {.documentType = u"NSRTF"_ns,
                .title = u"T"_ns,
                .author = u"A"_ns,
                .subject = u"S"_ns,
                .keywords = {u"a"_ns, u"b"_ns},
                .company = u"C"_ns,
                .copyright = u"R"_ns,
                .comment = u"D"_ns,
                .creationTime = NSDate{5},
                .modificationTime = NSDate{6},
                .paperSize = NSSize{612, 792.5},
                .leftMargin = 72,
                .rightMargin = 0,
                .topMargin = 1.5,
                .bottomMargin = 2};
  EXPECT_EQ(attributes.dictionary().objectForKey(u"PaperSize"_ns).string(), u"{612, 792.5}"_ns);
  EXPECT_EQ(DocumentAttributes::withDictionary(attributes.dictionary()), attributes);
  const NSDictionary odd = {{u"Title"_ns, 5}, {u"PaperSize"_ns, u"wide"_ns}, {u"Keywords"_ns, u"a"_ns}};
  EXPECT_EQ(DocumentAttributes::withDictionary(odd), DocumentAttributes());
}

}  // namespace
}  // namespace nimbo
