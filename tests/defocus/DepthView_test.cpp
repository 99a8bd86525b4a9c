#include "defocus/DepthView.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace drevin {
namespace {

/// Blur of 15 px at 2 units from a focal plane at 10.
dvLens lens() {
  dvLens lens;
  lens.focalPlane = 10.0F;
  lens.focusNear = 8.0F;
  lens.focusFar = 12.0F;
  lens.invHalfFocusRegion = 0.5F;
  lens.multiplier = 15.0F;
  return lens;
}

std::vector<float> viewOf(float depth, dvOutputType type, bool normalize = true) {
  std::vector<float> rgb;
  for (int channel = 1; channel <= 3; ++channel) {
    float out = -1.0F;
    depthViewRow(&depth, channel, 0, 1, lens(), {type, normalize, 15}, &out);
    rgb.push_back(out);
  }
  return rgb;
}

TEST(DepthView, pixelOnTheFocalPlane_isRed) {
  EXPECT_EQ(viewOf(10.0F, dvOutputType::FocalDistance), (std::vector<float>{1.0F, 0.0F, 0.0F}));
}

TEST(DepthView, pixelInFrontNormalised_isItsShareOfTheKernelSizeInGreen) {
  EXPECT_EQ(viewOf(9.0F, dvOutputType::FocalDistance), (std::vector<float>{0.0F, 0.5F, 0.0F}));
}

TEST(DepthView, pixelBehindNotNormalised_isItsBlurInBlue) {
  EXPECT_EQ(viewOf(11.0F, dvOutputType::FocalDistance, false),
            (std::vector<float>{0.0F, 0.0F, 7.5F}));
}

TEST(DepthView, focusMatteOfAFiniteDepth_isExactlyOneOfFrontAndBack) {
  EXPECT_EQ(viewOf(9.0F, dvOutputType::FocusMatte), (std::vector<float>{0.0F, 1.0F, 0.0F}));
  EXPECT_EQ(viewOf(10.0F, dvOutputType::FocusMatte), (std::vector<float>{0.0F, 0.0F, 1.0F}));
  EXPECT_EQ(viewOf(-50.0F, dvOutputType::FocusMatte), (std::vector<float>{0.0F, 1.0F, 0.0F}));
}

TEST(DepthView, focusMatteOfANonFiniteDepth_isBack) {
  EXPECT_EQ(viewOf(std::nanf(""), dvOutputType::FocusMatte),
            (std::vector<float>{0.0F, 0.0F, 1.0F}));
}

TEST(DepthView, row_isWrittenFromXToRByAbsoluteColumn) {
  const std::vector<float> depths{9.0F, 10.0F, 11.0F, 12.0F};
  std::vector<float> out(4, -1.0F);
  depthViewRow(depths.data() + 2, 3, -1, 1, lens(), {dvOutputType::FocusMatte, false, 15},
               out.data() + 2);
  EXPECT_EQ(out, (std::vector<float>{-1.0F, 1.0F, 1.0F, -1.0F}));
}

TEST(DepthView, noLeastBlur_isApplied) {
  EXPECT_EQ(viewOf(10.01F, dvOutputType::FocalDistance, false)[2], depthToBlur(10.01F, lens()).coc);
  EXPECT_LT(viewOf(10.01F, dvOutputType::FocalDistance, false)[2], 1.0F);
}

}  // namespace
}  // namespace drevin
