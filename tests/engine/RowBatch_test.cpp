#include "engine/RowBatch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>

#include "engine/RowScene.h"

namespace drevin::test {
namespace {

const dvRowChoice scatterAll{std::numeric_limits<int>::max(), dvRowOrder::Scatter,
                             rowTimes(dvSimdLevel::Avx512)};

/// Records of all radii up to 12, one channel whose value is the place of the record.
dvSplatRow numberedRow(int count) {
  SceneRange range;
  range.records = count;
  range.farthest = 0;
  range.channels = 1;
  dvSplatRow row = randomScene(KernelKind::Constant, range, 4).rows[0].splats;
  for (std::size_t i = 0; i < row.values.size(); ++i)
    row.values[i] = static_cast<float>(i);
  return row;
}

/// How often each record is in the runs of its batches.
std::map<std::size_t, int> runsOf(const dvSplatRow& row, int dy, const dvRowReach* reach) {
  const dvKernelTable kernels(kernelBank(KernelKind::Constant, 12), 1);
  dvRowBatch batch(0);
  std::map<std::size_t, int> seen;
  for (std::size_t begin = 0; begin < row.records.size();) {
    begin = batch.collect(row, begin, row.records.size(), std::abs(dy), reach);
    batch.cut(dy, kernels, scatterAll);
    EXPECT_TRUE(batch.runs().gathered().empty());
    for (const dvRowRun& run : batch.runs().scattered()) {
      for (int i = 0; i < run.count; ++i) {
        const auto place = static_cast<std::size_t>(*run.records[i].values);
        EXPECT_EQ(splatKind(row.records[place]),
                  splatKind(row.records[static_cast<std::size_t>(*run.records[0].values)]));
        EXPECT_EQ(run.records[i].x, row.records[place].x);
        EXPECT_EQ(run.records[i].near, row.records[place].near);
        EXPECT_EQ(run.records[i].far, row.records[place].far);
        EXPECT_TRUE(i == 0 || run.records[i - 1].x <= run.records[i].x);
        ++seen[place];
      }
    }
  }
  return seen;
}

TEST(RowBatch, recordsThatReach_areInOneRunOfTheirKind) {
  for (const int count : {1, 63, 64, 65, 255, 256, 257, 1000}) {
    const dvSplatRow row = numberedRow(count);
    const dvRowReach reach(row);
    for (const int dy : {-13, -7, 0, 1, 12}) {
      std::map<std::size_t, int> expected;
      for (std::size_t i = 0; i < row.records.size(); ++i) {
        // A table of 12 radii has no rows 13 away.
        if (kindReach(splatKind(row.records[i])) >= std::abs(dy)) expected[i] = 1;
      }
      if (std::abs(dy) > 12) {
        EXPECT_TRUE(expected.empty());
        continue;
      }
      EXPECT_EQ(runsOf(row, dy, &reach), expected) << count << ' ' << dy;
      EXPECT_EQ(runsOf(row, dy, nullptr), expected) << count << ' ' << dy;
    }
  }
}

TEST(RowBatch, runOfOneRadius_isWholeAcrossItsBlocks) {
  dvSplatRow row = numberedRow(200);
  for (dvSplatRecord& record : row.records)
    record = {record.x, 5, 0.5F, 0.5F};
  const dvRowReach reach(row);
  const dvKernelTable kernels(kernelBank(KernelKind::Constant, 12), 1);
  dvRowBatch batch(0);
  EXPECT_EQ(batch.collect(row, 0, 200, 3, &reach), 200U);
  batch.cut(3, kernels, scatterAll);
  ASSERT_EQ(batch.runs().scattered().size(), 1U);
  const dvRowRun& run = batch.runs().scattered()[0];
  EXPECT_EQ(run.count, 200);
  EXPECT_EQ(run.begin, -6);
  EXPECT_EQ(run.end, 7);
  EXPECT_EQ(run.innerBegin, run.innerEnd);
}

TEST(RowBatch, innerPart_isWhereBothKernelsAreConstant) {
  dvSplatRow row = numberedRow(1);
  const dvKernelTable kernels(kernelBank(KernelKind::BlankEdges, 12), 1);
  const dvRowChoice rims{1, dvRowOrder::Scatter, rowTimes(dvSimdLevel::Avx512)};
  dvRowBatch batch(0);
  const auto inner = [&](float near, float far) {
    row.records[0] = {0, 9, near, far};
    batch.collect(row, 0, 1, 0, nullptr);
    batch.cut(0, kernels, rims);
    return std::make_pair(batch.runs().scattered()[0].innerBegin,
                          batch.runs().scattered()[0].innerEnd);
  };
  EXPECT_EQ(inner(1.0F, 0.0F), std::make_pair(-7, 8));
  EXPECT_EQ(inner(0.0F, 1.0F), std::make_pair(-8, 9));
  EXPECT_EQ(inner(0.5F, 0.5F), std::make_pair(-7, 8));
}

TEST(RowBatch, crowdedRuns_areGatheredAndLonelySplatsScattered) {
  const dvKernelTable kernels(kernelBank(KernelKind::Constant, 12), 1);
  dvSplatRow row = numberedRow(100);
  dvRowBatch batch(0);
  for (const dvSimdLevel level : {dvSimdLevel::Baseline, dvSimdLevel::Avx2, dvSimdLevel::Avx512}) {
    const dvRowChoice choice{std::numeric_limits<int>::max(), dvRowOrder::Quickest,
                             rowTimes(level)};
    for (std::size_t i = 0; i < 100; ++i)
      row.records[i] = {static_cast<int>(i), 5, 0.5F, 0.5F};
    batch.collect(row, 0, 100, 0, nullptr);
    batch.cut(0, kernels, choice);
    EXPECT_EQ(batch.runs().gathered().size(), 1U);
    EXPECT_TRUE(batch.runs().scattered().empty());
    batch.collect(row, 0, 1, 0, nullptr);
    batch.cut(0, kernels, choice);
    EXPECT_EQ(batch.runs().scattered().size(), 1U);
    EXPECT_TRUE(batch.runs().gathered().empty());
  }
}

}  // namespace
}  // namespace drevin::test
