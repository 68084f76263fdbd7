// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Images/NSImage.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/AppKit/Images/NSBitmapImageRep.hpp"
#include "platform/AppKit/Images/NSCachedImageRep.hpp"
#include "tests/support/PDFSamples.hpp"
#include "tests/support/Pixels.hpp"

namespace nimbo {
namespace {

SharedPointer<NSImageRep> bitmap(std::uint32_t width, std::uint32_t height, const Pixel &pixel = kRedPixel,
                                 NSSize size = {}) {
  return NSBitmapImageRep::imageRepWithCGImage(imageOf(width, height, pixel), size);
}

/// An image of a size with representations.
NSImage imageWith(NSSize size, const std::vector<SharedPointer<NSImageRep>> &reps) {
  NSImage image = NSImage::imageWithSize(size);
  for (const auto &rep : reps) image.addRepresentation(rep);
  return image;
}

NSGraphicsContext contextOf(std::uint32_t width, std::uint32_t height) {
  return {.context = CGContext(width, height)};
}

/// What cannot be drawn, as a damaged file.
class Undrawable final : public NSImageRep {
 public:
  NSImageRepClass representationClass() const override { return NSImageRepClass::bitmap; }
  NSSize size() const override { return {1, 1}; }
  bool hasAlpha() const override { return false; }

