#include "demo/DemoLayers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "DemoSamples.h"
#include "demo/DemoNoise.h"

namespace drevintool {
namespace {

using testing::compositeOf;
using testing::DemoSamples;
using testing::kHalfStep;
using testing::shareBetween;

TEST(DemoLayers, oneLayer_becomesOneOpaquePoint) {
  std::vector<DemoLayer> layers{{5.0, 1.0, {0.25, 0.5, 2.0}}};
  DemoSamples samples;
  appendMerged(layers, samples);
  ASSERT_EQ(samples.size(), 1U);
  EXPECT_FLOAT_EQ(samples[0].front, 5.0F);
  EXPECT_EQ(samples[0].back, samples[0].front);
  EXPECT_EQ(samples[0].alpha, 1.0F);
  EXPECT_FLOAT_EQ(samples[0].green, 0.5F);
}

TEST(DemoLayers, noLayers_giveNoSamples) {
  std::vector<DemoLayer> layers;
  DemoSamples samples;
  appendMerged(layers, samples);
  EXPECT_TRUE(samples.empty());
}

TEST(DemoLayers, halfCoveredPixel_hasTheSurfaceBehindAtFullAlpha) {
  std::vector<DemoLayer> layers{{30.0, 0.5, {0.5, 0.5, 0.5}}, {4.0, 0.5, {0.1, 0.0, 0.0}}};
  DemoSamples samples;
  appendMerged(layers, samples);
  ASSERT_EQ(samples.size(), 2U);
  EXPECT_FLOAT_EQ(samples[0].front, 4.0F);
  EXPECT_EQ(samples[0].alpha, 0.5F);
  EXPECT_FLOAT_EQ(samples[0].red, 0.1F);
  EXPECT_EQ(samples[1].alpha, 1.0F);
  EXPECT_FLOAT_EQ(samples[1].red, 1.0F);  // what is behind, as if it were seen alone
}

TEST(DemoLayers, depthsThatBlurAlike_areOneSampleBetweenThem) {
  std::vector<DemoLayer> layers{
      {4.00, 0.5, {}}, {4.03, 0.25, {}}, {200.0, 0.125, {}}, {400.0, 0.125, {}}};
  DemoSamples samples;
  appendMerged(layers, samples);
  ASSERT_EQ(samples.size(), 2U);
  EXPECT_GT(samples[0].front, 4.0F);
  EXPECT_LT(samples[0].front, 4.03F);
  EXPECT_EQ(samples[0].alpha, 0.75F);
  EXPECT_NEAR(samples[1].front, 266.7, 0.1);  // the reciprocal of the mean reciprocal
}

std::vector<DemoLayer> randomLayers(int seed) {
  constexpr int kRays = 16;
  std::vector<DemoLayer> layers;
  for (int i = 0; i < kRays; ++i) {
    const double depth = std::exp(mix(0.0, 6.0, std::floor(demoHash(seed, i) * 6.0) / 6.0));
    const double alpha = demoHash(seed, i, 1) < 0.5 ? 1.0 : 0.05 + 0.9 * demoHash(seed, i, 2);
    const double share = alpha / kRays;
    layers.push_back({depth, share, DemoVector{1.0, 0.5, 0.25} * (share * depth)});
    if (alpha < 1.0) layers.push_back({900.0, (1.0 - alpha) / kRays, {}});
  }
  return layers;
}

TEST(DemoLayers, compositeFrontToBack_givesSharesAndLightBack) {
  for (int seed = 0; seed < 200; ++seed) {
    std::vector<DemoLayer> layers = randomLayers(seed);
    DemoSamples samples;
    appendMerged(layers, samples);
    double red = 0.0;
    for (const DemoLayer& layer : layers)
      red += layer.light.x;
    EXPECT_NEAR(compositeOf(samples).x, red, red * 2.0 * kHalfStep) << seed;
    for (const double middle : {1.0, 2.7, 7.4, 20.1, 54.6, 148.4, 900.0}) {
      double share = 0.0;
      for (const DemoLayer& layer : layers)
        share += std::abs(layer.depth / middle - 1.0) < 0.1 ? layer.share : 0.0;
      EXPECT_NEAR(shareBetween(samples, middle * 0.9, middle * 1.1), share, kHalfStep) << seed;
    }
  }
}

TEST(DemoLayers, alphas_areHalfPrecisionAndTheLastIsOne) {
  for (int seed = 0; seed < 50; ++seed) {
    std::vector<DemoLayer> layers = randomLayers(seed);
    DemoSamples samples;
    appendMerged(layers, samples);
    for (const DemoDeepSample& sample : samples)
      EXPECT_EQ(sample.alpha, toHalfPrecision(sample.alpha));
    EXPECT_EQ(samples.back().alpha, 1.0F);
  }
}

}  // namespace
}  // namespace drevintool
