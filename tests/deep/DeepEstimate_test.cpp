#include "deep/DeepEstimate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "defocus/ImagingFrame.h"
#include "support/Draw.h"
#include "support/LiteralEstimate.h"

namespace drevin::test {
namespace {

constexpr int side = 100;  ///< of the format, px

int largestOf(const LiteralSettings& settings, const std::vector<float>& depths) {
  int largest = 0;
  withFixedModes(lensOf(settings, side, side, 256), [&](const auto& lens) {
    auto estimate = deepEstimate(lens);
    estimate.addRow(depths.data(), static_cast<int>(depths.size()));
    largest = estimate.largest();
  });
  return largest;
}

// Sample by sample, each rounded on its own.
int literalLargest(const LiteralSettings& settings, const std::vector<float>& depths) {
  const LiteralLens lens = literalLens(settings, side, side);
  int largest = 0;
  for (const float depth : depths)
    largest = std::max(largest, literalDeepDiameter(depth, settings, lens));
  return largest;
}

/// Blur grows to 40 px at 2 units from a focal plane at 10.
LiteralSettings ramp() {
  LiteralSettings settings;
  settings.focalPlane = 10.0F;
  settings.focusRegionSize = 4.0F;
  settings.multiplier = 40.0F;
  return settings;
}

TEST(DeepEstimate, randomSamples_agreeWithSampleBySampleRounding) {
  Draw draw(6);
  constexpr float nan = std::numeric_limits<float>::quiet_NaN();
  constexpr float infinite = std::numeric_limits<float>::infinity();
  constexpr float infinitelyFar = std::numeric_limits<float>::max();
  int raised = 0;
  for (int i = 0; i < 400; ++i) {
    LiteralSettings settings = ramp();
    settings.multiplier = draw.real(0.0F, 100.0F);
    settings.realWorldLens = i % 2 == 0;
    settings.fStop = 0.1F;
    settings.depthStyle = i % 3 == 0 ? 1 : 0;
    settings.falloff = i % 5 == 0 ? 1 : 0;
    settings.frontMultiplier = draw.real(0.0F, 2.0F);
    settings.backMultiplier = draw.real(0.0F, 2.0F);
    settings.contextScale = draw.real(0.25F, 1.25F);
    std::vector<float> depths{nan, infinitelyFar, infinite, -infinite, -4.0F};
    for (int sample = 0; sample < i % 70; ++sample)
      depths.push_back(draw.real(0.5F, 25.0F));
    const int expected = literalLargest(settings, depths);
    ASSERT_EQ(largestOf(settings, depths), expected) << i;
    raised += expected > 1 ? 1 : 0;
  }
  EXPECT_GT(raised, 300);
}

TEST(DeepEstimate, style_playsNoPart) {
  LiteralSettings settings = ramp();
  settings.depthStyle = 1;
  EXPECT_EQ(largestOf(settings, {11.0F}), 20);
}

TEST(DeepEstimate, depthBeyondTheFocusRegion_isNotClamped) {
  dvLens lens = lensOf(ramp(), side, side, 256);
  lens.focusFar = 10.5F;
  withFixedModes(lens, [](const auto& fixed) {
    auto estimate = deepEstimate(fixed);
    const float depth = 11.5F;
    estimate.addRow(&depth, 1);
    EXPECT_EQ(estimate.largest(), 30);
  });
}

TEST(DeepEstimate, fractionOfAPixel_isRoundedUp) {
  EXPECT_EQ(largestOf(ramp(), {10.99F, 11.0F}), 20);
  EXPECT_EQ(largestOf(ramp(), {10.99F, 11.001F}), 21);
}

TEST(DeepEstimate, noSamples_giveZero) {
  EXPECT_EQ(largestOf(ramp(), {}), 0);
}

}  // namespace
}  // namespace drevin::test
