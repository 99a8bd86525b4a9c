#include "demo/DemoSmoke.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "DemoRays.h"
#include "DemoSamples.h"
#include "demo/DemoNoise.h"

namespace drevintool {
namespace {

using testing::DemoSamples;
using testing::towards;

// The steam's share of the light, in steps of 2 mm or less.
double finelyTaken(const DemoRay& ray, double from, double to) {
  const int steps = static_cast<int>(std::ceil((to - from) / 0.002));
  double density = 0.0;
  for (int i = 0; i < steps; ++i)
    density += demoSmokeDensity(ray.at(mix(from, to, (i + 0.5) / steps))) / steps;
  return 1.0 - std::exp(-density * (to - from) * length(ray.along));
}

double takenBy(const DemoSamples& samples) {
  double open = 1.0;
  for (const DemoDeepSample& sample : samples)
    open *= 1.0 - sample.alpha;
  return 1.0 - open;
}

TEST(DemoSmoke, samples_takeWhatItsDensityTakes) {
  const DemoSmoke smoke(demoLights());
  double most = 0.0;
  for (int i = 0; i < 60; ++i) {
    const DemoRay ray = towards(-0.2 + 1.2 * demoHash(i, 1), 3.0 * demoHash(i, 2), 16.0);
    DemoSamples samples;
    smoke.append(ray, 0.0, 100.0, samples);
    EXPECT_NEAR(takenBy(samples), finelyTaken(ray, kDemoSmokeNear, kDemoSmokeFar), 0.08);
    most = std::max(most, takenBy(samples));
  }
  EXPECT_GT(most, 0.5);
  EXPECT_LT(most, 0.999);
}

TEST(DemoSmoke, samples_areThickAndTouchWithoutOverlap) {
  const DemoSmoke smoke(demoLights());
  DemoSamples samples;
  smoke.append(towards(0.6, 2.2, 16.0), 0.0, 100.0, samples);
  ASSERT_GE(samples.size(), 2U);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    EXPECT_GT(samples[i].back, samples[i].front);
    EXPECT_GT(samples[i].alpha, 0.0F);
    EXPECT_LT(samples[i].alpha, 1.0F);
    EXPECT_GT(samples[i].red, 0.0F);
    if (i > 0) {
      EXPECT_GE(samples[i].front, samples[i - 1].back);
    }
  }
}

TEST(DemoSmoke, surfaceWithin_endsTheSamplesAtIt) {
  const DemoSmoke smoke(demoLights());
  const DemoRay ray = towards(0.3, 1.2, 16.0);
  DemoSamples before;
  smoke.append(ray, 0.0, 15.7, before);
  DemoSamples after;
  smoke.append(ray, 15.7, 100.0, after);
  ASSERT_FALSE(before.empty());
  ASSERT_FALSE(after.empty());
  EXPECT_LE(before.back().back, 15.7F);
  EXPECT_GE(after.front().front, 15.7F);
  DemoSamples whole;
  smoke.append(ray, 0.0, 100.0, whole);
  const double open = (1.0 - takenBy(before)) * (1.0 - takenBy(after));
  EXPECT_NEAR(open, 1.0 - takenBy(whole), 0.05);
}

TEST(DemoSmoke, raysAside_meetNone) {
  const DemoSmoke smoke(demoLights());
  DemoSamples samples;
  smoke.append(towards(-3.0, 1.5, 16.0), 0.0, 100.0, samples);
  smoke.append(towards(0.3, 1.2, 16.0), 0.0, 12.0, samples);
  EXPECT_TRUE(samples.empty());
  EXPECT_EQ(demoSmokeDensity({0.2, -0.1, 16.0}), 0.0);
  EXPECT_EQ(demoSmokeDensity({0.2, 5.0, 16.0}), 0.0);
}

}  // namespace
}  // namespace drevintool
