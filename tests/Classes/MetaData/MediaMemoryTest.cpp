// SPDX-License-Identifier: Apache-2.0
//
// What documents cost that are large or claim to be: the most memory that is held at a time.
#include <algorithm>

#include "platform/ImageIO/CGImageSource.hpp"
#include "platform/PDFKit/PDFDocument.hpp"
#include "tests/support/FileReaders.hpp"
#include "tests/support/PDFSamples.hpp"
#include "tests/support/PeakMemory.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace nimbo {
namespace {

using namespace std::literals;

constexpr std::size_t kBytes = 100'000'000;

/// A page whose content is the stream.
std::string pageOf(const std::string &stream) {
  const NSData data =
      PDFOfObjects({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Count 1/Kids[3 0 R]>>",
                    "<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]/Contents 4 0 "
                    "R/Resources<</Font<</F<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>>>>>>>",
                    stream});
  return std::string(data.view());
}

std::string repeated(std::string_view part, std::size_t bytes) {
  std::string all;
  while (all.size() < bytes) all += part;
  return all;
}

bool readsPDF(const NSString &path) {
  const auto document = PDFDocument::documentWithContentsOfFile(path);
  if (document) document->readPages(Deadline::never(), [](const NSString &) { return true; });
  return document != nullptr;
}

bool readsImage(const NSString &path) {
  return CGImageSource::sourceWithContentsOfFile(path) != nullptr;
}

struct Document {
  const char *name;
  std::string (*make)();
  bool (*reads)(const NSString &path);
  bool isRead;
  /// The most memory, in bytes for one of the hundred million of the file, or of what it unfolds to.
  double ceiling;
};

const Document kDocuments[] = {
    {"page of blanks", [] { return pageOf(PDFStream("", std::string(kBytes, ' '))); }, readsPDF, true, 0.2},
    // The engine's own limit, and a little.
    {"page of text", [] { return pageOf(PDFStream("", "BT /F 1 Tf " + repeated("(leaf) Tj\n", kBytes))); },
     readsPDF, true, 6},
    {"unfolding page",
     [] { return pageOf(PDFStream("/Filter/RunLengthDecode", repeated("\x81 ", kBytes / 64) + '\x80')); },
     readsPDF, true, 0.2},
    {"huge bitmap",
     [] { return "BM\0\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\xff\xff\xff\x7f\xff\xff\xff\x7f\1\0\x18\0"s; },
     readsImage, true, 0.2},
    {"JPEG of comments",
     [] {
       return contentsOfFile(EXAMPLES_FOLDER "/leaf.jpg")
           .insert(2, repeated("\xff\xfe\xff\xff" + std::string(65533, 'x'), kBytes));
     },
     readsImage, true, 0.5},
    // Behind its header, and 0x05f5e100 bytes long.
    {"PNG of text",
     [] {
       return contentsOfFile(EXAMPLES_FOLDER "/leaf.png")
           .insert(33, "\x05\xf5\xe1\0tEXtTitle\0"s + std::string(kBytes - 6, 'x') + "\0\0\0\0"s);
     },
     readsImage, true, 3},
    {"TIFF of entries", [] { return "II*\0\x08\0\0\0\xff\xff"s + std::string(kBytes, '\1'); }, readsImage,
     false, 1.3},
    {"GIF of frames",
     [] {
       return "GIF89a\xff\xff\xff\xff\x80\0\0\0\0\0\xff\xff\xff"s +
              repeated(",\0\0\0\0\2\0\1\0\0\2\2\x44\x0a\0"sv, kBytes);
     },
     readsImage, true, 1.3},
    {"Photoshop", [] { return "8BPS\0\1"s + std::string(200, '\1'); }, readsImage, true, 0.2},
};

TEST(Memory, OfLargeDocumentsIsBounded) {
  const TemporaryFolder folder;
  // The libraries that pictures need are there before, and count for none of them.
  ASSERT_TRUE(readsImage(NSString::stringWithUTF8String(EXAMPLES_FOLDER "/leaf.png")));
  for (const Document &each : kDocuments) {
    SCOPED_TRACE(each.name);
    const NSString path = folder.write("large", each.make());
    const std::filesystem::path file = folder.path() / "large";
    std::filesystem::resize_file(file, std::max<std::uintmax_t>(std::filesystem::file_size(file), kBytes));
    const std::size_t peak = peakMemoryOf([&] { return each.reads(path) == each.isRead; });
    EXPECT_LE(static_cast<double>(peak), each.ceiling * kBytes);
  }
}

}  // namespace
}  // namespace nimbo
