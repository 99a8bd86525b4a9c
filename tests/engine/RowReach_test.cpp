#include "engine/RowReach.h"

#include <gtest/gtest.h>

#include <limits>

namespace drevin::test {
namespace {

dvSplatRow rowOfRadii(const std::vector<int>& radii) {
  dvSplatRow row;
  for (const int radius : radii)
    row.records.push_back({static_cast<int>(row.records.size()), radius, 0.5F, 0.0F});
  return row;
}

TEST(SplatKind, ofBothShares_reachesTheNextRadius) {
  const int kind = splatKind({0, 7, 0.25F, 0.75F});
  EXPECT_EQ(kindReach(kind), 8);
  EXPECT_EQ(kindRadius(kind), 7);
  EXPECT_TRUE(kindHasNear(kind));
  EXPECT_TRUE(kindHasFar(kind));
}

TEST(SplatKind, ofTheNearShare_reachesItsRadius) {
  const int kind = splatKind({0, 7, 1.0F, 0.0F});
  EXPECT_EQ(kindReach(kind), 7);
  EXPECT_EQ(kindRadius(kind), 7);
  EXPECT_TRUE(kindHasNear(kind));
  EXPECT_FALSE(kindHasFar(kind));
}

TEST(SplatKind, ofTheFarShare_reachesTheNextRadius) {
  const int kind = splatKind({0, 7, 0.0F, 1.0F});
  EXPECT_EQ(kindReach(kind), 8);
  EXPECT_EQ(kindRadius(kind), 7);
  EXPECT_FALSE(kindHasNear(kind));
  EXPECT_TRUE(kindHasFar(kind));
}

TEST(SplatKind, withoutShares_reachesNoRow) {
  const int kind = splatKind({0, 7, 0.0F, 0.0F});
  EXPECT_EQ(kindReach(kind), -1);
  EXPECT_LT(kind, leastKind(0));
}

TEST(SplatKind, leastShares_count) {
  const float least = std::numeric_limits<float>::denorm_min();
  EXPECT_EQ(kindReach(splatKind({0, 0, least, 0.0F})), 0);
  EXPECT_EQ(kindReach(splatKind({0, 0, 0.0F, least})), 1);
}

TEST(SplatKind, growsWithTheReach) {
  for (int reach = 1; reach < 300; ++reach) {
    EXPECT_LT(splatKind({0, reach - 2, 0.5F, 0.5F}), leastKind(reach));
    EXPECT_GE(splatKind({0, reach, 0.5F, 0.0F}), leastKind(reach));
    EXPECT_GE(splatKind({0, reach - 1, 0.0F, 0.5F}), leastKind(reach));
    EXPECT_LT(splatKind({0, reach - 1, 0.5F, 0.0F}), leastKind(reach));
  }
}

TEST(RowReach, blocksWithoutReach_areSkipped) {
  std::vector<int> radii(300, 2);
  radii[150] = 9;  // in the block from 128 to 191
  const dvRowReach reach(rowOfRadii(radii));
  EXPECT_EQ(reach.next(0, 300, 2), 0U);
  EXPECT_EQ(reach.next(0, 300, 3), 128U);
  EXPECT_EQ(reach.next(140, 300, 3), 140U);
  EXPECT_EQ(reach.next(192, 300, 3), 300U);
  EXPECT_EQ(reach.next(0, 300, 10), 300U);
  EXPECT_EQ(reach.next(0, 100, 3), 100U);
}

TEST(RowReach, emptyRange_isSkipped) {
  const dvRowReach reach(rowOfRadii({5, 5}));
  EXPECT_EQ(reach.next(2, 2, 0), 2U);
  EXPECT_EQ(reach.largest(2, 2), -1);
  const dvRowReach none(rowOfRadii({}));
  EXPECT_EQ(none.next(0, 0, 0), 0U);
  EXPECT_EQ(none.largest(0, 0), -1);
}

TEST(RowReach, anyCount_hasALastBlock) {
  for (const std::size_t count : {1U, 63U, 64U, 65U, 128U, 129U}) {
    std::vector<int> radii(count, 1);
    radii.back() = 4;
    const dvRowReach reach(rowOfRadii(radii));
    EXPECT_EQ(reach.next(0, count, 4), (count - 1) / 64 * 64) << count;
    EXPECT_EQ(kindRadius(reach.kinds()[count - 1]), 4);
    EXPECT_EQ(reach.largest(0, count), 4);
  }
}

TEST(RowReach, block_holdsTheLeastAndTheMost) {
  const dvRowReach reach(rowOfRadii({5, 3, 8}));
  EXPECT_EQ(kindReach(reach.block(2).least), 3);
  EXPECT_EQ(kindReach(reach.block(0).most), 8);
}

}  // namespace
}  // namespace drevin::test
