#include "defocus/RowSplatter.h"

#include <gtest/gtest.h>

#include "defocus/SplatBench.h"

namespace drevin::test {
namespace {

const std::vector<int> red{1};

TEST(RowSplatter, sourceColumns_areTheSpanGrownByThePadding) {
  dvSplatFrame frame;
  frame.padding = 7;
  const dvRowSplatter splatter(frame, {10, 0, 30}, red);
  EXPECT_EQ(splatter.sourceColumns().left, 3);
  EXPECT_EQ(splatter.sourceColumns().right, 37);
}

TEST(RowSplatter, columnsOutsideTheFormat_areClampedIntoIt) {
  dvSplatFrame frame;
  frame.formatWidth = 20;
  const dvRowSplatter splatter(frame, {0, 0, 4}, red);
  EXPECT_EQ(splatter.clampColumn(-5), 0);
  EXPECT_EQ(splatter.clampColumn(7), 7);
  EXPECT_EQ(splatter.clampColumn(20), 19);
}

TEST(RowSplatter, formatWithoutColumns_clampsToZero) {
  const dvSplatFrame frame;
  const dvRowSplatter splatter(frame, {0, 0, 4}, red);
  EXPECT_EQ(splatter.clampColumn(7), 0);
}

TEST(RowSplatter, thousandsOfRowsOfTinyShares_addUpAsInDouble) {
  // A kernel of 1 x 1 whose value is no power of two: in one float sum the error would grow with
  // every row, past 1e-4 of the sum.
  dvKernelBank bank = countingBank(5, red);
  bank[1].channels[1][0] = 0.1F;
  dvSplatFrame frame;
  frame.bank = &bank;
  frame.slices = 2;
  dvRowSplatter splatter(frame, {0, 0, 1}, red);
  dvSplatSource source;
  constexpr int rows = 400000;
  for (int i = 0; i < rows; ++i) {
    source.slice = 0;
    source.weight = 1.0F / rows;
    splatter.pixel(1) = i % 2 == 0 ? 1.0F : 3.0F;
    splatter.splat(source);
    splatter.endSourceRow();
  }
  source.slice = 1;
  source.weight = 100.0F;
  splatter.pixel(1) = 50.0F;
  splatter.splat(source);
  float out = 0.0F;
  splatter.composite(0, &out);
  // The near slice covers 0.1 with value 2, the far one the other 0.9 with value 50.
  EXPECT_NEAR(static_cast<double>(out), 0.1 * 2.0 + 0.9 * 50.0, 1e-4);
}

}  // namespace
}  // namespace drevin::test
