#include "defocus/Bloom.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace drevin {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
const float nan = std::nanf("");

/// Strength 0.8 on a 20 x 10 format.
dvBloom bloomOf(float curvature) {
  return {0.8F, curvature, 0.7F, 20, 10};
}

TEST(BloomAmount, zeroOrNegativeStrength_isZero) {
  dvBloom bloom = bloomOf(2.0F);
  bloom.amount = 0.0F;
  EXPECT_EQ(bloomAmount(bloom, 0, 0), 0.0F);
  bloom.amount = -1.0F;
  EXPECT_EQ(bloomAmount(bloom, 0, 0), 0.0F);
}

TEST(BloomAmount, curvatureZeroOrLess_isEverywhereTheStrength) {
  for (const float curvature : {0.0F, -1.0F}) {
    EXPECT_EQ(bloomAmount(bloomOf(curvature), 10, 5), 0.8F);
    EXPECT_EQ(bloomAmount(bloomOf(curvature), 0, 0), 0.8F);
  }
}

TEST(BloomAmount, frameCentre_hasNone) {
  for (const float curvature : {0.1F, 2.0F, 4.0F}) {
    EXPECT_EQ(bloomAmount(bloomOf(curvature), 10, 5), 0.0F);
  }
}

TEST(BloomAmount, corner_isCappedAtTheStrength) {
  EXPECT_EQ(bloomAmount(bloomOf(2.0F), 0, 0), 0.8F);
  EXPECT_EQ(bloomAmount(bloomOf(2.0F), 20, 10), 0.8F);
  EXPECT_EQ(bloomAmount(bloomOf(2.0F), -500, 0), 0.8F);
}

TEST(BloomAmount, halfwayToTheSide_isTheRadialPower) {
  EXPECT_FLOAT_EQ(bloomAmount(bloomOf(2.0F), 5, 5), 0.8F * std::pow(0.5F, 2.001F));
  EXPECT_FLOAT_EQ(bloomAmount(bloomOf(3.0F), 15, 5), 0.8F * std::pow(0.5F, 3.001F));
}

TEST(BloomAmount, formatOfSizeZero_isNaN) {
  dvBloom bloom = bloomOf(2.0F);
  bloom.formatWidth = 0;
  EXPECT_TRUE(std::isnan(bloomAmount(bloom, 0, 0)));
}

TEST(BloomedLight, valueAboveTheThreshold_addsItsExcess) {
  EXPECT_FLOAT_EQ(bloomedLight(bloomOf(2.0F), 1.7F, 0.5F, 2.0F), 1.0F);
}

TEST(BloomedLight, valueAtOrBelowTheThreshold_addsNothing) {
  EXPECT_EQ(bloomedLight(bloomOf(2.0F), 0.7F, 0.5F, 1.0F), 0.0F);
  EXPECT_EQ(bloomedLight(bloomOf(2.0F), -4.0F, 0.5F, 1.0F), 0.0F);
  EXPECT_EQ(bloomedLight(bloomOf(2.0F), -infinity, 0.5F, 1.0F), 0.0F);
}

TEST(BloomedLight, matte_mayDarken) {
  EXPECT_FLOAT_EQ(bloomedLight(bloomOf(2.0F), 1.7F, 0.5F, -1.0F), -0.5F);
}

TEST(BloomedLight, amountZero_addsNothingToAnInfiniteValue) {
  EXPECT_EQ(bloomedLight(bloomOf(2.0F), infinity, 0.0F, 1.0F), 0.0F);
  EXPECT_EQ(bloomedLight(bloomOf(2.0F), infinity, 0.5F, 1.0F), infinity);
}

TEST(BloomedLight, valueNaN_addsNothing) {
  EXPECT_EQ(bloomedLight(bloomOf(2.0F), nan, 0.5F, 1.0F), 0.0F);
}

}  // namespace
}  // namespace drevin
