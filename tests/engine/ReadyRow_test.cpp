#include "engine/ReadyRow.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <utility>

#include "support/Draw.h"

namespace drevin::test {
namespace {

/// Splats of radii up to `mostRadius`, some of one column, whose values tell their places.
dvSplatRow numberedRow(int count, int mostRadius) {
  Draw draw(3);
  dvSplatRow row;
  for (int i = 0; i < count; ++i) {
    const int shares = draw.whole(0, 3);
    row.records.push_back({i / 2 - 5, draw.whole(0, mostRadius), shares == 1 ? 0.0F : 0.25F,
                           shares == 0 ? 0.0F : 0.75F});
    row.values.push_back(static_cast<float>(i));
    row.values.push_back(-1.0F);
  }
  return row;
}

/// How often each splat is in a run whose splats reach the distance.
std::map<std::size_t, int> seenIn(const dvReadyRow& ready, const dvSplatRow& row, int distance,
                                  int left) {
  std::map<std::size_t, int> seen;
  ready.forEachRun(distance, [&](const dvReadyRow::Run& run) {
    EXPECT_LT(run.begin, run.end);
    for (std::uint32_t i = run.begin; i < run.end; ++i) {
      const dvRowRecord& record = ready.records()[i];
      const auto place = static_cast<std::size_t>(record.values[0]);
      const dvSplatRecord& from = row.records[place];
      EXPECT_EQ(record.values[1], -1.0F);
      EXPECT_EQ(splatKind(from), run.kind);
      EXPECT_EQ(record.x, from.x - left);
      EXPECT_EQ(record.near, from.near);
      EXPECT_EQ(record.far, from.far);
      if (i > run.begin) {
        EXPECT_LT(ready.records()[i - 1].values[0], record.values[0]);
      }
      ++seen[place];
    }
  });
  return seen;
}

TEST(ReadyRow, splatsThatReach_areInOneRunOfTheirKindEach) {
  for (const int mostRadius : {0, 12, 400}) {
    for (const int count : {1, 2, 255, 256, 257, 700}) {
      const dvSplatRow row = numberedRow(count, mostRadius);
      const dvReadyRow ready(row, -9);
      for (const int distance : {0, 1, 7, 13, 399, 401}) {
        std::map<std::size_t, int> expected;
        for (std::size_t i = 0; i < row.records.size(); ++i) {
          if (kindReach(splatKind(row.records[i])) >= distance) expected[i] = 1;
        }
        EXPECT_EQ(seenIn(ready, row, distance, -9), expected)
            << mostRadius << ' ' << count << ' ' << distance;
      }
    }
  }
}

TEST(ReadyRow, neighboursOfOneKind_areOneRun) {
  dvSplatRow row = numberedRow(200, 0);
  for (std::size_t i = 0; i < row.records.size(); ++i)
    row.records[i] = {static_cast<int>(i), i % 2 == 0 ? 5 : 9, 0.5F, 0.5F};
  int runs = 0;
  dvReadyRow(row, 0).forEachRun(3, [&](const dvReadyRow::Run& run) {
    EXPECT_EQ(run.end - run.begin, 100U);
    ++runs;
  });
  EXPECT_EQ(runs, 2);
}

TEST(ReadyRow, splatsWithoutShares_areInNoRun) {
  dvSplatRow row = numberedRow(3, 4);
  for (dvSplatRecord& record : row.records)
    record.near = record.far = 0.0F;
  dvReadyRow(row, 0).forEachRun(0, [](const dvReadyRow::Run& run) { ADD_FAILURE() << run.kind; });
}

TEST(ReadyRow, rowWithoutSplats_hasNoRuns) {
  const auto fail = [](const dvReadyRow::Run& run) { ADD_FAILURE() << run.kind; };
  dvReadyRow().forEachRun(0, fail);
  dvReadyRow(dvSplatRow(), 0).forEachRun(0, fail);
}

TEST(ReadyRow, moved_keepsItsSplats) {
  const dvSplatRow row = numberedRow(300, 12);
  dvReadyRow first(row, 0);
  const auto expected = seenIn(first, row, 2, 0);
  dvReadyRow second;
  second = std::move(first);
  EXPECT_EQ(seenIn(second, row, 2, 0), expected);
  EXPECT_FALSE(expected.empty());
}

TEST(ReadyRow, greatValues_areTold) {
  dvSplatRow row = numberedRow(3, 4);
  EXPECT_FALSE(dvReadyRow(row, 0).hasGreat());
  row.hasGreat = true;
  EXPECT_TRUE(dvReadyRow(row, 0).hasGreat());
}

TEST(ReadyRecord, columnThatDoesNotFit_isFarOff) {
  constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
  const float value = 1.0F;
  EXPECT_EQ(readyRecord({most, 1, 1.0F, 0.0F}, &value, -5).x, 1 << 28);
  EXPECT_EQ(readyRecord({least, 1, 1.0F, 0.0F}, &value, 5).x, -(1 << 28));
  EXPECT_EQ(readyRecord({7, 1, 1.0F, 0.0F}, &value, -5).x, 12);
}

}  // namespace
}  // namespace drevin::test
