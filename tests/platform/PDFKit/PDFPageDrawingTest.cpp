// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/PDFKit/PDFDocument.hpp"
#include "tests/support/PDFSamples.hpp"
#include "tests/support/Pixels.hpp"

namespace nimbo {
namespace {

using std::string_literals::operator""s;

/// One page of content, whose entries and resources are as said, and further objects from 5 on.
NSData pageOf(const std::string &content, const std::string &entries = "/MediaBox [0 0 40 20]",
              const std::vector<std::string> &more = {}) {
  std::vector<std::string> objects = {
      "<</Type /Catalog /Pages 2 0 R>>", "<</Type /Pages /Kids [3 0 R] /Count 1>>",
      "<</Type /Page /Parent 2 0 R /Contents 4 0 R " + entries + ">>", PDFStream("", content)};
  objects.insert(objects.end(), more.begin(), more.end());
  return PDFOfObjects(objects);
}

/// The whole page at a pixel a point, unless another part or size is asked for.
CGImage drawn(const NSData &pdf, NSError *error = nullptr, const PDFLimits &limits = {}) {
  const auto document = PDFDocument::documentWithData(pdf, limits, error);
  if (!document) return {};
  const PDFPage page = document->pageAtIndex(0);
  const NSSize size = page.sizeAsShown();
  return page.imageOfArea({{0, 0}, size}, static_cast<std::uint32_t>(size.width),
                          static_cast<std::uint32_t>(size.height), {}, error);
}

// A red square in the lower left corner and a blue one beside it.
const std::string kSquares = "1 0 0 rg 0 0 10 10 re f 0 0 1 rg 10 0 10 10 re f";

TEST(PDFPageDrawing, ShowsThePageAsReadersDo) {
  const struct {
    const char *entries;
    NSSize size;
    // Where the middle of the red and the blue square are, from the upper left corner.
    std::uint32_t red[2], blue[2];
  } cases[] = {
      {"/MediaBox [0 0 40 20]", {40, 20}, {5, 15}, {15, 15}},
      {"/MediaBox [-10 -20 30 10]", {40, 30}, {15, 5}, {25, 5}},
      {"/MediaBox [0 0 40 20] /CropBox [5 5 25 20]", {20, 15}, {2, 12}, {10, 12}},
      {"/MediaBox [0 0 40 20] /Rotate 90", {20, 40}, {5, 5}, {5, 15}},
      {"/MediaBox [0 0 40 20] /Rotate 180", {40, 20}, {35, 5}, {25, 5}},
      {"/MediaBox [0 0 40 20] /Rotate -90", {20, 40}, {15, 35}, {15, 25}},
      {"/MediaBox [0 0 40 20] /UserUnit 2", {80, 40}, {10, 30}, {30, 30}},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.entries);
    const NSData pdf = pageOf(kSquares, c.entries);
    EXPECT_EQ(PDFDocument::documentWithData(pdf)->pageAtIndex(0).sizeAsShown(), c.size);
    NSError error;
    const CGImage image = drawn(pdf, &error);
    ASSERT_TRUE(image) << error.localizedFailureReason.UTF8String();
    EXPECT_EQ(pixelAt(image, c.red[0], c.red[1]), kRedPixel);
    EXPECT_EQ(pixelAt(image, c.blue[0], c.blue[1]), kBluePixel);
    EXPECT_TRUE(image.hasAlpha());
  }
}

TEST(PDFPageDrawing, DrawsPartsAtAnySize) {
  const auto document = PDFDocument::documentWithData(pageOf(kSquares));
  const PDFPage page = document->pageAtIndex(0);
  const CGImage part = page.imageOfArea({{10, 0}, {20, 20}}, 200, 100, {});
  ASSERT_EQ(part.width(), 200U);
  EXPECT_EQ(pixelAt(part, 0, 99), kBluePixel);
  EXPECT_EQ(pixelAt(part, 99, 50), kBluePixel);
  EXPECT_EQ(pixelAt(part, 101, 50), kNoPixel);
  EXPECT_EQ(pixelAt(part, 99, 49), kNoPixel);
  NSError error;
  for (const std::uint32_t side : {0U, 10'000U, CGImage::kMaximumSide + 1}) {
    EXPECT_FALSE(page.imageOfArea({{0, 0}, {20, 20}}, side, side, {}, &error));
    EXPECT_EQ(error.errorCode(), ErrorCode::tooLarge);
  }
  EXPECT_FALSE(page.imageOfArea({{0, 0}, {0, 20}}, 10, 10, {}));
}

TEST(PDFPageDrawing, SmoothsEdgesWhenAsked) {
  const auto document = PDFDocument::documentWithData(pageOf("1 0 0 rg 0 0 10.5 20 re f"));
  const PDFPage page = document->pageAtIndex(0);
  const CGImage smooth = page.imageOfArea({{0, 0}, {40, 20}}, 40, 20, {});
  EXPECT_NEAR(pixelAt(smooth, 10, 10).alpha, 128, 8);
  EXPECT_EQ(pixelAt(smooth, 10, 10).red, pixelAt(smooth, 10, 10).alpha);
  const CGImage hard = page.imageOfArea({{0, 0}, {40, 20}}, 40, 20, {.shouldAntialias = false});
  EXPECT_EQ(pixelAt(hard, 10, 10).alpha % 255, 0);
}

TEST(PDFPageDrawing, FindsTheGlyphsOfNames) {
  const auto letter = [](const std::string &encoding, const char *code) {
    const std::string font = "<</Type /Font /Subtype /Type1 /BaseFont /Helvetica " + encoding + ">>";
    return drawn(pageOf("BT /F 18 Tf 5 2 Td ("s + code + ") Tj ET",
                        "/MediaBox [0 0 40 20] /Resources <</Font <</F " + font + ">>>>"));
  };
  const auto named = [&](const std::string &name) {
    return letter("/Encoding <</Differences [65 /" + name + "]>>", "A");
  };
  const auto isSame = [](const CGImage &a, const CGImage &b) {
    return std::equal(a.pixels(), a.pixels() + a.bytesPerRow() * a.height(), b.pixels());
  };
  EXPECT_TRUE(isSame(named("Q"), letter("", "Q")));
  EXPECT_TRUE(isSame(named("germandbls"), letter("/Encoding /WinAnsiEncoding", "\\337")));
  EXPECT_TRUE(isSame(named("uni0041"), letter("", "A"))) << "another spelling";
  EXPECT_FALSE(isSame(named("Q"), named("R")));
  for (const std::string &name : {"nothing"s, std::string(120, 'Q'), std::string(200, 'Q')})
    EXPECT_TRUE(isSame(named(name), named("nobody"))) << name;
}

TEST(PDFPageDrawing, DrawsPicturesAndShadings) {
  const std::string entries =
      "/MediaBox [0 0 40 20] /Resources <</XObject <</I 5 0 R>> /Shading <</S 6 0 R>>>>";
  const NSData pdf = pageOf(
      "q 20 0 0 20 0 0 cm /I Do Q 20 0 20 20 re W n /S sh", entries,
      {PDFStream("/Subtype /Image /Width 1 /Height 2 /BitsPerComponent 8 /ColorSpace /DeviceRGB ",
                 "\xff\0\0\0\0\xff"s),
       "<</ShadingType 2 /ColorSpace /DeviceRGB /Coords [20 0 40 0] /Function <</FunctionType 2 /Domain [0 1] "
       "/C0 [1 0 0] /C1 [0 0 1] /N 1>>>>"});
  const CGImage image = drawn(pdf);
  EXPECT_EQ(pixelAt(image, 10, 2), kRedPixel);
  EXPECT_EQ(pixelAt(image, 10, 17), kBluePixel);
  EXPECT_NEAR(pixelAt(image, 30, 10).red, 127, 12);
  // The text of the same page is still read without them.
  const auto document = PDFDocument::documentWithData(pdf);
  EXPECT_TRUE(document->pageAtIndex(0).imageOfArea({{0, 0}, {40, 20}}, 40, 20, {}));
  EXPECT_FALSE(document->pageAtIndex(0).string());
}

TEST(PDFPageDrawing, SaysWhyThereIsNone) {
  NSError error;
  EXPECT_FALSE(drawn(samplePDF("locked.pdf"), &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::locked);
  const NSData pdf = pageOf(kSquares);
  const auto document = PDFDocument::documentWithData(pdf);
  error = {};
  EXPECT_FALSE(document->pageAtIndex(1).imageOfArea({{0, 0}, {40, 20}}, 40, 20, {}, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::damaged);
  error = {};
  EXPECT_FALSE(document->pageAtIndex(0).imageOfArea({{0, 0}, {40, 20}}, 40, 20,
                                                    {.deadline = Deadline::after(0)}, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::timeLimit);
  error = {};
  EXPECT_FALSE(drawn(pdf, &error, {.drawingWork = 10}));
  EXPECT_EQ(error.errorCode(), ErrorCode::timeLimit);
  error = {};
  const NSData lost = pageOf(kSquares, "/MediaBox [0 0 40 20] /Contents [4 0 R 99 0 R]");
  EXPECT_TRUE(drawn(lost, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::damaged);
}

std::string number(std::uint64_t value, int size) {
  std::string bytes;
  for (int i = size; i-- > 0;) bytes += static_cast<char>(value >> 8 * i & 0xff);
  return bytes;
}

/// A picture of JPEG 2000 that is a header only.
std::string hugeJPX() {
  return "\xff\x4f\xff\x51" + number(47, 2) + number(0, 2) + number(60'000, 4) + number(60'000, 4) +
         number(0, 8) + number(60'000, 4) + number(60'000, 4) + number(0, 8) + number(3, 2) +
         "\7\1\1\7\1\1\7\1\1";
}

/// A shading of so many triangles, each as large as the page: a flag, two coordinates and a colour a vertex.
std::string manyTriangles(int count) {
  const std::string triangle = "\0\0\0\xff\0\xff\0\xff\0\0\xff\xff"s;
  std::string data;
  for (int i = 0; i < count; ++i) data += triangle;
  return data;
}

// What would take minutes without a limit; the limit of work is what it meets, whatever the machine's speed.
TEST(PDFPageDrawing, EndsWhatGoesOnForEver) {
  const std::string media = "/MediaBox [0 0 400 400] ";
  const std::string mesh =
      "/ShadingType 4 /ColorSpace /DeviceGray /BitsPerCoordinate 8 /BitsPerComponent 8 /BitsPerFlag 8 /Decode "
      "[0 "
      "400 0 400 0 1] ";
  const struct {
    const char *name;
    NSData pdf;
  } cases[] = {
      {"tiles",
       pageOf("/Pattern cs /P scn 0 0 400 400 re f", media + "/Resources <</Pattern <</P 5 0 R>>>>",
              {PDFStream("/PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 300 300] /XStep 0.01 /YStep "
                         "0.01 /Resources <<>> ",
                         "1 0 0 rg 0 0 300 300 re f")})},
      {"triangles", pageOf("/S sh", media + "/Resources <</Shading <</S 5 0 R>>>>",
                           {PDFStream(mesh, manyTriangles(100'000))})},
  };
  for (const auto &c : cases) {
    NSError error;
    EXPECT_FALSE(drawn(c.pdf, &error, {.drawingWork = 2'000'000, .drawingSeconds = 1000})) << c.name;
    EXPECT_EQ(error.localizedFailureReason, u"reading the PDF takes too much work"_ns) << c.name;
  }
}

/// A grey picture of JPEG in so many scans, each of which says nothing new.
std::string manyScansOfJPEG(int count) {
  std::string data = "\xff\xd8\xff\xdb" + number(67, 2) + number(0, 1) + std::string(64, '\1') + "\xff\xc2" +
                     number(11, 2) + "\x08" + number(5000, 2) + number(5000, 2) + "\1\1\x11\0\xff\xc4"s +
                     number(20, 2) + number(0, 1) + number(1, 1) + std::string(16, '\0');
  for (int i = 0; i < count; ++i) data += "\xff\xda" + number(8, 2) + "\1\1\0\0\0\0"s;
  return data + "\xff\xd9";
}

TEST(PDFPageDrawing, LeavesOutPicturesThatTakeTooMuch) {
  const std::string large = "/Subtype /Image /Width 60000 /Height 60000 ";
  const std::string grey =
      "/Subtype /Image /Width 5000 /Height 5000 /BitsPerComponent 8 /ColorSpace /DeviceGray ";
  const struct {
    std::string picture;
    Pixel expected;
  } cases[] = {
      // What is lost of the data of a picture is black; a picture that is not tried is not drawn.
      {PDFStream(large + "/Filter /JPXDecode ", hugeJPX()), kRedPixel},
      {PDFStream(grey + "/Filter /DCTDecode ", manyScansOfJPEG(5)), {128, 128, 128}},
      {PDFStream(grey + "/Filter /DCTDecode ", manyScansOfJPEG(101)), {0, 0, 0}},
  };
  for (const auto &c : cases) {
    const NSData pdf = pageOf("1 0 0 rg 0 0 40 20 re f q 20 0 0 20 0 0 cm /I Do Q",
                              "/MediaBox [0 0 40 20] /Resources <</XObject <</I 5 0 R>>>>", {c.picture});
    const CGImage image = drawn(pdf);
    EXPECT_EQ(pixelAt(image, 30, 10), kRedPixel);
    EXPECT_EQ(pixelAt(image, 10, 10), c.expected);
  }
}

}  // namespace
}  // namespace nimbo
