#include "defocus/SliceAccumulators.h"

#include <gtest/gtest.h>

namespace drevin {
namespace {

TEST(SliceAccumulators, sliceOutOfRange_isRefused) {
  dvSliceAccumulators accumulators(3, {1}, 0, 4);
  EXPECT_TRUE(accumulators.use(2));
  EXPECT_FALSE(accumulators.use(3));
  EXPECT_FALSE(accumulators.use(~std::uint64_t{0}));
}

TEST(SliceAccumulators, noSlices_refuseAll) {
  dvSliceAccumulators accumulators(0, {1}, 0, 4);
  EXPECT_FALSE(accumulators.use(0));
  EXPECT_EQ(accumulators.slices(), 0);
}

TEST(SliceAccumulators, unusedSlice_hasNoSums) {
  dvSliceAccumulators accumulators(2, {1}, 0, 4);
  accumulators.use(1);
  accumulators.flush();
  EXPECT_EQ(accumulators.colourSum(0, 0), nullptr);
  ASSERT_NE(accumulators.colourSum(1, 0), nullptr);
}

TEST(SliceAccumulators, rows_areAddressedByAbsoluteColumn) {
  dvSliceAccumulators accumulators(1, {2, 9}, -3, 2);
  accumulators.use(0);
  accumulators.colour()[0][9][-3] = 5.0F;
  accumulators.weight()[0][9][1] = 6.0F;
  accumulators.flush();
  EXPECT_EQ(accumulators.colourSum(0, 1)[0], 5.0);
  EXPECT_EQ(accumulators.weightSum(0, 1)[4], 6.0);
  EXPECT_EQ(accumulators.colourSum(0, 0)[0], 0.0);
}

TEST(SliceAccumulators, freshRows_areZero) {
  dvSliceAccumulators accumulators(2, {1, 2}, 5, 9);
  accumulators.use(1);
  for (const std::size_t channel : {std::size_t{1}, std::size_t{2}}) {
    for (int x = 5; x < 9; ++x) {
      EXPECT_EQ(accumulators.colour()[1][channel][x], 0.0F);
      EXPECT_EQ(accumulators.weight()[1][channel][x], 0.0F);
    }
  }
}

TEST(SliceAccumulators, flush_emptiesTheRecentSumsAndKeepsTheTotal) {
  dvSliceAccumulators accumulators(1, {1}, 0, 1);
  for (int i = 0; i < 3; ++i) {
    accumulators.use(0);
    accumulators.colour()[0][1][0] += 2.0F;
    accumulators.flush();
    EXPECT_EQ(accumulators.colour()[0][1][0], 0.0F);
  }
  EXPECT_EQ(accumulators.colourSum(0, 0)[0], 6.0);
}

TEST(SliceAccumulators, manySmallFlushedShares_areNotLostBesideALargeSum) {
  dvSliceAccumulators accumulators(1, {1}, 0, 1);
  constexpr float small = 0x1p-30F;  // vanishes beside 1 in single precision
  accumulators.use(0);
  accumulators.weight()[0][1][0] = 1.0F;
  accumulators.flush();
  for (int i = 0; i < 1000; ++i) {
    accumulators.use(0);
    accumulators.weight()[0][1][0] += small;
    accumulators.flush();
  }
  EXPECT_EQ(accumulators.weightSum(0, 0)[0], 1.0 + 1000.0 * 0x1p-30);
}

TEST(SliceAccumulators, noChannelsOrColumns_stillTakeSplats) {
  dvSliceAccumulators channelless(2, {}, 3, 9);
  EXPECT_TRUE(channelless.use(1));
  channelless.flush();
  dvSliceAccumulators empty(2, {1}, 3, 3);
  EXPECT_TRUE(empty.use(1));
  empty.flush();
}

}  // namespace
}  // namespace drevin
