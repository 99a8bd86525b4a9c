#include "deep/DeepDepthView.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace drevin::test {
namespace {

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
constexpr int red = 1;
constexpr int green = 2;
constexpr int blue = 3;
constexpr float tolerance = 1e-6F;

/// Focal plane 10, focus region 8 to 12, 20 px of blur at its ends.
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

const dvPassSettings distance{dvOutputType::FocalDistance, false, 64};
const dvPassSettings matte{dvOutputType::FocusMatte, false, 64};

float shown(const std::vector<dvDepthSample>& samples, int channel,
            const dvPassSettings& pass = distance) {
  return deepDepthValue(samples, channel, plainSettings(), pass);
}

TEST(DeepDepthView, emptyPixel_showsTheBackgroundAtFullWeight) {
  EXPECT_EQ(shown({}, red), 0.0F);
  EXPECT_EQ(shown({}, green), 0.0F);
  EXPECT_EQ(shown({}, blue), 20.0F);
  EXPECT_EQ(shown({}, blue, matte), 1.0F);
}

TEST(DeepDepthView, firstSampleOfAlphaOne_hidesTheRestAndTheBackground) {
  const std::vector<dvDepthSample> samples = {{9.0F, 1.0F}, {11.0F, 1.0F}};
  EXPECT_EQ(shown(samples, green), 10.0F);
  EXPECT_EQ(shown(samples, blue), 0.0F);
  EXPECT_EQ(shown(samples, green, matte), 1.0F);
}

TEST(DeepDepthView, twoHalves_weighAHalfAndAQuarterAndTheBackgroundAQuarter) {
  const std::vector<dvDepthSample> samples = {{9.0F, 0.5F}, {11.0F, 0.5F}};
  EXPECT_NEAR(shown(samples, green), 0.5F * 10.0F, tolerance);
  EXPECT_NEAR(shown(samples, blue), 0.25F * 10.0F + 0.25F * 20.0F, tolerance);
  EXPECT_NEAR(shown(samples, blue, matte), 0.5F, tolerance);
}

TEST(DeepDepthView, inFocus_isRed) {
  EXPECT_EQ(shown({{10.0F, 1.0F}}, red), 1.0F);
  EXPECT_EQ(shown({{10.0F, 1.0F}}, red, matte), 0.0F);
  EXPECT_EQ(shown({{10.0F, 1.0F}}, blue, matte), 1.0F);
}

TEST(DeepDepthView, zeroAlpha_addsNothing) {
  const std::vector<dvDepthSample> with = {{9.0F, 0.0F}, {11.0F, 0.5F}};
  for (const int channel : {red, green, blue}) {
    EXPECT_EQ(shown(with, channel), shown({{11.0F, 0.5F}}, channel));
  }
}

TEST(DeepDepthView, normalized_isDividedByTheKernelSize) {
  const dvPassSettings pass{dvOutputType::FocalDistance, true, 64};
  EXPECT_NEAR(shown({{9.0F, 1.0F}}, green, pass), 10.0F / 64.0F, tolerance);
}

TEST(DeepDepthView, smallBlurs_haveNoLeastSize) {
  EXPECT_NEAR(shown({{10.02F, 1.0F}}, blue), 0.2F, 1e-4F);
}

TEST(DeepDepthView, negativeBlur_showsAsZero) {
  dvDeepSettings settings = plainSettings();
  settings.lens.multiplier = -20.0F;
  EXPECT_EQ(deepDepthValue({{9.0F, 1.0F}}, green, settings, distance), 0.0F);
  EXPECT_EQ(deepDepthValue({}, blue, settings, distance), 0.0F);
}

TEST(DeepDepthView, notANumberBlur_staysSo) {
  EXPECT_TRUE(std::isnan(shown({{notANumber, 1.0F}}, blue)));
  EXPECT_EQ(shown({{notANumber, 1.0F}}, green), 0.0F);
  EXPECT_EQ(shown({{notANumber, 1.0F}}, blue, matte), 1.0F);
}

TEST(DeepDepthView, notANumberAlpha_endsThePixel) {
  EXPECT_TRUE(std::isnan(shown({{9.0F, notANumber}, {11.0F, 1.0F}}, green)));
}

TEST(DeepDepthView, alphaAboveOne_addsNoBackground) {
  EXPECT_NEAR(shown({{11.0F, 1.5F}, {11.0F, 1.0F}}, blue), 15.0F, tolerance);
}

}  // namespace
}  // namespace drevin::test
