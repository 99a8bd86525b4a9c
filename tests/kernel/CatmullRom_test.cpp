#include "kernel/CatmullRom.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "support/LiteralKernelBank.h"

namespace drevin {
namespace {

TEST(CatmullRom, fractionZero_isTheSecondSampleExactly) {
  EXPECT_EQ(catmullRom(3.0F, 0.1F, -7.0F, 1e6F, 0.0F), 0.1F);
}

TEST(CatmullRom, equalSamples_giveThatValueForEveryFraction) {
  for (const float value : {0.0F, 1.0F, -2.5F, 3000.0F, 0x1p-120F}) {
    for (int i = 0; i < 64; ++i) {
      EXPECT_EQ(catmullRom(value, value, value, value, static_cast<float>(i) / 64.0F), value);
    }
  }
}

TEST(CatmullRom, plateauAtItsMiddle_overshoots) {
  EXPECT_EQ(catmullRom(0.0F, 1.0F, 1.0F, 0.0F, 0.5F), 1.125F);
}

TEST(CatmullRom, straightLine_staysStraight) {
  for (int i = 0; i <= 16; ++i) {
    const float t = static_cast<float>(i) / 16.0F;
    EXPECT_NEAR(catmullRom(-1.0F, 0.0F, 1.0F, 2.0F, t), t, 1e-6F);
  }
}

TEST(CatmullRom, mirroredSamples_giveTheMirroredCurve) {
  for (int i = 0; i <= 16; ++i) {
    const float t = static_cast<float>(i) / 16.0F;
    EXPECT_NEAR(catmullRom(0.2F, 1.0F, -0.4F, 3.0F, t),
                catmullRom(3.0F, -0.4F, 1.0F, 0.2F, 1.0F - t), 2e-6F);
  }
}

TEST(CatmullRom, randomSamples_agreeWithDoublePrecision) {
  std::mt19937 generator(1);
  std::uniform_real_distribution<float> sample(-4.0F, 4.0F);
  std::uniform_real_distribution<float> fraction(0.0F, 1.0F);
  for (int i = 0; i < 1000; ++i) {
    const float p[4] = {sample(generator), sample(generator), sample(generator), sample(generator)};
    const float t = fraction(generator);
    EXPECT_NEAR(catmullRom(p[0], p[1], p[2], p[3], t),
                test::literalCubic<double>(p[0], p[1], p[2], p[3], t), 1e-5);
  }
}

TEST(CatmullRom, nonFiniteSample_isNotFinite) {
  const float inf = std::numeric_limits<float>::infinity();
  EXPECT_FALSE(std::isfinite(catmullRom(0.0F, inf, 1.0F, 0.0F, 0.5F)));
  EXPECT_TRUE(std::isnan(catmullRom(0.0F, 1.0F, std::nanf(""), 0.0F, 0.5F)));
}

}  // namespace
}  // namespace drevin
