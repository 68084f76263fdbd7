// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/NSImage+NSImageNimboExtensions/Redrawing.hpp"

#include <gtest/gtest.h>

#include <functional>

#include "Classes/Images/NSImage+NSImageNimboExtensions/Drawing.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Representations.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Sizes.hpp"
#include "Classes/Images/NSImage+NSImageNimboExtensions/Thumbnails.hpp"
#include "tests/Classes/Images/ImageSamples.hpp"

namespace nimbo {
namespace {

constexpr NSImageInterpolation kHigh = NSImageInterpolation::high;

NSImage imageOfHalves(std::uint32_t width, std::uint32_t height, const Pixel &upper, const Pixel &lower) {
  return imageWithCGImageRef(halves(width, height, upper, lower));
}

/// Expects an image of one representation with these pixels at the top and at the bottom.
void expectHalves(const NSImage &image, std::uint32_t width, std::uint32_t height, const Pixel &upper,
                  const Pixel &lower) {
  const CGImage pixels = drawnPixels(image);
  ASSERT_EQ(pixels.width(), width);
  ASSERT_EQ(pixels.height(), height);
  EXPECT_EQ(image.size(), (NSSize{double(width), double(height)}));
  EXPECT_EQ(pixelAt(pixels, width / 2, 0), upper);
  EXPECT_EQ(pixelAt(pixels, width / 2, height - 1), lower);
}

TEST(Redrawing, FillsTheTarget) {
  const NSImage image = imageOfHalves(64, 32, kRed, kBlue);
  expectHalves(imageWithSize(image, {10, 20}), 10, 20, kRed, kBlue);
  expectHalves(imageWithSize(image, {200, 100}, true, kHigh, true), 200, 100, kRed, kBlue);
  expectHalves(bitmapImageWithSize(image, {10, 20}), 10, 20, kRed, kBlue);
  expectHalves(bitmapImageWithSize(image, {10, 20}, false, kHigh, true), 10, 20, kRed, kBlue);
  expectHalves(thumbForSize(image, {16, 16}), 16, 8, kRed, kBlue);
  expectHalves(thumbForSize(image, {16, 16}, true, kHigh, false), 16, 8, kRed, kBlue);
  expectHalves(thumbForSize(image, {100, 100}), 64, 32, kRed, kBlue);
  expectHalves(initWithImage(image, {10, 20}), 10, 20, kRed, kBlue);
  EXPECT_TRUE(cachedImageRep(imageWithSize(image, {10, 20})));
  EXPECT_TRUE(bitmapImageRep(bitmapImageWithSize(image, {10, 20})));
  for (const NSData &TIFF : {TIFFRepresentationWithSize(image, {10, 20}),
                             TIFFRepresentationWithSize(image, {10, 20}, true, kHigh, false),
                             imageWithSize(image, {10, 20}).TIFFRepresentation()})
    expectHalves(NSImage::imageWithData(TIFF, Deadline::after(20)), 10, 20, kRed, kBlue);
  expectHalves(bitmapImageCachedSeparately(image, true), 64, 32, kRed, kBlue);
  expectHalves(copyOfBitmapImageCachedSeparately(image, false), 64, 32, kRed, kBlue);
}

TEST(Redrawing, TakesAPart) {
  const NSImage image = imageOfHalves(64, 32, kRed, kBlue);
  const NSRect lower = {{0, 0}, {64, 16}}, upper = {{32, 16}, {32, 16}};
  expectHalves(initWithImage(image, lower, {8, 8}), 8, 8, kBlue, kBlue);
  expectHalves(initWithImage(image, upper, {8, 8}, true), 8, 8, kRed, kRed);
  expectHalves(NSImage::imageWithData(TIFFRepresentationWithSize(image, {8, 8}, upper), {}), 8, 8, kRed, kRed);
  expectHalves(NSImage::imageWithData(TIFFRepresentationFromRect(image, upper), {}), 32, 16, kRed, kRed);
  // The part is in the points of the image, which are others than those of the bitmap.
  NSImage large = imageOfHalves(64, 32, kRed, kBlue);
  large.setScalesWhenResized(true);
  large.setSize({640, 320});
  expectHalves(initWithImage(large, {{0, 0}, {640, 160}}, {8, 8}), 8, 8, kBlue, kBlue);
}

TEST(Redrawing, PutsTheRightThingBehind) {
  NSImage image = imageOfHalves(8, 8, kRed, kClear);
  expectHalves(imageWithSize(image, {8, 8}), 8, 8, kRed, kClear);
  image.setBackgroundColor({0, 255, 0});
  expectHalves(imageWithSize(image, {8, 8}), 8, 8, kRed, kGreen);
  // White is behind what has no pixels, whatever the image's background is.
  for (const bool hasAlpha : {false, true}) {
    NSImage vector = NSImage::imageWithSize({8, 8});
    vector.setBackgroundColor({0, 255, 0});
    expectHalves(imageWithSize(vector, {4, 4}), 4, 4, kClear, kClear);
    vector.addRepresentation(makeShared<EmptyRep>(NSImageRepClass::PDF, NSSize{8, 8}, false, hasAlpha));
    expectHalves(imageWithSize(vector, {4, 4}), 4, 4, kWhite, kWhite);
    EXPECT_EQ(vector.backgroundColor(), (NSColor{0, 255, 0}));
  }
}

TEST(Redrawing, InterpolatesAsAsked) {
  const NSImage image = imageOfHalves(2, 2, kRed, kBlue);
  const auto middle = [&](NSImageInterpolation interpolation) {
    return pixelAt(drawnPixels(imageWithSize(image, {64, 64}, true, interpolation, false)), 32, 30);
  };
  EXPECT_EQ(middle(NSImageInterpolation::none), kRed);
  EXPECT_GT(middle(kHigh)[2], 64);
}

TEST(Redrawing, FailsWithAReason) {
  const NSImage image = imageOfHalves(8, 8, kRed, kBlue);
  NSImage damaged = NSImage::imageWithSize({8, 8});
  damaged.addRepresentation(makeShared<EmptyRep>(NSImageRepClass::PDF, NSSize{8, 8}, true));
  struct Case {
    NSImage image;
    NSSize size;
    ErrorCode code;
  };
  for (const auto &[source, size, code] : {
           Case{image, {0, 8}, ErrorCode::tooLarge},
           {image, {8, -1}, ErrorCode::tooLarge},
           {image, {1e6, 8}, ErrorCode::tooLarge},
           {damaged, {8, 8}, ErrorCode::damaged},
           {NSImage(), {8, 8}, ErrorCode::none},
       }) {
    NSError error;
    EXPECT_FALSE(imageWithSize(source, size, false, {}, &error));
    EXPECT_EQ(error.errorCode(), code) << error.localizedFailureReason.UTF8String();
    EXPECT_FALSE(bitmapImageWithSize(source, size));
    EXPECT_FALSE(TIFFRepresentationWithSize(source, size));
  }
}

/// The pixels of 16 by 16 points that were green before something was drawn.
CGImage drawnOnGreen(const std::function<bool(NSGraphicsContext &)> &draw) {
  NSImage canvas = NSImage::imageWithSize({16, 16});
  const bool hasDrawn = canvas.drawWithFocus([&](NSGraphicsContext &context) {
    context.imageInterpolation = NSImageInterpolation::none;
    context.CGContextToDraw().fillRect(bounds(canvas), {0, 1, 0, 1});
    EXPECT_TRUE(draw(context));
  });
  return hasDrawn ? drawnPixels(canvas) : CGImage();
}

TEST(DrawingInRects, PlacesImages) {
  const NSImage image = imageOfHalves(4, 2, kRed, kBlue), high = imageOfHalves(2, 40, kRed, kBlue);
  const NSRect rect = {{4, 0}, {8, 16}};
  struct Point {
    std::uint32_t x, y;
    Pixel pixel;
  };
  struct Case {
    bool (*draw)(const NSImage &, NSGraphicsContext &, const NSRect &, double);
    NSImage image;
    std::vector<Point> points;
  };
  const Case cases[] = {
      {drawBestRepresentationInRect, image, {{4, 0, kRed}, {11, 15, kBlue}, {3, 0, kGreen}, {12, 15, kGreen}}},
      {drawFlippedInRect, image, {{4, 0, kBlue}, {11, 15, kRed}, {3, 0, kGreen}, {12, 15, kGreen}}},
      // 8 by 4, from the row 6 on.
      {drawScaledInRect, image, {{4, 5, kGreen}, {4, 6, kRed}, {11, 9, kBlue}, {11, 10, kGreen}}},
      {drawCenteredInRect,
       image,
       {{5, 7, kGreen}, {6, 7, kRed}, {9, 8, kBlue}, {10, 8, kGreen}, {6, 6, kGreen}}},
      // Cut off at both ends.
      {drawCenteredInRect, high, {{6, 0, kGreen}, {7, 0, kRed}, {8, 15, kBlue}, {9, 15, kGreen}}},
      {drawTiledInRect,
       image,
       {{4, 0, kRed}, {11, 1, kBlue}, {4, 14, kRed}, {11, 15, kBlue}, {3, 15, kGreen}, {12, 0, kGreen}}},
      // The lower end of the tile is what is left of it.
      {drawTiledInRect, high, {{4, 0, kBlue}, {11, 15, kBlue}, {3, 0, kGreen}, {12, 0, kGreen}}},
      {drawTiledInRect, NSImage::imageWithSize({4, 4}), {{4, 0, kGreen}}},
      {drawScaledInRect, NSImage(), {{4, 0, kGreen}}},
      {drawFlippedInRect, NSImage(), {{4, 0, kGreen}}},
  };
  int number = 0;
  for (const auto &[draw, drawn, points] : cases) {
    const CGImage pixels =
        drawnOnGreen([&, draw = draw](NSGraphicsContext &context) { return draw(drawn, context, rect, 1.0); });
    ASSERT_TRUE(pixels) << number;
    for (const auto &[x, y, pixel] : points)
      EXPECT_EQ(pixelAt(pixels, x, y), pixel) << number << ": " << x << ", " << y;
    ++number;
  }
}

TEST(DrawingInRects, TilesWithinItsTime) {
  const NSImage tile = imageOfHalves(1, 1, kRed, kRed);
  NSImage canvas = NSImage::imageWithSize({16'000, 16'000});
  NSError error;
  EXPECT_FALSE(canvas.drawWithFocus(
      [&](NSGraphicsContext &context) { EXPECT_FALSE(drawTiledInRect(tile, context, bounds(canvas))); },
      Deadline::after(0.2), &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::timeLimit);
}

TEST(Overlays, CoverTheImage) {
  const NSImage image = imageOfHalves(8, 8, kRed, kBlue);
  expectHalves(imageWithOverlay(image, imageOfHalves(2, 2, kClear, kGreen)), 8, 8, kRed, kGreen);
  expectHalves(image, 8, 8, kRed, kBlue);
  expectHalves(imageWithOverlay(image, NSImage()), 8, 8, kRed, kBlue);
  EXPECT_FALSE(imageWithOverlay(NSImage(), image));
}

}  // namespace
}  // namespace nimbo
