// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/NSImage+NSImageNimboExtensions/Sizes.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace nimbo {
namespace {

/// Reckons a thumbnail's size step by step, each in single precision.
NSSize plainThumb(float mostWide, float mostHigh, float wide, float high) {
  volatile float answerWide = wide, answerHigh = high;
  if (wide > mostWide || high > mostHigh) {
    const volatile float ratio = mostWide / wide;
    const volatile float highAtMostWide = ratio * high;
    if (highAtMostWide > mostHigh) {
      const volatile float otherRatio = mostHigh / high;
      const volatile float wideAtMostHigh = otherRatio * wide;
      answerWide = std::floor(wideAtMostHigh);
      answerHigh = std::floor(mostHigh);
    } else {
      answerWide = std::floor(mostWide);
      answerHigh = std::floor(highAtMostWide);
    }
    if (!(answerWide > 0)) answerWide = 1;
    if (!(answerHigh > 0)) answerHigh = 1;
  }
  return {answerWide, answerHigh};
}

TEST(ThumbnailSizes, KeepProportionsWithinTheMaximum) {
  struct Case {
    NSSize maximum;
    NSSize size;
    NSSize thumbnail;
  };
  const double none = std::numeric_limits<double>::quiet_NaN();
  for (const auto &[maximum, size, thumbnail] : {
           Case{{256, 256}, {100, 50}, {100, 50}},  // Never enlarged.
           {{256, 256}, {100.5, 50.25}, {100.5, 50.25}},
           {{256, 256}, {256, 256}, {256, 256}},
           {{256, 256}, {1000, 10}, {256, 2}},
           {{256, 256}, {3, 2000}, {1, 256}},  // No side becomes 0.
           {{256, 256}, {100'000, 3}, {256, 1}},
           {{256.9, 100.9}, {4000, 3000}, {134, 100}},
           {{256, 256}, {0, 2000}, {1, 256}},
           {{0, 0}, {10, 10}, {1, 1}},
           {{-5, -5}, {10, 10}, {1, 1}},
           {{0, 0}, {0, 0}, {0, 0}},
           {{256, 256}, {none, 300}, {256, 1}},
           // Above the maximum in double precision alone.
           {{256, 256}, {256.000001, 10}, {256.000001, 10}},
       })
    EXPECT_EQ(thumb(maximum, size), thumbnail) << size.width << " x " << size.height;
  EXPECT_TRUE(std::isnan(thumb({256, 256}, {none, 10}).width));
}

TEST(ThumbnailSizes, AreReckonedInSinglePrecision) {
  std::mt19937 random(14);
  std::uniform_real_distribution<float> exponent(-1.0F, 16.0F);
  std::bernoulli_distribution isWhole(0.7);
  const auto side = [&] {
    const float value = std::exp2(exponent(random));
    return isWhole(random) ? std::ceil(value) : value;
  };
  int differFromDouble = 0;
  for (int round = 0; round < 200'000; ++round) {
    const float mostWide = side(), mostHigh = side(), wide = side(), high = side();
    const NSSize answer = thumb({mostWide, mostHigh}, {wide, high});
    ASSERT_EQ(answer, plainThumb(mostWide, mostHigh, wide, high))
        << mostWide << " x " << mostHigh << ", " << wide << " x " << high;
    differFromDouble += answer.width < wide && answer.height != std::floor(mostHigh) &&
                        answer.height != std::max(std::floor(double(mostWide) / wide * high), 1.0);

    const float factor = side() / 100;
    const volatile float scaledWide = wide * factor, scaledHigh = high * factor;
    ASSERT_EQ(scale(factor, {wide, high}), (NSSize{std::floor(scaledWide), std::floor(scaledHigh)})) << factor;
  }
  // The precision makes a difference, or nothing was tested.
  EXPECT_GT(differFromDouble, 0);
}

TEST(ScaledSizes, StayWithoutAPositiveFactor) {
  const NSSize size = {75.5, 50.5};
  EXPECT_EQ(scale(0.5F, size), (NSSize{37, 25}));
  EXPECT_EQ(scale(0.001F, size), (NSSize{0, 0}));
  for (const float factor : {0.0F, -1.0F, std::numeric_limits<float>::quiet_NaN()})
    EXPECT_EQ(scale(factor, size), size) << factor;
}

}  // namespace
}  // namespace nimbo
