#include "engine/RowCost.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "engine/RowScene.h"
#include "engine/SimdLevels.h"

namespace drevin::test {
namespace {

constexpr double alone = std::numeric_limits<double>::infinity();

TEST(RowCost, largerRadii_costMore) {
  const dvKernelTable kernels(kernelBank(KernelKind::Disc, 60), 1);
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    const dvRowCost cost(kernels, 4);
    for (int radius = 1; radius < 60; ++radius) {
      for (const double spacing : {1.0, 16.0, alone})
        EXPECT_GT(cost.splat(radius, spacing), cost.splat(radius - 1, spacing)) << radius;
    }
  }
}

TEST(RowCost, splatsFartherApart_costMore) {
  const dvKernelTable kernels(kernelBank(KernelKind::Disc, 60), 1);
  const dvRowCost cost(kernels, 4);
  for (const int radius : {0, 4, 20, 60}) {
    EXPECT_LT(cost.splat(radius, 1.0), cost.splat(radius, 64.0));
    EXPECT_LT(cost.splat(radius, 64.0), cost.splat(radius, alone));
    EXPECT_TRUE(std::isfinite(cost.splat(radius, alone)));
  }
}

TEST(RowCost, oneKernel_costsLessThanTwo) {
  const dvKernelTable kernels(kernelBank(KernelKind::Disc, 60), 1);
  const dvRowCost cost(kernels, 4);
  for (int radius = 0; radius < 60; ++radius) {
    EXPECT_LT(cost.kernel(radius, 16.0), cost.splat(radius, 16.0));
    EXPECT_GT(cost.kernel(radius, 16.0), 0.25 * cost.splat(radius, 16.0)) << radius;
  }
  EXPECT_EQ(cost.kernel(60, 16.0), cost.splat(60, 16.0));
}

TEST(RowCost, moreChannels_costMore) {
  const dvKernelTable kernels(kernelBank(KernelKind::Disc, 20), 1);
  for (int channels = 1; channels < 8; ++channels) {
    EXPECT_LT(dvRowCost(kernels, channels).splat(20, 1.0),
              dvRowCost(kernels, channels + 1).splat(20, 1.0));
  }
}

TEST(RowCost, constantKernels_costLessThanRandomOnes) {
  const dvKernelTable disc(kernelBank(KernelKind::Disc, 100), 1);
  const dvKernelTable random(kernelBank(KernelKind::Random, 100), 1);
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    EXPECT_LT(dvRowCost(disc, 4).splat(100, alone), dvRowCost(random, 4).splat(100, alone));
  }
}

TEST(RowCost, kernelsOfZeros_costNothing) {
  dvKernelBank bank = kernelBank(KernelKind::Constant, 3);
  for (dvChannelFloatBuffer& entry : bank)
    entry.resize(entry.width, {1});
  EXPECT_EQ(dvRowCost(dvKernelTable(bank, 1), 4).splat(2, 1.0), 0.0);
}

TEST(RowCost, largestRadius_hasNoNext) {
  const dvKernelTable kernels(kernelBank(KernelKind::Constant, 3), 1);
  EXPECT_GT(dvRowCost(kernels, 1).splat(3, 1.0), 0.0);
}

TEST(RowCost, leastInnerPart_isACellAtLeast) {
  for (const dvSimdLevel level : {dvSimdLevel::Baseline, dvSimdLevel::Avx2, dvSimdLevel::Avx512})
    EXPECT_GE(leastInnerPart(rowTimes(level)), dvCellColumns);
}

}  // namespace
}  // namespace drevin::test
