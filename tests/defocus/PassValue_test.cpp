#include "defocus/PassValue.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace drevin {
namespace {

constexpr float untouched = -7.0F;
const float nan = std::nanf("");

float passed(float coc, dvFocusRegion region, int channel, const dvPassSettings& settings) {
  float out = untouched;
  getPassValue(coc, region, channel, settings, &out);
  return out;
}

const dvPassSettings distance{dvOutputType::FocalDistance, false, 15};
const dvPassSettings normalised{dvOutputType::FocalDistance, true, 15};
const dvPassSettings matte{dvOutputType::FocusMatte, true, 15};

TEST(InFocus, blurOfZeroAndHalfAPixel_areOneAndZero) {
  EXPECT_EQ(inFocus(0.0F), 1.0F);
  EXPECT_EQ(inFocus(-3.0F), 1.0F);
  EXPECT_EQ(inFocus(0.5F), 0.0F);
  EXPECT_EQ(inFocus(100.0F), 0.0F);
}

TEST(InFocus, quarterOfAPixel_isTheMiddleOfTheSmoothstep) {
  EXPECT_EQ(inFocus(0.25F), 0.5F);
}

TEST(InFocus, growingBlur_neverRises) {
  for (int i = 0; i < 500; ++i) {
    const float coc = 0.001F * static_cast<float>(i);
    EXPECT_GE(inFocus(coc), inFocus(coc + 0.001F) - 1e-6F);
  }
}

TEST(InFocus, nonFinite_isZeroOrOne) {
  EXPECT_EQ(inFocus(nan), 0.0F);
  EXPECT_EQ(inFocus(std::numeric_limits<float>::infinity()), 0.0F);
  EXPECT_EQ(inFocus(-std::numeric_limits<float>::infinity()), 1.0F);
}

TEST(FocalDistance, blurInFront_isGreenOnly) {
  EXPECT_EQ(passed(7.5F, dvFocusRegion::Front, 1, distance), 0.0F);
  EXPECT_EQ(passed(7.5F, dvFocusRegion::Front, 2, distance), 7.5F);
  EXPECT_EQ(passed(7.5F, dvFocusRegion::Front, 3, distance), 0.0F);
}

TEST(FocalDistance, blurBehind_isBlueOnly) {
  EXPECT_EQ(passed(7.5F, dvFocusRegion::Back, 2, distance), 0.0F);
  EXPECT_EQ(passed(7.5F, dvFocusRegion::Back, 3, distance), 7.5F);
}

TEST(FocalDistance, normalised_dividesEveryChannelButRed) {
  EXPECT_EQ(passed(0.0F, dvFocusRegion::Back, 1, normalised), 1.0F);
  EXPECT_EQ(passed(7.5F, dvFocusRegion::Front, 2, normalised), 0.5F);
  EXPECT_EQ(passed(7.5F, dvFocusRegion::Back, 3, normalised), 0.5F);
  EXPECT_EQ(passed(7.5F, dvFocusRegion::Back, 4, normalised), untouched / 15.0F);
}

TEST(FocalDistance, otherChannelWithoutNormalising_isLeft) {
  EXPECT_EQ(passed(7.5F, dvFocusRegion::Back, 4, distance), untouched);
}

TEST(FocalDistance, nonFiniteBlur_reachesItsColour) {
  EXPECT_TRUE(std::isnan(passed(nan, dvFocusRegion::Front, 2, distance)));
  EXPECT_EQ(passed(nan, dvFocusRegion::Front, 3, distance), 0.0F);
}

TEST(FocalDistance, kernelSizeZero_dividesByZero) {
  const dvPassSettings settings{dvOutputType::FocalDistance, true, 0};
  EXPECT_TRUE(std::isnan(passed(0.0F, dvFocusRegion::Back, 3, settings)));
}

TEST(FocusMatte, regions_areOneInTheirColourOnly) {
  const dvFocusRegion regions[] = {dvFocusRegion::Unordered, dvFocusRegion::Front,
                                   dvFocusRegion::Back};
  for (const dvFocusRegion region : regions) {
    for (int channel = 1; channel <= 3; ++channel) {
      const float expected = static_cast<int>(region) == channel - 1 ? 1.0F : 0.0F;
      EXPECT_EQ(passed(3.0F, region, channel, matte), expected);
    }
  }
}

TEST(FocusMatte, otherChannel_isLeftAndNeverNormalised) {
  EXPECT_EQ(passed(3.0F, dvFocusRegion::Front, 4, matte), untouched);
}

TEST(FocusMatte, red_isOneOnlyForDepthsThatCompareUnordered) {
  const dvLens lens;
  EXPECT_EQ(passed(0.0F, focusRegion(nan, lens), 1, matte), 1.0F);
  for (const float depth : {-1e30F, 0.0F, 100.0F, 3e38F}) {
    EXPECT_EQ(passed(0.0F, focusRegion(depth, lens), 1, matte), 0.0F);
  }
}

TEST(FocusMatte, redOfAnyRawDepth_isZeroSinceNaNIsNormalisedFirst) {
  for (const dvDepthStyle style : {dvDepthStyle::Real, dvDepthStyle::Reciprocal}) {
    dvLens lens;
    lens.depthStyle = style;
    for (const float raw : {nan, std::numeric_limits<float>::infinity(), 0.0F, -1.0F}) {
      EXPECT_EQ(passed(0.0F, depthToBlur(raw, lens).region, 1, matte), 0.0F);
    }
  }
}

TEST(PassValue, otherOutputs_leaveTheValue) {
  for (const dvOutputType type :
       {dvOutputType::DefocusedImage, dvOutputType::LensBloom, dvOutputType::FilterShape}) {
    for (int channel = 1; channel <= 4; ++channel) {
      EXPECT_EQ(passed(3.0F, dvFocusRegion::Front, channel, {type, true, 15}), untouched);
    }
  }
}

}  // namespace
}  // namespace drevin
