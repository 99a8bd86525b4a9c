#include "defocus/DepthToBlur.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "defocus/FloatRules.h"
#include "defocus/ImagingFrame.h"
#include "support/Draw.h"
#include "support/LiteralBlur.h"

namespace drevin {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
const float nan = std::nanf("");

/// Full blur of 8 px two units before and behind a focal plane at 10.
dvLens artisticLens() {
  dvLens lens;
  lens.focalPlane = 10.0F;
  lens.focusNear = 8.0F;
  lens.focusFar = 12.0F;
  lens.invHalfFocusRegion = 0.5F;
  lens.multiplier = 8.0F;
  lens.frontMultiplier = 2.0F;
  lens.backMultiplier = 3.0F;
  return lens;
}

/// 50 mm at f/2 focused at 2 m, 50 px/mm.
dvLens thinLens() {
  dvLens lens;
  lens.realWorldLens = true;
  lens.focalPlane = 2.0F;
  lens.unit = 1000.0F;
  lens.lensCoefficient = 50.0F / 1950.0F * 50.0F / 2.0F;
  lens.filmBackScale = 50.0F;
  lens.kernelSize = 77;
  return lens;
}

TEST(DepthNormalisation, realDepth_isTaken) {
  EXPECT_EQ(normaliseDepth(3.5F, dvDepthStyle::Real), 3.5F);
  EXPECT_EQ(normaliseDepth(-3.5F, dvDepthStyle::Real), -3.5F);
  EXPECT_EQ(normaliseDepth(0.0F, dvDepthStyle::Real), 0.0F);
}

TEST(DepthNormalisation, realNonFinite_isInfinitelyFar) {
  for (const float raw : {infinity, -infinity, nan}) {
    EXPECT_EQ(normaliseDepth(raw, dvDepthStyle::Real), dvInfinitelyFar);
  }
}

TEST(DepthNormalisation, reciprocalDepth_isInverted) {
  EXPECT_EQ(normaliseDepth(0.25F, dvDepthStyle::Reciprocal), 4.0F);
}

TEST(DepthNormalisation, reciprocalOfZeroOrLess_isInfinitelyFar) {
  for (const float raw : {0.0F, -0.0F, -1.0F, -1e-41F}) {
    EXPECT_EQ(normaliseDepth(raw, dvDepthStyle::Reciprocal), dvInfinitelyFar);
  }
}

TEST(DepthNormalisation, reciprocalNonFinite_isAlmostAtTheLensAndNotInverted) {
  for (const float raw : {infinity, -infinity, nan}) {
    EXPECT_EQ(normaliseDepth(raw, dvDepthStyle::Reciprocal), 0x1p-128F);
  }
}

TEST(DepthNormalisation, artisticMode_clampsIntoTheFocusRegion) {
  const dvLens lens = artisticLens();
  EXPECT_EQ(clampToFocusRegion(2.0F, lens), 8.0F);
  EXPECT_EQ(clampToFocusRegion(9.0F, lens), 9.0F);
  EXPECT_EQ(clampToFocusRegion(90.0F, lens), 12.0F);
}

TEST(DepthNormalisation, thinLensMode_doesNotClamp) {
  EXPECT_EQ(clampToFocusRegion(-4.0F, thinLens()), -4.0F);
  EXPECT_EQ(clampToFocusRegion(dvInfinitelyFar, thinLens()), dvInfinitelyFar);
}

TEST(FocusRegion, nearerFartherAndUnordered_areFrontBackAndNeither) {
  const dvLens lens = artisticLens();
  EXPECT_EQ(focusRegion(9.999F, lens), dvFocusRegion::Front);
  EXPECT_EQ(focusRegion(10.001F, lens), dvFocusRegion::Back);
  EXPECT_EQ(focusRegion(nan, lens), dvFocusRegion::Unordered);
}

TEST(ArtisticBlur, depthAtFocus_isZeroAndCountsAsBack) {
  const dvBlur blur = depthToBlur(10.0F, artisticLens());
  EXPECT_EQ(blur.coc, 0.0F);
  EXPECT_EQ(blur.region, dvFocusRegion::Back);
  EXPECT_EQ(splattedCoc(blur.coc, 1.0F), 1.0F);
}

TEST(ArtisticBlur, depthBeyondTheFocusRegion_isExactlyTheMultipliersAndScale) {
  dvLens lens = artisticLens();
  lens.uiContextScale = 0.5F;
  EXPECT_EQ(depthToBlur(1000.0F, lens).coc, 8.0F * 3.0F * 0.5F);
  EXPECT_EQ(depthToBlur(0.0F, lens).coc, 8.0F * 2.0F * 0.5F);
}

TEST(ArtisticBlur, infiniteDepth_isClampedAndNotTheKernelSize) {
  EXPECT_EQ(depthToBlur(infinity, artisticLens()).coc, 8.0F * 3.0F);
  EXPECT_EQ(depthToBlur(nan, artisticLens()).coc, 8.0F * 3.0F);
}

TEST(ArtisticBlur, halfwayToTheEdge_isHalfOrAQuarterOfTheMultiplier) {
  dvLens lens = artisticLens();
  EXPECT_EQ(depthToBlur(11.0F, lens).coc, 12.0F);
  EXPECT_EQ(depthToBlur(9.0F, lens).coc, 8.0F);
  lens.falloff = dvFalloff::Quadratic;
  EXPECT_EQ(depthToBlur(11.0F, lens).coc, 6.0F);
  EXPECT_EQ(depthToBlur(9.0F, lens).coc, 4.0F);
}

TEST(ArtisticBlur, focusRegionOfSizeZero_isNaNEverywhere) {
  dvLens lens = artisticLens();
  lens.focusNear = lens.focusFar = lens.focalPlane;
  lens.invHalfFocusRegion = infinity;
  for (const float depth : {0.0F, 10.0F, 500.0F, infinity}) {
    const dvBlur blur = depthToBlur(depth, lens);
    EXPECT_TRUE(std::isnan(blur.coc)) << depth;
    EXPECT_EQ(blur.region, dvFocusRegion::Back);
    EXPECT_TRUE(std::isnan(splattedCoc(blur.coc, 1.0F)));
  }
}

TEST(ThinLensBlur, depthAtFocus_isZeroAndCountsAsBack) {
  const dvBlur blur = depthToBlur(2.0F, thinLens());
  EXPECT_EQ(blur.coc, 0.0F);
  EXPECT_EQ(blur.region, dvFocusRegion::Back);
}

TEST(ThinLensBlur, depthBehindAndInFront_areTheCircleOfConfusion) {
  // c = |D - S| / D * f^2 / (N (S - f)), times px/mm.
  const double full = 50.0 * 50.0 / (2.0 * 1950.0) * 50.0;
  EXPECT_NEAR(static_cast<double>(depthToBlur(4.0F, thinLens()).coc), 0.5 * full, 1e-4);
  EXPECT_NEAR(static_cast<double>(depthToBlur(1.0F, thinLens()).coc), 1.0 * full, 1e-4);
}

TEST(ThinLensBlur, multiplierAndFalloff_areNotUsed) {
  dvLens lens = thinLens();
  const float plain = depthToBlur(3.0F, lens).coc;
  lens.multiplier = 100.0F;
  lens.falloff = dvFalloff::Quadratic;
  EXPECT_EQ(depthToBlur(3.0F, lens).coc, plain);
}

TEST(ThinLensBlur, frontAndBackMultipliers_scale) {
  dvLens lens = thinLens();
  const float back = depthToBlur(3.0F, lens).coc;
  const float front = depthToBlur(1.5F, lens).coc;
  lens.frontMultiplier = 2.0F;
  lens.backMultiplier = 4.0F;
  EXPECT_EQ(depthToBlur(3.0F, lens).coc, 4.0F * back);
  EXPECT_EQ(depthToBlur(1.5F, lens).coc, 2.0F * front);
}

TEST(ThinLensBlur, infiniteRealDepth_isTheKernelSizeTimesTheScale) {
  dvLens lens = thinLens();
  lens.uiContextScale = 0.5F;
  lens.backMultiplier = 9.0F;
  EXPECT_EQ(depthToBlur(infinity, lens).coc, 38.5F);
  EXPECT_EQ(depthToBlur(nan, lens).coc, 38.5F);
}

TEST(ThinLensBlur, reciprocalDepthOfZeroOrLess_isTheKernelSizeTimesTheScale) {
  dvLens lens = thinLens();
  lens.depthStyle = dvDepthStyle::Reciprocal;
  lens.uiContextScale = 0.5F;
  EXPECT_EQ(depthToBlur(0.0F, lens).coc, 38.5F);
  EXPECT_EQ(depthToBlur(-2.0F, lens).coc, 38.5F);
}

TEST(ThinLensBlur, reciprocalNonFinite_isInFrontAndAlmostOnTheLens) {
  dvLens lens = thinLens();
  lens.depthStyle = dvDepthStyle::Reciprocal;
  const dvBlur blur = depthToBlur(nan, lens);
  EXPECT_EQ(blur.depth, 0x1p-128F);
  EXPECT_EQ(blur.region, dvFocusRegion::Front);
}

TEST(ThinLensBlur, quotientThatIsNotFinite_isZero) {
  dvLens lens = thinLens();
  EXPECT_EQ(depthToBlur(0.0F, lens).coc, 0.0F);
  lens.lensCoefficient = infinity;
  EXPECT_EQ(depthToBlur(4.0F, lens).coc, 0.0F);
  EXPECT_EQ(depthToBlur(2.0F, lens).coc, 0.0F);
}

TEST(ThinLensBlur, negativeDepth_isNegativeAndSplatsOnePixel) {
  const float coc = depthToBlur(-4.0F, thinLens()).coc;
  EXPECT_LT(coc, 0.0F);
  EXPECT_EQ(splattedCoc(coc, 1.0F), 1.0F);
}

TEST(SplattedBlur, matte_scalesBeforeTheFloorOfOne) {
  EXPECT_EQ(splattedCoc(8.0F, 0.5F), 4.0F);
  EXPECT_EQ(splattedCoc(8.0F, 0.0F), 1.0F);
  EXPECT_EQ(splattedCoc(8.0F, -1.0F), 1.0F);
  EXPECT_EQ(splattedCoc(-8.0F, -1.0F), 8.0F);
}

TEST(SplattedBlur, nonFinite_keepsNaNAndInfinity) {
  EXPECT_TRUE(std::isnan(splattedCoc(nan, 1.0F)));
  EXPECT_TRUE(std::isnan(splattedCoc(4.0F, nan)));
  EXPECT_TRUE(std::isnan(splattedCoc(0.0F, infinity)));
  EXPECT_EQ(splattedCoc(4.0F, infinity), infinity);
}

test::LiteralSettings randomLensSettings(test::Draw& draw) {
  test::LiteralSettings s;
  s.depthStyle = draw.whole(0, 1);
  s.falloff = draw.whole(0, 1);
  s.realWorldLens = draw.chance(0.5);
  s.focalPlane = draw.real(-2.0F, 50.0F);
  s.focusRegionSize = draw.real(-1.0F, 20.0F);
  s.multiplier = draw.real(-2.0F, 30.0F);
  s.frontMultiplier = draw.real(-1.0F, 3.0F);
  s.backMultiplier = draw.real(-1.0F, 3.0F);
  s.focalLength = draw.real(0.0F, 300.0F);
  s.fStop = draw.real(0.0F, 8.0F);
  s.worldScale = draw.whole(0, 4);
  s.contextScale = draw.real(0.1F, 1.0F);
  return s;
}

TEST(DepthToBlur, randomLensesAndDepths_equalTheLiteralConversion) {
  test::Draw draw(7);
  const float odd[] = {0.0F, -0.0F, 1e-41F, -1e-41F, infinity, -infinity, nan, 3.4e38F, -1.0F};
  for (int i = 0; i < 20000; ++i) {
    const test::LiteralSettings s = randomLensSettings(draw);
    const float raw = draw.chance(0.3) ? odd[draw.whole(0, 8)] : draw.real(0.0F, 60.0F);
    const dvBlur blur = depthToBlur(raw, test::lensOf(s, 640, 480, 37));
    const test::LiteralBlur expected =
        test::literalBlur(raw, s, test::literalLens(s, 640, 480), 37);
    EXPECT_EQ(static_cast<int>(blur.region), expected.region) << raw;
    EXPECT_TRUE(blur.coc == expected.coc || (std::isnan(blur.coc) && std::isnan(expected.coc)))
        << raw << " gave " << blur.coc << ", literally " << expected.coc;
    EXPECT_TRUE(blur.depth == expected.depth) << raw;
  }
}

}  // namespace
}  // namespace drevin
