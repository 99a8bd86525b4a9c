#include "deep/DeepEstimate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "support/Draw.h"

namespace drevin::test {
namespace {

constexpr float infinitelyFar = std::numeric_limits<float>::max();

int largestOf(const dvLens& lens, const std::vector<float>& depths) {
  int largest = 0;
  withFixedModes(lens, [&](const auto& fixed) {
    auto estimate = deepEstimate(fixed);
    estimate.addRow(depths.data(), static_cast<int>(depths.size()));
    largest = estimate.largest();
  });
  return largest;
}

// Sample by sample, each rounded on its own.
int literalLargest(const dvLens& lens, const std::vector<float>& depths) {
  int largest = 0;
  for (const float depth : depths) {
    if (std::fabs(depth - infinitelyFar) < 1e-5F) continue;
    const float blur = unscaledCoc(depth, focusRegion(depth, lens), lens) * lens.uiContextScale;
    if (blur > 0.0F) largest = std::max(largest, static_cast<int>(std::ceil(blur)));
  }
  return largest;
}

/// Blur grows to 40 px at 2 units from a focal plane at 10.
dvLens artisticLens() {
  dvLens lens;
  lens.focalPlane = 10.0F;
  lens.focusNear = 8.0F;
  lens.focusFar = 12.0F;
  lens.invHalfFocusRegion = 0.5F;
  lens.multiplier = 40.0F;
  return lens;
}

TEST(DeepEstimate, randomSamples_agreeWithSampleBySampleRounding) {
  Draw draw(6);
  constexpr float nan = std::numeric_limits<float>::quiet_NaN();
  constexpr float infinite = std::numeric_limits<float>::infinity();
  for (int i = 0; i < 400; ++i) {
    dvLens lens = artisticLens();
    lens.multiplier = draw.real(0.0F, 100.0F);
    lens.realWorldLens = i % 2 == 0;
    lens.unit = 1000.0F;
    lens.lensCoefficient = 0.2F;
    lens.filmBackScale = 50.0F;
    lens.depthStyle = i % 3 == 0 ? dvDepthStyle::Reciprocal : dvDepthStyle::Real;
    lens.falloff = i % 5 == 0 ? dvFalloff::Quadratic : dvFalloff::Linear;
    lens.frontMultiplier = draw.real(0.0F, 2.0F);
    lens.backMultiplier = draw.real(0.0F, 2.0F);
    lens.uiContextScale = draw.real(0.25F, 1.25F);
    std::vector<float> depths{nan, infinitelyFar, infinite, -infinite, -4.0F};
    for (int sample = 0; sample < i % 70; ++sample)
      depths.push_back(draw.real(0.5F, 25.0F));
    ASSERT_EQ(largestOf(lens, depths), literalLargest(lens, depths)) << i;
  }
}

TEST(DeepEstimate, style_playsNoPart) {
  dvLens lens = artisticLens();
  lens.depthStyle = dvDepthStyle::Reciprocal;
  EXPECT_EQ(largestOf(lens, {11.0F}), 20);
}

TEST(DeepEstimate, depthBeyondTheFocusRegion_isNotClamped) {
  dvLens lens = artisticLens();
  lens.focusFar = 10.5F;
  EXPECT_EQ(largestOf(lens, {11.5F}), 30);
}

TEST(DeepEstimate, fractionOfAPixel_isRoundedUp) {
  EXPECT_EQ(largestOf(artisticLens(), {10.99F, 11.0F}), 20);
  EXPECT_EQ(largestOf(artisticLens(), {10.99F, 11.001F}), 21);
}

TEST(DeepEstimate, noSamples_giveZero) {
  EXPECT_EQ(largestOf(artisticLens(), {}), 0);
}

}  // namespace
}  // namespace drevin::test
