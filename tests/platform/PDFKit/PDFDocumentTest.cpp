// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFDocument.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <new>
#include <vector>

#include "tests/support/PDFSamples.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

std::unique_ptr<PDFDocument> openSample(const char *name) {
  const NSData data = samplePDF(name);
  EXPECT_TRUE(data) << name;
  return PDFDocument::documentWithData(data);
}

const std::string kCatalog = "<</Type /Catalog /Pages 2 0 R>>";
const std::string kFont = "<</Type /Font /Subtype /Type1 /BaseFont /Helvetica>>";

TEST(PDFDocument, GivesTextInReadingOrder) {
  for (const char *name :
       {"columns.pdf", "object-streams.pdf", "owner-password.pdf", "empty-owner-password.pdf"}) {
    SCOPED_TRACE(name);
    const auto document = openSample(name);
    ASSERT_TRUE(document);
    ASSERT_EQ(document->pageCount(), 2u);
    EXPECT_EQ(document->pageAtIndex(0).string(),
              u"A catalogue of documents, each with its\nown efficient summary\nand na\u00efve words.\n\n"
              u"The second column\nof the first page\nknows \u201cquotes\u201d.\n"_ns);
    EXPECT_EQ(document->pageAtIndex(1).string(), u"Page two: Cafe\u0301 Zoe\u0308 \U0001d538\nends here.\n"_ns);
    EXPECT_EQ(document->isEncrypted(), std::string_view(name).ends_with("password.pdf"));
    EXPECT_FALSE(document->isLocked());
  }
}

TEST(PDFDocument, ReadsItsInformation) {
  const NSDictionary expected{
      {u"Title"_ns, u"Žluťoučký \U0001d11e kůň"_ns},
      {u"Author"_ns, u"Ren\u00e9e\u2122"_ns},
      {u"Subject"_ns, u"na\u00efve"_ns},
      {u"Keywords"_ns, NSArray{u"alpha"_ns, u"beta gamma"_ns, u"delta"_ns}},
      {u"Producer"_ns, u"Ghostscript 9.99"_ns},
      {u"CreationDate"_ns, NSDate::dateWithUTC(2001, 2, 3, 2, 35, 6)},
  };
  EXPECT_EQ(openSample("metadata.pdf")->documentAttributes(), expected);
  EXPECT_FALSE(openSample("boxes.pdf")->documentAttributes());
}

TEST(PDFDocument, GivesBoxesAndRotation) {
  const struct {
    NSRect media, crop;
    int rotation;
  } expected[] = {
      {{{10, 20}, {300, 400}}, {{10, 100}, {100, 320}}, 90},
      {{{0, 0}, {500, 750}}, {{0, 0}, {500, 750}}, 270},
      {{{0, 0}, {612, 792}}, {{0, 0}, {612, 792}}, 0},
      {{{0, 0}, {612, 792}}, {{0, 0}, {612, 792}}, 270},
  };
  const auto document = openSample("boxes.pdf");
  ASSERT_EQ(document->pageCount(), std::size(expected));
  for (std::uint32_t i = 0; i < std::size(expected); ++i) {
    const PDFPage page = document->pageAtIndex(i);
    EXPECT_EQ(page.boundsForBox(PDFDisplayBox::mediaBox), expected[i].media) << i;
    EXPECT_EQ(page.boundsForBox(PDFDisplayBox::cropBox), expected[i].crop) << i;
    EXPECT_EQ(page.rotation(), expected[i].rotation) << i;
    EXPECT_FALSE(page.string()) << i;
  }
}