 private:
  bool draw(NSGraphicsContext &, const NSRect &, const NSRect &, NSCompositingOperation, double,
            NSError *error) const override {
    setError(error, ErrorCode::damaged, "it is damaged");
    return false;
  }
};

TEST(NSImage, IsNilWithoutSize) {
  const NSSize sizes[] = {{0, 1}, {1, -1}, {CGImage::kMaximumSide + 1.0, 1}, {NAN, 1}, {1, INFINITY}};
  for (const NSSize &size : sizes) EXPECT_FALSE(NSImage::imageWithSize(size)) << size.width;
  NSImage nil;
  nil.setSize({1, 1});
  nil.setScalesWhenResized(true);
  nil.addRepresentation(bitmap(1, 1));
  nil.removeRepresentation({});
  EXPECT_FALSE(nil.drawWithFocus([](NSGraphicsContext &) {}));
  EXPECT_FALSE(nil);
  EXPECT_EQ(nil.size(), NSSize());
  EXPECT_TRUE(nil.representations().empty());
  EXPECT_FALSE(nil.bestRepresentationForDefaultDevice());
  NSError error;
  EXPECT_FALSE(nil.TIFFRepresentation(&error));
  EXPECT_TRUE(error);
}

TEST(NSImage, ChangesNoCopies) {
  NSImage image = imageWith({2, 2}, {bitmap(2, 2)});
  const NSImage copy = image;
  image.setSize({4, 4});
  image.setScalesWhenResized(true);
  image.setBackgroundColor({1, 2, 3});
  image.addRepresentation(bitmap(4, 4));
  EXPECT_EQ(copy.size(), (NSSize{2, 2}));
  EXPECT_FALSE(copy.scalesWhenResized());
  EXPECT_EQ(copy.backgroundColor(), (NSColor{0, 0, 0, 0}));
  EXPECT_EQ(copy.representations().size(), 1U);
  EXPECT_EQ(image.representations().size(), 2U);
  image.removeRepresentation(copy.representations().front());
  ASSERT_EQ(image.representations().size(), 1U);
  EXPECT_EQ(image.representations().front()->pixelsWide(), 4U);
}

TEST(NSImage, ChoosesTheRepresentationForItsSize) {
  const auto pdf = NSImageRep::imageRepsWithData(samplePDF("boxes.pdf"), {}).at(0);
  const std::vector<SharedPointer<NSImageRep>> icons = {bitmap(16, 16), bitmap(256, 256), bitmap(32, 32),
                                                        bitmap(128, 128)};
  const std::pair<double, std::uint32_t> expected[] = {{10, 16}, {16, 16}, {17, 32}, {100, 128}, {500, 256}};
  for (const auto &[side, pixels] : expected)
    EXPECT_EQ(imageWith({side, side}, icons).bestRepresentationForDefaultDevice()->pixelsWide(), pixels)
        << side;
  EXPECT_EQ(imageWith({10, 10}, {pdf}).bestRepresentationForDefaultDevice(), pdf);
  EXPECT_EQ(imageWith({10, 10}, {pdf, icons[0]}).bestRepresentationForDefaultDevice(), icons[0]);
}

TEST(NSImage, ScalesRepresentationsOnceItMay) {
  struct Row {
    bool scales;
    NSRect from;
    Pixel lowerLeft, upperRight;
  };
  // Two points of red in an image of four, which is drawn into eight pixels.
  const Row rows[] = {
      {true, {}, kRedPixel, kRedPixel},
      {false, {}, kRedPixel, kNoPixel},
      {false, {{0, 0}, {2, 2}}, kRedPixel, kRedPixel},
      {false, {{2, 2}, {2, 2}}, kNoPixel, kNoPixel},
      {false, {{1, 1}, {2, 2}}, kRedPixel, kNoPixel},
  };
  for (const Row &row : rows) {
    NSImage image = imageWith({4, 4}, {bitmap(2, 2)});
    image.setScalesWhenResized(row.scales);
    NSGraphicsContext context = contextOf(8, 8);
    EXPECT_TRUE(image.drawInRect(context, {{0, 0}, {8, 8}}, row.from, NSCompositingOperation::sourceOver, 1));
    const CGImage drawn = context.context.makeImage();
    EXPECT_EQ(pixelAt(drawn, 0, 7), row.lowerLeft);
    EXPECT_EQ(pixelAt(drawn, 7, 0), row.upperRight);
  }
}

TEST(NSImage, IsWhatIsDrawnWithItsFocus) {
  NSImage image = imageWith({4, 2}, {bitmap(4, 2, kBluePixel)});
  const NSImage before = image;
  EXPECT_TRUE(image.drawWithFocus([](NSGraphicsContext &context) {
    EXPECT_EQ(context.context.width(), 4U);
    context.CGContextToDraw().fillRect({{0, 0}, {1, 1}}, {1, 0, 0});
  }));
  ASSERT_EQ(image.representations().size(), 1U);
  const auto *cached = dynamic_cast<NSCachedImageRep *>(image.representations().front().get());
  ASSERT_TRUE(cached);
  EXPECT_EQ(cached->size(), (NSSize{4, 2}));
  EXPECT_EQ(cached->className(), u"NSCachedImageRep"_ns);
  EXPECT_EQ(pixelAt(cached->decodedImage(), 0, 1), kRedPixel);
  EXPECT_EQ(pixelAt(cached->decodedImage(), 1, 1), kBluePixel);
  NSGraphicsContext again = contextOf(4, 2);
  EXPECT_TRUE(image.drawInRect(again, {{0, 0}, {4, 2}}, {}, NSCompositingOperation::sourceOver, 1));
  EXPECT_EQ(pixelAt(again.context.makeImage(), 0, 1), kRedPixel);
  EXPECT_EQ(before.representations().front()->representationClass(), NSImageRepClass::bitmap);
}

TEST(NSImage, HasAWholePixelAtLeastWithItsFocus) {
  for (const auto &[points, pixels] : {std::pair(0.2, 1U), {1.4, 1U}, {1.5, 2U}, {2.6, 3U}}) {
    NSImage image = NSImage::imageWithSize({points, 3});
    ASSERT_TRUE(image.drawWithFocus([](NSGraphicsContext &) {}));
    const SharedPointer<NSImageRep> rep = image.representations().front();
    ASSERT_TRUE(rep) << points;
    EXPECT_EQ(rep->pixelsWide(), pixels) << points;
    EXPECT_EQ(rep->pixelsHigh(), 3U) << points;
    EXPECT_EQ(rep->size(), (NSSize{points, 3}));
  }
}

TEST(NSCachedImageRep, HasPixelsAndASize) {
  const CGImage image = imageOf(2, 2, kRedPixel);
  for (const NSSize &size : {NSSize{0.5, 0.25}, NSSize{1, 1}}) {
    const auto rep = NSCachedImageRep::imageRepWithCGImage(image, size);
    ASSERT_TRUE(rep) << size.width;
    EXPECT_EQ(rep->size(), size);
  }
  for (const NSSize &size : {NSSize{0, 1}, NSSize{1, 0}, NSSize{-1, 1}, NSSize{1, -1}, NSSize{NAN, 1}})
    EXPECT_FALSE(NSCachedImageRep::imageRepWithCGImage(image, size)) << size.width << " " << size.height;
  EXPECT_FALSE(NSCachedImageRep::imageRepWithCGImage(CGImage(), {1, 1}));
  EXPECT_TRUE(NSCachedImageRep::imageRepWithCGImage(imageOf(1, 1, kNoPixel), {1, 1})->hasAlpha());
  EXPECT_FALSE(NSCachedImageRep::imageRepWithCGImage(image, {1, 1})->hasAlpha());
}

TEST(NSImage, StaysAsItWasWhenDrawingFails) {
  const auto undrawable = makeShared<Undrawable>();
  NSImage image = imageWith({4, 2}, {bitmap(4, 2)});
  NSError error;
  EXPECT_FALSE(image.drawWithFocus(
      [&](NSGraphicsContext &context) {
        undrawable->drawInRect(context, {{0, 0}, {1, 1}}, {}, NSCompositingOperation::copy, 1);
      },
      {}, &error));
  EXPECT_EQ(error.localizedFailureReason, u"it is damaged"_ns);
  EXPECT_EQ(image.representations().front()->representationClass(), NSImageRepClass::bitmap);
  NSImage large = NSImage::imageWithSize({CGImage::kMaximumSide, CGImage::kMaximumSide});
  EXPECT_TRUE(large);
  EXPECT_FALSE(large.drawWithFocus([](NSGraphicsContext &) { FAIL(); }, {}, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::tooLarge);
}

TEST(NSImage, BecomesTIFFAndIsReadAgain) {
  const NSImage image =
      imageWith({10, 5}, {bitmap(20, 10, kBluePixel, {10, 5}), bitmap(10, 5, Pixel{128, 0, 0, 128}, {10, 5})});
  const NSData plain = image.TIFFRepresentation();
  const NSData packed = image.TIFFRepresentationUsingCompression(5, 1);
  EXPECT_LT(packed.length(), plain.length());
  for (const NSData &data : {plain, packed}) {
    NSError error;
    const NSImage read = NSImage::imageWithData(data, {}, &error);
    ASSERT_EQ(read.representations().size(), 2U) << error.localizedFailureReason.UTF8String();
    EXPECT_EQ(read.size(), (NSSize{10, 5}));
    const auto decoded = [&](std::size_t index) {
      return dynamic_cast<NSBitmapImageRep &>(*read.representations().at(index)).decodedImage();
    };
    EXPECT_EQ(decoded(0).width(), 20U);
    EXPECT_EQ(pixelAt(decoded(0), 19, 9), kBluePixel);
    EXPECT_EQ(pixelAt(decoded(1), 9, 4), (Pixel{128, 0, 0, 128}));
  }
  // What has no pixels is drawn on white.
  const NSData page = NSImage::imageWithData(samplePDF("boxes.pdf"), {}).TIFFRepresentation();
  const NSImage drawn = NSImage::imageWithData(page, {});
  EXPECT_EQ(drawn.size(), (NSSize{320, 100}));
  EXPECT_FALSE(drawn.representations().front()->hasAlpha());
}

}  // namespace
}  // namespace nimbo
