// SPDX-License-Identifier: Apache-2.0
#include "platform/Documents/WordProcessorDocuments.hpp"

#include <gtest/gtest.h>

#include <string>

#include "platform/Documents/NSAttributedStringPath.hpp"
#include "platform/Documents/OfficeConversion.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

NSString document(const std::string &name) {
  return NSString::stringWithUTF8String(QUIVERLEAF_TEST_DATA "/word-processors/" + name);
}

/// The attributes of a text's first place.
TextAttributes attributesOf(const NSAttributedString &text, std::u16string_view part) {
  const std::size_t place = text.string().view().find(part);
  EXPECT_NE(place, std::u16string_view::npos) << NSString::stringWithCharacters(part).UTF8String();
  return place == std::u16string_view::npos ? TextAttributes()
                                            : *text.attributesAtIndex(static_cast<std::uint32_t>(place));
}

/// One letter, written by LibreOffice in several formats.
class WordProcessorDocuments : public testing::TestWithParam<const char *> {
 protected:
  void SetUp() override {
    NSError error;
    if (!OfficeConversion::sharedConversion().isAvailable(&error))
      GTEST_SKIP() << error.localizedFailureReason.UTF8String();
    text_ = attributedStringWithWordProcessorDocument(document("letter." + std::string(GetParam())),
                                                      Deadline::after(60), &facts_, &error);
    ASSERT_TRUE(text_) << error.localizedFailureReason.UTF8String();
    EXPECT_FALSE(error);
  }
  static void TearDownTestSuite() { OfficeConversion::sharedConversion().endProcess(); }

  TextAttributes of(std::u16string_view part) const { return attributesOf(text_, part); }

  NSAttributedString text_;
  DocumentAttributes facts_;
};

TEST_P(WordProcessorDocuments, KeepTheirText) {
  EXPECT_EQ(text_.string().UTF8String(),
            "First heading\nSecond heading\nPlain bold, slanted, lined, struck, x2, H2O, coloured and linked."
            "\u2028"
            "A second line\tbehind a tab.\n\t\u2022\tone\n\ta)\tinner\n\tb)\tother\n\t\u2022\ttwo\n"
            "Between the lists\n\t3.\tthree\n\t4.\tfour\nwide\ntall\nupper\nlower\n"
            "A picture \ufffc and a note1.\n\fThe last page.\n1 The note.");
}

TEST_P(WordProcessorDocuments, KeepHeadingsAndEmphasis) {
  EXPECT_EQ(of(u"First").paragraphStyle->headerLevel, 1);
  EXPECT_EQ(of(u"Second").paragraphStyle->headerLevel, 2);
  EXPECT_EQ(of(u"Plain").paragraphStyle->headerLevel, 0);
  EXPECT_TRUE(of(u"First").paragraphStyle->textLists.empty());
  EXPECT_EQ(of(u"First").font, (NSFont{u"Georgia"_ns, 20, kBoldFontWeight}));
  EXPECT_EQ(of(u"Plain").font, (NSFont{u"Georgia"_ns, 11}));
  EXPECT_TRUE(of(u"bold").font.isBold());
  EXPECT_TRUE(of(u"slanted").font.isItalic);
  EXPECT_EQ(of(u"lined").underlineStyle, NSUnderlineStyle::single);
  EXPECT_EQ(of(u"struck").strikethroughStyle, NSStrikethroughStyle::single);
  EXPECT_EQ(of(u"2, H").superscript, 1);
  EXPECT_EQ(of(u"2O").superscript, -1);
  EXPECT_EQ(of(u"coloured").font, (NSFont{u"Courier New"_ns, 14}));
  EXPECT_EQ(of(u"coloured").foregroundColor, (NSColor{0xc0, 0x20, 0x20}));
  EXPECT_EQ(of(u"Between").paragraphStyle->alignment, NSTextAlignment::center);
  EXPECT_EQ(of(u"linked").link.UTF8String(), "https://example.org/a?b=1");
  EXPECT_FALSE(of(u".\u2028").link);
}

TEST_P(WordProcessorDocuments, KeepLists) {
  const auto outer = of(u"one").paragraphStyle, inner = of(u"inner").paragraphStyle;
  ASSERT_EQ(outer->textLists.size(), 1u);
  ASSERT_EQ(inner->textLists.size(), 2u);
  EXPECT_EQ(outer->textLists[0].markerFormat, u"{disc}"_ns);
  EXPECT_EQ(inner->textLists[0], outer->textLists[0]);
  EXPECT_EQ(inner->textLists[1].markerFormat, u"{lower-alpha})"_ns);
  EXPECT_EQ(of(u"other").paragraphStyle, inner);
  EXPECT_EQ(of(u"two").paragraphStyle, outer);
  EXPECT_NEAR(outer->headIndent, 36, 0.1);
  EXPECT_NEAR(outer->firstLineHeadIndent, 18, 0.1);
  const auto numbers = of(u"three").paragraphStyle;
  ASSERT_EQ(numbers->textLists.size(), 1u);
  EXPECT_EQ(numbers->textLists[0].markerFormat, u"{decimal}."_ns);
  EXPECT_EQ(numbers->textLists[0].startingItemNumber, 3);
  EXPECT_NE(numbers->textLists[0].identifier, outer->textLists[0].identifier);
  EXPECT_TRUE(of(u"Between").paragraphStyle->textLists.empty());
}

