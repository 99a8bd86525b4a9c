#include "engine/RowRuns.h"

#include <gtest/gtest.h>

#include <limits>

#include "engine/RowScene.h"

namespace drevin::test {
namespace {

const dvRowChoice scatterAll{std::numeric_limits<int>::max(), dvRowOrder::Scatter,
                             rowTimes(dvSimdLevel::Avx512)};

/// A radius of 2 to 9 each two columns.
dvSplatRow rowOfRadii() {
  dvSplatRow row;
  for (int i = 0; i < 32; ++i) {
    row.records.push_back({2 * i, 2 + i % 8, 0.5F, 0.5F});
    row.values.push_back(static_cast<float>(i));
  }
  return row;
}

TEST(RowRuns, ofAReadyRow_areThoseThatReach) {
  const dvKernelTable kernels(kernelBank(KernelKind::Constant, 12), 1);
  const dvReadyRow ready(rowOfRadii(), 0);
  dvRowRuns runs;
  for (const int dy : {-7, 7, 0, 12}) {
    runs.take(ready, dy, kernels, scatterAll);
    // Shares of the next radius reach a row farther: at 7, radii from 6 on.
    const std::size_t radii = dy == 0 ? 8 : dy == 12 ? 0 : 4;
    EXPECT_EQ(runs.scattered().size(), radii) << dy;
    EXPECT_EQ(runs.splats(), 4 * radii) << dy;
    EXPECT_TRUE(runs.gathered().empty());
    for (const dvRowRun& run : runs.scattered()) {
      EXPECT_EQ(run.count, 4);
      const int radius = 2 + static_cast<int>(run.records[0].values[0]) % 8;
      EXPECT_GE(radius + 1, dy < 0 ? -dy : dy);
      EXPECT_EQ(run.end, 1 - run.begin);
    }
  }
}

TEST(RowRuns, begun_areForgotten) {
  const dvKernelTable kernels(kernelBank(KernelKind::Constant, 12), 1);
  const dvReadyRow ready(rowOfRadii(), 0);
  dvRowRuns runs;
  runs.take(ready, 0, kernels, scatterAll);
  runs.begin(0, kernels, scatterAll);
  EXPECT_TRUE(runs.scattered().empty());
  EXPECT_EQ(runs.splats(), 0U);
}

TEST(RowRuns, order_sendsAllOneWay) {
  const dvKernelTable kernels(kernelBank(KernelKind::Constant, 12), 1);
  const dvReadyRow ready(rowOfRadii(), 0);
  dvRowChoice gatherAll = scatterAll;
  gatherAll.order = dvRowOrder::Gather;
  dvRowRuns runs;
  runs.take(ready, 0, kernels, gatherAll);
  EXPECT_EQ(runs.gathered().size(), 8U);
  EXPECT_TRUE(runs.scattered().empty());
}

}  // namespace
}  // namespace drevin::test
