#include "deep/DeepRecords.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "deep/DeepFrame.h"
#include "defocus/CorrectiveSlices.h"
#include "defocus/FloatRules.h"

namespace drevin::test {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float tolerance = 1e-6F;

const std::vector<int> channels = {1, 4, literalFront, literalBack};

/// Focal plane 10, focus region 8 to 12, 20 px of blur at its ends, one slice.
dvDeepSettings plainSettings() {
  dvDeepSettings settings;
  settings.lens.focalPlane = 10.0F;
  settings.lens.focusNear = 8.0F;
  settings.lens.focusFar = 12.0F;
  settings.lens.invHalfFocusRegion = 0.5F;
  settings.lens.multiplier = 20.0F;
  settings.lens.kernelSize = 64;
  return settings;
}

LiteralDeepSample sample(float front, float back, float red, float alpha) {
  return {front, back, {{1, red}, {4, alpha}, {literalFront, front}, {literalBack, back}}};
}

LiteralDeepSample point(float depth, float red, float alpha) {
  return sample(depth, depth, red, alpha);
}

/// Records of one pixel whose red and alpha are splatted.
dvDeepRecordRow recordsOf(const LiteralDeepPixel& pixel, const dvDeepSettings& settings) {
  dvDeepRecordRow row(layoutOf(channels), {0, 1});
  const dvDeepSamples samples = samplesOf(pixel, channels);
  std::vector<dvDeepPiece> pieces;
  mergeSamples(samples, pieces);
  row.addPixel(samples, pieces, settings);
  return row;
}

TEST(DeepRecords, firstSampleOfAlphaOne_hidesTheRestAndTheBackground) {
  const auto row = recordsOf({point(9.0F, 0.5F, 1.0F), point(11.0F, 0.5F, 1.0F)}, plainSettings());
  ASSERT_EQ(row.recordsEnd(0), 1U);
  EXPECT_EQ(row.record(0).weight, 1.0F);
  EXPECT_EQ(row.record(0).coc, 10.0F);
  EXPECT_EQ(row.background(0), 0.0F);
}

TEST(DeepRecords, emptyPixel_leavesAllToTheBackground) {
  const auto row = recordsOf({}, plainSettings());
  ASSERT_EQ(row.pixels(), 1U);
  EXPECT_EQ(row.recordsBegin(0), row.recordsEnd(0));
  EXPECT_EQ(row.background(0), 1.0F);
}

TEST(DeepRecords, hole_addsNeitherSamplesNorBackground) {
  dvDeepRecordRow row(layoutOf(channels), {0});
  row.addHole();
  ASSERT_EQ(row.pixels(), 1U);
  EXPECT_EQ(row.recordsBegin(0), row.recordsEnd(0));
  EXPECT_EQ(row.background(0), 0.0F);
}

TEST(DeepRecords, samplesInAnyOrder_areCompositedNearestFirst) {
  const auto row = recordsOf({point(11.0F, 0.4F, 0.5F), point(9.0F, 0.2F, 0.5F)}, plainSettings());
  ASSERT_EQ(row.recordsEnd(0), 2U);
  EXPECT_EQ(row.values(0)[0], 0.4F);
  EXPECT_EQ(row.record(0).weight, 0.5F);
  EXPECT_EQ(row.values(1)[0], 0.8F);
  EXPECT_EQ(row.record(1).weight, 0.25F);
  EXPECT_EQ(row.background(0), 0.25F);
}

TEST(DeepRecords, values_areDividedByAlpha) {
  const auto row = recordsOf({point(9.0F, 0.1F, 0.25F)}, plainSettings());
  EXPECT_NEAR(row.values(0)[0], 0.4F, tolerance);
  EXPECT_EQ(row.values(0)[1], 1.0F);
}

TEST(DeepRecords, frontMode_leavesTheCoverageOfTheBackToTheBackground) {
  dvDeepSettings settings = plainSettings();
  settings.mode = dvDeepMode::Front;
  const auto row = recordsOf({point(9.0F, 0.2F, 0.25F), point(11.0F, 0.4F, 1.0F)}, settings);
  ASSERT_EQ(row.recordsEnd(0), 1U);
  EXPECT_EQ(row.record(0).weight, 0.25F);
  EXPECT_EQ(row.background(0), 0.75F);
}

TEST(DeepRecords, backMode_isNotCoveredByTheFront) {
  dvDeepSettings settings = plainSettings();
  settings.mode = dvDeepMode::Back;
  const auto row = recordsOf({point(9.0F, 0.2F, 1.0F), point(11.0F, 0.4F, 0.5F)}, settings);
  ASSERT_EQ(row.recordsEnd(0), 1U);
  EXPECT_EQ(row.record(0).weight, 0.5F);
  EXPECT_EQ(row.background(0), 0.5F);
}

TEST(DeepRecords, depthAtTheFocalPlane_isBehind) {
  dvDeepSettings settings = plainSettings();
  EXPECT_EQ(deepBlur(10.0F, settings).region, dvFocusRegion::Back);
  EXPECT_EQ(deepBlur(std::nextafter(10.0F, 0.0F), settings).region, dvFocusRegion::Front);
  settings.mode = dvDeepMode::Front;
  EXPECT_EQ(recordsOf({point(10.0F, 0.2F, 1.0F)}, settings).recordsEnd(0), 0U);
}

TEST(DeepRecords, oneSlice_takesEverySampleAndTheBackground) {
  const dvDeepSettings settings = plainSettings();
  for (const float depth : {-5.0F, 0.0F, 9.0F, 1e30F, dvInfinitelyFar, infinity, notANumber}) {
    EXPECT_EQ(deepBlur(depth, settings).slice, 0U) << depth;
  }
}

TEST(DeepRecords, zeroAlpha_leavesNoRecordAndNoCoverage) {
  const auto row = recordsOf({point(9.0F, 0.2F, 0.0F), point(11.0F, 0.4F, 0.5F)}, plainSettings());
  ASSERT_EQ(row.recordsEnd(0), 1U);
  EXPECT_EQ(row.record(0).weight, 0.5F);
  EXPECT_EQ(row.background(0), 0.5F);
}

TEST(DeepRecords, negativeFraction_givesBackCoverage) {
  // Sample 1 starts behind sample 0: its front piece weighs (2 - 3) / 4 of alpha 0.8.
  const auto row =
      recordsOf({sample(2.0F, 4.0F, 0.1F, 0.4F), sample(3.0F, 7.0F, 0.2F, 0.8F)}, plainSettings());
  // Read back: sample 0 twice at 2, the front piece at 3, the remainder at 4.
  ASSERT_EQ(row.recordsEnd(0), 3U);
  EXPECT_NEAR(row.record(0).weight, 0.4F, tolerance);
  EXPECT_NEAR(row.record(1).weight, 0.24F, tolerance);
  const float left = 0.36F * 1.2F;
  EXPECT_NEAR(row.record(2).weight, left * 0.6F, tolerance);
  EXPECT_NEAR(row.background(0), left * 0.4F, tolerance);
}

TEST(DeepRecords, almostFullCoverage_stopsButLeavesItsRestToTheBackground) {
  const float alpha = 1.0F - 0x1p-21F;  // leaves 4.8e-7
  const auto row = recordsOf({point(9.0F, 0.2F, alpha), point(11.0F, 0.4F, 1.0F)}, plainSettings());
  EXPECT_EQ(row.recordsEnd(0), 1U);
  EXPECT_EQ(row.background(0), 0x1p-21F);
}

TEST(DeepRecords, roomOfMoreThanAMillionth_goesOn) {
  const float alpha = 1.0F - 0x1p-19F;  // leaves 1.9e-6
  const auto row = recordsOf({point(9.0F, 0.2F, alpha), point(11.0F, 0.4F, 1.0F)}, plainSettings());
  EXPECT_EQ(row.recordsEnd(0), 2U);
}

TEST(DeepRecords, sampleInNoSlice_countsInTheCoverage) {
  dvDeepSettings settings = plainSettings();
  settings.lens.realWorldLens = true;
  settings.slices = 2;
  settings.sliceStarts = {0.0F, 10.0F};
  const auto row = recordsOf({point(-1.0F, 0.2F, 0.5F), point(11.0F, 0.4F, 0.5F)}, settings);
  ASSERT_EQ(row.recordsEnd(0), 1U);
  EXPECT_EQ(row.record(0).slice, 1U);
  EXPECT_EQ(row.record(0).weight, 0.25F);
  EXPECT_EQ(row.background(0), 0.25F);
}

TEST(DeepRecords, backDepth_isTakenWhereAsked) {
  dvDeepSettings settings = plainSettings();
  settings.useBackDepth = true;
  const auto row = recordsOf({sample(9.0F, 11.5F, 0.2F, 0.5F)}, settings);
  EXPECT_EQ(row.record(0).coc, 15.0F);
}

TEST(DeepRecords, notANumberAlpha_isSplattedAndEndsTheBackground) {
  const auto row =
      recordsOf({point(9.0F, 0.2F, notANumber), point(11.0F, 0.4F, 0.5F)}, plainSettings());
  ASSERT_EQ(row.recordsEnd(0), 2U);
  EXPECT_TRUE(std::isnan(row.record(0).weight));
  EXPECT_TRUE(std::isnan(row.record(1).weight));
  EXPECT_EQ(row.background(0), 0.0F);
}

TEST(DeepRecords, alphaAboveOne_leavesNothing) {
  const auto row = recordsOf({point(9.0F, 0.2F, 1.5F), point(11.0F, 0.4F, 0.5F)}, plainSettings());
  EXPECT_EQ(row.recordsEnd(0), 1U);
  EXPECT_EQ(row.background(0), 0.0F);
}

TEST(DeepBlur, reciprocalStyle_isNotApplied) {
  dvDeepSettings settings = plainSettings();
  settings.lens.depthStyle = dvDepthStyle::Reciprocal;
  EXPECT_EQ(deepBlur(11.0F, settings).coc, 10.0F);
  EXPECT_EQ(deepBlur(infinity, settings).region, dvFocusRegion::Back);
}

TEST(DeepBlur, infiniteDepth_isTheFarEndInTheArtisticMode) {
  dvDeepSettings settings = plainSettings();
  settings.lens.uiContextScale = 0.5F;
  for (const float depth : {dvInfinitelyFar, infinity}) {
    EXPECT_EQ(deepBlur(depth, settings).coc, 10.0F);
  }
  EXPECT_EQ(deepBlur(-infinity, settings).coc, 10.0F);
  EXPECT_EQ(deepBlur(-infinity, settings).region, dvFocusRegion::Front);
}

TEST(DeepBlur, largestFloat_isTheKernelSizeUnderALens) {
  dvDeepSettings settings = plainSettings();
  settings.lens.realWorldLens = true;
  settings.lens.lensCoefficient = 5.0F;
  settings.lens.filmBackScale = 4.0F;
  settings.lens.uiContextScale = 0.5F;
  EXPECT_EQ(deepBlur(dvInfinitelyFar, settings).coc, 32.0F);
  // An infinite depth is not the marker: inf / inf fails to 0.
  EXPECT_EQ(deepBlur(infinity, settings).coc, 0.0F);
}

TEST(DeepBlur, notANumber_countsAsBackInTheLastSlice) {
  dvDeepSettings settings = plainSettings();
  settings.slices = 2;
  settings.sliceStarts = {0.0F, 10.0F};
  const dvDeepBlur blur = deepBlur(notANumber, settings);
  EXPECT_EQ(blur.region, dvFocusRegion::Back);
  EXPECT_EQ(blur.slice, 1U);
  EXPECT_TRUE(std::isnan(blur.coc));
}

TEST(DeepBlur, background_isFarBehindInTheLastSlice) {
  dvDeepSettings settings = plainSettings();
  settings.slices = 2;
  settings.sliceStarts = {0.0F, 10.0F};
  EXPECT_EQ(deepBlur(dvInfinitelyFar, settings).slice, 1U);
}

}  // namespace
}  // namespace drevin::test
