// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreGraphics/CGPSConverter.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/Foundation/NSGeometry.hpp"
#include "platform/PDFKit/PDFDocument.hpp"
#include "tests/support/PDFSamples.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

using std::string_literals::operator""s;

const std::string kFont = "/Helvetica findfont 20 scalefont setfont\n";
/// As many pages as is said, each with its number.
std::string pages(int count) {
  return "%!PS\n<</PageSize [300 400]>> setpagedevice\n" + kFont + "1 1 " + std::to_string(count) +
         " {100 100 moveto (page ) show 10 string cvs show showpage} for\n";
}

std::string picture(const std::string &box, const std::string &trailer) {
  return "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: " + box + "\n%%EndComments\n" + kFont +
         "100 100 moveto (picture) show showpage\n%%Trailer\n" + trailer + "%%EOF\n";
}

/// An EPS file with a table of its parts and a preview before the program, as DOS programs write it.
std::string withPreview(const std::string &program) {
  const auto number = [](std::size_t value) {
    std::string bytes;
    for (int i = 0; i < 4; ++i) bytes += static_cast<char>(value >> 8 * i & 0xff);
    return bytes;
  };
  const std::string preview = "II*\0%!preview"s + std::string(5000, '\x80');
  const std::size_t head = 30;
  return "\xc5\xd0\xd3\xc6" + number(head + preview.size()) + number(program.size()) + number(0) + number(0) +
         number(head) + number(preview.size()) + "\xff\xff" + preview + program + "behind";
}

/// "pages: size of the first one: text of the last one", or "nil: code: reason".
std::string convert(const std::string &program, const PostScriptLimits &limits = {}) {
  NSError error;
  const NSData pdf = PDFDataWithPostScript(dataOfString(program), limits, &error);
  if (!pdf) return "nil: " + std::to_string(error.code) + ": " + error.localizedFailureReason.UTF8String();
  const auto document = PDFDocument::documentWithData(pdf);
  if (!document || document->pageCount() == 0) return "no PDF";
  const NSRect box = document->pageAtIndex(0).boundsForBox(PDFDisplayBox::mediaBox);
  std::string last;
  document->readPages(Deadline(), [&](const NSString &text) {
    last = text.UTF8String();
    return true;
  });
  last.resize(last.find_last_not_of(" \n") + 1);
  return std::to_string(document->pageCount()) + ": " + NSStringFromSize(box.size).UTF8String() + ": " + last;
}

TEST(CGPSConverter, ConvertsPagesAndPictures) {
  const std::string box = "{200, 50}";
  const std::string inner = "90 90 290 140";
  EXPECT_EQ(convert(pages(3)), "3: {300, 400}: page 3");
  EXPECT_EQ(convert("%!\n" + kFont + "9 9 moveto (x) show showpage"), "1: {612, 792}: x");
  EXPECT_EQ(convert("\x04\r\n" + pages(1)), "1: {300, 400}: page 1");
  EXPECT_EQ(convert("\x1b%-12345X@PJL JOB\r\n@PJL ENTER LANGUAGE=POSTSCRIPT\r\n" + pages(2) +
                    "\x04\x1b%-12345X@PJL EOJ\r\n\x1b%-12345X"),
            "2: {300, 400}: page 2");
  EXPECT_EQ(convert(picture(inner, "")), "1: " + box + ": picture");
  EXPECT_EQ(convert(withPreview(picture(inner, ""))), "1: " + box + ": picture");
  EXPECT_EQ(convert(picture("(atend)", "%%BoundingBox: " + inner + "\n")), "1: " + box + ": picture");
  EXPECT_EQ(convert(withPreview(picture("(atend)", "%%BoundingBox: " + inner + "\r"))),
            "1: " + box + ": picture");
  EXPECT_EQ(convert(picture(inner, "showpage showpage")), "1: " + box + ": picture");
  EXPECT_EQ(convert("\x04\n" + picture(inner, "")), "1: " + box + ": picture");
  EXPECT_EQ(
      convert(picture("80 80 300 150\n%%HiResBoundingBox: (atend)", "%%HiResBoundingBox: " + inner + "\n")),
      "1: " + box + ": picture");
  const std::string figure = "%%BeginDocument: figure\n%%BoundingBox: 0 0 9 9\n%%EndDocument\n";
  EXPECT_EQ(convert(picture("(atend)", figure + "%%BoundingBox: " + inner + "\n" + figure)),
            "1: " + box + ": picture");
  EXPECT_EQ(convert(picture("", "%%BoundingBox: " + inner + "\n")), "1: " + box + ": picture");
  // A box without area is none, nor is one whose numbers end early.
  EXPECT_EQ(convert(picture("-9 -9 x", "")), "1: {612, 792}: picture");
  EXPECT_EQ(convert(picture("0 0 0 0", "")), "1: {612, 792}: picture");
}

