#include "defocus/CorrectiveSlices.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace drevin {
namespace {

const float nan = std::nanf("");

TEST(CorrectiveSlices, oneOrFewer_haveNoStarts) {
  EXPECT_TRUE(sliceStarts(1, 10.0F, {8.0F, 12.0F}).empty());
  EXPECT_TRUE(sliceStarts(0, 10.0F, {8.0F, 12.0F}).empty());
  EXPECT_TRUE(sliceStarts(-3, 10.0F, {8.0F, 12.0F}).empty());
}

TEST(CorrectiveSlices, two_startAtZeroAndTheFocalPlane) {
  EXPECT_EQ(sliceStarts(2, 10.0F, {8.0F, 12.0F}), (std::vector<float>{0.0F, 10.0F}));
}

TEST(CorrectiveSlices, three_divideTheVolumeButStartAtZero) {
  const std::vector<float> starts = sliceStarts(3, 10.0F, focusSliceVolume(8.0F, 12.0F));
  ASSERT_EQ(starts.size(), 3U);
  EXPECT_EQ(starts[0], 0.0F);
  EXPECT_FLOAT_EQ(starts[1], 9.333333F);
  EXPECT_FLOAT_EQ(starts[2], 10.666667F);
}

TEST(CorrectiveSlices, depthInTheMiddleOfThree_isInSliceOne) {
  const std::vector<float> starts = sliceStarts(3, 10.0F, focusSliceVolume(8.0F, 12.0F));
  EXPECT_EQ(sliceIndex(9.33F, 3, starts), 0U);
  EXPECT_EQ(sliceIndex(starts[1], 3, starts), 1U);
  EXPECT_EQ(sliceIndex(10.66F, 3, starts), 1U);
  EXPECT_EQ(sliceIndex(starts[2], 3, starts), 2U);
  EXPECT_EQ(sliceIndex(1e30F, 3, starts), 2U);
}

TEST(CorrectiveSlices, depthAtTheFocalPlaneOfTwo_isInSliceOne) {
  const std::vector<float> starts = sliceStarts(2, 10.0F, {8.0F, 12.0F});
  EXPECT_EQ(sliceIndex(10.0F, 2, starts), 1U);
  EXPECT_EQ(sliceIndex(std::nextafter(10.0F, 0.0F), 2, starts), 0U);
  EXPECT_EQ(sliceIndex(0.0F, 2, starts), 0U);
}

TEST(CorrectiveSlices, volumeOfAFocusRegionBeforeTheLens_startsAtZero) {
  EXPECT_EQ(focusSliceVolume(-1.0F, 3.0F).near, 0.0F);
  EXPECT_EQ(focusSliceVolume(-1.0F, 3.0F).far, 3.0F);
}

TEST(CorrectiveSlices, customVolume_takesEitherOrderAndIsNotClamped) {
  EXPECT_EQ(customSliceVolume(30.0F, -5.0F).near, -5.0F);
  EXPECT_EQ(customSliceVolume(30.0F, -5.0F).far, 30.0F);
  EXPECT_EQ(customSliceVolume(-5.0F, 30.0F).near, -5.0F);
}

TEST(CorrectiveSlices, negativeDepth_isInNoSlice) {
  EXPECT_EQ(sliceIndex(-0.5F, 3, sliceStarts(3, 10.0F, {8.0F, 12.0F})), dvNoSlice);
}

TEST(CorrectiveSlices, negativeDepthWithOneSlice_isInIt) {
  EXPECT_EQ(sliceIndex(-0.5F, 1, {}), 0U);
}

TEST(CorrectiveSlices, emptyListOfSeveral_isNoSlice) {
  EXPECT_EQ(sliceIndex(5.0F, 4, {}), dvNoSlice);
}

TEST(CorrectiveSlices, nonFiniteDepth_isInTheLastSliceOrNone) {
  const std::vector<float> starts = sliceStarts(10, 10.0F, {8.0F, 12.0F});
  const float infinity = std::numeric_limits<float>::infinity();
  EXPECT_EQ(sliceIndex(nan, 10, starts), 9U);
  EXPECT_EQ(sliceIndex(infinity, 10, starts), 9U);
  EXPECT_EQ(sliceIndex(-infinity, 10, starts), dvNoSlice);
}

TEST(CorrectiveSlices, everyDepthOfManySlices_isBetweenItsNeighbours) {
  const std::vector<float> starts = sliceStarts(256, 10.0F, {8.0F, 12.0F});
  ASSERT_EQ(starts.size(), 256U);
  for (int i = 0; i < 1022; ++i) {
    const float depth = 0.0137F * static_cast<float>(i);
    const auto slice = static_cast<std::size_t>(sliceIndex(depth, 256, starts));
    ASSERT_LT(slice, starts.size());
    EXPECT_LE(starts[slice], depth);
    if (slice + 1 < starts.size()) {
      EXPECT_LT(depth, starts[slice + 1]);
    }
  }
}

}  // namespace
}  // namespace drevin
