#include "engine/CostModel.h"

#include <gtest/gtest.h>

namespace drevin::test {
namespace {

constexpr int pixelsOfATile = 128 * 128;

/// Time to add every pixel of a tile directly, and by one transform of a length that holds it.
double directTile(int radius, int planes) {
  return pixelsOfATile * directCost(radius, planes);
}
double fourierTile(int side, int planes) {
  return fourierAddCost(side, planes) + fourierFinishCost(side, planes);
}

TEST(CostModel, everyCost_isPositiveAndGrowsWithSizeAndPlanes) {
  for (int planes = 1; planes < 8; ++planes) {
    EXPECT_GT(directCost(0, planes), 0.0);
    for (int radius = 0; radius < 128; ++radius) {
      EXPECT_LT(directCost(radius, planes), directCost(radius + 1, planes));
      EXPECT_LT(directCost(radius, planes), directCost(radius, planes + 1));
    }
    for (int side = 128; side < 512; side += 32) {
      EXPECT_GT(fourierAddCost(side, planes), 0.0);
      EXPECT_LT(fourierAddCost(side, planes), fourierAddCost(side + 32, planes));
      EXPECT_LT(fourierAddCost(side, planes), fourierAddCost(side, planes + 1));
      EXPECT_LT(fourierFinishCost(side, planes), fourierFinishCost(side + 32, planes));
      EXPECT_LT(fourierFinishCost(side, planes), fourierFinishCost(side, planes + 1));
    }
  }
}

TEST(CostModel, tileFullOfOneLargeBlur_isCheaperTransformed) {
  for (const int radius : {8, 16, 32, 64, 127})
    EXPECT_LT(fourierTile(128 + 2 * radius + 32, 5), directTile(radius, 5)) << radius;
}

TEST(CostModel, aDozenPixelsOfABlur_areCheaperDirect) {
  for (const int radius : {1, 8, 32, 64})
    EXPECT_LT(12.0 * directCost(radius, 5), fourierAddCost(128 + 2 * radius, 5)) << radius;
}

TEST(CostModel, tileInFocus_isCheaperDirect) {
  // Each of a splat's two kernels is half of its cost; here there is but one.
  EXPECT_LT(0.5 * directTile(0, 5), fourierTile(128, 5));
}

}  // namespace
}  // namespace drevin::test
