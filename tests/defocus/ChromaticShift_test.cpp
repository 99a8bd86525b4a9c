#include "defocus/ChromaticShift.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace drevin {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();

TEST(ChannelShift, noAberration_movesNothing) {
  for (int channel = 0; channel <= 9; ++channel) {
    EXPECT_EQ(channelShift({0.0F, {0.6F, 1.0F, 1.0F}}, channel), 0.0F);
  }
}

TEST(ChannelShift, positiveAberration_movesRedAndGreenButNeverBlue) {
  const dvChromaticAberration aberration{4.0F, {0.6F, 1.0F, 1.0F}};
  EXPECT_FLOAT_EQ(channelShift(aberration, 1), 0.6F * 4.0F - 2.0F);
  EXPECT_FLOAT_EQ(channelShift(aberration, 2), 4.0F - 2.0F);
  EXPECT_EQ(channelShift(aberration, 3), 0.0F);
}

TEST(ChannelShift, negativeAberration_movesRedAndBlueButNeverGreen) {
  const dvChromaticAberration aberration{-4.0F, {0.6F, 1.0F, 0.25F}};
  EXPECT_FLOAT_EQ(channelShift(aberration, 1), 0.6F * 4.0F - 2.0F);
  EXPECT_EQ(channelShift(aberration, 2), 0.0F);
  EXPECT_FLOAT_EQ(channelShift(aberration, 3), 1.0F - 2.0F);
}

TEST(ChannelShift, alphaAndOtherLayers_stay) {
  for (const float k : {-4.0F, 4.0F}) {
    for (const int channel : {0, 4, 5, 9, 1023}) {
      EXPECT_EQ(channelShift({k, {0.6F, 1.0F, 1.0F}}, channel), 0.0F);
    }
  }
}

TEST(ChannelShift, negativeOffset_countsByItsSize) {
  EXPECT_FLOAT_EQ(channelShift({4.0F, {-1.0F, 1.0F, 1.0F}}, 1), 2.0F);
}

TEST(ShiftDistance, blurOfTwoPixelsOrLess_isZero) {
  EXPECT_EQ(shiftDistance(3.0F, 2.0F, 1.0F), 0.0F);
  EXPECT_EQ(shiftDistance(3.0F, 1.0F, 1.0F), 0.0F);
}

TEST(ShiftDistance, largerBlur_growsWithIt) {
  EXPECT_FLOAT_EQ(shiftDistance(2.0F, 22.0F, 1.0F), 2.0F);
  EXPECT_FLOAT_EQ(shiftDistance(2.0F, 22.0F, 0.5F), 0.9F);
  EXPECT_FLOAT_EQ(shiftDistance(-2.0F, 22.0F, 1.0F), -2.0F);
}

TEST(ShiftDistance, blurOrMatteNaN_isZero) {
  EXPECT_EQ(shiftDistance(2.0F, std::nanf(""), 1.0F), 0.0F);
  EXPECT_EQ(shiftDistance(2.0F, 22.0F, std::nanf("")), 0.0F);
}

TEST(ShiftDistance, infiniteBlur_isInfinite) {
  EXPECT_EQ(shiftDistance(-2.0F, infinity, 1.0F), -infinity);
}

TEST(ShiftedPlace, fraction_isTruncatedTowardZero) {
  EXPECT_EQ(shiftedPlace(3, 1.9F), 4);
  EXPECT_EQ(shiftedPlace(-3, 0.5F), -2);
  EXPECT_EQ(shiftedPlace(-3, -0.5F), -3);
  EXPECT_EQ(shiftedPlace(0, -0.9F), 0);
}

TEST(ShiftedPlace, noDistance_isExactBeyondTheBitsOfAFloat) {
  EXPECT_EQ(shiftedPlace(16777217, 0.0F), 16777217);
}

TEST(ShiftedPlace, beyondTheIntegers_isTheLeastInt) {
  constexpr int least = std::numeric_limits<int>::min();
  EXPECT_EQ(shiftedPlace(5, infinity), least);
  EXPECT_EQ(shiftedPlace(5, -infinity), least);
  EXPECT_EQ(shiftedPlace(5, 1e20F), least);
  EXPECT_EQ(shiftedPlace(5, std::nanf("")), least);
}

}  // namespace
}  // namespace drevin