TEST(PDFDocument, GivesTheBoxesThatHaveAnArea) {
  const NSRect letter = {{0, 0}, {612, 792}}, whole = {{0, 0}, {100, 200}};
  const struct {
    const char *entries;
    NSRect media, crop;
    int rotation = 0;
  } cases[] = {
      {"/MediaBox [0 0 0 200]", letter, letter},
      {"/MediaBox [0 0 100 0]", letter, letter},
      {"/MediaBox [100 200 0 0]", whole, whole},
      {"/MediaBox [0 0 100 200] /CropBox [50 0 50 200]", whole, whole},
      {"/MediaBox [0 0 100 200] /CropBox [0 60 100 60]", whole, whole},
      {"/MediaBox [0 0 100 200] /CropBox [100 0 150 200]", whole, whole},
      {"/MediaBox [0 0 100 200] /CropBox [90 -10 150 20]", whole, {{90, 0}, {10, 20}}},
      {"/MediaBox [0 0 50 100] /UserUnit 2", whole, whole},
      {"/MediaBox [0 0 100 200] /UserUnit 0", whole, whole},
      {"/MediaBox [0 0 100 200] /UserUnit -2", whole, whole},
      {"/MediaBox [0 0 100 200] /Rotate 44", whole, whole, 0},
      {"/MediaBox [0 0 100 200] /Rotate 46", whole, whole, 90},
      {"/MediaBox [0 0 100 200] /Rotate 360", whole, whole, 0},
      {"/MediaBox [0 0 100 200] /Rotate 450", whole, whole, 90},
      {"/MediaBox [0 0 100 200] /Rotate -90", whole, whole, 270},
      {"/MediaBox [0 0 100 200] /Rotate -540", whole, whole, 180},
  };
  for (const auto &c : cases) {
    const auto document = PDFDocument::documentWithData(
        PDFOfObjects({kCatalog, "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                      "<</Type /Page /Parent 2 0 R " + std::string(c.entries) + ">>"}));
    ASSERT_TRUE(document) << c.entries;
    const PDFPage page = document->pageAtIndex(0);
    EXPECT_EQ(page.boundsForBox(PDFDisplayBox::mediaBox), c.media) << c.entries;
    EXPECT_EQ(page.boundsForBox(PDFDisplayBox::cropBox), c.crop) << c.entries;
    EXPECT_EQ(page.rotation(), c.rotation) << c.entries;
    EXPECT_EQ(document->majorVersion(), 1);
    EXPECT_EQ(document->minorVersion(), 4);
  }
}

TEST(PDFDocument, BelievesCountsUpToAllItsObjects) {
  // Two pages, and five objects in all.
  for (const auto &[count, pages] : {std::pair(2, 2u), {5, 5u}, {6, 2u}, {7, 2u}, {-1, 2u}}) {
    const std::string page = "<</Type /Page /Parent 2 0 R>>";
    const auto document = PDFDocument::documentWithData(
        PDFOfObjects({kCatalog, "<</Type /Pages /Kids [3 0 R 4 0 R] /Count " + std::to_string(count) + ">>",
                      page, page, kFont}));
    EXPECT_EQ(document->pageCount(), pages) << count;
  }
}

TEST(PDFDocument, GetsThroughFalseCountsAndFormsThatDrawThemselves) {
  const auto huge = openSample("huge-count.pdf");
  EXPECT_EQ(huge->pageCount(), 2u);
  EXPECT_EQ(huge->pageAtIndex(1).string(), u"Few pages\n"_ns);
  EXPECT_FALSE(huge->pageAtIndex(2).string());
  for (const std::uint32_t pages : {1u, 2u, 3u, 4u, 7u, 64u, 65u}) {
    std::string kids;
    std::vector<std::string> objects = {kCatalog, ""};
    for (std::uint32_t i = 0; i < pages; ++i) {
      kids += std::to_string(i + 3) + " 0 R ";
      objects.emplace_back("<</Type /Page /Parent 2 0 R>>");
    }
    objects[1] = "<</Type /Pages /Kids [" + kids + "] /Count 1000000>>";
    EXPECT_EQ(PDFDocument::documentWithData(PDFOfObjects(objects))->pageCount(), pages);
    EXPECT_EQ(PDFDocument::documentWithData(PDFOfObjects(objects), {.pages = 3})->pageCount(),
              std::min(pages, 3u));
  }
  EXPECT_EQ(openSample("recursion.pdf")->pageAtIndex(0).string(), u"before\n\nwithin\n\nafter\n"_ns);
  EXPECT_EQ(huge->pageAtIndex(2).boundsForBox(PDFDisplayBox::mediaBox), (NSRect{{0, 0}, {612, 792}}));
}

TEST(PDFDocument, GoesThroughItsTreeOfPages) {
  std::string many;
  std::string texts;
  for (int i = 0; i < 100; ++i) {
    many += "3 0 R ";
    texts += "a\n";
  }
  const auto page = [](int content) {
    return "<</Type /Page /MediaBox [0 0 99 99] /Contents " + std::to_string(content) +
           " 0 R /Resources <</Font <</F 6 0 R>>>>>> ";
  };
  const auto node = [](const std::string &kids, const std::string &count) {
    return "<</Type /Pages /Kids [" + kids + "] " + count + ">>";
  };
  const struct {
    const char *what;
    std::string root;
    std::string other;
    std::string texts;
  } cases[] = {
      {"one page, many times", node(many, "/Count 100"), "null", texts},
      {"pages that are no objects", node(page(4) + page(5) + page(4), "/Count 3"), "null", "a\nb\na\n"},
      {"a false count within", node("7 0 R 3 0 R", "/Count 3"), node(page(5) + "3 0 R", "/Count 9"),
       "b\na\na\n"},
      {"no counts", node("7 0 R 3 0 R", ""), node("3 0 R 3 0 R", ""), "a\na\na\n"},
      {"no types", "<</Kids [7 0 R 3 0 R] /Count 2>>", "<</Kids [3 0 R] /Count 1>>", "a\na\n"},
      {"null is no page", node("null 3 0 R", "/Count 1"), "null", "a\n"},
      {"kids within themselves", "<</Type /Pages /Kids 7 0 R /Count 99>>",
       "[3 0 R <</Type /Pages /Kids 7 0 R>>]", "a\na\n"},
      {"nodes within themselves", node("3 0 R 7 0 R", "/Count 99"), node("7 0 R 3 0 R 2 0 R", "/Count 99"),
       "a\na\n"},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.what);
    const auto document = PDFDocument::documentWithData(
        PDFOfObjects({kCatalog, c.root, page(4), PDFStream("", "BT /F 9 Tf 9 9 Td (a) Tj ET"),
                      PDFStream("", "BT /F 9 Tf 9 9 Td (b) Tj ET"), kFont, c.other}));
    ASSERT_TRUE(document);
    EXPECT_EQ(document->pageCount(), c.texts.size() / 2);
    NSMutableString found;
    // Back and forth, since each page has to be found alone, too.
    for (std::uint32_t i = document->pageCount(); i-- > 0;) EXPECT_TRUE(document->pageAtIndex(i).string()) << i;
    document->readPages(
        Deadline::never(), [&](const NSString &text) { return found.appendString(text), true; }, nullptr);
    EXPECT_EQ(std::move(found).string().UTF8String(), c.texts);
  }
}

/// Links within the document cost nothing, however many pages and names there are to look through.
TEST(PDFDocument, FollowsNoLinksToItsPages) {
  std::string kids;
  std::string links;
  for (int i = 0; i < 3000; ++i) kids += "3 0 R ";
  for (const char *target : {"/Dest [5 0 R /Fit]", "/Dest [2999 /Fit]", "/Dest (name)", "/Dest /name",
                             "/A <</S /GoTo /D [5 0 R /Fit]>>", "/A <</S /URI /URI (http://a/)>>"})
    for (int i = 0; i < 30; ++i)
      links += std::string("<</Type /Annot /Subtype /Link /Rect [0 0 99 99] ") + target + ">>";
  const auto document = PDFDocument::documentWithData(
      PDFOfObjects({kCatalog, "<</Type /Pages /Kids [" + kids + "5 0 R] /Count 3001 /MediaBox [0 0 99 99]>>",
                    "<</Type /Page /Parent 2 0 R>>", kFont,
                    "<</Type /Page /Parent 2 0 R /Contents 6 0 R /Resources <</Font <</F 4 0 R>>>> /Annots [" +
                        links + "]>>",
                    PDFStream("", "BT /F 9 Tf 9 9 Td (a) Tj ET")}),
      {.stepWork = 100'000});
  ASSERT_TRUE(document);
  NSError error;
  const NSAttributedString text = document->pageAtIndex(3000).attributedString(&error);
  EXPECT_FALSE(error);
  ASSERT_EQ(text.string(), u"a\n"_ns);
  EXPECT_EQ(text.runs().front().attributes->link, u"http://a/"_ns);
}

/// Shows annotations and filled forms too, and text whatever it is filled with. Glyphs without a meaning are
/// blanks, and no text when there is nothing else.
TEST(PDFDocument, TakesWhatAReaderSees) {
  const std::string field =
      "<</Type /Annot /Subtype /Widget /FT /Tx /T (a) /V (x) /Rect [20 20 180 40] /AP <</N 6 0 R>>>>";
  const std::string unknownGlyphs =
      "<</Type /Font /Subtype /Type0 /BaseFont /Odd /Encoding /Identity-H /DescendantFonts [<</Type /Font "
      "/Subtype /CIDFontType2 /BaseFont /Odd /CIDSystemInfo <</Registry (Adobe) /Ordering (Identity) "
      "/Supplement 0>> /FontDescriptor <</Type /FontDescriptor /FontName /Odd /Flags 4>>>>]>>";
  const std::string resources =
      "/Resources <</Font <</F 5 0 R /G 7 0 R>> /Pattern <</P <</PatternType 2 /Shading <</ShadingType "
      "2>>>>>>>>";
  const auto document = PDFDocument::documentWithData(PDFOfObjects({
      kCatalog,
      "<</Type /Pages /Kids [3 0 R 9 0 R] /Count 2 /MediaBox [0 0 200 200] " + resources + ">>",
      "<</Type /Page /Parent 2 0 R /Contents 4 0 R /Annots [" + field + "]>>",
      PDFStream("",
                "/Pattern cs /P scn BT /F 12 Tf 20 150 Td (of) Tj /G 12 Tf <00100011> Tj /F 12 Tf (ce) Tj ET"),
      kFont,
      PDFStream("/Type /XObject /Subtype /Form /BBox [0 0 160 20] " + resources,
                "BT /F 12 Tf 2 5 Td (filled) Tj ET"),
      unknownGlyphs,
      PDFStream("", "BT /G 12 Tf 20 150 Td <00100011> Tj 0 -20 Td <0012> Tj ET"),
      "<</Type /Page /Parent 2 0 R /Contents 8 0 R>>",
  }));
  ASSERT_TRUE(document);
  EXPECT_EQ(document->pageAtIndex(0).string(), u"of ce\n\nfilled\n"_ns);
  EXPECT_FALSE(document->pageAtIndex(1).string());
}

/// Pages "good" and "bomb" as `kinds` says ('g', 'b'). A bomb is ten forms, each of which draws the next ten
/// times.
NSData documentOfBombs(const std::string &kinds, const std::string &leaf) {
  std::string kids;
  for (const char kind : kinds) kids += kind == 'g' ? "3 0 R " : "4 0 R ";
  const auto page = [](int contents) {
    return "<</Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents " + std::to_string(contents) +
           " 0 R /Resources <</Font <</F 6 0 R>> /XObject <</X 7 0 R>>>>>>";
  };
  const auto form = [](int number) {
    std::string draws;
    for (int i = 0; i < 10; ++i) draws += "/X Do ";
    return PDFStream("/Type /XObject /Subtype /Form /BBox [0 0 200 200] /Resources <</XObject <</X " +
                         std::to_string(number + 1) + " 0 R>>>>",
                     draws);
  };
  return PDFOfObjects(
      {kCatalog, "<</Type /Pages /Kids [" + kids + "] /Count " + std::to_string(kinds.size()) + ">>", page(5),
       page(17), PDFStream("", "BT /F 12 Tf 20 20 Td (good) Tj ET"), kFont, form(7), form(8), form(9), form(10),
       form(11), form(12), form(13), form(14), form(15),
       PDFStream("/Type /XObject /Subtype /Form /BBox [0 0 200 200] /Resources <</Font <</F 6 0 R>>>>", leaf),
       PDFStream("", "/X Do")});
}

TEST(PDFDocument, GivesUpPagesThatCostTooMuch) {
  const char *const drawing = "0 0 1 1 re f";
  const struct {
    const char *what;
    const char *kinds;
    PDFLimits limits;
    std::vector<bool> readable;
  } cases[] = {
      {"time", "bg", {.stepWork = UINT64_MAX, .stepSeconds = 0.3}, {false, true}},
      {"work", "bg", {.stepWork = 100'000, .stepSeconds = 3600}, {false, true}},
      {"errors in a row",
       "bgbbg",
       {.stepWork = 100'000, .pageErrorsInARow = 2},
       {false, true, false, false, false}},
      {"pages", "gggg", {.pages = 3}, {true, true, true}},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.what);
    const auto document = PDFDocument::documentWithData(documentOfBombs(c.kinds, drawing), c.limits);
    ASSERT_TRUE(document);
    ASSERT_EQ(document->pageCount(), c.readable.size());
    for (std::uint32_t i = 0; i < c.readable.size(); ++i) {
      NSError error;
      EXPECT_EQ(document->pageAtIndex(i).string(&error), c.readable[i] ? u"good\n"_ns : NSString()) << i;
      // Behind too many errors in a row no page is tried.
      const bool isTried = i < 4;
      EXPECT_EQ(error.errorCode(), c.readable[i] ? ErrorCode::none
                                   : isTried     ? ErrorCode::timeLimit
                                                 : ErrorCode::damaged)
          << i;
    }
  }
}

/// The same at each run, however much of it there is.
TEST(PDFDocument, GivesWhatWasFoundOnAPageThatCostsTooMuch) {
  const NSData data = documentOfBombs("bg", "BT /F 12 Tf 20 20 Td (leaf) Tj ET");
  const std::pair<PDFLimits, ErrorCode> cases[] = {
      {{.stepWork = 30'000, .stepSeconds = 3600}, ErrorCode::timeLimit},
      {{.stepWork = 300'000, .stepSeconds = 3600}, ErrorCode::timeLimit},
      {{.memoryBytes = 8 << 20, .stepSeconds = 3600}, ErrorCode::memoryLimit},
  };
  std::uint32_t length = 0;
  for (const auto &[limits, code] : cases) {
    NSString first;
    for (int run = 0; run < 2; ++run) {
      const auto document = PDFDocument::documentWithData(data, limits);
      NSError error;
      const NSString text = document->pageAtIndex(0).string(&error);
      EXPECT_EQ(error.errorCode(), code);
      EXPECT_TRUE(text.view().starts_with(u"leaf\n"));
      EXPECT_GT(text.length(), length);
      if (run > 0) {
        EXPECT_EQ(text, first);
      }
      first = text;
      EXPECT_EQ(document->pageAtIndex(1).string(&(error = {})), u"good\n"_ns);
      EXPECT_FALSE(error);
    }
    length = first.length();
  }
}

/// Many objects, without a page.
NSData documentOfFonts(std::size_t count) {
  std::vector<std::string> objects = {kCatalog, "<</Type /Pages /Kids [] /Count 0>>"};
  objects.resize(count, kFont);
  return PDFOfObjects(objects);
}

TEST(PDFDocument, SaysWhyItIsNotOpened) {
  const struct {
    NSData data;
    ErrorCode code;
    PDFLimits limits = {};
  } cases[] = {
      {NSData::data(), ErrorCode::incomplete},
      {dataOfString("<!DOCTYPE html><html><body><p>Text</p></body></html>"), ErrorCode::unsupportedType},
      {dataOfString(std::string("PK\3\4\24\0\0\0\0\0\0\0\0\0\0\0\0\0\24\0\0\0\24\0\0\0\10\0\0\0"
                                "mimetypeapplication/epub+zip",
                                58)),
       ErrorCode::unsupportedType},
      {dataOfString("\x89PNG\r\n\x1a\n"), ErrorCode::unsupportedType},
      {dataOfString("%PDF-1.7"), ErrorCode::damaged},
      {dataOfString(std::string(900, 'x') + "%PDF-1.7\n1 0 obj"), ErrorCode::damaged},
      {documentOfFonts(2000), ErrorCode::timeLimit, {.stepSeconds = 0}},
      {documentOfFonts(2000), ErrorCode::timeLimit, {.deadline = Deadline::after(0)}},
      {documentOfFonts(2000), ErrorCode::memoryLimit, {.memoryBytes = 500'000}},
      {documentOfFonts(2000), ErrorCode::memoryLimit, {.memoryBytes = 1'000}},
  };
  const TemporaryFolder folder;
  for (const auto &[data, code, limits] : cases) {
    const NSString file = folder.write("a.pdf", data.view());
    NSError error;
    EXPECT_FALSE(PDFDocument::documentWithData(data, limits, &error));
    EXPECT_EQ(error.errorCode(), code) << error.localizedFailureReason.UTF8String();
    NSError errorOfFile;
    EXPECT_FALSE(PDFDocument::documentWithContentsOfFile(file, limits, &errorOfFile));
    EXPECT_EQ(errorOfFile, error);
    EXPECT_FALSE(PDFDocument::documentWithData(data, limits));
  }
  NSError error;
  EXPECT_FALSE(PDFDocument::documentWithData(NSData(), {}, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::incomplete);
  // Where nothing is found nothing is allocated, but reading costs, too.
  const NSString blank = folder.write("blank.pdf", "%PDF-1.7");
  std::filesystem::resize_file(blank.UTF8String(), 64 << 20);
  const PDFLimits limits = {.stepWork = 8000, .stepSeconds = 3600};
  EXPECT_FALSE(PDFDocument::documentWithContentsOfFile(blank, limits, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::timeLimit);
  EXPECT_TRUE(PDFDocument::documentWithData(documentOfFonts(2000), {}, &(error = {})));
  EXPECT_FALSE(error);
}

TEST(PDFDocument, LocksAreAReason) {
  // The second hides even its pages.
  for (const auto &[name, pages] : {std::pair("locked.pdf", 1u), {"locked-pages.pdf", 0u}}) {
    const auto document = openSample(name);
    ASSERT_TRUE(document) << name;
    NSError error;
    EXPECT_TRUE(document->isLocked(&error)) << name;
    EXPECT_EQ(error.errorCode(), ErrorCode::locked) << name;
    EXPECT_EQ(document->pageCount(), pages) << name;
    EXPECT_FALSE(document->documentAttributes()) << name;
  }
  for (const char *name : {"owner-password.pdf", "empty-owner-password.pdf", "attachments-locked.pdf"}) {
    NSError error;
    EXPECT_FALSE(openSample(name)->isLocked(&error)) << name;
    EXPECT_FALSE(error) << name;
  }
  // Without its proof the key of the empty password may be a wrong one.
  std::string unproven(samplePDF("empty-owner-password.pdf").view());
  ASSERT_NE(unproven.find("/Perms"), std::string::npos);
  unproven.replace(unproven.find("/Perms"), 6, "/Parms");
  EXPECT_TRUE(PDFDocument::documentWithData(dataOfString(unproven))->isLocked());
  const auto open = openSample("attachments-locked.pdf");
  EXPECT_EQ(open->pageAtIndex(0).string(), u"Open text\n"_ns);
  EXPECT_EQ(open->documentAttributes(), (NSDictionary{{u"Title"_ns, u"An open title"_ns}}));
}

TEST(PDFDocument, UnlocksWithThePasswordOfUserOrOwner) {
  for (const char *name : {"locked.pdf", "locked-pages.pdf"}) {
    for (const NSString &password : {u"user"_ns, u"owner"_ns}) {
      const auto document = openSample(name);
      for (const NSString &wrong : {u"User"_ns, NSString::string(), NSString()}) {
        NSError error;
        EXPECT_FALSE(document->unlockWithPassword(wrong, &error)) << name;
        EXPECT_EQ(error.errorCode(), ErrorCode::locked) << name;
      }
      EXPECT_TRUE(document->unlockWithPassword(password)) << name;
      EXPECT_FALSE(document->isLocked()) << name;
      EXPECT_EQ(document->pageCount(), 1u) << name;
      EXPECT_EQ(document->documentAttributes(), openSample("metadata.pdf")->documentAttributes()) << name;
    }
  }
  EXPECT_TRUE(openSample("columns.pdf")->unlockWithPassword(u"any"_ns));
}

TEST(PDFDocument, ReadsSomePages) {
  const struct {
    NSRange pages;
    std::vector<NSString> texts;
    std::string_view reason;
  } cases[] = {
      {{0, 9}, {u"good\n"_ns, {}, u"good\n"_ns}, "1 of 3 pages cannot be read"},
      {{2, 9}, {u"good\n"_ns}, ""},
      {{1, 2}, {{}, u"good\n"_ns}, "1 of 2 pages cannot be read"},
      {{3, 1}, {}, ""},
      {{UINT32_MAX, UINT32_MAX}, {}, ""},
  };
  const auto document =
      PDFDocument::documentWithData(documentOfBombs("gbg", "0 0 1 1 re f"), {.stepWork = 100'000});
  for (const auto &[pages, expected, reason] : cases) {
    std::vector<NSString> texts;
    NSError error;
    document->readPages(
        pages, Deadline::never(), [&](const NSString &text) { return texts.push_back(text), true; }, &error);
    EXPECT_EQ(texts, expected);
    EXPECT_EQ(static_cast<bool>(error), !reason.empty());
    if (error) {
      EXPECT_TRUE(error.localizedFailureReason.UTF8String().starts_with(reason));
    }
  }
  const auto columns = openSample("columns.pdf");
  EXPECT_TRUE(columns->selectionForPages({1, 1}).attributedString().string().view().starts_with(u"Page two"));
  NSError error;
  openSample("boxes.pdf")
      ->readPages(
          {1, 2}, Deadline::never(), [](const NSString &) { return true; }, &error);
  EXPECT_EQ(error.localizedFailureReason, u"the pages asked for have no text layer"_ns);
}

/// "b" is a page that needs too much work.
TEST(PDFDocument, SaysWhichPagesAreMissing) {
  const struct {
    const char *kinds;
    std::size_t enoughTexts;
    Deadline deadline;
    std::size_t texts;
    ErrorCode code;
    std::string_view reason;
  } cases[] = {
      {"ggg", 9, Deadline::never(), 3, ErrorCode::none, ""},
      {"gbg", 9, Deadline::never(), 2, ErrorCode::timeLimit, "1 of 3 pages cannot be read"},
      {"bgbb", 9, Deadline::after(3600), 1, ErrorCode::timeLimit, "3 of 4 pages cannot be read"},
      {"ggg", 1, Deadline::never(), 1, ErrorCode::incomplete, "pages 2 to 3 are left out"},
      {"ggg", 2, Deadline::never(), 2, ErrorCode::incomplete, "page 3 is left out"},
      {"ggg", 3, Deadline::never(), 3, ErrorCode::none, ""},
      {"gbg", 9, Deadline::after(0), 1, ErrorCode::timeLimit, "pages 2 to 3 are left out"},
      {"g", 9, Deadline::after(0), 1, ErrorCode::none, ""},
      {"b", 9, Deadline::after(0), 0, ErrorCode::timeLimit, "1 of 1 pages"},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.kinds);
    const auto document =
        PDFDocument::documentWithData(documentOfBombs(c.kinds, "0 0 1 1 re f"), {.stepWork = 100'000});
    ASSERT_TRUE(document);
    std::size_t texts = 0;
    NSError error;
    document->readPages(
        c.deadline,
        [&](const NSString &text) {
          EXPECT_EQ(text, u"good\n"_ns);
          return ++texts < c.enoughTexts;
        },
        &error);
    EXPECT_EQ(texts, c.texts);
    EXPECT_EQ(error.errorCode(), c.code);
    const std::string told = error.localizedFailureReason.UTF8String();
    EXPECT_NE(told.find(c.reason), std::string::npos) << told;
  }
}

TEST(PDFDocument, SaysWhatIsLost) {
  const auto read = [](const NSData &data, const PDFLimits &limits, int *texts, NSError *error) {
    const auto document = PDFDocument::documentWithData(data, limits);
    ASSERT_TRUE(document);
    document->documentAttributes(error);
    document->readPages(
        Deadline::never(), [&](const NSString &) { return ++*texts > 0; }, error);
  };
  const std::string tree = "<</Type /Pages /Kids [3 0 R] /Count 1>>";
  const std::string text = PDFStream("", "BT /F 12 Tf 20 20 Td (good) Tj ET");
  const auto page = [](const std::string &contents, const std::string &font = "5 0 R") {
    return "<</Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents " + contents +
           " /Resources <</Font <</F " + font + ">> /XObject <</X 8 0 R>>>>>>";
  };
  const auto changed = [](const char *sample, std::string_view from, std::string_view to) {
    std::string bytes(samplePDF(sample).view());
    const std::size_t place = bytes.find(from);
    EXPECT_NE(place, std::string::npos) << from;
    return dataOfString(bytes.replace(place, to.size(), to));
  };
  const auto formsInEachOther = [&](int count) {
    std::vector<std::string> objects = {kCatalog, tree, page("6 0 R"), text, kFont, PDFStream("", "/X Do"),
                                        "null"};
    for (int i = 1; i <= count; ++i)
      objects.push_back(
          PDFStream("/Type /XObject /Subtype /Form /BBox [0 0 200 200] /Resources <</Font <</F 5 0 "
                    "R>> /XObject <</X " +
                        std::to_string(objects.size() + 2) + " 0 R>>>>",
                    i < count ? "/X Do" : "BT /F 12 Tf 20 20 Td (good) Tj ET"));
    return PDFOfObjects(objects);
  };
  const struct {
    const char *what;
    NSData data;
    int texts;
    ErrorCode code;
    std::string_view reason;
    PDFLimits limits = {};
  } cases[] = {
      {"nothing", PDFOfObjects({kCatalog, tree, page("4 0 R"), text, kFont}), 1, ErrorCode::none, ""},
      {"fonts and pictures, not text",
       PDFOfObjects({kCatalog, tree, page("[4 0 R 6 0 R]", "9 0 R"), text, kFont,
                     PDFStream("", "/X Do /Y Do /Z gs unknown")}),
       1, ErrorCode::none, ""},
      {"no contents", PDFOfObjects({kCatalog, tree, page("null"), text, kFont}), 0, ErrorCode::incomplete,
       "the PDF has no text layer"},
      {"missing contents", PDFOfObjects({kCatalog, tree, page("9 0 R"), text, kFont}), 0, ErrorCode::damaged,
       "1 of 1 pages cannot be read in full; the first of them: the PDF is damaged: a part of the content is "
       "missing"},
      {"missing part", PDFOfObjects({kCatalog, tree, page("[4 0 R 9 0 R]"), text, kFont}), 1,
       ErrorCode::damaged, "a part of the content is missing"},
      {"missing first part", PDFOfObjects({kCatalog, tree, page("[9 0 R 4 0 R]"), text, kFont}), 1,
       ErrorCode::damaged, "a part of the content is missing"},
      {"damaged content",
       PDFOfObjects(
           {kCatalog, tree, page("[4 0 R 6 0 R]"), text, kFont, PDFStream("/Filter /FlateDecode ", "no zlib")}),
       1, ErrorCode::damaged, "read error"},
      {"only errors",
       PDFOfObjects({kCatalog, tree, page("4 0 R"), PDFStream("", std::string(400, ')')), kFont}), 0,
       ErrorCode::damaged, "too many syntax errors"},
      {"unreadable composite font",
       PDFOfObjects({kCatalog, tree, page("4 0 R"), text, "<</Type /Font /Subtype /Type0 /BaseFont /Odd>>"}), 1,
       ErrorCode::damaged, "a font cannot be read"},
      {"missing page",
       PDFOfObjects({kCatalog, "<</Type /Pages /Kids [3 0 R 9 0 R] /Count 2>>", page("4 0 R"), text, kFont}), 1,
       ErrorCode::damaged,
       "1 of 2 pages cannot be read in full; the first of them: the PDF is damaged: the page"},
      {"no pages", samplePDF("no-pages.pdf"), 0, ErrorCode::incomplete, "the PDF has no pages"},
      {"no page tree", PDFOfObjects({kCatalog}), 0, ErrorCode::damaged, "its pages are missing"},
      {"too small a count", changed("columns.pdf", "/Count 2", "/Count 1"), 1, ErrorCode::damaged,
       "its page count is 1, but it has more"},
      {"no count", changed("columns.pdf", "/Count 2", "/Count x"), 2, ErrorCode::damaged,
       "its page count is 0, but it has 2"},
      {"a false count", samplePDF("huge-count.pdf"), 2, ErrorCode::damaged, "but it has 2"},
      {"too many pages",
       samplePDF("columns.pdf"),
       1,
       ErrorCode::incomplete,
       "only the first 1 pages are read",
       {.pages = 1}},
      {"deep forms", formsInEachOther(64), 1, ErrorCode::none, ""},
      {"too deep forms", formsInEachOther(65), 0, ErrorCode::damaged,
       "its forms are too deep within each other"},
      {"attributes", changed("metadata.pdf", "/Info 3", "/Info 9"), 0, ErrorCode::damaged,
       "its attributes are missing"},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.what);
    int texts = 0;
    NSError error;
    read(c.data, c.limits, &texts, &error);
    EXPECT_EQ(texts, c.texts);
    const std::string told = error.localizedFailureReason.UTF8String();
    EXPECT_EQ(error.errorCode(), c.code) << told;
    EXPECT_NE(told.find(c.reason), std::string::npos) << told;
  }
}

TEST(PDFDocument, ReasonsAreForThoseWhoAsk) {
  const auto page = [](const std::string &contents) {
    return "<</Type /Page /Parent 2 0 R /MediaBox [0 0 99 99] /Contents " + contents +
           " /Resources <</Font <</F 5 0 R>>>>>>";
  };
  // The first page lacks a part, and the third one is missing.
  const NSData data =
      PDFOfObjects({kCatalog, "<</Type /Pages /Kids [3 0 R 4 0 R 9 0 R] /Count 3>>", page("[6 0 R 9 0 R]"),
                    page("6 0 R"), kFont, PDFStream("", "BT /F 12 Tf 20 20 Td (good) Tj ET")});
  const auto document = PDFDocument::documentWithData(data);
  ASSERT_TRUE(document);
  NSError old;
  setError(&old, ErrorCode::other, "told before");
  for (const std::uint32_t index : {0u, 1u, 2u}) {
    const PDFPage each = document->pageAtIndex(index);
    const NSString text = index < 2 ? u"good\n"_ns : NSString();
    EXPECT_EQ(each.string(), text);
    EXPECT_EQ(each.attributedString().string(), text);
    EXPECT_EQ(static_cast<bool>(each.imageOfArea({{0, 0}, {9, 9}}, 9, 9, {})), index < 2);
    NSError errors[3] = {old, old, old};
    each.string(&errors[0]);
    each.attributedString(&errors[1]);
    each.imageOfArea({{0, 0}, {9, 9}}, 9, 9, {}, &errors[2]);
    for (const NSError &error : errors)
      EXPECT_EQ(error.errorCode(), index == 1 ? ErrorCode::other : ErrorCode::damaged) << index;
  }
  document->readPages(Deadline::never(), [](const NSString &) { return true; });
  document->documentAttributes();
}

TEST(PDFDocument, APageThatCannotBeUsedIsMissing) {
  const auto document = openSample("columns.pdf");
  int pages = 0;
  NSError error;
  document->readPages(
      Deadline::never(),
      [&](const NSString &) -> bool {
        if (++pages == 1) throw std::bad_alloc();
        return true;
      },
      &error);
  EXPECT_EQ(pages, 2);
  EXPECT_EQ(error.errorCode(), ErrorCode::memoryLimit);
}

TEST(PDFDocument, AFileMayBeCutShortWhileItIsRead) {
  const TemporaryFolder folder;
  const NSData whole = samplePDF("columns.pdf");
  for (const std::size_t left : {std::size_t{0}, std::size_t{100}, std::size_t{whole.length()} / 2}) {
    const auto document = PDFDocument::documentWithContentsOfFile(folder.write("a.pdf", whole.view()));
    ASSERT_TRUE(document);
    EXPECT_EQ(document->pageCount(), 2u);
    std::filesystem::resize_file(folder.path() / "a.pdf", left);
    document->documentAttributes();
    for (std::uint32_t page = 0; page < 2; ++page) {
      NSError error;
      if (!document->pageAtIndex(page).string(&error)) {
        EXPECT_EQ(error.errorCode(), ErrorCode::damaged) << left;
      }
    }
  }
}

/// Whatever a damaged document still gives, nothing is raised and nothing leaks.
TEST(PDFDocument, SurvivesDamage) {
  int readable = 0;
  for (const char *name : {"columns.pdf", "object-streams.pdf", "owner-password.pdf", "locked.pdf",
                           "metadata.pdf", "boxes.pdf", "recursion.pdf"}) {
    const NSData whole = samplePDF(name);
    for (std::uint32_t step = 0; step < 48; ++step) {
      std::string bytes(whole.view());
      if (step % 2)
        bytes.resize(bytes.size() * step / 48);
      else
        for (std::size_t i = step * 7; i < bytes.size(); i += 997)
          bytes[i] = static_cast<char>(bytes[i] ^ 0x15);
      const auto document = PDFDocument::documentWithData(dataOfString(bytes));
      if (!document) continue;
      document->documentAttributes();
      for (std::uint32_t page = 0; page < document->pageCount(); ++page) {
        readable += document->pageAtIndex(page).string().length() > 0;
        document->pageAtIndex(page).boundsForBox(PDFDisplayBox::cropBox);
      }
    }
  }
  EXPECT_GT(readable, 0);
  const std::string junkInFront = std::string(500, 'x') + std::string(samplePDF("columns.pdf").view());
  EXPECT_EQ(PDFDocument::documentWithData(dataOfString(junkInFront))->pageCount(), 2u);
}

}  // namespace
}  // namespace nimbo
