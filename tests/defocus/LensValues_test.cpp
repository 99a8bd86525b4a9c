#include "defocus/LensValues.h"

#include <gtest/gtest.h>

#include <cmath>

namespace drevin {
namespace {

TEST(UnitFactor, everyUnit_isItsMillimetres) {
  const float expected[] = {1.0F, 10.0F, 1000.0F, 25.4F, 304.8F};
  for (int unit = 0; unit < 5; ++unit) {
    EXPECT_EQ(unitFactor(unit), expected[unit]);
  }
}

TEST(UnitFactor, noSuchUnit_countsAsMillimetres) {
  EXPECT_EQ(unitFactor(-1), 1.0F);
  EXPECT_EQ(unitFactor(5), 1.0F);
}

TEST(FilmBackScale, fullFrameOfHd_isPixelsPerMillimetre) {
  EXPECT_FLOAT_EQ(filmBackScale(1920, 1080, 36.0F, 24.0F),
                  std::sqrt(1920.0F * 1080.0F) / std::sqrt(36.0F * 24.0F));
}

TEST(FilmBackScale, areaAlone_decides) {
  EXPECT_FLOAT_EQ(filmBackScale(100, 400, 10.0F, 10.0F), filmBackScale(200, 200, 20.0F, 5.0F));
}

TEST(FilmBackScale, panoramaBeyond31Bits_doesNotOverflow) {
  EXPECT_FLOAT_EQ(filmBackScale(100000, 50000, 1.0F, 1.0F), std::sqrt(5.0e9F));
}

TEST(FilmBackScale, filmBackWithoutArea_isNotFinite) {
  EXPECT_TRUE(std::isinf(filmBackScale(10, 10, 0.0F, 16.0F)));
  EXPECT_TRUE(std::isnan(filmBackScale(10, 10, -1.0F, 16.0F)));
}

TEST(FocusSpan, regionOfFourAroundTen_isEightToTwelve) {
  const dvFocusSpan span = focusSpan(10.0F, 4.0F);
  EXPECT_EQ(span.halfRegion, 2.0F);
  EXPECT_EQ(span.invHalfRegion, 0.5F);
  EXPECT_EQ(span.near, 8.0F);
  EXPECT_EQ(span.far, 12.0F);
  EXPECT_EQ(span.range, 4.0F);
}

TEST(FocusSpan, nearEnd_isNotClampedAtZero) {
  EXPECT_EQ(focusSpan(1.0F, 4.0F).near, -1.0F);
}

TEST(FocusSpan, regionOfSizeZero_hasAnInfiniteReciprocal) {
  EXPECT_TRUE(std::isinf(focusSpan(5.0F, 0.0F).invHalfRegion));
}

TEST(LensCoefficient, fiftyMillimetresAtTwoMetres_isTheThinLensFormula) {
  // 50 mm at f/2, focused at 2 m: 50 / 1950 * 50 / 2.
  EXPECT_FLOAT_EQ(lensCoefficient(50.0F, 2.0F, 2.0F, 1000.0F, 1.0F), 50.0F / 1950.0F * 25.0F);
}

TEST(LensCoefficient, scaleAndUnit_multiplyTheFocusDistance) {
  EXPECT_FLOAT_EQ(lensCoefficient(35.0F, 4.0F, 20.0F, 10.0F, 5.0F),
                  lensCoefficient(35.0F, 4.0F, 1.0F, 1000.0F, 1.0F));
}

TEST(LensCoefficient, focusAtTheFocalLengthOrNoAperture_isInfinite) {
  EXPECT_TRUE(std::isinf(lensCoefficient(50.0F, 2.0F, 50.0F, 1.0F, 1.0F)));
  EXPECT_TRUE(std::isinf(lensCoefficient(50.0F, 0.0F, 100.0F, 1.0F, 1.0F)));
}

TEST(LensCoefficient, focusNearerThanTheFocalLength_isNegative) {
  EXPECT_LT(lensCoefficient(50.0F, 2.0F, 20.0F, 1.0F, 1.0F), 0.0F);
}

}  // namespace
}  // namespace drevin
