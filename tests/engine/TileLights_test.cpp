#include "engine/TileLights.h"

#include <gtest/gtest.h>

#include "engine/TileRuns.h"

namespace drevin::test {
namespace {

/// A row of splats of two values, all records in one part.
class OneRow {
 public:
  OneRow() { splats_.row.sliceBegin = {0, 0}; }
  OneRow& add(const dvSplatRecord& record, float first, float second) {
    splats_.row.records.push_back(record);
    splats_.row.values.insert(splats_.row.values.end(), {first, second});
    ++splats_.row.sliceBegin[1];
    return *this;
  }
  /// Of radius 3 and share 1.
  OneRow& add(float first, float second) {
    return add({static_cast<int>(splats_.row.records.size()), 3, 1.0F, 0.0F}, first, second);
  }
  std::vector<dvTilePart> parts() const { return {{&row_, {0, splats_.row.records.size()}}}; }
  bool isLight(std::size_t record) const {
    return dvTileLights(parts(), 2)
        .isLight(splats_.row.records[record], splats_.row.values.data() + 2 * record);
  }

 private:
  dvCentredSplats splats_;
  dvGroupRows::Row row_{&splats_, 0};
};

/// 99 splats of those values.
OneRow manyOf(float first, float second) {
  OneRow row;
  for (int i = 0; i < 99; ++i)
    row.add(first, second);
  return row;
}

TEST(TileLights, valueFarAboveTheMean_isOne) {
  // The mean is 0.99 and a hundredth of it.
  EXPECT_FALSE(manyOf(1.0F, 1.0F).add(18.0F, 1.0F).isLight(99));
  EXPECT_TRUE(manyOf(1.0F, 1.0F).add(20.0F, 1.0F).isLight(99));
  EXPECT_TRUE(manyOf(1.0F, 1.0F).add(1.0F, -20.0F).isLight(99));
  EXPECT_FALSE(manyOf(1.0F, 1.0F).add(1.0F, -20.0F).isLight(0));
}

TEST(TileLights, channels_haveMeansOfTheirOwn) {
  EXPECT_FALSE(manyOf(1000.0F, 1.0F).add(900.0F, 1.0F).isLight(99));
  EXPECT_TRUE(manyOf(1000.0F, 1.0F).add(900.0F, 900.0F).isLight(99));
}

TEST(TileLights, smallShareOfAGreatValue_isNone) {
  EXPECT_FALSE(manyOf(1.0F, 1.0F).add({99, 3, 0.005F, 0.005F}, 1000.0F, 1.0F).isLight(99));
}

TEST(TileLights, valueOnBlack_isOne) {
  EXPECT_TRUE(manyOf(0.0F, 0.0F).add(1e-6F, 0.0F).isLight(99));
  EXPECT_FALSE(manyOf(0.0F, 0.0F).isLight(0));
}

TEST(TileLights, valueThatATransformCannotHold_isOneAmongItsLike) {
  EXPECT_FALSE(manyOf(5e24F, 1.0F).isLight(0));
  EXPECT_TRUE(manyOf(2e25F, 1.0F).isLight(0));
}

TEST(TileLights, shareAboveFour_isOneAmongItsLike) {
  OneRow row;
  for (int i = 0; i < 9; ++i)
    row.add({i, 3, 2.5F, 2.5F}, 0.0F, 0.0F);
  EXPECT_TRUE(row.isLight(0));
}

TEST(TileLights, mean_isThatOfSharesTimesMagnitudes) {
  OneRow row;
  row.add({0, 3, 0.5F, 0.25F}, 4.0F, 0.0F).add({1, 3, 1.0F, 0.0F}, -1.0F, 0.0F);
  const dvTileLights lights(row.parts(), 2);
  EXPECT_NEAR(lights.mean(0), 2.0F, 1e-6F);
  EXPECT_EQ(lights.mean(1), 0.0F);
}

std::vector<dvRecordRange> runsOf(const OneRow& row, bool* anyLight = nullptr) {
  std::vector<dvRecordRange> runs;
  const auto parts = row.parts();
  const bool found = forEachRun(parts, dvTileLights(parts, 2), [&](const dvTileRun& run) {
    runs.push_back({run.begin, run.end});
  });
  if (anyLight != nullptr) *anyLight = found;
  return runs;
}

TEST(TileRuns, alikeNeighbours_areOne) {
  bool anyLight = true;
  const auto runs = runsOf(manyOf(1.0F, 1.0F), &anyLight);
  ASSERT_EQ(runs.size(), 1U);
  EXPECT_EQ(runs[0].begin, 0U);
  EXPECT_EQ(runs[0].end, 99U);
  EXPECT_FALSE(anyLight);
}

TEST(TileRuns, otherRadiusOrKernels_beginAnother) {
  OneRow row;
  for (const dvSplatRecord& record : {dvSplatRecord{0, 3, 1.0F, 0.0F},
                                      {1, 3, 0.5F, 0.5F},
                                      {2, 3, 0.1F, 0.9F},
                                      {3, 3, 0.0F, 1.0F},
                                      {4, 4, 0.0F, 1.0F}})
    row.add(record, 1.0F, 1.0F);
  const auto runs = runsOf(row);
  ASSERT_EQ(runs.size(), 4U);
  EXPECT_EQ(runs[1].begin, 1U);
  EXPECT_EQ(runs[1].end, 3U);
}

TEST(TileRuns, lights_areInNone) {
  OneRow row = manyOf(1.0F, 1.0F);
  row.add(1000.0F, 1.0F).add(1.0F, 1.0F);
  bool anyLight = false;
  const auto runs = runsOf(row, &anyLight);
  EXPECT_TRUE(anyLight);
  ASSERT_EQ(runs.size(), 2U);
  EXPECT_EQ(runs[0].end, 99U);
  EXPECT_EQ(runs[1].begin, 100U);
  EXPECT_EQ(runs[1].end, 101U);
}

TEST(TileRuns, partOfARow_isAllThatIsLookedAt) {
  const OneRow row = manyOf(1.0F, 1.0F);
  std::vector<dvTilePart> parts = row.parts();
  parts[0].records = {20, 30};
  int count = 0;
  forEachRun(parts, dvTileLights(parts, 2),
             [&](const dvTileRun& run) { count += static_cast<int>(run.end - run.begin); });
  EXPECT_EQ(count, 10);
}

}  // namespace
}  // namespace drevin::test