TEST(CGPSConverter, LeavesPagesOutBehindTheLimit) {
  EXPECT_EQ(convert(pages(5), {.maximumPages = 2}), "2: {300, 400}: page 2");
  EXPECT_EQ(convert("%!\n" + kFont + "{9 9 moveto (x) show showpage} loop", {.deadline = Deadline::after(60)}),
            "200: {612, 792}: x");
}

TEST(CGPSConverter, SaysWhyThereIsNoPDF) {
  EXPECT_EQ(convert(""), "nil: 5: it is no PostScript");
  EXPECT_EQ(convert("%PDF-1.4\n%!"), "nil: 5: it is no PostScript");
  EXPECT_EQ(convert("some text %!PS"), "nil: 5: it is no PostScript");
  EXPECT_EQ(convert("\xc5\xd0\xd3\xc6" + std::string(26, '\xff')), "nil: 5: it is no PostScript");
  EXPECT_EQ(convert("\xc5\xd0\xd3\xc6%!"), "nil: 5: it is no PostScript");
  EXPECT_EQ(convert(pages(2) + "foo"), "nil: 6: the PostScript is faulty: undefined in foo");
  EXPECT_EQ(convert("%!\n[{65535 string} loop"), "nil: 9: the PostScript needs too much memory");
}

TEST(CGPSConverter, EndsProgramsThatDoNotEnd) {
  EXPECT_EQ(convert("%!\n{} loop", {.deadline = Deadline::after(0.5)}).substr(0, 7), "nil: 8:");
  EXPECT_EQ(convert("%!\n{(printed for ever) =} loop", {.deadline = Deadline::after(30)}).substr(0, 7),
            "nil: 4:");
}

/// Each program gives one page when it cannot do what it tries.
TEST(CGPSConverter, KeepsFilesAndProgramsFromPrograms) {
  const TemporaryFolder folder;
  const std::string secret = folder.write("secret", "pop").UTF8String();
  const std::string made = (folder.path() / "made").native();
  const auto tries = [](const std::string &attempt) {
    return "%!\n" + kFont + "9 9 moveto {" + attempt + " (done) show} stopped {(refused) show} if showpage";
  };
  const std::string refused = "1: {612, 792}: refused";
  EXPECT_EQ(convert(tries("(" + secret + ") pop")), "1: {612, 792}: done");
  EXPECT_EQ(convert(tries("(" + secret + ") (r) file")), refused);
  EXPECT_EQ(convert(tries("(" + secret + ") run")), refused);
  EXPECT_EQ(convert(tries("(" + made + ") (w) file")), refused);
  EXPECT_EQ(convert(tries("(" + secret + ") deletefile")), refused);
  EXPECT_EQ(convert(tries("(%pipe%touch " + made + ") (w) file")), refused);
  EXPECT_EQ(convert(tries("(/etc/passwd) (r) file")), refused);
  EXPECT_TRUE(std::filesystem::exists(secret));
  EXPECT_FALSE(std::filesystem::exists(made));
}

}  // namespace
}  // namespace nimbo
