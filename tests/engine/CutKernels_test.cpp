#include "engine/CutKernels.h"

#include <gtest/gtest.h>

#include <set>

namespace drevin::test {
namespace {

TEST(CutKernels, withoutShifts_areTheRadii) {
  const dvCutKernels kernels(9, 9, 0);
  EXPECT_EQ(kernels.count(), 10);
  for (int radius = 0; radius <= 9; ++radius) {
    EXPECT_EQ(kernels.place(radius, 0), radius);
    EXPECT_EQ(kernels[radius].radius, radius);
    EXPECT_EQ(kernels[radius].cut, 0);
  }
}

TEST(CutKernels, shiftWithinTheReach_cutsNothing) {
  const dvCutKernels kernels(9, 12, 3);
  for (const int shift : {-3, -1, 0, 2, 3}) {
    const int place = kernels.place(9, shift);
    ASSERT_GE(place, 0);
    EXPECT_EQ(kernels[place].radius, 9);
    EXPECT_EQ(kernels[place].cut, 0);
  }
}

TEST(CutKernels, shiftBeyondTheReach_cutsRowsOfThatSide) {
  const dvCutKernels kernels(9, 10, 4);
  EXPECT_EQ(kernels[kernels.place(9, 4)].cut, 3);
  EXPECT_EQ(kernels[kernels.place(9, -4)].cut, -3);
  EXPECT_EQ(kernels[kernels.place(8, 4)].cut, 2);
  EXPECT_EQ(kernels[kernels.place(6, 4)].cut, 0);
}

TEST(CutKernels, wideCuts_areNotAmongThem) {
  constexpr int radius = 2 * dvCutKernels::greatestCut;
  const dvCutKernels kernels(radius, radius, radius);
  EXPECT_GE(kernels.place(radius, dvCutKernels::greatestCut), 0);
  EXPECT_EQ(kernels.place(radius, dvCutKernels::greatestCut + 1), -1);
  EXPECT_EQ(kernels.place(radius, -dvCutKernels::greatestCut - 1), -1);
  EXPECT_GE(kernels.place(dvCutKernels::greatestCut, 2 * dvCutKernels::greatestCut), 0);
}

TEST(CutKernels, kernelHigherThanTheReach_isNotAmongThem) {
  const dvCutKernels kernels(12, 10, 0);
  EXPECT_GE(kernels.place(10, 0), 0);
  EXPECT_EQ(kernels.place(11, 0), -1);
}

TEST(CutKernels, radiusThatTheTableLacks_isNotAmongThem) {
  EXPECT_EQ(dvCutKernels(5, 20, 0).place(6, 0), -1);
}

TEST(CutKernels, barredRadius_isNotAmongThem) {
  dvCutKernels kernels(9, 10, 4);
  const int place = kernels.place(7, 0);
  kernels.bar(6);
  for (int shift = -4; shift <= 4; ++shift)
    EXPECT_EQ(kernels.place(6, shift), -1);
  EXPECT_EQ(kernels.place(7, 0), place);
}

}  // namespace
}  // namespace drevin::test