TEST_P(WordProcessorDocuments, KeepTables) {
  const auto cell = [this](std::u16string_view part) {
    const auto blocks = of(part).paragraphStyle->textBlocks;
    EXPECT_EQ(blocks.size(), 1u);
    return blocks.empty() ? NSTextTableBlock() : *blocks[0];
  };
  const struct {
    std::u16string_view text;
    std::uint32_t row, rows, column, columns;
  } cases[] = {{u"wide", 0, 1, 0, 2}, {u"tall", 1, 2, 0, 1}, {u"upper", 1, 1, 1, 1}, {u"lower", 2, 1, 1, 1}};
  for (const auto &[text, row, rows, column, columns] : cases) {
    const NSTextTableBlock block = cell(text);
    EXPECT_EQ(block.startingRow, row);
    EXPECT_EQ(block.rowSpan, rows);
    EXPECT_EQ(block.startingColumn, column);
    EXPECT_EQ(block.columnSpan, columns);
    EXPECT_EQ(block.table->numberOfColumns, 2u);
    EXPECT_EQ(block.backgroundColor, (NSColor{0xff, 0xff, 0xcc}));
    EXPECT_NEAR(block.borderWidths[NSTopEdge], 1, 0.1);
    EXPECT_EQ(block.borderColors[NSLeftEdge], (NSColor{0x80, 0x80, 0x80}));
    EXPECT_NEAR(block.width.value, columns * 141.7, 1.5);
  }
  EXPECT_TRUE(of(u"A picture").paragraphStyle->textBlocks.empty());
}

TEST_P(WordProcessorDocuments, KeepPicturesAndFacts) {
  const NSTextAttachment picture = of(u"\ufffc").attachment;
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture.fileWrapper().preferredFilename(), u"picture1.png"_ns);
  EXPECT_TRUE(picture.fileWrapper().regularFileContents().view().starts_with("\x89PNG"));
  ASSERT_TRUE(picture.sizeInPoints());
  EXPECT_NEAR(picture.sizeInPoints()->width, 48, 0.2);
  EXPECT_NEAR(picture.sizeInPoints()->height, 24, 0.2);
  EXPECT_FALSE(of(u" and a note").attachment);

  const std::string_view format = GetParam();
  EXPECT_EQ(facts_.documentType, format == "docx"  ? u"NSOfficeOpenXML"_ns
                                 : format == "doc" ? u"NSDocFormat"_ns
                                                   : u"NSOpenDocument"_ns);
  EXPECT_EQ(facts_.title, u"The letter"_ns);
  EXPECT_EQ(facts_.subject, u"Tests"_ns);
  EXPECT_EQ(facts_.author, u"A. Writer"_ns);
  EXPECT_EQ(facts_.creationTime, NSDate::dateWithUTC(2020, 2, 29, 12, 30, 0));
  ASSERT_TRUE(facts_.paperSize);
  EXPECT_NEAR(facts_.paperSize->width, 595.3, 0.2);
  EXPECT_NEAR(facts_.paperSize->height, 841.9, 0.2);
  EXPECT_NEAR(facts_.leftMargin.value_or(0), 85, 0.2);
  EXPECT_NEAR(facts_.rightMargin.value_or(0), 70.9, 0.2);
}

TEST(CutWordProcessorDocument, IsNotTakenForAWholeOne) {
  if (!OfficeConversion::sharedConversion().isAvailable()) GTEST_SKIP() << "LibreOffice is not installed";
  const NSData whole = NSData::dataWithContentsOfFile(document("letter.odt"));
  const TemporaryFolder folder;
  const struct {
    std::uint32_t missing;
    std::string_view beginning;
    ErrorCode code;
  } cases[] = {{0, "First", ErrorCode::none},
               {30, "First", ErrorCode::incomplete},
               {whole.length() / 2, "", ErrorCode::damaged}};
  for (const auto &[missing, beginning, code] : cases) {
    NSError error;
    const NSString path = folder.write("cut.odt", whole.view().substr(0, whole.length() - missing));
    const NSAttributedString text = initWithPath(path, {.deadline = Deadline::after(60)}, nullptr, &error);
    EXPECT_TRUE(text.string().UTF8String().starts_with(beginning)) << missing;
    EXPECT_EQ(error.errorCode(), code) << missing;
    EXPECT_EQ(static_cast<bool>(text), code != ErrorCode::damaged) << missing;
  }
  OfficeConversion::sharedConversion().endProcess();
}

TEST(MissingWordProcessorDocument, IsNotTakenForADamagedOne) {
  const bool isAvailable = OfficeConversion::sharedConversion().isAvailable();
  const TemporaryFolder folder;
  NSError error;
  DocumentAttributes facts;
  EXPECT_FALSE(
      attributedStringWithWordProcessorDocument(folder.string("no.odt"), Deadline::after(60), &facts, &error));
  EXPECT_EQ(error.errorCode(), isAvailable ? ErrorCode::noSuchFile : ErrorCode::unsupportedType);
  EXPECT_FALSE(facts.documentType);
  OfficeConversion::sharedConversion().endProcess();
}

INSTANTIATE_TEST_SUITE_P(Formats, WordProcessorDocuments, testing::Values("odt", "docx", "doc", "rtf", "fodt"),
                         [](const auto &format) { return std::string(format.param); });

}  // namespace
}  // namespace nimbo
