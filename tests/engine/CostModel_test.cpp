#include "engine/CostModel.h"

#include <gtest/gtest.h>

#include "engine/SimdLevels.h"

namespace drevin::test {
namespace {

TEST(CostModel, everyCost_isPositiveAndGrowsWithLengthAndPlanes) {
  for (int length = 128; length < 640; length += 32) {
    for (int planes = 1; planes < 8; ++planes) {
      EXPECT_GT(fourierAddCost(128, length, planes), 0.0);
      EXPECT_LT(fourierAddCost(128, length, planes), fourierAddCost(128, length + 32, planes));
      EXPECT_LT(fourierAddCost(128, length, planes), fourierAddCost(128, length, planes + 1));
      EXPECT_LT(fourierFinishCost(length, planes), fourierFinishCost(length + 32, planes));
      EXPECT_LT(fourierFinishCost(length, planes), fourierFinishCost(length, planes + 1));
      EXPECT_LT(fourierAddCost(128, length, planes), fourierAddCost(256, length, planes));
    }
  }
}

TEST(CostModel, widerVectors_costNoMore) {
  double narrower = 1e300;
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    EXPECT_LE(fourierAddCost(128, 384, 5), narrower);
    narrower = fourierAddCost(128, 384, 5);
  }
}

}  // namespace
}  // namespace drevin::test
