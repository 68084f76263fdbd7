// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreGraphics/CGContext.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "tests/support/Pixels.hpp"

namespace nimbo {

namespace {

NSRect wholeOf(const CGImage &image) {
  return {{0, 0}, {double(image.width()), double(image.height())}};
}

constexpr CGInterpolationQuality kQualities[] = {CGInterpolationQuality::standard, CGInterpolationQuality::none,
                                                 CGInterpolationQuality::low, CGInterpolationQuality::high};

TEST(CGImage, IsNilWithoutPixelsOrBeyondItsLimit) {
  EXPECT_FALSE(CGImage::imageWithPixels(0, 1, false, std::make_unique<std::uint8_t[]>(4)));
  EXPECT_FALSE(
      CGImage::imageWithPixels(1, CGImage::kMaximumSide + 1, false, std::make_unique<std::uint8_t[]>(4)));
  EXPECT_FALSE(CGImage::imageWithPixels(1, 1, false, nullptr));
  EXPECT_EQ(CGImage().width(), 0U);
  EXPECT_EQ(CGImage().pixels(), nullptr);
}

TEST(CGContext, IsInvalidBeyondItsLimits) {
  const std::pair<std::uint32_t, std::uint32_t> sizes[] = {
      {0, 5}, {5, 0}, {CGImage::kMaximumSide + 1, 1}, {1, UINT32_MAX}, {20'000, 20'000}};
  for (const auto &[width, height] : sizes) {
    CGContext context(width, height);
    EXPECT_FALSE(context.isValid()) << width << " x " << height;
    context.fillRect({{0, 0}, {1, 1}}, {1, 0, 0});
    context.drawImage({{0, 0}, {1, 1}}, imageOf(1, 1, kRedPixel), {{0, 0}, {1, 1}});
    EXPECT_FALSE(context.makeImage());
  }
}

TEST(CGContext, TakesOverTheBitmapAndHowItIsDrawn) {
  CGContext from(3, 2), context(1, 1);
  EXPECT_TRUE(context.shouldAntialias());
  EXPECT_EQ(context.interpolationQuality(), CGInterpolationQuality::standard);
  from.setShouldAntialias(false);
  from.setInterpolationQuality(CGInterpolationQuality::low);
  from.fillRect({{2, 0}, {1, 1}}, {1, 0, 0});
  context = std::move(from);
  EXPECT_FALSE(context.shouldAntialias());
  EXPECT_EQ(context.interpolationQuality(), CGInterpolationQuality::low);
  EXPECT_EQ(context.width(), 3u);
  EXPECT_EQ(pixelAt(context.makeImage(), 2, 1), kRedPixel);
}

TEST(CGContext, FillsFromTheLowerLeftCorner) {
  CGContext context(3, 2);
  context.fillRect({{0, 0}, {1, 1}}, {1, 0, 0});
  context.fillRect({{2, 1}, {5, 5}}, {0, 0, 1, 0.5});
  const CGImage image = context.makeImage();
  EXPECT_TRUE(image.hasAlpha());
  EXPECT_EQ(pixelAt(image, 0, 1), kRedPixel);
  EXPECT_EQ(pixelAt(image, 2, 0), (Pixel{0, 0, 128, 128}));
  EXPECT_EQ(pixelAt(image, 0, 0), kNoPixel);
  EXPECT_EQ(pixelAt(image, 1, 1), kNoPixel);
}

TEST(CGContext, JoinsWhatIsThere) {
  struct Row {
    CGBlendMode mode;
    CGColor color;
    Pixel expected;
  };
  const Row rows[] = {
      {CGBlendMode::sourceOver, {0, 0, 1, 0.4}, {153, 0, 102, 255}},
      {CGBlendMode::copy, {0, 0, 1, 0.4}, {0, 0, 102, 102}},
      {CGBlendMode::sourceOver, {0, 0, 1, 7}, {0, 0, 255, 255}},
      {CGBlendMode::copy, {0, 0, 1, 0}, kNoPixel},
  };
  for (const Row &row : rows) {
    CGContext context(1, 1);
    context.fillRect({{0, 0}, {1, 1}}, {1, 0, 0});
    context.fillRect({{0, 0}, {1, 1}}, row.color, row.mode);
    EXPECT_EQ(pixelAt(context.makeImage(), 0, 0), row.expected);
  }
}

TEST(CGContext, CoversPartsOfPixelsOnlyWhenItAntialiases) {
  for (const CGBlendMode mode : {CGBlendMode::copy, CGBlendMode::sourceOver}) {
    for (const bool smooth : {true, false}) {
      CGContext context(3, 1);
      context.fillRect({{0, 0}, {3, 1}}, {1, 0, 0});
      context.setShouldAntialias(smooth);
      context.drawImage({{0.8, 0}, {1.6, 1}}, imageOf(1, 1, kBluePixel), {{0, 0}, {1, 1}}, mode);
      const CGImage image = context.makeImage();
      EXPECT_FALSE(image.hasAlpha());
      EXPECT_EQ(pixelAt(image, 0, 0), (smooth ? Pixel{204, 0, 51} : kRedPixel));
      EXPECT_EQ(pixelAt(image, 1, 0), kBluePixel);
      EXPECT_EQ(pixelAt(image, 2, 0), (smooth ? Pixel{153, 0, 102} : kRedPixel));
    }
  }
}

TEST(CGContext, DrawsPixelsAsTheyAre) {
  const CGImage image = imageOf(7, 5, [](auto x, auto y) {
    return Pixel{static_cast<int>(x * 30), static_cast<int>(y * 50), 200};
  });
  for (const CGInterpolationQuality quality : kQualities) {
    CGContext context(9, 9);
    context.setInterpolationQuality(quality);
    // Columns 2 to 4 and rows 1 and 2 from the top.
    context.drawImage({{4, 3}, {3, 2}}, image, {{2, 2}, {3, 2}});
    const CGImage drawn = context.makeImage();
    for (std::uint32_t y = 0; y < 9; ++y) {
      for (std::uint32_t x = 0; x < 9; ++x) {
        const bool inside = x >= 4 && x < 7 && y >= 4 && y < 6;
        EXPECT_EQ(pixelAt(drawn, x, y), inside ? pixelAt(image, x - 2, y - 3) : kNoPixel) << x << ' ' << y;
      }
    }
  }
}

TEST(CGContext, MultipliesByTheFraction) {
  CGContext context(1, 1);
  context.fillRect({{0, 0}, {1, 1}}, {1, 1, 1});
  context.drawImage({{0, 0}, {1, 1}}, imageOf(1, 1, kRedPixel), {{0, 0}, {1, 1}}, CGBlendMode::sourceOver, 0.2);
  EXPECT_EQ(pixelAt(context.makeImage(), 0, 0), (Pixel{255, 204, 204}));
}

// A ramp keeps its shape under every scale, so that a shift of half a pixel or a wrong end shows.
TEST(CGContext, KeepsRampsAtEveryScale) {
  const std::uint32_t sides[][2] = {{200, 200}, {200, 150}, {200, 61}, {200, 13},
                                    {1000, 9},  {40, 200},  {200, 100}};
  for (const bool hasAlpha : {false, true}) {
    for (const CGInterpolationQuality quality : kQualities) {
      for (const auto &[side, target] : sides) {
        const auto ramp = [](std::uint32_t x, std::uint32_t length) { return (x + 0.5) * 255 / length; };
        const CGImage image = imageOf(
            side, side,
            [&, length = side](auto x, auto y) {
              return Pixel{static_cast<int>(std::lround(ramp(x, length))),
                           static_cast<int>(std::lround(ramp(y, length)))};
            },
            hasAlpha);
        CGContext context(target, target);
        context.setInterpolationQuality(quality);
        context.drawImage({{0, 0}, {double(target), double(target)}}, image, wholeOf(image));
        const CGImage drawn = context.makeImage();
        // Between old pixels and at the ends a kernel sees edges where the ramp goes on.
        const double tolerance = 1 + 255.0 / std::min(side, target);
        for (std::uint32_t x = 0; x < target; ++x) {
          const Pixel pixel = pixelAt(drawn, x, target - 1 - x);
          ASSERT_NEAR(pixel.red, ramp(x, target), tolerance) << side << " to " << target << " at " << x;
          ASSERT_NEAR(pixel.green, ramp(target - 1 - x, target), tolerance);
          ASSERT_EQ(pixel.alpha, 255);
        }
      }
    }
  }
}

TEST(CGContext, AveragesWhatItReduces) {
  const CGImage stripes = imageOf(301, 301, [](auto x, auto y) {
    const int value = (x + y) % 2 ? 255 : 0;
    return Pixel{value, value, value};
  });
  for (const CGInterpolationQuality quality :
       {CGInterpolationQuality::standard, CGInterpolationQuality::low, CGInterpolationQuality::high}) {
    CGContext context(10, 10);
    context.setInterpolationQuality(quality);
    context.drawImage({{0, 0}, {10, 10}}, stripes, wholeOf(stripes));
    const CGImage drawn = context.makeImage();
    for (std::uint32_t i = 0; i < 10; ++i) EXPECT_NEAR(pixelAt(drawn, i, i).green, 127, 8);
  }
}

TEST(CGContext, TakesNothingFromBesideThePart) {
  const CGImage image = imageOf(
      60, 60, [](auto x, auto y) { return x >= 20 && x < 40 && y >= 20 && y < 40 ? kRedPixel : kBluePixel; });
  for (const double side : {7.0, 20.0, 55.0}) {
    for (const CGInterpolationQuality quality : kQualities) {
      CGContext context(static_cast<std::uint32_t>(side), static_cast<std::uint32_t>(side));
      context.setInterpolationQuality(quality);
      context.drawImage({{0, 0}, {side, side}}, image, {{20, 20}, {20, 20}});
      const CGImage drawn = context.makeImage();
      for (std::uint32_t i = 0; i < side; ++i) {
        EXPECT_EQ(pixelAt(drawn, i, 0), kRedPixel);
        EXPECT_EQ(pixelAt(drawn, 0, i), kRedPixel);
      }
    }
  }
}

TEST(CGContext, KeepsColoursWithinTheirAlpha) {
  const CGImage edges = imageOf(
      50, 50,
      [](auto x, auto) {
        return x % 10 < 5 ? Pixel{255, 255, 255, 255} : kNoPixel;
      },
      true);
  for (const double side : {23.0, 41.0, 120.0}) {
    CGContext context(static_cast<std::uint32_t>(side), 5);
    context.setInterpolationQuality(CGInterpolationQuality::high);
    context.drawImage({{0, 0}, {side, 5}}, edges, wholeOf(edges));
    const CGImage drawn = context.makeImage();
    for (std::uint32_t x = 0; x < side; ++x)
      EXPECT_LE(pixelAt(drawn, x, 2).red, pixelAt(drawn, x, 2).alpha) << side << ' ' << x;
  }
}

TEST(CGContext, SurvivesRectanglesWithoutSense) {
  constexpr double kHuge = 1e300;
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  const double lengths[] = {0, -1, 1e-9, 0.01, 3, 1e6, kHuge, kNaN, kInfinite};
  const double places[] = {0, -kHuge, -1e6, 2.5, 1e6, kNaN, -kInfinite};
  const CGImage image = imageOf(5, 5, kRedPixel);
  CGContext context(4, 4);
  for (const CGInterpolationQuality quality : kQualities) {
    context.setInterpolationQuality(quality);
    for (const double length : lengths) {
      for (const double place : places) {
        const NSRect odd = {{place, place}, {length, length}};
        context.fillRect(odd, {1, 0, 0});
        context.drawImage(odd, image, wholeOf(image));
        context.drawImage({{0, 0}, {4, 4}}, image, odd);
        context.drawImage(odd, image, odd, CGBlendMode::copy, 0.5);
      }
    }
  }
  // A rectangle that reaches far beyond both sides covers the whole.
  CGContext covered(4, 4);
  covered.drawImage({{-1000, -1000}, {2004, 2004}}, image, wholeOf(image));
  EXPECT_EQ(pixelAt(covered.makeImage(), 0, 0), kRedPixel);
  EXPECT_EQ(pixelAt(covered.makeImage(), 3, 3), kRedPixel);
  // What is beyond the image is left alone.
  CGContext part(4, 4);
  part.drawImage({{0, 0}, {4, 4}}, image, {{-5, -5}, {10, 10}});
  EXPECT_EQ(pixelAt(part.makeImage(), 3, 0), kRedPixel);
  EXPECT_EQ(pixelAt(part.makeImage(), 0, 0), kNoPixel);
  EXPECT_EQ(pixelAt(part.makeImage(), 3, 3), kNoPixel);
}

}  // namespace

}  // namespace nimbo
